// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace relay {

// Puts a form a little above the middle of its screen: the height left over counts for nine tenths.
void CenterForm(QWidget& form);
// Turns every tab control around a field to the field's page and puts the cursor into the field.
void showInTabs(QWidget& field);
// From here on the content of the page (or group box) stops growing at so many characters' width, and the
// rest of a wide screen stays free at its right.
void limitWidth(QWidget& page, int characters);
// Says the placeholders of the form's text boxes to screen readers; for one-line fields the toolkit does it.
void describePlaceholders(const QWidget& form);
// The field holds the beginning of an address: typing goes on behind it, and an address that is typed or
// pasted whole takes its place.
void continueAddress(QLineEdit& edit, const QString& beginning);
// "Version 6.0": the program's major and minor number.
QString versionText();
// The text as it stands in the box, lines ended by LF. toPlainText() would turn non-breaking blanks into
// plain ones.
QString typedText(const QPlainTextEdit& edit);

}  // namespace relay
