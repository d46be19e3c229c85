// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmSplash.h"

#include "app/ui_frmSplash.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QTimer>

namespace relay {

namespace {
constexpr int kShownMilliseconds = 5000;
}

frmSplash::frmSplash(QWidget* parent)
    : QFrame(parent, Qt::SplashScreen | Qt::FramelessWindowHint), m_ui(std::make_unique<Ui::frmSplash>()) {
    m_ui->setupUi(this);
    m_ui->imgLogo->setPixmap(programIcon().pixmap(QSize(80, 80), devicePixelRatioF()));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    m_ui->lblTitle->setFont(large);
    m_ui->lblVersion->setText(versionText());
    CenterForm(*this);
    auto* const timer = new QTimer(this);
    timer->setObjectName(QStringLiteral("Timer1"));
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, &frmSplash::timeIsUp);
    timer->start(kShownMilliseconds);
}

frmSplash::~frmSplash() = default;

}  // namespace relay
