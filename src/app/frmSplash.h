// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include <memory>

namespace relay {

namespace Ui {
class frmSplash;
}

// Shown from the first moment to the end of the load, or for a few seconds. Closing it twice is harmless.
class frmSplash final : public QFrame {
    Q_OBJECT
  public:
    explicit frmSplash(QWidget* parent = nullptr);
    ~frmSplash() override;

  Q_SIGNALS:
    // Whoever shows the splash closes it now and gives the usual pointer back.
    void timeIsUp();

  private:
    std::unique_ptr<Ui::frmSplash> m_ui;
};

}  // namespace relay
