// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include <memory>

namespace relay {

namespace Ui {
class frmSplash;
}

// Shown until the program is loaded, or for a few seconds. Closing it twice is harmless.
class frmSplash final : public QFrame {
    Q_OBJECT
  public:
    explicit frmSplash(QWidget* parent = nullptr);
    ~frmSplash() override;

  Q_SIGNALS:
    // The splash should close now, and the pointer be restored.
    void timeIsUp();

  private:
    std::unique_ptr<Ui::frmSplash> m_ui;
};

}  // namespace relay
