// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

namespace relay {

// The program's purpose, version and licence.
class frmAbout final : public QDialog {
    Q_OBJECT
  public:
    explicit frmAbout(QWidget* parent = nullptr);
};

}  // namespace relay
