// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "ftp/FtpLogin.h"
#include "ftp/FtpQueue.h"

#include <functional>
#include <string>
#include <vector>

namespace relay {

class FtpClient;

// What the commands for a server share: the login, and waiting.
class FtpCommand : public Command {
  protected:
    using Command::Command;

    void addLoginOptions();
    // Logs in, runs `work`, and logs out. `work` begins an operation and calls its argument with the exit
    // code at its end. Throws Failure when the login fails.
    int onServer(const std::function<void(FtpClient& client, std::function<void(int)> done)>& work);

    std::string m_path;

  private:
    FtpLogin login();

    std::string m_host;
    std::string m_user;
    std::string m_passwordFile;
    bool m_tls = false;

  protected:
    bool m_mlsd = false;
};

// ftp put FILE... --host HOST --user USER --password-file FILE [--path PATH] [--tls]
class FtpPutCommand final : public FtpCommand {
  public:
    FtpPutCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void send(FtpClient& client, const std::function<void(int)>& done);
    void report(const FtpFileEnd& file);
    void reportEnd(int sent, int failed);

    std::vector<std::string> m_files;
    std::vector<FtpFileEnd> m_ended;
};

// ftp list [PATH] --host HOST --user USER --password-file FILE [--tls] [--mlsd]
class FtpListCommand final : public FtpCommand {
  public:
    FtpListCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void show(const FtpClient& client);
};

}  // namespace relay
