// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <QDialog>

#include <memory>
#include <string>

namespace relay {

class AddIns;

namespace Ui {
class frmAddIns;
}

// The add-in manager: which tools the menu Add-Ins shows.
class frmAddIns final : public QDialog {
    Q_OBJECT
  public:
    // Tools that the menu shows are ticked. `addIns` outlives the form.
    explicit frmAddIns(AddIns& addIns, QWidget* parent = nullptr);
    ~frmAddIns() override;

    // The codes of the tools to show, after OK.
    const std::string& list() const noexcept { return m_list; }
    void accept() override;

  private:
    void describe(int row);

    std::unique_ptr<Ui::frmAddIns> m_ui;
    AddIns& m_addIns;
    Rows m_rows;
    std::string m_list;
};

}  // namespace relay
