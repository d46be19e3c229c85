// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"
#include "practice/PracticeWeb.h"
#include "support/CaseTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {
namespace {

using End = PlainClient::End;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Outcomes : public ::testing::Test {
  protected:
    Outcomes() { m_web.start(); }

    // How the connection ended; `bytes` receives what arrived.
    End play(const std::string& target, std::string& bytes, std::size_t most = std::size_t{1} << 26,
             int silence = 30000) const {
        PlainClient client(m_web.address());
        EXPECT_TRUE(client.send("GET " + target + " HTTP/1.0\r\n\r\n"));
        return client.read(bytes, most, silence);
    }

    PracticeWeb m_web;
};

std::size_t promisedLength(const std::string& reply) {
    const std::string name = "Content-Length: ";
    return std::stoul(reply.substr(reply.find(name) + name.size()));
}

TEST_F(Outcomes, FollowTheirTable) {
    const auto status = [this](const std::vector<std::string>& in) {
        std::string reply;
        EXPECT_EQ(play(in[0], reply), End::Closed);
        EXPECT_EQ(bodyOf(reply).size(), promisedLength(reply));
        return reply.substr(0, reply.find("\r\n"));
    };
    const auto redirect = [this](const std::vector<std::string>& in) {
        const std::string reply = get(m_web.address(), in[0]);
        EXPECT_THAT(reply, StartsWith("HTTP/1.1 302 Found\r\n"));
        const std::size_t target = reply.find("\r\nLocation: ") + 12;
        return reply.substr(target, reply.find("\r\n", target) - target);
    };
    playCases(TEST_FOLDER "/cases/outcomes.txt", {{"status", status}, {"redirect", redirect}});
    m_web.forgetReceived();
    EXPECT_THAT(get(m_web.address(), "/engines/any/thanks"), HasSubstr("Thank you"));
    EXPECT_TRUE(m_web.received().empty()) << "the thank-you page is no submission";
}

TEST_F(Outcomes, FaultsBreakTheReplyInTheirOwnWay) {
    std::string half;
    EXPECT_EQ(play("/half", half), End::Closed);
    EXPECT_EQ(bodyOf(half).size(), promisedLength(half) / 2);
    std::string lying;
    EXPECT_EQ(play("/lying", lying), End::Closed);
    EXPECT_GT(bodyOf(lying).size(), promisedLength(lying));
    std::string nothing;
    EXPECT_EQ(play("/reset", nothing), End::Reset);
    EXPECT_EQ(play("/empty", nothing), End::Closed);
    EXPECT_EQ(nothing, "");
    std::string garbage;
    EXPECT_EQ(play("/garbage", garbage), End::Closed);
    EXPECT_EQ(garbage, std::string("\x16\x03\x01 no web server\0\xFF\r\n", 22));
}

TEST_F(Outcomes, SilenceLastsUntilTheClientLeaves) {
    std::string bytes;
    EXPECT_EQ(play("/never", bytes, 1, 300), End::StillOpen);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(play("/stall", bytes, std::size_t{1} << 20, 300), End::StillOpen);
    EXPECT_EQ(bodyOf(bytes).size(), promisedLength(bytes) / 2);
}

TEST_F(Outcomes, EndlessBodyOutlastsAnyBoundAndEndsWithItsClient) {
    constexpr std::size_t bound = std::size_t{20} * 1024 * 1024;
    std::string bytes;
    EXPECT_EQ(play("/endless", bytes, bound), End::StillOpen);
    EXPECT_GE(bytes.size(), bound);
    EXPECT_EQ(bytes.find("Content-Length"), std::string::npos);
    EXPECT_THAT(get(m_web.address(), "/200"), StartsWith("HTTP/1.1 200"));
}

TEST_F(Outcomes, SlowAndSilentRepliesDoNotDelayOthers) {
    PlainClient never(m_web.address());
    PlainClient slow(m_web.address());
    ASSERT_TRUE(never.send("GET /never HTTP/1.0\r\n\r\n"));
    ASSERT_TRUE(slow.send("GET /slow HTTP/1.0\r\n\r\n"));
    EXPECT_THAT(get(m_web.address(), "/200"), StartsWith("HTTP/1.1 200"));
    std::string bytes;
    EXPECT_EQ(slow.read(bytes), End::Closed);
    EXPECT_THAT(bytes, StartsWith("HTTP/1.1 200"));
}

}  // namespace
}  // namespace relay::test
