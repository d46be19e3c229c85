// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CaseTable.h"
#include "support/FaultServer.h"
#include "support/PreferenceFixture.h"
#include "transport/Descriptors.h"
#include "transport/HttpNetwork.h"
#include "transport/frmHTTPMX.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace relay::test {

namespace {

using Peer = FaultServer::Peer;
using Inputs = std::vector<std::string>;
using ::testing::ElementsAre;
using ::testing::StartsWith;

struct End final {
    int index;
    int code;
    std::string response;
    bool operator==(const End&) const = default;
};

void PrintTo(const End& end, std::ostream* stream) {
    *stream << end.index << ' ' << end.code << ' ' << end.response;
}

// Answers with the request line; "/stall..." never, "/half..." with one byte of many.
void play(Peer& peer) {
    if (peer.path().starts_with("/half")) peer.send("HTTP/1.0 200 OK\r\nContent-Length: 100\r\n\r\nh");
    if (peer.path().starts_with("/stall") || peer.path().starts_with("/half")) peer.waitForClose();
    const std::size_t body = peer.request.find("\r\n\r\n") + 4;
    peer.send(FaultServer::answer(
        200, peer.request.substr(0, peer.request.find(" HTTP/")) + "|" + peer.request.substr(body)));
}

class PoolTest : public ::testing::Test, protected PreferenceFixture {
  protected:
    void load(std::int16_t connections) {
        pool.emplace(network, preference, log);
        pool->setConnections(connections);
        QObject::connect(&*pool, &frmHTTPMX::Completed, &*pool,
                         [this](qint16 index, qint32 code, const std::string& response) {
                             ends.push_back({index, code, response});
                             if (onCompleted) onCompleted(index, code, response);
                         });
        QObject::connect(&*pool, &frmHTTPMX::Progress, &*pool,
                         [this](qint16 index, qint32 bytes) { progress[index] = bytes; });
        QObject::connect(&*pool, &frmHTTPMX::Cancelled, &*pool, [this] { ++cancelled; });
        QObject::connect(&*pool, &frmHTTPMX::Unloaded, &*pool, [this] { ++unloaded; });
        pool->Load();
    }
    bool waitForEnds(std::size_t count) {
        return waitUntil([&] { return ends.size() >= count; });
    }
    bool waitForRequests(std::size_t count) {
        return waitUntil([&] { return server.requests().size() >= count; });
    }
    // Runs a whole request of another pool: late reports of this one have then been delivered.
    void settle() {
        frmHTTPMX other(network, preference, log);
        other.setConnections(1);
        bool ended = false;
        QObject::connect(&other, &frmHTTPMX::Completed, &other, [&] { ended = true; });
        other.Load();
        other.Connect(1, server.url("/settle"), "GET");
        EXPECT_TRUE(waitUntil([&] { return ended; }));
    }

    FaultServer server{play};
    HttpNetwork network;
    std::vector<End> ends;
    std::function<void(qint16, qint32, const std::string&)> onCompleted;
    std::map<int, qint32> progress;
    int cancelled = 0;
    int unloaded = 0;
    std::optional<frmHTTPMX> pool;
};

TEST_F(PoolTest, MakesAsManySlotsAsAskedFor) {
    for (const auto& [asked, made] : {std::pair<std::int16_t, std::int16_t>{0, 10}, {32767, 32767}}) {
        ends.clear();
        load(asked);
        EXPECT_EQ(pool->Connections(), made);
        pool->Connect(made, server.url("/last"), "GET");
        EXPECT_TRUE(waitForEnds(1));
        EXPECT_EQ(ends.front(), (End{made, 200, "GET /last|"}));
    }
    ends.clear();
    load(-1);
    EXPECT_THAT(ends, ElementsAre(End{0, 10300, "Invalid Connection Value"}));
}

TEST(DescriptorsTest, AllowAThirdAsManyConnections) {
    // Three per connection, 64 spare.
    const std::array<int, 3> cases[] = {{1024, 10, 316}, {1024, 961, 1}, {0, 10, 1}, {200'000, 10, 32767}};
    for (const auto& [limit, open, connections] : cases)
        EXPECT_EQ(mostConnections(static_cast<std::size_t>(limit), static_cast<std::size_t>(open)),
                  connections);
}

TEST_F(PoolTest, FollowsItsTable) {
    const auto interval = [this](const Inputs& in) {
        preference.AccessType = static_cast<std::int16_t>(std::stoi(in[0]));
        preference.TimeOut = static_cast<std::int16_t>(std::stoi(in[1]));
        load(1);
        return std::to_string(pool->watchdogInterval());
    };
    const auto request = [this](const Inputs& in) {
        preference.AccessType = 2;
        preference.Proxy = "127.0.0.1";
        preference.Port = 1;
        preference.HTTPUserName = "me";
        preference.HTTPPassword = "secret";
        load(1);
        ends.clear();
        pool->Connect(1, server.url("/x"), in[0], in[1]);
        EXPECT_TRUE(waitForEnds(1));
        EXPECT_EQ(progress[1], static_cast<qint32>(ends[0].response.size()));
        EXPECT_EQ(server.requests().back().find("secret"), std::string::npos);
        return std::to_string(ends[0].code) + " " + ends[0].response;
    };
    const auto failedStart = [this](const Inputs& in) {
        load(1);
        ends.clear();
        home.write("Error.log", "");
        pool->setTimeOut(std::stoi(in[3]));
        pool->Connect(static_cast<std::int16_t>(std::stoi(in[0])), in[1], in[2]);
        EXPECT_THAT(ends, ElementsAre(End{std::stoi(in[0]), 10100, ""}));
        return home.read("Error.log");
    };
    playCases(TEST_FOLDER "/cases/pool.txt",
              {{"watchdog", interval}, {"request", request}, {"failed start", failedStart}});
    pool->setTimeOut(2147483);
    EXPECT_EQ(pool->watchdogInterval(), 60000);
}

TEST_F(PoolTest, UnusableRequestsInCompletedDoNotUseUpTheStack) {
    load(1);
    int depth = 0;
    int deepest = 0;
    onCompleted = [&](qint16 index, qint32, const std::string&) {
        deepest = std::max(deepest, ++depth);
        if (ends.size() < 20000) pool->Connect(index, "ftp://host/", "GET");
        --depth;
    };
    pool->Connect(1, "ftp://host/", "GET");
    EXPECT_TRUE(waitForEnds(20000));
    EXPECT_LT(deepest, 100);
}

TEST_F(PoolTest, TheOwnerStartsItsNextRequestInsideCompleted) {
    load(3);
    std::vector<std::string> kept;
    int started = 0;
    onCompleted = [&](qint16 index, qint32, const std::string& response) {
        if (started < 300) pool->Connect(index, server.url("/" + std::to_string(++started)), "GET");
        kept.push_back(response);  // the reply outlives the request that was just started
        QCoreApplication::processEvents();
    };
    for (std::int16_t index = 1; index <= 3; ++index) pool->Connect(index, server.url("/first"), "GET");
    EXPECT_TRUE(waitForEnds(303));
    settle();
    ASSERT_EQ(kept.size(), 303U);
    for (const std::string& reply : kept) EXPECT_THAT(reply, StartsWith("GET /"));
}

TEST_F(PoolTest, ATimeOutEndsTheRequestOnceAndTheSlotWorksOn) {
    preference.AccessType = 2;
    preference.TimeOut = 1;
    load(2);
    // The next request silences the aborted one, even if it cannot start.
    onCompleted = [&](qint16 index, qint32 code, const std::string&) {
        if (code == 10200) pool->Connect(index, index == 1 ? server.url("/next") : "ftp:", "GET");
    };
    pool->Connect(1, server.url("/stall"), "GET");
    pool->Connect(2, server.url("/half"), "GET");
    EXPECT_TRUE(waitForEnds(4));
    settle();
    EXPECT_THAT(ends, ::testing::UnorderedElementsAre(End{1, 10200, "Time out"}, End{2, 10200, "Time out"},
                                                      End{1, 200, "GET /next|"}, End{2, 10100, ""}));
}

TEST_F(PoolTest, AConnectOnABusySlotSendsThePreviousRequestAgain) {
    std::atomic<int> calls = 0;
    FaultServer stallsOnce([&](Peer& peer) {
        if (++calls == 1) peer.waitForClose();
        play(peer);
    });
    load(1);
    pool->Connect(1, stallsOnce.url("/previous"), "POST", "a=1");
    EXPECT_TRUE(waitUntil([&] { return calls == 1; }));
    pool->Connect(1, stallsOnce.url("/lost"), "GET");
    pool->Connect(1, stallsOnce.url("/lost-too"), "GET");
    EXPECT_TRUE(waitForEnds(1));
    settle();
    EXPECT_THAT(ends, ElementsAre(End{1, 200, "POST /previous|a=1"}));
    EXPECT_EQ(stallsOnce.requests().size(), 2U);
}

TEST_F(PoolTest, DisconnectDropsRunningRequestsAndReportsOnce) {
    load(4);
    pool->Disconnect();
    EXPECT_TRUE(waitUntil([&] { return cancelled == 1; }));

    pool->Connect(2, server.url("/half"), "GET");
    pool->Connect(3, server.url("/done"), "GET");
    EXPECT_TRUE(waitForRequests(2) && waitForEnds(1) && waitUntil([&] { return progress[2] == 1; }));
    pool->setTimeOut(1);
    pool->Connect(1, server.url("/stall"), "GET");
    pool->setTimeOut(0);
    pool->Connect(4, server.url("/stall"), "GET");
    pool->Connect(4, server.url("/stall"), "GET");  // would start again without the Disconnect below
    // The watchdog of the first slot is due when events run next.
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    pool->Disconnect();
    pool->Disconnect();
    EXPECT_TRUE(waitUntil([&] { return cancelled == 2; }));
    settle();
    EXPECT_THAT(ends, ElementsAre(End{3, 200, "GET /done|"}));

    // The slots work again.
    for (std::int16_t index = 1; index <= 4; ++index) pool->Connect(index, server.url("/more"), "GET");
    EXPECT_TRUE(waitForEnds(5));
    EXPECT_EQ(cancelled, 2);
}

TEST_F(PoolTest, CancelledWaitsForARequestStartedMeanwhile) {
    load(1);
    pool->Disconnect();
    pool->Connect(1, server.url("/stall"), "GET");
    EXPECT_FALSE(waitUntil([&] { return cancelled > 0; }, 1000));
    pool->Disconnect();
    EXPECT_TRUE(waitUntil([&] { return cancelled == 1; }));
}

TEST_F(PoolTest, UnloadClosesOneTransferAtATime) {
    load(3);
    for (std::int16_t index = 1; index <= 3; ++index) pool->Connect(index, server.url("/stall"), "GET");
    EXPECT_TRUE(waitForRequests(3));
    EXPECT_FALSE(pool->Unload());
    EXPECT_EQ(unloaded, 0);
    EXPECT_TRUE(waitUntil([&] { return unloaded == 1; }));
    settle();
    EXPECT_TRUE(ends.empty());

    pool->Load();
    pool->Connect(3, server.url("/again"), "GET");
    EXPECT_TRUE(waitForEnds(1));
    EXPECT_TRUE(pool->Unload());
    EXPECT_EQ(unloaded, 2);
}

TEST_F(PoolTest, MayBeDeletedOrUnloadedInsideItsSignals) {
    preference.AccessType = 2;
    preference.TimeOut = 1;
    for (const std::string path : {"/x", "/stall", "ftp:", "/half"}) {
        for (const bool deletes : {true, false}) {
            SCOPED_TRACE(path);
            load(2);
            ends.clear();
            bool gone = false;
            const auto go = [&] {
                if (deletes)
                    pool.reset();
                else
                    pool->Unload();
                gone = true;
            };
            onCompleted = [&](qint16, qint32, const std::string&) { go(); };
            if (path == "/half") QObject::connect(&*pool, &frmHTTPMX::Progress, &*pool, go);
            pool->Connect(1, path == "ftp:" ? path : server.url(path), "GET");
            EXPECT_TRUE(waitUntil([&] { return gone; }));
            settle();
            EXPECT_EQ(ends.size(), path == "/half" ? 0U : 1U);
            onCompleted = {};
        }
    }
}

}  // namespace

}  // namespace relay::test
