// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/FtpClient.h"
#include "ftp/FtpLocalFiles.h"

#include <QDialog>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

namespace relay {

class SecretStore;

namespace Ui {
class frmFTPClient;
}

// "FTP Upload Client": local files on the left, the server's on the right, messages below. Escape first stops
// what is going on, then closes the window; closing ends everything at once and deletes the form.
class frmFTPClient final : public QDialog {
    Q_OBJECT
  public:
    // `secrets` may be null. The other arguments outlive the form.
    frmFTPClient(const Services& services, frmHTTP& fetcher, std::unique_ptr<SecretStore> secrets,
                 QWidget* parent = nullptr);
    ~frmFTPClient() override;

    FtpClient& client() noexcept { return m_client; }
    FtpLocalFiles& local() noexcept { return m_local; }

    void reject() override;

  Q_SIGNALS:
    // The user wants these pages submitted; never empty.
    void submitWanted(const std::vector<std::string>& urls);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void drawIcons();
    void connectLocal();
    void connectRemote();
    void connectQueue();
    void connectWeb();
    void logIn();
    void sendFiles();
    void copyMessages();
    void showState();
    void showConnection();
    void showProgress();
    bool isAtWork();

    std::unique_ptr<Ui::frmFTPClient> m_ui;
    const Services& m_services;
    std::unique_ptr<SecretStore> m_secrets;
    FtpLocalFiles m_local;
    FtpClient m_client;
    std::string m_shownPath;
    std::string m_refusal;  // of the last login
    QTimer m_scroll;        // to the last message, once for many
};

}  // namespace relay
