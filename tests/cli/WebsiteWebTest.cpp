// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLineFixture.h"
#include "core/FileStore.h"
#include "practice/PracticeWeb.h"

#include <QTimer>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace relay::test {

TEST(WebsiteWebTest, CtrlCCancelsTheRequestAndChangesNothing) {
    PracticeWeb web;
    web.start();
    for (const char* const command : {"details", "urls-from-web"}) {
        CommandLineFixture fixture;
        const std::string file =
            fixture.home.writeWebsite("shop.kws", {web.address() + "/never"}, "Title=old\r\n");
        const std::string before = fixture.home.read("shop.kws");
        QTimer::singleShot(0, &fixture.stop, &StopSignal::request);
        std::vector<std::string> arguments = {"website", command, file};
        if (command == std::string_view("urls-from-web")) arguments.push_back(web.address() + "/never");
        const CommandResult result = fixture.run(arguments);
        EXPECT_EQ(result.code, 130) << command;
        EXPECT_EQ(result.out + result.err, "");
        EXPECT_EQ(fixture.home.read("shop.kws"), before);
    }
}

// A Ctrl-C while the first file is saved: that file is whole, the others are as they were.
TEST(CommandsThatWriteFilesTest, CtrlCStopsThemBetweenTwoFiles) {
    PracticeWeb web;
    web.publish({{"/enginedata/krveng5.dat", "Name=New\r\n"}, {"/enginedata/catkws.dat", "x"}});
    web.failUpdate("/enginedata/catkws.dat", "never");
    web.start();
    const std::string page = "<html><head></head></html>";
    for (const char* const command : {"insert", "replace", "update"}) {
        SCOPED_TRACE(command);
        CommandLineFixture fixture;
        const bool meta = command != std::string_view("update");
        const std::string first = meta ? "a.html" : "data/krveng5.dat";
        const std::string second = meta ? "b.html" : "data/catkws.dat";
        for (const std::string& name : {first, second}) fixture.home.write(name, page);
        bool raised = false;
        setSaveFault([&raised](SaveStep) {
            if (!std::exchange(raised, true)) std::raise(SIGINT);
            return 0;
        });
        const CommandResult result =
            meta ? fixture.run({"meta", command, fixture.home.path(first), fixture.home.path(second),
                                "--title", "T", "--keywords", "k", "--description", "d"})
                 : fixture.run({"update", "--json", "--server", web.address()});
        setSaveFault({});
        EXPECT_EQ(result.code, 130) << result.err;
        const std::string written = fixture.home.read(first);
        EXPECT_TRUE(meta ? written.ends_with("</html>\r\n") : written == "Name=New\r\n\r\n") << written;
        EXPECT_EQ(fixture.home.read(second), page);
        EXPECT_THAT(result.out,
                    testing::HasSubstr(meta ? "" : R"("event":"done","updated":false,"added":1)"));
    }
}

}  // namespace relay::test
