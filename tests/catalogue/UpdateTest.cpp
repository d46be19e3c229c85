// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineUpdate.h"
#include "catalogue/UpdateFiles.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "practice/PracticeWeb.h"
#include "practice/StarterServer.h"
#include "support/FaultServer.h"
#include "support/SessionFixture.h"
#include "support/TlsServer.h"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <optional>

namespace relay::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

const UpdateTexts kPublished = {{"/enginedata/krveng5.dat", "Name=New\r\nType=ENG\r\n"},
                                {"/enginedata/catkws.dat", "[New]\r\na=b\r\n"},
                                {"/enginedata/top.kws", "top"},
                                {"/enginedata/cat.kws", "[Main]\r\nSub\r\n"},
                                {"/enginedata/kwreng.dat", "[Engines]\r\n1=Harbour\r\n"}};

class UpdateTest : public ::testing::Test, protected SessionFixture {
  protected:
    UpdateTest() {
        web.publish(kPublished);
        web.start();
        preference.TimeOut = 1;
        QObject::connect(&update, &EngineUpdate::ended, &update, [this](UpdateEnding how) { ending = how; });
        QObject::connect(&update, &EngineUpdate::fileEnded, &update,
                         [this](const UpdatedFile& file) { files.push_back(file); });
    }
    ~UpdateTest() override { setSaveFault({}); }

    void giveOldFiles() {
        home.write("data/krveng5.dat", "Name=Old\r\nType=DIR\r\n");
        home.write("data/catkws.dat", "[Old]\r\nc=d\r\n");
        for (const char* name : {"top.kws", "cat.kws", "data/kwreng.dat"}) home.write(name, "old");
    }
    UpdateEnding run() {
        ending.reset();
        files.clear();
        update.Start();
        EXPECT_TRUE(waitUntil([this] { return ending.has_value(); }));
        return ending.value_or(UpdateEnding::CouldNotRun);
    }
    // The files of the home, by their names inside it.
    std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> found;
        for (const UpdateFile& file : kUpdateFiles) {
            const std::string name = (file.inWindows ? "data/" : "") + std::string(file.name);
            if (fileExists(home.path(name))) found[name] = home.read(name);
        }
        return found;
    }
    static bool isNew(const UpdateFile& file, const std::string& text) {
        return text == kPublished.find(file.serverPath)->second + "\r\n";
    }
    std::vector<std::string> leftovers() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path("")))
            if (const std::string name = entry.path().filename();
                name.starts_with(".relay-") || name.ends_with(".previous"))
                names.push_back(name);
        return names;
    }

    PracticeWeb web;
    EngineUpdate update{services, catalogue,
                        [this] { return std::make_shared<const std::string>(web.address()); }};
    std::optional<UpdateEnding> ending;
    std::vector<UpdatedFile> files;
};

TEST_F(UpdateTest, AnEmptyHomeGetsAllFilesAndTheirEngines) {
    std::string atLoad;
    catalogue.afterLoad = [&] { atLoad = fileExists(home.path("data/kwreng.dat")) ? "late" : "before"; };
    EXPECT_EQ(run(), UpdateEnding::Updated);
    for (const UpdateFile& file : kUpdateFiles)
        EXPECT_TRUE(isNew(file, readFile(file.path(home.paths())))) << file.name;
    EXPECT_EQ(atLoad, "before") << "the engines are loaded before the last file is written";
    EXPECT_THAT(texts(lists.lsvEngines), ElementsAre("New"));
    EXPECT_EQ(session.settings.value(kApplication, "Setting", "Download"), "0");
    const UpdateState& state = update.state();
    EXPECT_THAT(state.Label1, StartsWith("Engine files have been successfully updated.\r\n\r\nWe recommend"));
    EXPECT_EQ(state.Label2, "");
    EXPECT_TRUE(state.startEnabled);
    EXPECT_EQ(prompts.last().kind, "beep");
    EXPECT_EQ(state.changes, "Engines added: 1, removed: 0, changed: 0.\r\n\r\nAdded:\r\n  New");
    EXPECT_EQ(logText().substr(0, logText().find("CategoryData")),
              "Update Engine Data file ...\r\nEngineFileSaved: 1\r\nEngineFileSaved: 2\r\nEngineFileSaved: "
              "3\r\nEngineFileSaved: 4\r\nEngineFileSaved: 5\r\n");

    update.undo();
    EXPECT_THAT(contents(), IsEmpty()) << "there were no files before";
    EXPECT_THAT(leftovers(), IsEmpty());
    EXPECT_THAT(texts(lists.lsvEngines), IsEmpty());
    EXPECT_THAT(update.change().removed, ElementsAre("New"));
    EXPECT_THROW(update.undo(), Failure);
}

struct Fault final {
    std::size_t index;
    const char* word;
    std::int32_t status;
    const char* reason;
};

TEST_F(UpdateTest, ABadReplyLeavesItsFileAndThoseBehindItAlone) {
    constexpr Fault kFaults[] = {
        {0, "404", 404, "status 404"},
        {1, "blank", 200, "empty"},
        {2, "404", 404, "status 404"},
        {2, "half", 200, "did not arrive whole"},
        {3, "reset", 10100, "does not answer"},
        {3, "garbage", 10100, "does not answer"},
        {4, "stall", 10200, "nothing for 1 seconds"},
        {0, "never", 10200, "nothing for 1 seconds"},
        {1, "301", 200, "web page"},
        {2, "loop", 302, "status 302"},
        {4, "to-file", 302, "status 302"},
        {0, "endless", 200, "too large"},
    };
    for (const Fault& fault : kFaults) {
        SCOPED_TRACE(std::string(fault.word) + " for " + std::string(kUpdateFiles.at(fault.index).name));
        giveOldFiles();
        const auto before = contents();
        web.failUpdate(kUpdateFiles.at(fault.index).serverPath, fault.word);
        EXPECT_EQ(run(), UpdateEnding::FileFailed);
        web.failUpdate(kUpdateFiles.at(fault.index).serverPath, "");
        for (std::size_t i = 0; i < kUpdateFiles.size(); ++i) {
            const std::string text = readFile(kUpdateFiles.at(i).path(home.paths()));
            EXPECT_EQ(isNew(kUpdateFiles.at(i), text), i < fault.index) << text;
        }
        ASSERT_THAT(files, SizeIs(fault.index + 1));
        EXPECT_EQ(files.back().status, fault.status);
        const UpdateState& state = update.state();
        EXPECT_THAT(state.reason, HasSubstr(fault.reason));
        EXPECT_THAT(state.Label1, StartsWith("Error occur when update engine data."));
        EXPECT_TRUE(state.Label1IsError && state.startEnabled);
        EXPECT_EQ(update.installerAddress(), "http://www.korvel.example/update/krveng.exe");
        if (fault.index > 0) {
            update.undo();
            EXPECT_EQ(contents(), before);
        }
    }
    giveOldFiles();
    const auto before = contents();
    web.failUpdate("/enginedata/top.kws", "404");
    EXPECT_EQ(run(), UpdateEnding::FileFailed);
    web.failUpdate("/enginedata/top.kws", "");
    EXPECT_EQ(run(), UpdateEnding::Updated) << "a new try";
    EXPECT_THAT(update.change().removed, ElementsAre("Old"));
    update.undo();
    EXPECT_EQ(contents(), before) << "both tries are taken back";
}

TEST_F(UpdateTest, ATextThatIsNoDataFileIsNotStored) {
    giveOldFiles();
    const auto before = contents();
    const std::string texts[] = {"\xEF\xBB\xBF\r\n<HTML>", "<?xml version=\"1.0\"?>\n<html>",
                                 "<!-- x --><html>", std::string("\x1F\x8B\x08\0\0", 5)};
    for (const std::string& text : texts) {
        FaultServer server([&text](FaultServer::Peer& peer) { peer.send(FaultServer::answer(200, text)); });
        update.setServer(server.host());
        EXPECT_EQ(run(), UpdateEnding::FileFailed) << text;
        EXPECT_THAT(update.state().reason, HasSubstr("instead of the file"));
        EXPECT_EQ(contents(), before);
    }
}

TEST_F(UpdateTest, AFileThatCannotBeSavedStaysAndSoDoesTheWayBack) {
    bool failed = true;
    int step = 0;
    for (int failing = 0; failed; ++failing) {
        SCOPED_TRACE(failing);
        ASSERT_LT(failing, 500) << "the update never succeeds";
        giveOldFiles();
        const auto before = contents();
        failed = false;
        step = 0;
        setSaveFault([&](SaveStep) { return step++ == failing ? (failed = true, ENOSPC) : 0; });
        const UpdateEnding how = run();
        setSaveFault({});
        EXPECT_EQ(how == UpdateEnding::Updated, update.state().reason.empty());
        bool mixed = false;
        for (const UpdateFile& file : kUpdateFiles) {
            const std::string text = readFile(file.path(home.paths()));
            const bool old = text == before.at((file.inWindows ? "data/" : "") + std::string(file.name));
            EXPECT_TRUE(old || isNew(file, text)) << file.name << ": " << text;
            mixed = mixed || !old;
        }
        EXPECT_TRUE(update.state().canUndo || !mixed);
        if (update.state().canUndo) update.undo();
        EXPECT_EQ(contents(), before);
    }
    EXPECT_GT(step, 40);
}

TEST_F(UpdateTest, ClosingEndsTheTransferAndLoadsWhatIsStored) {
    giveOldFiles();
    EXPECT_TRUE(catalogue.loadEngineData());
    const auto before = contents();
    web.failUpdate("/enginedata/krveng5.dat", "never");
    update.Start();
    EXPECT_FALSE(update.state().startEnabled);
    EXPECT_THAT(update.state().Label1, StartsWith("Please wait while updating your engine data."));
    update.Start();  // ignored
    update.Close();
    EXPECT_EQ(ending, UpdateEnding::Stopped);
    EXPECT_EQ(contents(), before);

    web.failUpdate("/enginedata/krveng5.dat", "");
    web.failUpdate("/enginedata/cat.kws", "404");
    EXPECT_EQ(run(), UpdateEnding::FileFailed);
    EXPECT_THAT(texts(lists.lsvEngines), ElementsAre("Old"));
    update.Close();
    EXPECT_EQ(update.state().Label2, "");
    EXPECT_THAT(texts(lists.lsvEngines), ElementsAre("New"));
}

TEST_F(UpdateTest, WaitsWhileARunUsesTheEngines) {
    giveOldFiles();
    run();
    const auto before = contents();
    {
        const Catalogue::Hold hold = catalogue.hold();
        ending.reset();
        update.open("Download");
        EXPECT_FALSE(update.state().startEnabled);
        EXPECT_THAT(update.state().reason, HasSubstr("submission"));
        update.Start();
        EXPECT_FALSE(update.isRunning());
        EXPECT_THROW(update.undo(), Failure);
        EXPECT_EQ(contents(), before);
    }
    update.checkHold();
    EXPECT_TRUE(update.state().startEnabled);
    EXPECT_EQ(update.state().reason, "");
    EXPECT_EQ(update.state().Label1, "Download");
}

TEST_F(UpdateTest, TheProxyOfTheSettingsServesAllButTheOwnServer) {
    FaultServer proxy([](FaultServer::Peer& peer) { peer.send(FaultServer::answer(407)); });
    preference.AccessType = 2;
    preference.Proxy = " HTTP://127.0.0.1 ";
    preference.Port = std::stoi(proxy.host().substr(proxy.host().find(':') + 1));
    preference.HTTPUserName = "ada";
    preference.HTTPPassword = "sesame";
    EXPECT_EQ(run(), UpdateEnding::Updated);
    EXPECT_THAT(proxy.requests(), IsEmpty());
    preference.UpdateServer = "updates.test:81";
    EXPECT_EQ(run(), UpdateEnding::FileFailed);
    EXPECT_EQ(files.back().status, 407);
    EXPECT_THAT(proxy.requests(),
                ElementsAre("GET http://updates.test:81/enginedata/krveng5.dat HTTP/1.0\r\nHost: "
                            "updates.test:81\r\nProxy-Authorization: Basic YWRhOnNlc2FtZQ==\r\nUser-Agent: "
                            "Dart Communications PowerTCP\r\n\r\n"));
    EXPECT_EQ(logText().find("sesame"), std::string::npos);
    preference.AccessType = 1;
    update.setServer(web.address());
    EXPECT_EQ(run(), UpdateEnding::Updated) << "without the proxy, from the given server";
    EXPECT_THAT(proxy.requests(), SizeIs(1));
}

TEST_F(UpdateTest, ARedirectToAServerWithABadCertificateIsNotFollowed) {
    const std::string certificates = TEST_FOLDER "/../transport/certificates/";
    for (const char* name : {"self-signed.pem", "expired.pem"}) {
        const TlsServer secure(certificates + name, certificates + "server.key",
                               [](std::string_view) { return FaultServer::answer(200, "Name=Evil"); });
        FaultServer server([&](FaultServer::Peer& peer) {
            peer.send(FaultServer::answer(302, "", "Location: " + secure.url("/") + "\r\n"));
        });
        update.setServer(server.host());
        EXPECT_EQ(run(), UpdateEnding::FileFailed) << name;
        EXPECT_THAT(contents(), IsEmpty());
        EXPECT_EQ(secure.requests(), 0);
    }
}

TEST(UpdateFilesTest, AServerIsAHostWithOrWithoutAPort) {
    for (const char* good : {"updates.test", "127.0.0.1:8080", "[::1]:80", " http://updates.test/ "})
        EXPECT_THAT(serverAddress(good), StartsWith("http://")) << good;
    EXPECT_EQ(serverAddress("HTTP://updates.test:81/"), "http://updates.test:81");
    for (const char* bad : {"", "http://", "https://updates.test", "a/b", "user@host", "a b", "a\r\nb"})
        EXPECT_THROW(serverAddress(bad), Failure) << bad;
}

TEST(CatalogueChangeTest, ComparesEnginesByNameAndField) {
    const EngineDataTexts before{
        "Name=Same\nHome=h\nCountry=us\nType=eng\nName=Gone\nName=Field\nQuery=a\nName=Table\nCategory=Y\n"
        "Name=Twice\nHome=1\nName=Adult\nAdultOnlySites=Yes\n",
        "[Table]\na=1\n"};
    const EngineDataTexts after{
        "Name=Twice\nHome=1\nName=TWICE\nHome=2\nName=SAME\nType=ENG\nCountry=NN\nHome=h\nName=FIELD\n"
        "Query=A\nName=Table\nCategory=Y\nName=Come\n",
        "[Table]\na=2\n"};
    CatalogueChange change = compareCatalogues(before, after, true);
    EXPECT_THAT(change.added, ElementsAre("Come"));
    EXPECT_THAT(change.removed, ElementsAre("Gone"));
    EXPECT_THAT(change.changed, ElementsAre("FIELD", "Table"));
    EXPECT_THAT(compareCatalogues(before, after, false).removed, ElementsAre("Gone", "Adult"));
    EXPECT_TRUE(compareCatalogues(before, before, false).empty());
    EXPECT_THAT(compareCatalogues({}, {"Name=A\nCategory=Y\n", ""}, false).added, ElementsAre("A"));
    change.added.assign(3, "Line\r\nbreak");
    EXPECT_THAT(change.report(2),
                HasSubstr("Added:\r\n  Line\\x0D\\x0Abreak\r\n  Line\\x0D\\x0Abreak\r\n  ... "
                          "and 1 more\r\n\r\nRemoved:\r\n  Gone"));
}

TEST(StarterServerTest, ServesTheInstalledFilesAndNothingElse) {
    SessionFixture fixture;
    Paths paths = fixture.home.paths();
    EXPECT_THROW(starterServer(paths)(), Failure);
    paths.installedData = RELAY_DATA_FOLDER;
    EngineUpdate update(fixture.services, fixture.catalogue, starterServer(paths));
    std::optional<UpdateEnding> ending;
    QObject::connect(&update, &EngineUpdate::ended, &update, [&](UpdateEnding how) { ending = how; });
    update.Start();
    ASSERT_TRUE(waitUntil([&] { return ending.has_value(); }));
    EXPECT_EQ(ending, UpdateEnding::Updated);
    EXPECT_EQ(fixture.lists.lsvEngines.count(), 7);
    EXPECT_EQ(fixture.home.read("top.kws"), readFile(RELAY_DATA_FOLDER "/top.kws") + "\r\n");
}

}  // namespace
}  // namespace relay::test
