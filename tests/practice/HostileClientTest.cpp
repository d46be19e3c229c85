// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"
#include "practice/PracticeRequest.h"
#include "practice/PracticeWeb.h"
#include "support/CaseTable.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace relay::test {
namespace {

using End = PlainClient::End;
using ::testing::StartsWith;
using State = PracticeRequestReader::State;

std::string statusTo(const PracticeWeb& web, std::string_view request) {
    return sendRaw(web.address(), request).substr(0, 12);
}

TEST(HostileClient, IsRefusedAndTheNextOneServed) {
    PracticeWeb web;
    web.start();
    playCases(TEST_FOLDER "/cases/hostile.txt", {{"request", [&](const std::vector<std::string>& in) {
                                                      const std::string status = statusTo(web, in[0]);
                                                      EXPECT_EQ(statusTo(web, "GET /robots.txt HTTP/1.0\n\n"),
                                                                "HTTP/1.1 404");
                                                      return status;
                                                  }}});
    std::string head = "GET / HTTP/1.0\r\n";
    for (int i = 0; i < 201; ++i) head += "a: b\r\n";
    EXPECT_EQ(statusTo(web, head + "\r\n"), "HTTP/1.1 431");
    EXPECT_TRUE(web.received().empty());
}

TEST(HostileClient, IsDroppedWhenItNeverFinishesARequest) {
    PracticeWeb web({.requestMilliseconds = 200, .connections = 512});
    web.start();
    std::deque<PlainClient> clients;
    for (int i = 0; i < 100; ++i) {
        clients.emplace_back(web.address());
        clients.back().send("GET /200 HTT");
    }
    EXPECT_EQ(statusTo(web, "GET /200 HTTP/1.0\r\n\r\n"), "HTTP/1.1 200");
    for (PlainClient& client : clients) {
        std::string bytes;
        EXPECT_NE(client.read(bytes), End::StillOpen);
        EXPECT_EQ(bytes, "");
    }
}

TEST(HostileClient, IsDroppedWhenItDoesNotReadALongPage) {
    PracticeWeb web({.requestMilliseconds = 200, .connections = 1});
    web.start();
    PlainClient client(web.address());
    client.send("GET /endless HTTP/1.0\r\n\r\n");
    std::string bytes;
    client.read(bytes, 1);
    // The only place is free again when the client has left.
    std::string reply;
    while (reply.empty()) reply = get(web.address(), "/200");
    EXPECT_THAT(reply, StartsWith("HTTP/1.1 200"));
}

TEST(HostileClient, ConnectionsAreLimited) {
    PracticeWeb web({.requestMilliseconds = 10000, .connections = 3});
    web.start();
    std::deque<PlainClient> clients;
    for (int i = 0; i < 3; ++i) clients.emplace_back(web.address());
    {
        PlainClient oneMore(web.address());
        std::string bytes;
        EXPECT_NE(oneMore.read(bytes), End::StillOpen);
    }
    clients.pop_back();
    // The server notices the free place through an event, so the first tries may come too early.
    std::string reply;
    while (reply.empty()) reply = get(web.address(), "/200");
    EXPECT_THAT(reply, StartsWith("HTTP/1.1 200"));
}

TEST(HostileClient, ManyAtOnceAreAllServed) {
    PracticeWeb web;
    web.start();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&web] {
            for (int n = 0; n < 50; ++n)
                EXPECT_EQ(statusTo(web, "GET /200 HTTP/1.0\r\n\r\n"), "HTTP/1.1 200");
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(web.received().size(), 400U);
    const std::string page = bodyOf(get(web.address(), "/received.json"));
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(page)).array().size(), 400);
}

TEST(PracticeRequestReader, TakesTheBytesInAnyPieces) {
    const std::string whole = "POST /x?y HTTP/1.1\r\nA: b\r\nContent-Length: 5\r\n\r\nhello and more";
    const std::size_t complete = whole.find(" and more");
    for (std::size_t piece = 1; piece <= whole.size(); ++piece) {
        PracticeRequestReader reader;
        State state = State::NeedsMore;
        std::size_t at = 0;
        for (; state == State::NeedsMore && at < whole.size(); at += piece) {
            state = reader.feed(std::string_view(whole).substr(at, piece));
        }
        ASSERT_EQ(state, State::Complete) << piece;
        EXPECT_GE(at, complete) << piece;
        EXPECT_EQ(reader.request().query(), "y");
        EXPECT_EQ(reader.request().header("a"), "b");
        EXPECT_EQ(reader.request().body, "hello") << piece;
    }
}

TEST(PracticeRequestReader, HeadOfExactlyTheLimitIsTaken) {
    for (const std::size_t excess : {0U, 1U, 5U}) {
        const std::string start = "GET /";
        const std::string end = " HTTP/1.0";
        const std::size_t padding = PracticeRequestReader::kHeadLimit - start.size() - end.size() + excess;
        PracticeRequestReader reader;
        const State state = reader.feed(start + std::string(padding, 'a') + end + "\r\n\r\nrest");
        EXPECT_EQ(state, excess == 0 ? State::Complete : State::Refused) << excess;
    }
}

}  // namespace
}  // namespace relay::test
