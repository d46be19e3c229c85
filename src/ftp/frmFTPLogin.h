// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/FtpLogin.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace relay {

namespace Ui {
class frmFTPLogin;
}

// Asks for the details of a connection, beginning with the saved ones.
class frmFTPLogin final : public QDialog {
    Q_OBJECT
  public:
    // `secrets` may be null; the arguments outlive the form.
    frmFTPLogin(const Services& services, SecretStore* secrets, QWidget* parent = nullptr);
    ~frmFTPLogin() override;

    // Shows the form; the login that the user confirmed, which is then saved, or nothing.
    std::optional<FtpLogin> ask();

    // "OK": stays open, after a message, while the login cannot be used.
    void accept() override;

  private:
    void showLogin();
    FtpLogin typed() const;

    std::unique_ptr<Ui::frmFTPLogin> m_ui;
    const Services& m_services;
    FtpLoginStore m_store;
    FtpLogin m_saved;
};

}  // namespace relay
