// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"
#include "practice/PracticeWeb.h"
#include "practice/ReceivedLog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Pair;
using ::testing::StartsWith;

class Received : public ::testing::Test {
  protected:
    Received() { m_web.start(); }

    PracticeWeb m_web;
};

TEST_F(Received, StoresTheRequestAsReceived) {
    sendRaw(m_web.address(),
            "POST /engines/harbour-search/submit?a=%41%2b+b&q=\xE9 HTTP/1.0\r\nHoSt: here\r\nX-Two: 1\r\n"
            "x-two:  2 \r\nContent-Length: 9\r\n\r\nt=%zz&u==");
    const auto received = m_web.received();
    ASSERT_EQ(received.size(), 1U);
    const ReceivedSubmission& one = received.front();
    EXPECT_EQ(one.engine, "harbour-search");
    EXPECT_EQ(one.method, "POST");
    EXPECT_EQ(one.target, "/engines/harbour-search/submit?a=%41%2b+b&q=\xE9");
    EXPECT_EQ(one.body, "t=%zz&u==");
    EXPECT_THAT(one.headers, ElementsAre(Pair("HoSt", "here"), Pair("X-Two", "1"), Pair("x-two", "2"),
                                         Pair("Content-Length", "9")));
    EXPECT_THAT(one.fields,
                ElementsAre(Pair("a", "A+ b"), Pair("q", "\xE9"), Pair("t", "%zz"), Pair("u", "=")));
}

TEST_F(Received, TableShowsDecodedFieldsNewestFirstAndEscaped) {
    EXPECT_THAT(bodyOf(get(m_web.address(), "/")), HasSubstr("Nothing received yet."));
    get(m_web.address(), "/engines/first-engine/submit?title=Sea+%26+sand%E9");
    post(m_web.address(), "/engines/<b>/submit", "x=%3Cscript%3Ealert(1)%3C%2Fscript%3E&%22y%27=1");
    const std::string page = bodyOf(get(m_web.address(), "/"));
    EXPECT_THAT(page, HasSubstr("<dt>title</dt><dd>Sea &amp; sand\\xE9</dd>"));
    EXPECT_THAT(page, HasSubstr("<td>&lt;b&gt;</td><td>POST</td>"));
    EXPECT_THAT(page, HasSubstr("<dd>&lt;script&gt;alert(1)&lt;/script&gt;</dd><dt>&quot;y&#39;</dt>"));
    EXPECT_THAT(page, Not(HasSubstr("<script>")));
    EXPECT_LT(page.find("&lt;b&gt;"), page.find("first-engine"));
}

TEST_F(Received, JsonHasTheSameData) {
    post(m_web.address(), "/engines/first/submit", "title=%E9+x");
    get(m_web.address(), "/engines/second/404?a=b");
    const std::string text = bodyOf(get(m_web.address(), "/received.json"));
    const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(text)).array();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].toObject()[QStringLiteral("engine")].toString(), QStringLiteral("second"));
    const QJsonObject first = rows[1].toObject();
    EXPECT_EQ(first[QStringLiteral("body")].toString(), QStringLiteral("title=%E9+x"));
    const QJsonArray expected{QJsonArray{QStringLiteral("title"), QStringLiteral("\\xE9 x")}};
    EXPECT_EQ(first[QStringLiteral("fields")].toArray(), expected);
}

TEST_F(Received, IsShownToThisMachineOnly) {
    const auto with = [&](const std::string& host) {
        return sendRaw(m_web.address(), "GET /received.json HTTP/1.0\r\nHost: " + host + "\r\n\r\n");
    };
    EXPECT_THAT(with("127.0.0.1:80"), StartsWith("HTTP/1.1 200"));
    EXPECT_THAT(with("localhost"), StartsWith("HTTP/1.1 200"));
    EXPECT_THAT(with("rebound.example:80"), StartsWith("HTTP/1.1 403"));
}

TEST(ReceivedLog, KeepsTheNewestWithinItsLimits) {
    ReceivedLog log;
    PracticeRequest request;
    request.method = "POST";
    request.body.assign(std::size_t{1024} * 1024, 'x');
    for (int i = 0; i < 40; ++i) log.add("big", request);
    EXPECT_LT(log.newest().size(), 33U);
    EXPECT_GT(log.newest().size(), 30U);
    request.body.clear();
    for (std::size_t i = 0; i < ReceivedLog::kMostSubmissions + 5; ++i) log.add(std::to_string(i), request);
    const auto newest = log.newest();
    EXPECT_EQ(newest.size(), ReceivedLog::kMostSubmissions);
    EXPECT_EQ(newest.front().engine, "5");
    EXPECT_EQ(log.newest(2).back().engine, newest.back().engine);
    EXPECT_EQ(log.total(), 40 + ReceivedLog::kMostSubmissions + 5);
}

}  // namespace
}  // namespace relay::test
