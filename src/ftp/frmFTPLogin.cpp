// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/frmFTPLogin.h"

#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "ftp/ui_frmFTPLogin.h"
#include "widgets/Forms.h"

#include <QPointer>

namespace relay {

frmFTPLogin::frmFTPLogin(const Services& services, SecretStore* secrets, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmFTPLogin>()),
      m_services(services),
      m_store(services, secrets),
      m_saved(m_store.read()) {
    m_ui->setupUi(this);
    m_ui->chkSecret->setVisible(m_store.offersSecretService());
    showLogin();
    CenterForm(*this);
}

frmFTPLogin::~frmFTPLogin() = default;

void frmFTPLogin::showLogin() {
    const bool first = m_saved.Host.empty();
    m_ui->txtHostName->setText(first ? toScreen(kFtpPlaceholderHost) : toScreen(m_saved.Host));
    m_ui->txtUserName->setText(toScreen(m_saved.Username));
    m_ui->txtPassword->setText(toScreen(m_saved.Password));
    m_ui->txtRemotePath->setText(toScreen(m_saved.RemotePath));
    m_ui->txtPublicURL->setText(toScreen(m_saved.PublicURL));
    m_ui->chkTLS->setChecked(m_saved.TLS);
    m_ui->chkMLSD->setChecked(m_saved.MLSD);
    m_ui->chkSecret->setChecked(m_saved.SecretService);
    QLineEdit* const begin = first ? m_ui->txtHostName : m_ui->txtPassword;
    begin->setFocus(Qt::OtherFocusReason);
    begin->selectAll();
    // The password may come later than the user types one.
    m_store.readPassword(m_saved, [form = QPointer(this)](const std::string& password) {
        if (!form || form->m_ui->txtPassword->isModified()) return;
        form->m_ui->txtPassword->setText(toScreen(password));
        if (form->m_ui->txtPassword->hasFocus()) form->m_ui->txtPassword->selectAll();
    });
}

FtpLogin frmFTPLogin::typed() const {
    FtpLogin login = m_saved;
    login.Host = fromScreen(m_ui->txtHostName->text());
    login.Username = fromScreen(m_ui->txtUserName->text());
    login.Password = fromScreen(m_ui->txtPassword->text());
    login.RemotePath = fromScreen(m_ui->txtRemotePath->text());
    login.PublicURL = fromScreen(m_ui->txtPublicURL->text());
    login.TLS = m_ui->chkTLS->isChecked();
    login.MLSD = m_ui->chkMLSD->isChecked();
    login.SecretService = m_ui->chkSecret->isChecked();
    return login;
}

std::optional<FtpLogin> frmFTPLogin::ask() {
    if (exec() != Accepted) return std::nullopt;
    return typed();
}

void frmFTPLogin::accept() {
    const FtpLogin login = typed();
    const std::string problem = ftpLoginProblem(login);
    if (!problem.empty()) {
        m_services.prompts.message(problem, fromScreen(windowTitle()), Icon::Critical);
        return;
    }
    m_store.save(login);
    QDialog::accept();
}

}  // namespace relay
