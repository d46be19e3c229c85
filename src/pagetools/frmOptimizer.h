// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/Optimizer.h"

#include <QDialog>

#include <memory>

namespace relay {

namespace Ui {
class frmOptimizer;
}

// "Web Site Optimizer": an address, the report on its page, and the findings beside the page's source. Escape
// first cancels a running request, then closes the form.
class frmOptimizer final : public QDialog {
    Q_OBJECT
  public:
    // Shows the optimizer as it is, with its last page; it outlives the form.
    explicit frmOptimizer(Optimizer& optimizer, QWidget* parent = nullptr);
    ~frmOptimizer() override;

    void reject() override;
    // Stores the earlier addresses.
    void done(int result) override;

  private:
    void connectFindings();
    void optimize();
    void showHistory();
    void showState();
    void showReport();
    void showFindings();
    void showFinding(int row);

    std::unique_ptr<Ui::frmOptimizer> m_ui;
    Optimizer& m_optimizer;
    bool m_inAddress = true;  // the focus is on the address or its button
};

}  // namespace relay
