// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"
#include "core/Failure.h"
#include "practice/PracticeWeb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST(UpdatePageTest, ServesTheFilesOrTheFaultsSetOnItsPage) {
    PracticeWeb web;
    web.publish({{"/enginedata/top.kws", "Home=http://@PRACTICE@/x"}, {"/news/news.dat", "news"}});
    web.start();
    const auto reply = [&](const char* path) { return get(web.address(), path); };
    EXPECT_EQ(bodyOf(reply("/enginedata/top.kws")), "Home=" + web.address() + "/x");
    EXPECT_EQ(bodyOf(reply("/news/news.dat")), "news");
    EXPECT_THAT(reply("/enginedata/cat.kws"), StartsWith("HTTP/1.1 404 "));
    const std::string page = reply("/enginedata/");
    for (const char* part : {"name=\"/enginedata/top.kws\"", "name=\"/news/news.dat\"", "<option>endless"})
        EXPECT_THAT(page, HasSubstr(part));
    EXPECT_THAT(page, Not(HasSubstr("selected")));

    const auto set = [&](const char* form) { return post(web.address(), "/enginedata/", form); };
    EXPECT_THAT(set("%2Fenginedata%2Ftop.kws=503&%2Fnews%2Fnews.dat=half"),
                HasSubstr("<option selected>503</option>"));
    EXPECT_THAT(reply("/enginedata/top.kws"), StartsWith("HTTP/1.1 503 "));
    EXPECT_THAT(reply("/news/news.dat"), HasSubstr("Content-Length: 4\r\nConnection: close\r\n\r\nne"));
    EXPECT_THAT(set("%2Fenginedata%2Ftop.kws=blank"), StartsWith("HTTP/1.1 200 "));
    EXPECT_EQ(bodyOf(reply("/enginedata/top.kws")), "");
    EXPECT_THAT(set("%2Fenginedata%2Ftop.kws="), StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(bodyOf(reply("/enginedata/top.kws")), StartsWith("Home="));
    for (const char* wrong : {"%2Fenginedata%2Ftop.kws=nonsense", "%2Fother=404"})
        EXPECT_THAT(set(wrong), StartsWith("HTTP/1.1 400 ")) << wrong;
    EXPECT_THROW(web.failUpdate("/other", "404"), Failure);
    EXPECT_THAT(sendRaw(web.address(), "GET /enginedata/ HTTP/1.0\r\nHost: elsewhere.test\r\n\r\n"),
                StartsWith("HTTP/1.1 403 "));
    EXPECT_TRUE(web.received().empty());
}

}  // namespace
}  // namespace relay::test
