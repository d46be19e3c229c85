// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmAbout.h"

#include "app/ui_frmAbout.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

namespace relay {

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    Ui::frmAbout ui;
    ui.setupUi(this);
    ui.imgLogo->setPixmap(programIcon().pixmap(QSize(80, 80), devicePixelRatioF()));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setBold(true);
    ui.lblTitle->setFont(large);
    ui.lblVersion->setText(versionText());
    ui.lblLicence->setText(
        tr("Free software under the <a href=\"https://www.gnu.org/licenses/gpl-3.0.html\">GNU General Public "
           "License</a>, version 3 or later."));
    connect(ui.cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    CenterForm(*this);
}

}  // namespace relay
