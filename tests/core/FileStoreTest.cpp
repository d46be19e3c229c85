// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "support/TestHome.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace relay::test {
namespace {

namespace fs = std::filesystem;

std::size_t filesIn(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

int numberOfFailure(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

TEST(FileStore, AFailureAtAnyStepLeavesTheOldFileOrTheNewOneWhole) {
    const TestHome home;
    const std::string old(5000, 'o');
    const std::string fresh(3 * 1024 * 1024 + 17, 'n');  // several writes
    int steps = 0;
    for (int failing = 1; failing < 100; ++failing) {
        const std::string path = home.write("sub/file", old);
        int step = 0;
        setSaveFault([&](SaveStep) { return ++step == failing ? ENOSPC : 0; });
        const int number = numberOfFailure([&] { writeFile(path, fresh); });
        setSaveFault({});
        steps = step;
        const std::string now = home.read("sub/file");
        EXPECT_TRUE(now == old || now == fresh) << "step " << failing << ", " << now.size() << " bytes";
        EXPECT_EQ(filesIn(home.path("sub")), 1u) << "step " << failing;
        if (number == 0) break;
        EXPECT_EQ(number, 61) << "step " << failing;
    }
    EXPECT_EQ(steps, 8);  // create, four writes, flush, rename, folder
    EXPECT_EQ(home.read("sub/file"), fresh);
}

TEST(FileStore, ReplacesALinkAndLeavesWhatItPointsTo) {
    const TestHome home;
    home.write("target", "mine");
    ::chmod(home.path("target").c_str(), 0600);
    for (const std::string_view name : {"link", "dangling"}) {
        fs::create_symlink(home.path(name == "link" ? "target" : "nowhere"), home.path(name));
        EXPECT_THROW(appendFile(home.path(name), "x"), Failure);
        writeFile(home.path(name), "new");
        EXPECT_FALSE(fs::is_symlink(home.path(name)));
        EXPECT_EQ(home.read(name), "new");
    }
    EXPECT_EQ(home.read("target"), "mine");
    EXPECT_FALSE(fs::exists(home.path("nowhere")));
}

TEST(FileStore, GivesAndKeepsPermissions) {
    const TestHome home;
    const mode_t mask = ::umask(022);
    writeFile(home.path("open"), "x");
    EXPECT_EQ(modeOf(home.path("open")), 0644u);
    writeFile(home.path("secret"), "x", Readable::OwnerOnly);
    EXPECT_EQ(modeOf(home.path("secret")), 0600u);
    writeFile(home.path("open"), "y", Readable::OwnerOnly);
    EXPECT_EQ(modeOf(home.path("open")), 0600u);
    ::chmod(home.path("open").c_str(), 0664);
    writeFile(home.path("open"), "z");
    EXPECT_EQ(modeOf(home.path("open")), 0664u);
    appendFile(home.path("open"), "!", Readable::OwnerOnly);
    EXPECT_EQ(modeOf(home.path("open")), 0600u);
    EXPECT_EQ(home.read("open"), "z!");
    ::umask(mask);
}

TEST(FileStore, RefusesWhatIsNoFile) {
    const TestHome home;
    ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(numberOfFailure([&] { readFile(home.path("absent")); }), 53);
    EXPECT_EQ(numberOfFailure([&] { writeFile(home.path("no/such/folder"), ""); }), 53);
    for (const std::string& path : {home.path("pipe"), home.path("data"), std::string("/dev/null")}) {
        EXPECT_EQ(numberOfFailure([&] { readFile(path); }), 75) << path;
        EXPECT_EQ(numberOfFailure([&] { writeFile(path, "x"); }), 75) << path;
    }
    home.write("large", std::string(100, 'x'));
    EXPECT_EQ(readFile(home.path("large"), 100).size(), 100u);
    EXPECT_THROW(readFile(home.path("large"), 99), Failure);
    EXPECT_EQ(readFile(home.write("empty", "")), "");
    EXPECT_TRUE(removeFile(home.path("large")));
    EXPECT_FALSE(removeFile(home.path("large")));
    EXPECT_THROW(removeFile(home.path("data")), Failure);
    if (::geteuid() == 0) return;  // whom permissions do not hold back
    ::chmod(home.path("empty").c_str(), 0400);
    EXPECT_EQ(numberOfFailure([&] { writeFile(home.path("empty"), "x"); }), 70);
}

TEST(FileStore, ChangesOfSeveralWritersAllArrive) {
    const TestHome home;
    const std::string file = home.path("shared.ini");
    constexpr int kWriters = 4;
    constexpr int kChanges = 15;
    std::vector<std::thread> writers;
    for (int writer = 0; writer < kWriters; ++writer)
        writers.emplace_back([&file, writer] {
            for (int i = 0; i < kChanges; ++i) {
                const FolderLock outer(file);  // the writer below takes it again
                EXPECT_EQ(WriteIniValue(file, "All", std::to_string(writer) + "-" + std::to_string(i), "x"),
                          "1");
            }
        });
    for (std::thread& writer : writers) writer.join();
    EXPECT_EQ(IniFile::load(file).keys("All").size(), std::size_t{kWriters * kChanges});
    EXPECT_THROW(FolderLock(home.path("absent/file")), Failure);
    EXPECT_EQ(filesIn(home.path(".")), 2u);  // the file and the data folder: no lock is left behind
}

TEST(FileStore, TakesNoLockFromOthersAndClearsWhatTheKilledLeft) {
    const TestHome home;
    const std::string lock = home.path(".relay-lock-" + std::to_string(::geteuid()));
    {
        const FolderLock held(home.path("file"));
        EXPECT_EQ(modeOf(lock), 0600u);
    }
    // What is no lock file of ours does not hold a save up, and nobody writes through it.
    home.write("target", "mine");
    fs::create_symlink(home.path("target"), lock);
    EXPECT_EQ(WriteIniValue(home.path("file"), "S", "k", "v"), "1");
    fs::remove(lock);
    ASSERT_EQ(::mkfifo(lock.c_str(), 0600), 0);
    EXPECT_EQ(WriteIniValue(home.path("file"), "S", "k", "v"), "1");
    EXPECT_EQ(home.read("target"), "mine");

    const char* const kept[] = {".relay-notes", ".relay-00000000x", ".relay-123456789012", "relay-123456789"};
    for (const char* const name : kept) home.write(name, "mine");
    home.write(".relay-00000000123", "left");
    const int live = ::open(home.write(".relay-00000000987", "live").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(live, LOCK_EX), 0);
    writeFile(home.path("file"), "x");
    for (const char* const name : kept) EXPECT_TRUE(fs::exists(home.path(name))) << name;
    EXPECT_FALSE(fs::exists(home.path(".relay-00000000123")));
    EXPECT_TRUE(fs::exists(home.path(".relay-00000000987")));
    ::close(live);
    writeFile(home.path("file"), "y");
    EXPECT_FALSE(fs::exists(home.path(".relay-00000000987")));
}

TEST(Paths, LieInOneHomeOrInTheDesktopsFolders) {
    const auto with = [](std::map<std::string, std::string> variables) {
        return Paths::fromEnvironment([variables](const char* name) -> std::optional<std::string> {
            const auto found = variables.find(name);
            return found == variables.end() ? std::nullopt : std::optional(found->second);
        });
    };
    const Paths home = with({{"KORVEL_RELAY_HOME", "/srv/relay/"}, {"HOME", "/home/u"}});
    EXPECT_EQ(home.AppPath, "/srv/relay");
    EXPECT_EQ(home.WindowsPath, "/srv/relay/data/");
    EXPECT_EQ(home.settingsFile, "/srv/relay/settings.ini");
    EXPECT_EQ(home.ProjectFilePath, "/srv/relay/project.kwj");
    const Paths desktop =
        with({{"HOME", "/home/u"}, {"XDG_DATA_HOME", "/d"}, {"XDG_CONFIG_HOME", "relative"}});
    EXPECT_EQ(desktop.AppPath, "/d/korvel-relay");
    EXPECT_EQ(desktop.settingsFile, "/home/u/.config/korvel-relay/settings.ini");
    EXPECT_EQ(with({{"HOME", "/home/u"}}).AppPath, "/home/u/.local/share/korvel-relay");
    EXPECT_THROW(with({}), Failure);

    // "..", behind a link, leads above the link's target.
    const TestHome folders;
    folders.write("far/deep/x", "");
    std::filesystem::create_directory_symlink(folders.path("far/deep"), folders.path("link"));
    EXPECT_EQ(Paths::insideHome(folders.path("link/../home/")).AppPath, folders.path("far/home"));
    EXPECT_EQ(absolutePath(folders.path("./link//x")), folders.path("link/x"));
}

TEST(FileNames, LetsNoNameLeaveItsFolder) {
    for (const std::string_view bad : {"", ".", "..", "../x", "a/b", "a\\b", "a\nb", "\x7F"})
        EXPECT_THROW(safeFileName(bad), Failure) << bad;
    EXPECT_THROW(safeFileName(std::string_view("a\0b", 3)), Failure);
    EXPECT_THROW(safeFileName(std::string(256, 'a')), Failure);
    for (const std::string_view good : {"a", "...", ".hidden", "caf\xE9 (1).htm"})
        EXPECT_EQ(safeFileName(good), good);
    EXPECT_EQ(mendedFileName("../../x\r\n"), "___.._x__");
    EXPECT_EQ(mendedFileName(""), "_");
    EXPECT_EQ(mendedFileName(std::string(300, 'a')).size(), 200u);
}

TEST(FileNames, SplitsAPathAtItsLastSeparator) {
    const std::array<std::array<const char*, 3>, 5> cases{{{"/a/b c.kws", "/a", "b c.kws"},
                                                           {"b.kws", ".", "b.kws"},
                                                           {"/a/", "/a", ""},
                                                           {"/b.kws", "/", "b.kws"},
                                                           {"", ".", ""}}};
    for (const auto& [path, folder, name] : cases) {
        EXPECT_EQ(folderOf(path), folder) << path;
        EXPECT_EQ(getFileNameFromFile(path), name) << path;
    }
}

}  // namespace
}  // namespace relay::test
