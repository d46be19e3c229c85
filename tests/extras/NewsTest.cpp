// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/UpdateFiles.h"
#include "core/FileStore.h"
#include "core/SettingsStore.h"
#include "core/clsPreference.h"
#include "extras/News.h"
#include "practice/PracticeWeb.h"
#include "support/FaultServer.h"
#include "support/SessionFixture.h"
#include "transport/frmHTTP.h"

#include <optional>

namespace relay::test {

namespace {

std::string newsOf(std::string_view date, std::string_view title, std::string_view message) {
    return "[News]\r\nDate=" + std::string(date) + "\r\nTitle=" + std::string(title) +
           "\r\nMessage=" + std::string(message);
}

class NewsTest : public ::testing::Test, protected SessionFixture {
  protected:
    NewsTest() {
        QObject::connect(&news, &News::ended, &news, [this](NewsCheck how) { ended = how; });
    }
    // What the window shows, and the boxes since the last call.
    std::string shown() {
        std::string text = news.state().lblTitle + ": " + news.state().txtMessage;
        for (const ScriptedPrompts::Shown& box : prompts.shown) text += " | " + box.title + ": " + box.text;
        prompts.shown.clear();
        return text;
    }
    std::string check() {
        ended.reset();
        news.checkNewMessage();
        EXPECT_TRUE(waitUntil([this] { return ended.has_value(); }));
        EXPECT_FALSE(news.state().checking);
        EXPECT_EQ(prompts.busyDepth, 0);
        return shown();
    }

    frmHTTP fetcher{services};
    std::string address;
    News news{services, fetcher, [this] { return std::make_shared<const std::string>(address); }};
    std::optional<NewsCheck> ended;
};

constexpr std::string_view kNothingNew = " | Error: No New Message !";

}  // namespace

TEST_F(NewsTest, ShowsTheStoredMessageOrFixedTexts) {
    constexpr std::string_view kFixed =
        "Korvel Relay V6.0: Best professional web promotion site submission software for all business.";
    const auto load = [this](const std::string& text) {
        home.write("news.dat", text);
        news.loadMessages();
        return shown();
    };
    EXPECT_EQ(load(newsOf("2002/04/01", "Spring", "Two\r\nlines\r\n[News]\r\nTitle=x\r\n")),
              "Spring: Two\r\nlines\r\n[News]\r\nTitle=x");
    EXPECT_EQ(load(newsOf("", "", "Text")), "Korvel Relay: Text");
    EXPECT_EQ(load(newsOf("2002/04/01", "Spring", "\r\n")), kFixed);
    EXPECT_EQ(load("[News]\r\nTitle=Spring\r\nmessage=small letters"), kFixed);
    EXPECT_EQ(load(""), kFixed);
    removeFile(home.path("news.dat"));
    news.loadMessages();
    EXPECT_EQ(shown(), "Korvel Relay:  | loadMessage: loadMessage_Error: " + home.path("news.dat") +
                           ": No such file or directory");
}

TEST_F(NewsTest, AMessageIsNewByTheFirstTenCharactersOfItsDate) {
    const auto receive = [this](const std::string& body, std::int16_t status = 200) {
        news.showNewMessage(body, status);
        return shown();
    };
    const std::string first = newsOf("2002/04/01 a", "One", "first");
    EXPECT_EQ(receive(first), "One: first");
    EXPECT_EQ(home.read("news.dat"), first + "\r\n");
    EXPECT_EQ(receive(newsOf("2002/04/01 b", "Same day", "again")),
              "Same day: again" + std::string(kNothingNew));
    EXPECT_EQ(receive(newsOf("2002/04/02", "Two", "second")), "Two: second");
    EXPECT_EQ(receive(newsOf("1/4", "Short", "s")), "Short: s");
    EXPECT_EQ(receive(newsOf("1/4", "Short again", "s")), "Short again: s" + std::string(kNothingNew));
    const std::string before = home.read("news.dat");
    for (const char* refused : {"", "<html>Date= Message</html>", "[News]\r\ndate=x\r\nTitle=x\r\nMessage=x",
                                "[News]\r\nDate=x\r\nTitle=x\r\n"})
        EXPECT_EQ(receive(refused), "Short again: s" + std::string(kNothingNew)) << refused;
    EXPECT_EQ(receive(newsOf("2002/05/05", "Lost", "x"), 404), "Short again: s" + std::string(kNothingNew));
    EXPECT_EQ(home.read("news.dat"), before);

    removeFile(home.path("news.dat"));
    makeFolder(home.path("news.dat"));
    EXPECT_EQ(news.showNewMessage(first, 200), NewsCheck::NotStored);
    for (const auto& box : prompts.shown) EXPECT_NE(box.text, "No New Message !");
}

TEST_F(NewsTest, AsksTheUpdateServer) {
    PracticeWeb web;
    web.publish({{std::string(kNewsPath), newsOf("2002/04/01", "Spring", "of the server")}});
    web.start();
    home.write("data/korvel.ini", "[Dealer]\r\nUpdateServer=" + web.address() + "\r\n");
    session.readSettings();
    preference.TimeOut = 1;
    EXPECT_EQ(check(), "Spring: of the server");
    EXPECT_EQ(ended, NewsCheck::New);
    EXPECT_EQ(check(), "Spring: of the server" + std::string(kNothingNew));
    EXPECT_EQ(ended, NewsCheck::NoNews);
    for (const char* word : {"404", "500", "blank", "half", "stall", "reset", "garbage", "endless", "loop"}) {
        web.failUpdate(kNewsPath, word);
        EXPECT_EQ(check(), "Spring: of the server" + std::string(kNothingNew)) << word;
        EXPECT_EQ(ended, NewsCheck::NotReceived) << word;
        EXPECT_NE(news.state().problem, "") << word;
    }
    news.setServer("127.0.0.1:1");
    EXPECT_EQ(check(), "Spring: of the server" + std::string(kNothingNew)) << "the chosen server counts";
}

TEST_F(NewsTest, OpensAsTheSettingSays) {
    PracticeWeb web;
    web.publish({{std::string(kNewsPath), newsOf("2002/04/01", "Spring", "of the program's own server")}});
    web.start();
    address = web.address();
    home.write("news.dat", newsOf("2001/01/01", "Old", "old"));
    EXPECT_TRUE(news.checksAtOpen());
    news.setChecksAtOpen(false);
    news.open();
    EXPECT_EQ(shown(), "Old: old");
    EXPECT_FALSE(fetcher.isRunning());
    EXPECT_EQ(SettingsStore(home.paths().settingsFile).value(kApplication, "News", "CheckNewMsgAtOpen"), "0");

    news.setChecksAtOpen(true);
    news.open();
    EXPECT_EQ(shown(), "Checking New Message ...: Connecting to korvelrelay web site ....");
    news.cancel();
    EXPECT_TRUE(waitUntil([this] { return ended.has_value(); }));
    EXPECT_EQ(ended, NewsCheck::Cancelled);
    EXPECT_EQ(check(), "Spring: of the program's own server");
}

}  // namespace relay::test
