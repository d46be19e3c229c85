// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FtpCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PasswordFile.h"
#include "cli/StopSignal.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"
#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/JsonLine.h"
#include "ftp/FtpClient.h"

#include <QEventLoop>

#include <optional>
#include <ostream>
#include <utility>

namespace relay {

// ---- The login

void FtpCommand::addLoginOptions() {
    app()
        .add_option("--host", m_host, "The server; an IPv6 address stands in brackets")
        ->required()
        ->type_name("HOST[:PORT]");
    app().add_option("--user", m_user, "The user name")->required()->type_name("USER");
    app()
        .add_option("--password-file", m_passwordFile,
                    "Take the password from the first line of this file (\"-\": standard input)")
        ->required()
        ->type_name("FILE");
    app().add_flag("--tls", m_tls, "Encrypt everything (explicit TLS); the server's certificate is checked");
}

FtpLogin FtpCommand::login() {
    FtpLogin login = FtpLoginStore(context().home().services).read();
    login.Host = m_host;
    login.Username = m_user;
    login.Password = passwordFromFile(context(), m_passwordFile);
    login.RemotePath = m_path;
    login.PublicURL.clear();
    login.TLS = m_tls;
    login.MLSD = m_mlsd;
    const std::string problem = ftpLoginProblem(login);
    if (!problem.empty()) throw UsageError(problem);
    if (!m_tls && !login.Password.empty())
        context().note("The password goes to the server unencrypted; --tls encrypts everything.");
    return login;
}

int FtpCommand::onServer(const std::function<void(FtpClient& client, std::function<void(int)> done)>& work) {
    const FtpLogin wanted = login();
    StopSignal& stop = context().console().stop;
    stop.watch();
    if (stop.poll()) return kStopped;
    FtpClient client(context().home().services);
    QEventLoop loop;
    QObject::connect(&client, &FtpClient::messageShown, &loop,
                     [this](const std::string& text) { context().note(text); });
    QObject::connect(&stop, &StopSignal::requested, &client, [&client] { client.Stop(); });

    std::optional<int> code;
    const auto leave = [&](int how) {
        code = how;
        client.Disconnect();
    };
    QObject::connect(&client, &FtpClient::loginEnded, &loop, [&](bool loggedIn) {
        if (loggedIn)
            work(client, leave);
        else
            loop.quit();
    });
    // Also when the server ends the connection; a command that runs then ends first.
    QObject::connect(&client, &FtpClient::disconnected, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    client.FTPConnect(wanted, FtpClient::kConnectSeconds, false);
    if (client.isBusy()) loop.exec();
    if (stop.poll()) return kStopped;
    if (!code) throw Failure(client.problem());
    return *code;
}

// ---- put

FtpPutCommand::FtpPutCommand(CLI::App& parent, CommandLineContext& context)
    : FtpCommand(parent, context, "put", "Upload files",
                 "ftp put index.html pens.html --host ftp.shop.example --user ada --password-file secret.txt "
                 "--path /htdocs --tls") {
    app().add_option("FILE", m_files, "The files; each keeps its name")->required()->type_name("");
    addLoginOptions();
    app()
        .add_option("--path", m_path, "The folder on the server (default: where the login leads)")
        ->type_name("PATH");
}

int FtpPutCommand::execute() {
    return onServer([this](FtpClient& client, const std::function<void(int)>& done) { send(client, done); });
}

void FtpPutCommand::send(FtpClient& client, const std::function<void(int)>& done) {
    QObject::connect(&client, &FtpClient::fileEnded, &client,
                     [this](const FtpFileEnd& file) { report(file); });
    QObject::connect(&client, &FtpClient::progressChanged, &client, [this, &client] {
        const FtpProgress& at = client.progress();
        context().progress().show(std::to_string(at.file) + " of " + std::to_string(at.files) + ": " +
                                  std::to_string(at.queuePermille() / 10) + "%");
    });
    QObject::connect(&client, &FtpClient::queueEnded, &client, [this, done](int sent, int failed) {
        reportEnd(sent, failed);
        done(failed == 0 ? kSucceeded : kSomeFailed);
    });
    const auto begin = [this, &client] {
        std::vector<FtpUpload> uploads;
        for (const std::string& file : m_files) uploads.push_back({file, getFileNameFromFile(file)});
        client.sendFiles(uploads, false);
    };
    if (m_path.empty()) {
        begin();
        return;
    }
    client.ChangeRemotePath(m_path, [this, &client, begin, done](bool, int code) {
        if (code == 250) {
            begin();
            return;
        }
        context().warn(m_path + ": " + client.problem());
        done(kCouldNotRun);
    });
}

void FtpPutCommand::report(const FtpFileEnd& file) {
    m_ended.push_back(file);
    if (!context().json) return;
    std::ostream& out = context().out();
    JsonLine()
        .add("event", "file")
        .add("file", file.file)
        .add("code", file.code)
        .add("bytes", file.bytes)
        .addJson("ok", file.ok ? "true" : "false")
        .write(out);
    out.flush();
}

void FtpPutCommand::reportEnd(int sent, int failed) {
    std::ostream& out = context().out();
    if (context().json) {
        JsonLine().add("event", "done").add("sent", sent).add("failed", failed).write(out);
        return;
    }
    Table table({"Sent", "Code", "Bytes", "File"});
    for (const FtpFileEnd& file : m_ended)
        table.add({file.ok ? "yes" : "no", std::to_string(file.code), std::to_string(file.bytes), file.file});
    table.write(out, context().colours());
}

// ---- list

FtpListCommand::FtpListCommand(CLI::App& parent, CommandLineContext& context)
    : FtpCommand(parent, context, "list", "List a folder of the server",
                 "ftp list --host ftp.shop.example --user ada --password-file secret.txt --tls\n"
                 "ftp list /htdocs --mlsd --host '[::1]:2121' --user ada --password-file secret.txt --json") {
    app().add_option("PATH", m_path, "The folder (default: where the login leads)")->type_name("");
    addLoginOptions();
    app().add_flag("--mlsd", m_mlsd, "Ask for whole names (MLSD); without it a name ends at its first blank");
}

int FtpListCommand::execute() {
    return onServer([this](FtpClient& client, const std::function<void(int)>& done) {
        const auto list = [this, &client, done](bool replied, int) {
            if (!replied) {
                context().warn(client.problem());
                done(kCouldNotRun);
                return;
            }
            client.ListFile(client.txtRemotePath(), [this, &client, done](bool, int code) {
                if (code == 226 || code == 250) {
                    show(client);
                    done(kSucceeded);
                    return;
                }
                context().warn(client.txtRemotePath() + ": " + client.problem());
                done(kCouldNotRun);
            });
        };
        m_path.empty() ? client.askRemotePath(list) : list(true, 0);
    });
}

void FtpListCommand::show(const FtpClient& client) {
    std::ostream& out = context().out();
    Table table({"Name", "Type", "Size", "Date", "Path"});
    for (const FtpEntry& entry : client.entries()) {
        if (context().json)
            JsonLine()
                .add("name", entry.name)
                .add("type", entry.type)
                .add("size", entry.size)
                .add("date", entry.date)
                .add("path", entry.path)
                .write(out);
        else
            table.add({entry.name, entry.type, std::to_string(entry.size), entry.date, entry.path});
    }
    if (!context().json) table.write(out, context().colours());
}

}  // namespace relay
