// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Forms.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QTextDocument>
#include <QVersionNumber>
#include <QWidget>

namespace relay {

void CenterForm(QWidget& form) {
    const QScreen* const screen = form.screen();
    if (screen == nullptr) return;
    const QRect area = screen->geometry();
    const int top = (qRound(0.9 * area.height()) - form.height()) / 2;
    const int left = (area.width() - form.width()) / 2;
    form.move(area.left() + left, area.top() + top);
}

void showInTabs(QWidget& field) {
    for (QWidget* page = &field; page != nullptr; page = page->parentWidget()) {
        for (QWidget* above = page->parentWidget(); above != nullptr; above = above->parentWidget()) {
            auto* const tabs = qobject_cast<QTabWidget*>(above);
            if (tabs != nullptr && tabs->indexOf(page) >= 0) tabs->setCurrentWidget(page);
        }
    }
    field.setFocus(Qt::OtherFocusReason);
    if (auto* const edit = qobject_cast<QLineEdit*>(&field); edit != nullptr) edit->selectAll();
}

void focusFirst(QWidget& page) {
    for (QWidget* control = page.nextInFocusChain(); control != &page;
         control = control->nextInFocusChain()) {
        const bool takes = (control->focusPolicy() & Qt::TabFocus) != 0 && control->isEnabled() &&
                           control->isVisibleTo(&page) && page.isAncestorOf(control);
        if (!takes) continue;
        control->setFocus(Qt::TabFocusReason);
        return;
    }
}

QString typedText(const QPlainTextEdit& edit) {
    return edit.document()->toRawText().replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
}

QString versionText() {
    const QVersionNumber version = QVersionNumber::fromString(QLatin1String(RELAY_VERSION));
    return QStringLiteral("Version %1.%2").arg(version.majorVersion()).arg(version.minorVersion());
}

}  // namespace relay
