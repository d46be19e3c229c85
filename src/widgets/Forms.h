// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QPlainTextEdit;
class QWidget;

namespace relay {

// Puts a form a little above the middle of its screen: the height left over counts for nine tenths.
void CenterForm(QWidget& form);
// Turns every tab control around a field to the field's page and puts the cursor into the field.
void showInTabs(QWidget& field);
// Puts the cursor into the first control of a page that takes it.
void focusFirst(QWidget& page);
// "Version 6.0": the program's major and minor number.
QString versionText();
// The text as it stands in the box, lines ended by LF. toPlainText() would turn non-breaking blanks into
// plain ones.
QString typedText(const QPlainTextEdit& edit);

}  // namespace relay
