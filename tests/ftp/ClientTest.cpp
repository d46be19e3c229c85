// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/ClientFixture.h"

namespace relay::test {

namespace {

constexpr const char* kCertificates = TEST_FOLDER "/../transport/certificates/";

class ClientTest : public ClientFixture {};

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

TEST_F(ClientTest, NothingIsSentToAFolderThatCouldNotBeEnteredAndARelativeOneIsAskedFor) {
    server.lie = once("CWD", "550 No such folder\r\n");
    ASSERT_TRUE(logIn(login(), true));
    EXPECT_TRUE(client.isBusy());  // until it is there
    ASSERT_TRUE(idle());
    FtpLocalFiles local(services);
    client.btnSendFile_Click(local);
    EXPECT_EQ(prompts.last().text, "Invalid remote path, please change the remote path and try again.");
    server.commands.clear();
    server.lie = once("PWD", "257 \"/htdocs/img\"\r\n");
    client.txtRemotePath_Return("img");
    ASSERT_TRUE(waitUntil([this] { return !listedWith.empty(); }));
    EXPECT_THAT(server.commands,
                ElementsAre("CWD img", "PWD", "CWD /htdocs/img", "PASV", "LIST /htdocs/img"));
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
