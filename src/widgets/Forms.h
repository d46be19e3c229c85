// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLineEdit;
class QPlainTextEdit;
class QSplitter;
class QWidget;

namespace relay {

// Puts a form slightly above the centre of its screen: it gets nine tenths of the centring offset. One
// larger than the screen shrinks as far as its layout allows, and begins in the screen's corner.
void CenterForm(QWidget& form);
// Switches every tab control around a field to its page and focuses the field.
void showInTabs(QWidget& field);
// Limits the width of the content of a page or group box to so many characters. The rest of a wide window
// stays free on its right.
void limitWidth(QWidget& page, int characters);
// Describes the form's text boxes to screen readers by their placeholders, as Qt does for one-line fields.
void describePlaceholders(const QWidget& form);
// For a field that contains the start of an address: typing continues it, and a complete address that is
// typed or pasted replaces it.
void continueAddress(QLineEdit& edit, const QString& beginning);
// Focuses the first control of a page that can have the focus.
void focusFirst(QWidget& page);
// Alt+Left and Alt+Right move the first border of the window's splitter, which Qt moves by mouse only.
void makeReachable(QSplitter& splitter, const QString& toolTip);
// Draws the focus of the control as after the Tab key: by default, buttons that were reached with another key
// do not show it.
void showFocus(QWidget& control);
// "Version 6.0": the program's major and minor number.
QString versionText();
// Shows the text as it is. Qt takes a tool tip with tags for HTML, and would load its pictures.
QString plainToolTip(const QString& text);
void setPlainToolTip(QWidget& widget, const QString& text);
// The text in the box, lines ended by LF. toPlainText() would turn non-breaking spaces into plain ones.
QString typedText(const QPlainTextEdit& edit);

}  // namespace relay
