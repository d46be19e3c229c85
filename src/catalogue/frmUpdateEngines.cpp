// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/frmUpdateEngines.h"

#include "catalogue/EngineUpdate.h"
#include "catalogue/ui_frmUpdateEngines.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QScreen>

namespace relay {

namespace {

QColor errorColour(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    return dark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb0, 0x00, 0x20);
}

QString lines(std::string_view text) {
    return toScreen(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

}  // namespace

frmUpdateEngines::frmUpdateEngines(EngineUpdate& update, Prompts& prompts, std::string_view prompt,
                                   QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmUpdateEngines>()), m_update(update) {
    m_ui->setupUi(this);
    constexpr int kImage = 32;
    m_ui->Image1->setPixmap(themedIcon("UpdateEngines").pixmap(QSize(kImage, kImage), devicePixelRatioF()));
    // The other controls keep their places when the link appears.
    QSizePolicy policy = m_ui->Label2->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->Label2->setSizePolicy(policy);
    connect(m_ui->Command1_0, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->Command1_1, &QPushButton::clicked, &update, &EngineUpdate::Start);
    connect(m_ui->cmdUndo, &QPushButton::clicked, &update, &EngineUpdate::askToUndo);
    connect(m_ui->Label2, &QLabel::linkHovered, this, [this](const QString& link) {
        m_linkHovered = !link.isEmpty();
        showLink();
    });
    connect(m_ui->Label2, &QLabel::linkActivated, this, [this, &prompts] {
        openOrTell(prompts, m_update.installerAddress(), fromScreen(windowTitle()));
    });
    connect(&update, &EngineUpdate::changed, this, &frmUpdateEngines::showState);
    connect(&update, &EngineUpdate::ended, this, [this] { m_ui->Command1_0->setFocus(); });
    constexpr int kHoldMilliseconds = 500;
    connect(&m_hold, &QTimer::timeout, &update, &EngineUpdate::checkHold);
    m_hold.start(kHoldMilliseconds);
    update.open(prompt);
    fitHeight();
    CenterForm(*this);
}

frmUpdateEngines::~frmUpdateEngines() = default;

void frmUpdateEngines::done(int result) {
    m_hold.stop();
    disconnect(&m_update, nullptr, this, nullptr);
    QDialog::done(result);
    m_update.Close();
}

void frmUpdateEngines::showState() {
    const UpdateState& state = m_update.state();
    showTexts(state);
    showProgress(state);
    showLink();
    m_ui->Command1_1->setEnabled(state.startEnabled);
    m_ui->cmdUndo->setVisible(state.canUndo);
    m_ui->cmdUndo->setEnabled(state.startEnabled);
    fitHeight();
}

void frmUpdateEngines::showTexts(const UpdateState& state) {
    m_ui->Label1->setText(lines(state.Label1));
    QPalette colours = palette();
    if (state.Label1IsError) colours.setColor(QPalette::WindowText, errorColour(palette()));
    m_ui->Label1->setPalette(colours);
    m_ui->lblReason->setText(lines(state.reason));
    m_ui->lblReason->setVisible(!state.reason.empty());
    const QString changes = lines(state.changes);
    if (m_ui->txtChanges->toPlainText() != changes) m_ui->txtChanges->setPlainText(changes);
    m_ui->txtChanges->setVisible(!changes.isEmpty());
}

void frmUpdateEngines::showProgress(const UpdateState& state) {
    // Without a length the bar only shows that something arrives.
    const bool lengthUnknown = state.value > 0 && state.maximum < state.value;
    m_ui->ProgressBar1->setRange(
        0, lengthUnknown ? 0 : static_cast<int>(std::max<std::int64_t>(state.maximum, 1)));
    m_ui->ProgressBar1->setValue(static_cast<int>(state.value));
    m_ui->ProgressBar1->setFormat(state.step.empty() ? QString()
                                                     : toScreen(state.step) + QStringLiteral("  %p%"));
}

void frmUpdateEngines::showLink() {
    const QString text = toScreen(m_update.state().Label2);
    const bool isLink = !m_update.installerAddress().empty();
    QString html = text.toHtmlEscaped();
    if (isLink) {
        const QColor colour = palette().color(m_linkHovered ? QPalette::Link : QPalette::WindowText);
        html = QStringLiteral("<a href=\"installer\" style=\"color:%1; text-decoration:%2\">%3</a>")
                   .arg(colour.name(), m_linkHovered ? QStringLiteral("underline") : QStringLiteral("none"),
                        html);
    }
    // A label that gets the same text again would forget that the pointer is over its link.
    if (m_ui->Label2->text() != html) m_ui->Label2->setText(html);
    m_ui->Label2->setTextInteractionFlags(isLink ? Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard
                                                 : Qt::NoTextInteraction);
    m_ui->Label2->setVisible(!text.isEmpty());
}

// Labels that wrap need more height than the layout's minimum.
void frmUpdateEngines::fitHeight() {
    const QRect area = screen()->availableGeometry();
    const int room = area.height() - (frameGeometry().height() - height());
    setMinimumHeight(std::min(layout()->totalMinimumHeightForWidth(width()), room));
    const int wanted = std::min(layout()->totalHeightForWidth(width()), room);
    if (height() < wanted) resize(width(), wanted);
    const int below = frameGeometry().bottom() - area.bottom();
    if (isVisible() && below > 0) move(x(), std::max(area.top(), y() - below));
}

void frmUpdateEngines::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (event->oldSize().width() != event->size().width()) fitHeight();
}

}  // namespace relay
