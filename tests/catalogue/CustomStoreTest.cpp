// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CustomEngineStore.h"
#include "core/FileStore.h"
#include "core/Trap.h"
#include "support/SessionFixture.h"

#include <cerrno>
#include <map>

namespace relay::test {

namespace {

struct CustomStoreTest : testing::Test, SessionFixture {
    CustomStoreTest() {
        home.write("data/krveng5.dat", "Name=Alpha\r\nQuery=u=<URL>\r\nEND:Version 6.0\r\n");
        home.write("data/catkws.dat", "[Alpha]\r\nArts=1\r\n");
        CustomEngineRecord record;
        record.Name = "Own";
        record.Action = "http://own.test/";
        record.CategoryData = "Arts=2";
        store.put(std::move(record));
        store.saveEngineFile();
    }
    ~CustomStoreTest() override { setSaveFault({}); }

    std::map<std::string, std::string> catalogue() const {
        return {{"engines", home.read("data/krveng5.dat")}, {"categories", home.read("data/catkws.dat")}};
    }
    // Runs with step `failing` of its saves failing, and all later ones too when the disk stays full, as it
    // looks to a program that was killed; false when no step failed.
    template <typename Operation>
    bool runFailing(int failing, bool stays, Operation&& operation) {
        int step = 0;
        bool failed = false;
        setSaveFault([&](SaveStep) {
            const bool fails = step == failing || (stays && step > failing);
            ++step;
            failed = failed || fails;
            return fails ? ENOSPC : 0;
        });
        const auto failure = failureOf(operation);
        setSaveFault({});
        EXPECT_EQ(failure.has_value(), failed);
        return failed;
    }

    CustomEngineStore store{services};
};

}  // namespace

// Wherever a merge or its undo is cut short, the catalogue can be put back as it was.
TEST_F(CustomStoreTest, AMergeCutShortCanBeTakenBack) {
    const auto before = catalogue();
    for (const bool stays : {false, true}) {
        int step = 0;
        while (runFailing(step, stays, [this] { store.mergeEngineFile(); })) {
            if (store.canUndoMerge()) store.undoMerge();
            EXPECT_EQ(catalogue(), before) << step;
            ++step;
        }
        EXPECT_GT(step, 20);
        EXPECT_NE(catalogue(), before);
        for (step = 0; runFailing(step, stays, [this] { store.undoMerge(); }); ++step)
            EXPECT_TRUE(store.canUndoMerge());
        EXPECT_GT(step, 5);
        EXPECT_EQ(catalogue(), before);
        EXPECT_FALSE(store.canUndoMerge());
    }
}

// Copies that belong to another merge are not put back.
TEST_F(CustomStoreTest, OnlyTheCopiesOfTheLastMergeAreTakenBack) {
    store.mergeEngineFile();
    const auto merged = catalogue();
    home.write("data/catkws.dat.unmerged", "[Other]\r\n");
    EXPECT_THROW(store.undoMerge(), Failure);
    EXPECT_EQ(catalogue(), merged);
    // Without engines of one's own a merge has nothing to take back either.
    store.remove(0);
    store.saveEngineFile();
    store.mergeEngineFile();
    EXPECT_EQ(catalogue(), merged);
    EXPECT_EQ(home.read("data/catkws.dat.unmerged"), "[Other]\r\n");
}

}  // namespace relay::test
