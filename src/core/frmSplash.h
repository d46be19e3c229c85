// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include <memory>

namespace relay {

namespace Ui {
class frmSplash;
}

// Shown from the first moment to the end of the load. Closing it twice is harmless; it goes by itself after a
// few seconds.
class frmSplash final : public QFrame {
    Q_OBJECT
  public:
    explicit frmSplash(QWidget* parent = nullptr);
    ~frmSplash() override;

  private:
    std::unique_ptr<Ui::frmSplash> m_ui;
};

}  // namespace relay
