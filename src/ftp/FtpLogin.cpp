// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpLogin.h"

#include "core/Failure.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "ftp/FtpHost.h"

#include <array>

namespace relay {

namespace {

constexpr std::string_view kSection = "FTP";

// Under what name the secret service keeps the password.
std::string secretName(const FtpLogin& login) {
    return login.Username + "@" + login.Host;
}

}  // namespace

void refuseControlBytes(std::string_view text, std::string_view what) {
    if (hasControlByte(text))
        throw Failure(std::string(what) + " has a line break or another control character in it.");
}

std::string ftpLoginProblem(const FtpLogin& login) {
    return failureOf([&login] {
               parseFtpHost(login.Host);
               refuseControlBytes(login.Username, "The user name");
               refuseControlBytes(login.Password, "The password");
               refuseControlBytes(login.RemotePath, "The remote path");
               refuseControlBytes(login.PublicURL, "The public address");
               if (login.Username.empty()) throw Failure("Please enter the user name.");
           })
        .value_or("");
}

FtpLoginStore::FtpLoginStore(const Services& services, SecretStore* secrets)
    : m_services(services), m_secrets(secrets) {}

std::string FtpLoginStore::value(std::string_view key) const {
    return m_services.settings.value(kApplication, kSection, key);
}

FtpLogin FtpLoginStore::read() const {
    const auto isSet = [this](std::string_view key) { return value(key) == "1"; };
    return {.Host = value("Host"),
            .Username = value("Username"),
            .Password = value("Password"),
            .RemotePath = value("RemotePath"),
            .PublicURL = value("PublicURL"),
            .TLS = isSet("TLS"),
            .MLSD = isSet("MLSD"),
            .AllowForeignDataHost = isSet("AllowForeignDataHost"),
            .SecretService = isSet("SecretService") && offersSecretService()};
}

void FtpLoginStore::readPassword(const FtpLogin& login,
                                 const std::function<void(std::string password)>& done) const {
    if (!login.SecretService || !offersSecretService()) {
        done(login.Password);
        return;
    }
    m_secrets->read(secretName(login),
                    [done, kept = login.Password](const std::string& secret, const std::string&) {
                        done(secret.empty() ? kept : secret);
                    });
}

void FtpLoginStore::keepPassword(std::string_view password) const {
    m_services.settings.setValue(kApplication, kSection, "Password", password);
}

void FtpLoginStore::save(const FtpLogin& login) const {
    trap(m_services.prompts, "Save_Setting_Error: ", [&] {
        const auto keep = [this](std::string_view key, std::string_view text) {
            m_services.settings.setValue(kApplication, kSection, key, text);
        };
        keep("Host", login.Host);
        keep("Username", login.Username);
        keep("RemotePath", login.RemotePath);
        keep("PublicURL", login.PublicURL);
        keep("TLS", login.TLS ? "1" : "0");
        keep("MLSD", login.MLSD ? "1" : "0");
        keep("AllowForeignDataHost", login.AllowForeignDataHost ? "1" : "0");
        const bool secret = login.SecretService && offersSecretService();
        // A service that was never asked is left alone: it might want to be unlocked.
        const bool kept = value("SecretService") == "1" && offersSecretService();
        keep("SecretService", secret ? "1" : "0");
        if (!secret) {
            if (value("Password") != login.Password) keepPassword(login.Password);
            m_services.settings.save();
            if (kept) m_secrets->remove(secretName(login), [](const std::string&) {});
            return;
        }
        m_services.settings.save();
        m_secrets->write(secretName(login), login.Password,
                         [store = *this, password = login.Password](const std::string& problem) {
                             store.keepPassword(problem.empty() ? "" : password);
                             store.m_services.settings.trySave();
                             if (!problem.empty())
                                 store.m_services.prompts.message(
                                     "The password could not be kept in the secret service, so it is in the "
                                     "settings file: " +
                                         problem,
                                     "FTP Client", Icon::Information);
                         });
    });
}

}  // namespace relay
