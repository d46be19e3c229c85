// SPDX-License-Identifier: GPL-3.0-or-later
#include "extras/frmAddIns.h"

#include "core/ScreenText.h"
#include "extras/AddIns.h"
#include "extras/ui_frmAddIns.h"
#include "widgets/Forms.h"

#include <QPushButton>

namespace relay {

frmAddIns::frmAddIns(AddIns& addIns, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmAddIns>()), m_addIns(addIns) {
    m_ui->setupUi(this);
    m_rows.setColumns({"Applications"});
    m_rows.setCheckable(true);
    for (std::size_t i = 0; i < kAddIns.size(); ++i) {
        Row row;
        row.key = kAddIns[i].code;
        row.text = kAddIns[i].name;
        m_rows.add(row);
        m_rows.setChecked(static_cast<int>(i), addIns.shown().at(i));
    }
    m_ui->lvwAddIns->setRows(&m_rows);
    const auto select = [this](int row) {
        m_ui->lvwAddIns->setCurrentIndex(m_rows.index(row, 0));
        describe(row);
    };
    connect(m_ui->lvwAddIns, &ListView::rowClicked, this, &frmAddIns::describe);
    connect(m_ui->lvwAddIns, &ListView::rowEntered, this, &frmAddIns::describe);
    connect(&m_rows, &Rows::checkToggled, this, select);
    connect(m_ui->cmsOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    select(0);
    CenterForm(*this);
}

frmAddIns::~frmAddIns() = default;

void frmAddIns::describe(int row) {
    const AddIn& addIn = kAddIns.at(static_cast<std::size_t>(row));
    m_ui->txtDescription->setPlainText(toScreen(addIn.description));
}

void frmAddIns::accept() {
    AddIns::Flags ticked{};
    for (std::size_t i = 0; i < ticked.size(); ++i) ticked[i] = m_rows.at(static_cast<int>(i)).checked;
    m_list = m_addIns.confirm(ticked);
    QDialog::accept();
}

}  // namespace relay
