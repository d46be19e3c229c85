// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "ftp/ClientFixture.h"
#include "ftp/FtpFileSource.h"

namespace relay::test {

namespace {

class QueueTest : public ClientFixture {};

}  // namespace

TEST_F(QueueTest, AFileThatGrowsGoesAsItWasAndOneThatShrinksFails) {
    const std::string path = home.write("a.bin", std::string(600'000, 'x'));
    for (const std::uintmax_t size : {700'000U, 500'000U}) {
        FtpFileSource source;
        source.open(path, false);
        std::filesystem::resize_file(path, size);
        const auto sendAll = [&source] {
            while (!source.nextBlock().empty()) continue;
        };
        if (size < 600'000U) {
            EXPECT_THROW(sendAll(), Failure);
            continue;
        }
        sendAll();
        EXPECT_EQ(source.sent(), 600'000);
    }
}

TEST_F(QueueTest, AQueueSendsEachFileAndNamesThoseThatFailed) {
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

TEST_F(QueueTest, ChosenLocalFilesGoUp) {
    write({"a.html", "b.txt", "c.HTM", ".htaccess"});
    std::filesystem::create_directory(home.path("site/img"));
    FtpLocalFiles local(services);
    local.openFolder(home.path("site"));
    EXPECT_THAT(texts(local.lsvDirs),
                ElementsAre("\xC2\xA0Up", "img", " .htaccess", " a.html", " b.txt", " c.HTM"));
    EXPECT_EQ(local.lsvDirs.at(3).subItems[0], "HTML File");
    EXPECT_EQ(local.lsvDirs.at(5).subItems[0], "File");
    EXPECT_EQ(local.lsvDirs.at(3).subItems[1], "1KB");
    for (const int row : {0, 1, 3, 4}) local.lsvDirs.setHighlighted(row, true);
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

TEST_F(QueueTest, LiesOfAServerEndTheirCommandAndNoMore) {
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

TEST_F(QueueTest, StopEndsEveryWaitAtOnceAndTheNextCommandIsInStep) {
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

TEST_F(QueueTest, ASilentServerTimesOutAndTheSecondTimeItsConnectionIsGivenUp) {
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

TEST_F(QueueTest, TheComparisonWithTheWebNamesExactlyWhatChanged) {
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

}  // namespace relay::test
