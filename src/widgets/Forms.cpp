// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Forms.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTextDocument>
#include <QVersionNumber>
#include <QWidget>

#include <algorithm>

namespace relay {

void CenterForm(QWidget& form) {
    const QScreen* const screen = form.screen();
    if (screen == nullptr) return;
    const QRect area = screen->geometry();
    form.resize(form.size().boundedTo(screen->availableSize()));
    const int top = (qRound(0.9 * area.height()) - form.height()) / 2;
    const int left = (area.width() - form.width()) / 2;
    form.move(area.left() + std::max(left, 0), area.top() + std::max(top, 0));
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

void limitWidth(QWidget& page, int characters) {
    auto* const content = new QWidget;
    content->setLayout(page.layout());
    content->setMaximumWidth(page.fontMetrics().averageCharWidth() * characters);
    auto* const row = new QHBoxLayout(&page);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(content, 1);
    row->addStretch(0);
}

void describePlaceholders(const QWidget& form) {
    for (auto* const edit : form.findChildren<QPlainTextEdit*>())
        if (edit->accessibleDescription().isEmpty()) edit->setAccessibleDescription(edit->placeholderText());
}

void continueAddress(QLineEdit& edit, const QString& beginning) {
    // A dialog selects the whole text when it comes up.
    QMetaObject::invokeMethod(
        &edit, [&edit] { edit.end(false); }, Qt::QueuedConnection);
    QObject::connect(&edit, &QLineEdit::textEdited, &edit, [&edit, beginning](const QString& text) {
        if (!text.startsWith(beginning)) return;
        const QString typed = text.mid(beginning.size());
        const auto startsWith = [&typed](const QString& word) {
            return typed.startsWith(word, Qt::CaseInsensitive);
        };
        const QString www = QStringLiteral("www.");
        QString address;
        if (startsWith(QStringLiteral("http://")) || startsWith(QStringLiteral("https://")))
            address = typed;
        else if (startsWith(www) && beginning.endsWith(www))
            address = beginning + typed.mid(www.size());
        if (!address.isEmpty()) edit.setText(address);
    });
}

void showFocus(QWidget& control) {
    control.window()->setAttribute(Qt::WA_KeyboardFocusChange);
    control.update();
}

void makeReachable(QSplitter& splitter, const QString& toolTip) {
    constexpr int kStep = 24;
    splitter.handle(1)->setToolTip(toolTip);
    splitter.handle(1)->setAccessibleName(splitter.accessibleName());
    splitter.setAccessibleDescription(toolTip);
    for (const auto& [key, step] : {std::pair(Qt::Key_Left, -kStep), {Qt::Key_Right, kStep}})
        QObject::connect(new QShortcut(QKeySequence(Qt::ALT | key), splitter.window()), &QShortcut::activated,
                         &splitter, [&splitter, step = step] {
                             const QList<int> sizes = splitter.sizes();
                             const int left = std::max(1, sizes.at(0) + step);
                             splitter.setSizes({left, std::max(1, sizes.at(0) + sizes.at(1) - left)});
                         });
}

void focusFirst(QWidget& page) {
    for (QWidget* control = page.nextInFocusChain(); control != &page;
         control = control->nextInFocusChain()) {
        const bool takes = (control->focusPolicy() & Qt::TabFocus) != 0 && control->isEnabled() &&
                           control->isVisibleTo(&page) && page.isAncestorOf(control);
        if (!takes) continue;
        control->setFocus(Qt::TabFocusReason);
        showFocus(*control);
        return;
    }
}

QString plainToolTip(const QString& text) {
    if (!Qt::mightBeRichText(text)) return text;
    return QStringLiteral("<qt>%1</qt>")
        .arg(text.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>")));
}

void setPlainToolTip(QWidget& widget, const QString& text) {
    widget.setToolTip(plainToolTip(text));
}

QString typedText(const QPlainTextEdit& edit) {
    return edit.document()->toRawText().replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
}

QString versionText() {
    const QVersionNumber version = QVersionNumber::fromString(QLatin1String(RELAY_VERSION));
    return QStringLiteral("Version %1.%2").arg(version.majorVersion()).arg(version.minorVersion());
}

}  // namespace relay
