// SPDX-License-Identifier: GPL-3.0-or-later
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

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kCertificates = TEST_FOLDER "/../transport/certificates/";
constexpr const char* kPassword = "secret1";

class ClientTest : public SessionFixture, public testing::Test {
  protected:
    ClientTest() : SessionFixture("/D") {
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
auto once(std::string start, std::string answer) {
    return [start, answer, done = false](const std::string& command) mutable -> std::optional<std::string> {
        if (done || !command.starts_with(start)) return std::nullopt;
        done = true;
        return answer;
    };
}

}  // namespace

TEST_F(ClientTest, TheWindowsLoginGoesToTheFolderAndListsIt) {
    server.listing =
        "total 3\r\ndrwxr-xr-x 2 0 0 4096 Jan 01 10:00 img\r\n"
        "-rw-r--r-- 1 0 0 1234567 Jan 02 10:00 b.html\r\n-rw-r--r-- 1 0 0 9 Jan 02 10:00 a.txt\r\n";
    server.bytewise = true;
    EXPECT_EQ(client.btnConnect(), "&Connect");
    FtpLogin wanted = login();
    wanted.RemotePath.clear();
    prompts.answers = {true};
    client.btnConnect_Click(wanted);
    EXPECT_EQ(client.btnConnect(), "C&lose");
    ASSERT_TRUE(waitUntil([this] { return !listedWith.empty(); }));
    EXPECT_THAT(listedWith, ElementsAre(226));
    EXPECT_EQ(client.txtRemotePath(), "/htdocs");
    EXPECT_THAT(server.commands,
                ElementsAre("USER ada", "PASS secret1", "PWD", "CWD /htdocs", "PASV", "LIST /htdocs"));
    EXPECT_THAT(texts(client.lsvRemote), ElementsAre("\xC2\xA0Up", "img", " b.html", " a.txt"));
    EXPECT_EQ(client.lsvRemote.at(2).subItems[1], "1,234,567 Bytes");
    EXPECT_EQ(client.lsvRemote.at(2).tag, "/htdocs/b.html");
    // "Up" stays above, and folders stay before files.
    client.lsvRemote.sortByColumn(2);
    EXPECT_THAT(texts(client.lsvRemote), ElementsAre("\xC2\xA0Up", "img", " a.txt", " b.html"));
    client.lsvRemote.sortByColumn(2);
    EXPECT_THAT(texts(client.lsvRemote), ElementsAre("\xC2\xA0Up", "img", " b.html", " a.txt"));
    client.lsvRemote_DblClick(2);
    EXPECT_FALSE(client.isBusy());
    client.lsvRemote_DblClick(1);
    ASSERT_TRUE(waitUntil([this] { return listedWith.size() == 2; }));
    EXPECT_EQ(client.txtRemotePath(), "/htdocs/img");
    EXPECT_EQ(client.lsvRemote.at(0).tag, "/htdocs");
    EXPECT_EQ(client.btnConnect(), "D&isconnect");
    client.btnConnect_Click({});
    ASSERT_TRUE(waitUntil([this] { return client.btnConnect() == "&Connect"; }));
    EXPECT_EQ(server.commands.back(), "QUIT");
    EXPECT_EQ(prompts.busyDepth, 0);
}

TEST_F(ClientTest, AsksBeforeAPasswordGoesInTheClear) {
    client.btnConnect_Click(login());
    EXPECT_THAT(prompts.last().text, StartsWith("The password will go to the server unencrypted"));
    EXPECT_FALSE(client.isBusy());
    FtpLogin anonymous = login();
    anonymous.Password.clear();
    client.btnConnect_Click(anonymous);
    EXPECT_TRUE(client.isBusy());
    EXPECT_EQ(prompts.shown.size(), 1U);
}

TEST_F(ClientTest, RefusesControlCharactersBeforeAnythingIsSent) {
    for (std::string FtpLogin::*const field : {&FtpLogin::Host, &FtpLogin::Username, &FtpLogin::Password,
                                               &FtpLogin::RemotePath, &FtpLogin::PublicURL}) {
        FtpLogin wanted = login();
        (wanted.*field) += "\r\nDELE a";
        EXPECT_FALSE(logIn(wanted));
        EXPECT_THAT(prompts.last().text, HasSubstr("control character"));
    }
    EXPECT_THAT(server.commands, IsEmpty());
    ASSERT_TRUE(logIn());
    const std::size_t before = server.commands.size();
    client.ChangeRemotePath("/a\nDELE b");
    EXPECT_THAT(prompts.last().text, HasSubstr("control character"));
    ASSERT_TRUE(send(write({"a\nDELE b"})));
    EXPECT_EQ(codes(), "0- ");
    EXPECT_EQ(server.commands.size(), before);
}

TEST_F(ClientTest, AQueueSendsEachFileAndNamesThoseThatFailed) {
    ASSERT_TRUE(logIn());
    std::vector<FtpUpload> files = write({"a.html", "b.html"}, std::string(100'000, 'x') + "\r\n\n");
    files.push_back({home.write("site/empty.html", ""), "empty.html"});
    files.push_back({home.path("site/gone.html"), "gone.html"});
    files.push_back({home.path("site"), "site"});
    server.lie = once("STOR a", "552 No room\r\n");
    ASSERT_TRUE(send(files));
    EXPECT_EQ(codes(), "0- 0- 0- 552- 226+ ");
    EXPECT_EQ(server.files["/htdocs/b.html"], home.read("site/b.html"));
    EXPECT_EQ(server.files.size(), 1U);
    EXPECT_THAT(texts(client.List1), Contains("Bad File Name. Transfer Aborted"));
    EXPECT_EQ(client.failureSummary(), "4 of 5 files were not sent: empty.html, gone.html, site, a.html");
    EXPECT_EQ(client.progress().sent, client.progress().size);
    // Again: those that failed, and no others.
    home.write("site/empty.html", "no more");
    const int before = queues;
    client.retryFailed();
    ASSERT_TRUE(waitUntil([&] { return queues > before; }));
    EXPECT_EQ(sent, 2);
    EXPECT_EQ(failed, 2);
    EXPECT_EQ(server.files["/htdocs/empty.html"], "no more");
    EXPECT_EQ(server.files["/htdocs/a.html"], home.read("site/a.html"));
}

TEST_F(ClientTest, TheButtonsCheckTheConnectionFirst) {
    FtpLocalFiles local(services);
    client.btnSendFile_Click(local);
    client.btnList_Click();
    client.btnChangeDir_Click();
    EXPECT_EQ(prompts.shown.size(), 3U);
    for (const auto& box : prompts.shown) {
        EXPECT_EQ(box.text, "FTP Connection seems closed, Please re-connect and try again !");
        EXPECT_EQ(box.title, "FTP Client");
    }
    FtpLogin nowhere = login();
    nowhere.RemotePath.clear();
    ASSERT_TRUE(logIn(nowhere));
    client.btnSendFile_Click(local);
    EXPECT_EQ(prompts.last().text, "Invalid remote path, please change the remote path and try again.");
    prompts.inputs = {"", "/other"};
    client.btnChangeDir_Click();
    EXPECT_FALSE(client.isBusy());
    client.btnChangeDir_Click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(server.folder, "/other");
}

TEST_F(ClientTest, ChosenLocalFilesGoUp) {
    write({"a.html", "b.txt", "c.HTM"});
    std::filesystem::create_directory(home.path("site/img"));
    FtpLocalFiles local(services);
    local.openFolder(home.path("site"));
    EXPECT_THAT(texts(local.lsvDirs), ElementsAre("\xC2\xA0Up", "img", " a.html", " b.txt", " c.HTM"));
    EXPECT_EQ(local.lsvDirs.at(2).subItems[0], "HTML File");
    EXPECT_EQ(local.lsvDirs.at(4).subItems[0], "File");
    EXPECT_EQ(local.lsvDirs.at(2).subItems[1], "1KB");
    for (const int row : {0, 1, 2, 3}) local.lsvDirs.setHighlighted(row, true);
    ASSERT_TRUE(logIn());
    client.btnSendFile_Click(local);
    EXPECT_EQ(local.lsvDirs.firstHighlighted(), -1);
    ASSERT_TRUE(waitUntil([this] { return !listedWith.empty(); }));
    EXPECT_EQ(codes(), "226+ 226+ ");
    EXPECT_TRUE(server.files.contains("/htdocs/b.txt"));
    EXPECT_TRUE(local.openRow(2));
    EXPECT_FALSE(local.openRow(1));
    EXPECT_THAT(texts(local.lsvDirs), ElementsAre("\xC2\xA0Up"));
    local.openFolder(home.path("nowhere"));
    EXPECT_EQ(prompts.last().text, home.path("nowhere") + " is not accessible.\r\nThe device is not ready.");
    EXPECT_EQ(local.folder(), home.path("site/img"));
}

TEST_F(ClientTest, LiesOfAServerEndTheirCommandAndNoMore) {
    const struct {
        const char* command;
        const char* answer;
        const char* codes;
    } kLies[] = {
        {"PASV", "227 Entering Passive Mode 127,0,0,1,4,1\r\n", "999- 226+ "},
        {"PASV", "227 Entering Passive Mode (127,0,0,1,0,1)\r\n", "999- 226+ "},  // nobody listens there
        {"PASV", "500 What?\r\n", "500- 226+ "},
        {"STOR", "226 Of course\r\n", "226- 226+ "},  // nothing was sent
        {"STOR", "550-Not\r\n550 here\r\n", "550- 226+ "},
        {"STOR", "421 Going down\r\n", "421- 0- "},
    };
    for (const auto& lie : kLies) {
        SCOPED_TRACE(std::string(lie.command) + " " + lie.answer);
        FtpClient fresh(services);
        bool in = false;
        bool ended = false;
        QObject::connect(&fresh, &FtpClient::loginEnded, &fresh, [&](bool ok) { in = ok; });
        QObject::connect(&fresh, &FtpClient::queueEnded, &fresh, [&] { ended = true; });
        server.lie = once(lie.command, lie.answer);
        fresh.FTPConnect(login(), 15, false);
        ASSERT_TRUE(waitUntil([&] { return in; }));
        fresh.sendFiles(write({"a.html", "b.html"}), false);
        ASSERT_TRUE(waitUntil([&] { return ended; }));
        std::string all;
        for (const FtpFileEnd& file : fresh.ended())
            all += std::to_string(file.code) + (file.ok ? "+ " : "- ");
        EXPECT_EQ(all, lie.codes);
        EXPECT_EQ(prompts.busyDepth, 0);
    }
}

TEST_F(ClientTest, StopEndsEveryWaitAtOnceAndTheNextCommandIsInStep) {
    // While connecting.
    server.greeting.clear();
    client.FTPConnect(login(), 15, false);
    client.Stop();
    EXPECT_EQ(loggedIn, false);
    EXPECT_EQ(client.btnConnect(), "&Connect");
    server.greeting = "220 Ready\r\n";
    ASSERT_TRUE(logIn());
    // In a transfer that does not move; its reply comes late.
    server.silentData = true;
    client.sendFiles(write({"a.html", "b.html"}, std::string(20'000'000, 'x')), false);
    ASSERT_TRUE(waitUntil([this] { return client.progress().fileSent > 0; }));
    client.Stop();
    ASSERT_TRUE(waitUntil([this] { return queues == 1; }));
    EXPECT_EQ(codes(), "999- 0- ");
    EXPECT_EQ(client.ended().back().problem, "Stopped");
    server.silentData = false;
    server.say("426 Broken\r\n");
    ASSERT_TRUE(send(write({"c.html"})));
    EXPECT_EQ(codes(), "226+ ");
    EXPECT_EQ(server.files["/htdocs/c.html"], "hello");
    // Closing the connection ends the queue as well.
    server.silentData = true;
    client.sendFiles(write({"a.html"}, std::string(20'000'000, 'x')), false);
    ASSERT_TRUE(waitUntil([this] { return client.progress().fileSent > 0; }));
    client.Disconnect();
    ASSERT_TRUE(waitUntil([this] { return queues == 3 && client.btnConnect() == "&Connect"; }));
    EXPECT_EQ(prompts.busyDepth, 0);
}

TEST_F(ClientTest, ASilentServerTimesOutAndTheSecondTimeItsConnectionIsGivenUp) {
    client.setCommandTimeOut(100);
    ASSERT_TRUE(logIn());
    server.silentData = true;
    ASSERT_TRUE(send(write({"a.html", "b.html", "c.html"})));
    EXPECT_EQ(codes(), "999- 999- 0- ");
    EXPECT_EQ(client.ended().front().problem, "Time out !");
    EXPECT_THAT(texts(client.List1), Contains("Time out !"));
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(prompts.busyDepth, 0);
}

TEST_F(ClientTest, AListingOfAHundredThousandLinesIsShownWhole) {
    for (int i = 0; i < 100'000; ++i)
        server.listing +=
            "-rw-r--r-- 1 0 0 " + std::to_string(i) + " Jan 02 10:00 file" + std::to_string(i) + ".html\r\n";
    ASSERT_TRUE(logIn());
    client.ListFile("/htdocs");
    ASSERT_TRUE(waitUntil([this] { return !listedWith.empty(); }));
    EXPECT_EQ(client.lsvRemote.count(), 100'001);
    EXPECT_EQ(client.entries().back().size, 99'999);
    EXPECT_LE(client.List1.count(), FtpClient::kMessages);
}

TEST_F(ClientTest, MlsdShowsNamesWholeAndOnlyOldMessagesGo) {
    server.listing = "type=file;size=5;modify=20260105123000; my page.html\r\n";
    FtpLogin wanted = login();
    wanted.MLSD = true;
    ASSERT_TRUE(logIn(wanted));
    client.ListFile("/htdocs");
    ASSERT_TRUE(waitUntil([this] { return !listedWith.empty(); }));
    EXPECT_THAT(texts(client.lsvRemote), ElementsAre("\xC2\xA0Up", " my page.html"));
    EXPECT_EQ(server.commands.back(), "MLSD /htdocs");
    server.lie = once("MLSD", "500 Unknown command\r\n");
    server.listing = "-rw-r--r-- 1 0 0 5 Jan 05 12:30 my page.html\r\n";
    client.ListFile("/htdocs");
    ASSERT_TRUE(waitUntil([this] { return listedWith.size() == 2; }));
    EXPECT_THAT(texts(client.lsvRemote), ElementsAre("\xC2\xA0Up", " my"));
    const int shown = client.List1.count();
    for (int i = shown; i < FtpClient::kMessages; ++i) server.say("* " + std::to_string(i) + "\r\n");
    ASSERT_TRUE(waitUntil([this] { return client.List1.count() == FtpClient::kMessages; }));
    server.say("* one more\r\n");
    ASSERT_TRUE(waitUntil([this] { return client.List1.count() == FtpClient::kMessages - 49; }));
    EXPECT_EQ(client.List1.at(0).text, "* 50");
    EXPECT_EQ(client.List1.at(client.List1.count() - 1).text, "* one more");
}

TEST_F(ClientTest, ARefusedOrSilentLoginEnds) {
    server.lie = once("PASS", "530 Login incorrect\r\n");
    EXPECT_FALSE(logIn());
    EXPECT_EQ(client.problem(), "530 Login incorrect");
    server.lie = once("USER", "421 Too many\r\n");
    EXPECT_FALSE(logIn());
    EXPECT_EQ(client.problem(), "421 Too many");
    server.greeting.clear();
    loggedIn.reset();
    client.FTPConnect(login(), 1, false);
    ASSERT_TRUE(waitUntil([this] { return loggedIn.has_value(); }));
    EXPECT_EQ(client.problem(), "The server did not answer the login in time.");
    EXPECT_EQ(client.btnConnect(), "&Connect");
}

TEST_F(ClientTest, TlsEncryptsBothConnectionsAndChecksTheCertificate) {
    FtpLogin wanted = login();
    wanted.TLS = true;
    EXPECT_FALSE(logIn(wanted));  // not offered
    EXPECT_THAT(messages(), HasSubstr("The server does not offer TLS."));
    ::setenv("SSL_CERT_FILE", (std::string(kCertificates) + "authority.pem").c_str(), 1);
    for (const char* const bad : {"expired.pem", "other-host.pem", "self-signed.pem"}) {
        server.useTls(std::string(kCertificates) + bad, std::string(kCertificates) + "server.key");
        EXPECT_FALSE(logIn(wanted)) << bad;
        EXPECT_THAT(client.problem(), StartsWith("Socket1 Error: The server's certificate is not accepted: "))
            << bad;
    }
    EXPECT_THAT(server.commands, Not(Contains(StartsWith("USER"))));
    server.useTls(std::string(kCertificates) + "good.pem", std::string(kCertificates) + "server.key");
    ASSERT_TRUE(logIn(wanted));
    server.listing = "-rw-r--r-- 1 0 0 9 Jan 02 10:00 a.txt\r\n";
    client.ListFile("/htdocs");
    ASSERT_TRUE(waitUntil([this] { return !listedWith.empty(); }));
    ASSERT_TRUE(send(write({"a.html", "b.html"}, std::string(1'000'000, 'x'))));
    EXPECT_EQ(codes(), "226+ 226+ ");
    EXPECT_EQ(server.files["/htdocs/b.html"].size(), 1'000'000U);
    EXPECT_EQ(server.encryptedData, 3);
    EXPECT_EQ(client.lsvRemote.count(), 2);
    ::unsetenv("SSL_CERT_FILE");
}

TEST_F(ClientTest, ThePasswordIsInNoLogAndNoMessage) {
    server.lie = once("PWD", "500 I will not forget secret1\r\n");
    ASSERT_TRUE(logIn());
    client.askRemotePath();
    ASSERT_TRUE(idle());
    ASSERT_TRUE(send(write({"a.html"})));
    EXPECT_THAT(logText(), HasSubstr("SendFTPCommand: STOR a.html, -1," + home.path("site/a.html")));
    EXPECT_THAT(logText() + messages(), Not(HasSubstr(kPassword)));
}

TEST_F(ClientTest, TheComparisonWithTheWebNamesExactlyWhatChanged) {
    // The web shows what the server has, but for one page that a cache keeps.
    std::map<std::string, std::string> web{
        {"/same.html", "hello"}, {"/changed.html", "old"}, {"/cached.html", "old"}};
    FaultServer pages([&web](FaultServer::Peer& peer) {
        const auto page = web.find(peer.path());
        peer.send(page == web.end() ? FaultServer::answer(404, "no")
                                    : FaultServer::answer(200, page->second));
    });
    FtpLogin wanted = login();
    wanted.PublicURL = pages.url("/");
    ASSERT_TRUE(logIn(wanted));
    const std::vector<FtpUpload> files =
        write({"same.html", "changed.html", "cached.html", "new.html", "lost.html"});
    ASSERT_TRUE(send(files));
    web["/changed.html"] = web["/new.html"] = "hello";
    std::optional<bool> whole;
    QObject::connect(client.compare(), &FtpCompare::ended, &client, [&](bool all) { whole = all; });
    client.compareWithWeb();
    ASSERT_TRUE(waitUntil([&] { return whole.has_value(); }));
    EXPECT_TRUE(*whole);
    EXPECT_THAT(client.compare()->changedUrls(),
                ElementsAre(pages.url("/changed.html"), pages.url("/new.html")));
    std::vector<std::string> states;
    for (const WebPage& page : client.compare()->results()) states.emplace_back(webStateText(page.state));
    EXPECT_THAT(states, ElementsAre("Unchanged", "Changed", "Different", "Changed", "Missing"));
    EXPECT_EQ(client.compare()->pages.count(), 5);
    // The key file goes to the folder of the public address, whatever the present one is.
    client.ChangeRemotePath("/htdocs/img");
    ASSERT_TRUE(idle());
    client.placeIndexNowKey("no key");
    EXPECT_THAT(prompts.last().text, StartsWith("An IndexNow key has"));
    web["/0123456789abcdef.txt"] = "0123456789abcdef";
    whole.reset();
    client.placeIndexNowKey("0123456789abcdef");
    ASSERT_TRUE(waitUntil([&] { return whole.has_value(); }));
    EXPECT_EQ(server.files["/htdocs/0123456789abcdef.txt"], "0123456789abcdef");
    EXPECT_EQ(client.compare()->results().at(0).state, WebState::Unchanged);
}

TEST_F(ClientTest, TheLoginIsKeptInAFileOfItsOwnersOrInTheSecretService) {
    struct Secrets final : SecretStore {
        std::map<std::string, std::string> kept;
        std::string problem;
        bool isAvailable() const override { return true; }
        void read(const std::string& name, std::function<void(std::string, std::string)> done) override {
            done(kept[name], problem);
        }
        void write(const std::string& name, const std::string& secret,
                   std::function<void(std::string)> done) override {
            if (problem.empty()) kept[name] = secret;
            done(problem);
        }
        void remove(const std::string& name, std::function<void(std::string)> done) override {
            kept.erase(name);
            done({});
        }
    } secrets;
    const auto inFile = [this] { return home.read("settings.ini").find(kPassword) != npos; };
    const FtpLoginStore plain(services);
    FtpLogin wanted = login();
    wanted.SecretService = true;  // there is none
    plain.save(wanted);
    EXPECT_EQ(modeOf(home.path("settings.ini")), 0600U);
    EXPECT_TRUE(inFile());
    EXPECT_FALSE(plain.read().SecretService);
    EXPECT_EQ(plain.read().Password, kPassword);

    const FtpLoginStore store(services, &secrets);
    store.save(wanted);
    EXPECT_FALSE(inFile());
    std::string password;
    store.readPassword(store.read(), [&](std::string read) { password = std::move(read); });
    EXPECT_EQ(password, kPassword);
    secrets.problem = "locked";
    store.save(wanted);
    EXPECT_TRUE(inFile());
    EXPECT_THAT(prompts.last().text, HasSubstr("locked"));
    secrets.problem.clear();
    wanted.SecretService = false;
    store.save(wanted);
    EXPECT_THAT(secrets.kept, IsEmpty());
}

TEST_F(ClientTest, AnIPv6ServerIsAskedForAnExtendedPort) {
    std::unique_ptr<FtpServer> six;
    try {
        six = std::make_unique<FtpServer>("::1");
    } catch (const std::exception&) {
        GTEST_SKIP() << "no IPv6 here";
    }
    FtpLogin wanted = login();
    wanted.Host = six->host();
    ASSERT_TRUE(logIn(wanted));
    ASSERT_TRUE(send(write({"a.html"})));
    EXPECT_EQ(codes(), "226+ ");
    EXPECT_THAT(six->commands, Contains("EPSV"));
}

}  // namespace relay::test
