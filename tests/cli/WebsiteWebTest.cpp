// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLineFixture.h"
#include "practice/PracticeWeb.h"

#include <QTimer>

#include <gtest/gtest.h>

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

}  // namespace relay::test
