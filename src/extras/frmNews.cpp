// SPDX-License-Identifier: GPL-3.0-or-later
#include "extras/frmNews.h"

#include "core/ScreenText.h"
#include "extras/News.h"
#include "extras/ui_frmNews.h"
#include "widgets/Forms.h"

#include <QPushButton>
#include <QTimer>

namespace relay {

frmNews::frmNews(News& news, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmNews>()), m_news(news) {
    m_ui->setupUi(this);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.2);
    large.setBold(true);
    m_ui->lblTitle->setFont(large);
    m_ui->Check1->setChecked(news.checksAtOpen());
    connect(m_ui->Check1, &QCheckBox::clicked, &news, &News::setChecksAtOpen);
    connect(m_ui->Command1_0, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->Command1_1, &QPushButton::clicked, &news, &News::checkNewMessage);
    connect(&news, &News::changed, this, &frmNews::showState);
    CenterForm(*this);
    QTimer::singleShot(0, &news, &News::open);
}

frmNews::~frmNews() = default;

void frmNews::done(int result) {
    disconnect(&m_news, nullptr, this, nullptr);
    m_news.cancel();
    QDialog::done(result);
}

void frmNews::showState() {
    const NewsState& state = m_news.state();
    m_ui->lblTitle->setText(toScreen(state.lblTitle));
    const QString text = toScreen(state.txtMessage).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (typedText(*m_ui->txtMessage) != text) m_ui->txtMessage->setPlainText(text);
    m_ui->lblProblem->setText(toScreen(state.problem));
    m_ui->lblProblem->setVisible(!state.problem.empty());
    const bool hadFocus = m_ui->Command1_1->hasFocus();
    m_ui->Command1_1->setEnabled(!state.checking);
    if (hadFocus && state.checking) m_ui->Command1_0->setFocus();
}

}  // namespace relay
