// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/SecretStore.h"

#include <functional>
#include <string>
#include <string_view>

namespace relay {

struct Services;

// What the login asks for. Texts as typed.
struct FtpLogin final {
    std::string Host;  // "HOST", "HOST:PORT" or "[v6]:PORT"
    std::string Username;
    std::string Password;
    std::string RemotePath;  // the folder to begin in; empty: the one the server begins in
    std::string PublicURL;   // the web address of that folder, to compare uploads with the web; may be empty
    bool TLS = false;        // explicit TLS, with the server's certificate checked
    bool MLSD = false;       // whole names in the remote list ("Whole names (MLSD)")
    bool AllowForeignDataHost = false;  // only in the settings: data goes to the address that a 227 names
    bool SecretService = false;         // keep the password in the desktop's secret service
};

// For the host field of a login that was never saved.
inline constexpr std::string_view kFtpPlaceholderHost = "ftp.yourdomain.example";

// Why this login cannot be used: a line break or another control byte in a field, no host, a bad port.
// Empty when it can. Nothing is sent before this was asked.
std::string ftpLoginProblem(const FtpLogin& login);

// Throws Failure: the text would be more than one command's argument. `what` names it: "The file name".
void refuseControlBytes(std::string_view text, std::string_view what);

// Reads and keeps the login in the settings (section "FTP", file mode 0600), or its password in the secret
// service. `secrets` may be null: there is none.
class FtpLoginStore final {
  public:
    explicit FtpLoginStore(const Services& services, SecretStore* secrets = nullptr);

    bool offersSecretService() const { return m_secrets != nullptr && m_secrets->isAvailable(); }

    // The saved login; its password is empty when the secret service keeps it.
    FtpLogin read() const;
    // Calls `done` with the password of `login` from the secret service, or an empty one; soon, or at once.
    void readPassword(const FtpLogin& login, const std::function<void(std::string password)>& done) const;
    // Saves the login. With SecretService the password goes there and out of the settings; when that fails, a
    // message says so and the settings keep it. Shows a failure ("Save_Setting_Error: ").
    void save(const FtpLogin& login) const;

  private:
    std::string value(std::string_view key) const;
    void keepPassword(std::string_view password) const;

    const Services& m_services;
    SecretStore* m_secrets;
};

}  // namespace relay
