// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/FileStore.h"
#include "core/Text.h"
#include "ftp/FtpClient.h"
#include "ftp/FtpLocalFiles.h"
#include "support/FaultServer.h"
#include "support/FtpServer.h"
#include "support/SessionFixture.h"
#include "transport/frmHTTP.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace relay::test {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

inline constexpr const char* kPassword = "secret1";

// A client without a window, and a scripted server.
class ClientFixture : public SessionFixture, public testing::Test {
  protected:
    ClientFixture() : SessionFixture("/D") {
        QObject::connect(&client, &FtpClient::loginEnded, &client, [this](bool in) { loggedIn = in; });
        QObject::connect(&client, &FtpClient::queueEnded, &client, [this](int ok, int bad) {
            ++queues;
            sent = ok;
            failed = bad;
        });
        QObject::connect(&client, &FtpClient::listed, &client,
                         [this](bool, int code) { listedWith.push_back(code); });
    }

    FtpLogin login() const {
        FtpLogin wanted;
        wanted.Host = server.host();
        wanted.Username = "ada";
        wanted.Password = kPassword;
        wanted.RemotePath = "/htdocs";
        return wanted;
    }
    bool logIn(FtpLogin wanted, bool follow = false) {
        loggedIn.reset();
        client.FTPConnect(wanted, 15, follow);
        return waitUntil([this] { return loggedIn.has_value(); }) && *loggedIn;
    }
    bool logIn() { return logIn(login()); }
    std::vector<FtpUpload> write(const std::vector<std::string>& names, const std::string& bytes = "hello") {
        std::vector<FtpUpload> uploads;
        for (const std::string& name : names) uploads.push_back({home.write("site/" + name, bytes), name});
        return uploads;
    }
    bool send(const std::vector<FtpUpload>& files) {
        const int before = queues;
        client.sendFiles(files, false);
        return waitUntil([&] { return queues > before; });
    }
    bool idle() {
        return waitUntil([this] { return !client.isBusy(); });
    }
    std::string messages() const {
        std::string all;
        for (const std::string& text : texts(client.List1)) all += text + "\n";
        return all;
    }
    std::string codes() const {
        std::string all;
        for (const FtpFileEnd& file : client.ended())
            all += std::to_string(file.code) + (file.ok ? "+ " : "- ");
        return all;
    }

    FtpServer server;
    frmHTTP fetcher{services};
    FtpClient client{services, &fetcher};
    std::optional<bool> loggedIn;
    int queues = 0;
    int sent = 0;
    int failed = 0;
    std::vector<int> listedWith;
};

// A reply to a command instead of the server's own, the first time it comes.
inline auto once(std::string start, std::string answer) {
    return [start, answer, done = false](const std::string& command) mutable -> std::optional<std::string> {
        if (done || !command.starts_with(start)) return std::nullopt;
        done = true;
        return answer;
    };
}

}  // namespace relay::test
