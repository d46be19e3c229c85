// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "support/CaseTable.h"
#include "support/PreferenceFixture.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace relay::test {
namespace {

using Inputs = std::vector<std::string>;

TEST(SettingsStore, EveryValueComesBackInAFileOfItsOwners) {
    const TestHome home;
    const std::string file = home.path("config/settings.ini");
    std::string allBytes;
    for (int code = 0; code < 256; ++code) allBytes += static_cast<char>(code);
    const std::string values[] = {"",         "  blanks ",   "a,b;c",   "@ByteArray(x)", "@@x",
                                  "100%",     "caf\xC3\xA9", "caf\xE9", "two\r\nlines",  "\"quoted\"",
                                  "C:\\path", allBytes};
    const mode_t mask = ::umask(0);
    {
        SettingsStore store(file);
        EXPECT_FALSE(std::filesystem::exists(file));  // reading creates no file
        store.setValue("App Name", "Section", "first", "");
        EXPECT_FALSE(std::filesystem::exists(file));
        for (std::size_t i = 0; i < std::size(values); ++i)
            store.setValue("App Name", "Section", "Key " + std::to_string(i), values[i]);
        store.save();
        EXPECT_EQ(modeOf(file), 0600u);
        EXPECT_EQ(modeOf(home.path("config")), 0700u);
    }
    ::umask(mask);
    ::chmod(file.c_str(), 0644);
    const SettingsStore store(file);
    EXPECT_EQ(modeOf(file), 0600u);
    for (std::size_t i = 0; i < std::size(values); ++i)
        EXPECT_EQ(store.value("App Name", "Section", "Key " + std::to_string(i), "fallback"), values[i]) << i;
    EXPECT_EQ(store.value("App Name", "Section", "absent", "fallback"), "fallback");
}

TEST(SettingsStore, TwoProgramsKeepEachOthersValues) {
    const TestHome home;
    SettingsStore one(home.path("settings.ini"));
    SettingsStore other(home.path("settings.ini"));
    one.setValue("A", "S", "one", "1");
    other.setValue("A", "S", "other", "2");
    one.save();
    other.save();
    one.save();
    EXPECT_EQ(one.value("A", "S", "other"), "2");
    // A value that a program has only read does not overwrite what another wrote.
    other.setValue("A", "S", "one", "new");
    other.save();
    one.setValue("A", "S", "one", "1");
    one.setValue("A", "S", "third", "3");
    one.save();
    one.setValue("A", "S", "one", "1");
    one.save();
    EXPECT_EQ(home.read("settings.ini"), "[A]\nS\\one=new\nS\\other=2\nS\\third=3\n");
}

// The golden files are as QSettings wrote them.
TEST(SettingsStore, WritesTheFileAsItAlwaysStood) {
    const TestHome home;
    const std::string password("p\xE9,\0001", 5);
    const std::pair<const char*, std::string> changes[] = {{"SMTP Server", " x "},
                                                           {"Company",
                                                            "@\"\x01"
                                                            "b caf\xC3\xA9\\"},
                                                           {"Auth_Password", password}};
    for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
        SettingsStore store(
            home.write("settings.ini", mark + readFile(TEST_FOLDER "/golden/settings-before.ini")));
        EXPECT_EQ(store.value("Korvel Relay", "Preference", "Auth_Password"), "p,w;=");
        for (const auto& [key, value] : changes) store.setValue("Korvel Relay", "Preference", key, value);
        store.setValue("M\xC3\xA9\xF0\x9F\x98\x80", "S", "k", "\r\n");
        store.save();
        EXPECT_EQ(home.read("settings.ini"), mark + readFile(TEST_FOLDER "/golden/settings-after.ini"));
    }
}

std::string valueWrittenByHand(const Inputs& in) {
    const TestHome home;
    SettingsStore store(home.write("settings.ini", "; mine\r\n[A B]\r\nS/k%20k = " + in[0] + "\r\n"));
    const std::string value = store.value("A B", "S", "k k");
    store.setValue("A B", "S", "k k", "new");
    store.save();
    EXPECT_EQ(home.read("settings.ini"), "; mine\r\n[A B]\r\nS/k%20k=new\n");
    return value;
}

// What is shown for a preference that cannot be read; the file is kept when the settings are saved.
std::string unreadable(const Inputs& in) {
    const TestHome home;
    const FixedClock clock;
    ScriptedPrompts prompts;
    const std::string bad =
        "[Korvel%20Relay]\nPreference\\Auth_Password=pw\nPreference\\" + in[0] + "=" + in[1] + "\n";
    SettingsStore broken(home.write("settings.ini", bad));
    Log log(home.path("Error.log"), clock, {});
    clsPreference reader(home.paths(), broken, log, prompts);
    EXPECT_FALSE(reader.GetSettings());
    reader.SaveSettings();
    EXPECT_EQ(home.read("settings.ini.bad"), bad);
    return prompts.last().title + ": " + prompts.last().text;
}

TEST(SettingsStore, ReadsWhatAPersonWrote) {
    playCases(TEST_FOLDER "/cases/settings.txt", {{"value", valueWrittenByHand}, {"unreadable", unreadable}});
}

TEST(SettingsStore, AFailedSaveLosesNothing) {
    const TestHome home;
    const std::string bad = "[A]\nS\\k=old\n";
    bool failed = true;
    for (int failing = 1; failed; ++failing) {
        const std::string file = home.write("settings.ini", bad);
        std::filesystem::remove(file + ".bad");
        SettingsStore store(file);
        store.keepFileBeforeSave();
        store.setValue("A", "S", "k", "new");
        int step = 0;
        setSaveFault([&](SaveStep) { return ++step == failing ? ENOSPC : 0; });
        failed = !store.trySave();
        setSaveFault({});
        EXPECT_EQ(store.value("A", "S", "k"), "new");
        EXPECT_TRUE(home.read("settings.ini") == bad || home.read("settings.ini.bad") == bad) << failing;
        store.save();
        EXPECT_EQ(home.read("settings.ini"), "[A]\nS\\k=new\n") << failing;
        EXPECT_EQ(modeOf(file + ".bad"), 0600u);
        store.setValue("A", "S", "k", "newer");
        store.save();
        EXPECT_TRUE(failing > 6 || home.read("settings.ini.bad") == bad) << failing;
    }
}

TEST(SettingsStore, NeverWritesThroughALink) {
    const std::string ini = "[A]\nS\\k=old\n";
    for (const char* const target : {"victim", "absent", "pipe"}) {
        SCOPED_TRACE(target);
        const TestHome home;
        home.write("victim", ini);
        ::chmod(home.path("victim").c_str(), 0644);
        const std::string file = home.path("settings.ini");
        std::filesystem::create_symlink(target, file);
        const bool isPipe = std::string_view(target) == "pipe";
        ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
        {
            SettingsStore store(file);
            EXPECT_EQ(store.value("A", "S", "k"), std::string_view(target) == "victim" ? "old" : "");
            store.setValue("A", "S", "new", "1");
            EXPECT_EQ(store.trySave(), !isPipe);
        }
        EXPECT_EQ(home.read("victim"), ini);
        EXPECT_EQ(modeOf(home.path("victim")), 0644u);
        EXPECT_FALSE(std::filesystem::exists(home.path("absent")));
        EXPECT_TRUE(std::filesystem::is_fifo(home.path("pipe")));
        EXPECT_EQ(std::filesystem::is_symlink(file), isPipe);
        EXPECT_EQ(modeOf(file), isPipe ? modeOf(home.path("pipe")) : 0600u);
    }
}

TEST(SettingsStore, ReportsThatItCannotWrite) {
    const TestHome home;
    home.write("file", "");
    SettingsStore store(home.path("file/settings.ini"));
    store.setValue("A", "S", "k", "v");
    EXPECT_THROW(store.save(), Failure);
}

class PreferenceTest : public ::testing::Test, protected PreferenceFixture {
  protected:
    bool load() { return preference.GetSettings(); }
    std::string stored(std::string_view section, std::string_view key) {
        return store.value(kApplication, section, key, "(absent)");
    }
};

TEST_F(PreferenceTest, AnEmptyStoreGivesTheDefaults) {
    ASSERT_TRUE(preference.GetSettings(SettingsReader::CommandLine));
    EXPECT_EQ(stored("Setting", "Version"), "(absent)") << "the notice is still to be shown by the window";
    ASSERT_TRUE(load());
    EXPECT_EQ(preference.TimeOut, 30);
    EXPECT_EQ(preference.Connections, 9);
    EXPECT_EQ(preference.HTTPVersion(), "HTTP/1.0");
    EXPECT_EQ(preference.PromptConnection, 1);
    EXPECT_EQ(preference.AccessType, 0);
    EXPECT_EQ(preference.HTTPLogin, "");
    EXPECT_EQ(preference.DealerName, "Brenmoor Pty Ltd");
    EXPECT_EQ(preference.UpdateURL, "https://www.korvel.example/upgrade.html");
    EXPECT_EQ(preference.KLBLocation, "");
    EXPECT_FALSE(preference.refusesAdultSites());
    EXPECT_EQ(preference.Version, "");  // the old one; the store has the new one
    EXPECT_EQ(stored("Setting", "Version"), "6.0");
    EXPECT_EQ(stored("Setting", "Download"), "1");
    EXPECT_NE(home.read("Error.log").find("Version: 6.0.00 - "), npos);
}

TEST_F(PreferenceTest, ReadsTheStoreAndTheServiceLinks) {
    const auto set = [&](const char* key, const char* value) {
        store.setValue(kApplication, "Preference", key, value);
    };
    set("TimeOut", " 12.5 ");
    set("LogoPosition", "1st");
    set("Auth_Username", "user");
    set("Auth_Password", "pass");
    set("Port", "70000");
    store.setValue(kApplication, "Setting", "Version", "6.0");
    store.setValue(kApplication, "Setting", "Download", "0");
    store.setValue("Korvel Link Builder", "Version", "Location", "/opt/klb");
    home.write("data/korvel.ini", "[dealer]\nAcceptAdultSite=nO\nName=Shop\nTipsURL=\n");
    ASSERT_TRUE(load());
    EXPECT_EQ(preference.TimeOut, 12);
    EXPECT_EQ(preference.LogoPosition, 1);
    EXPECT_EQ(preference.Port, 70000);
    EXPECT_EQ(preference.HTTPLogin, Base64Encode("user:pass"));
    EXPECT_EQ(preference.DownEngineData, "0");
    EXPECT_EQ(preference.KLBLocation, "/opt/klb/klink.exe");
    EXPECT_EQ(preference.DealerName, "Shop");
    EXPECT_EQ(preference.TipsURL, "https://www.korvel.example/tips.html");
    EXPECT_TRUE(preference.refusesAdultSites());
    preference.HTTPUserName.clear();
    preference.updateHTTPLogin();
    EXPECT_EQ(preference.HTTPLogin, "");
}

TEST_F(PreferenceTest, SavesWhatItReadsBack) {
    ASSERT_TRUE(load());
    preference.Proxy = "proxy.test";
    preference.Connections = 50;
    preference.HTTPPassword = "p\xE4ss,word";
    EXPECT_EQ(std::exchange(preference.Colours, "dark"), "system");
    preference.SaveSettings();
    EXPECT_EQ(stored("Window", "Colours"), "dark");
    EXPECT_EQ(stored("Setting", "Location"), home.paths().AppPath);
    EXPECT_EQ(stored("Preference", "HTTPVersion"), "(absent)");
    preference.setHTTPVersion("HTTP/1.1");
    SettingsStore again(home.paths().settingsFile);
    clsPreference second(home.paths(), again, log, prompts);
    ASSERT_TRUE(second.GetSettings());
    EXPECT_EQ(second.Proxy, "proxy.test");
    EXPECT_EQ(second.Connections, 50);
    EXPECT_EQ(second.Colours, "dark");
    EXPECT_EQ(second.HTTPPassword, "p\xE4ss,word");
    EXPECT_EQ(second.HTTPVersion(), "HTTP/1.1");
    EXPECT_EQ(modeOf(home.paths().settingsFile), 0600u);
    EXPECT_TRUE(prompts.shown.empty());
}

TEST(Log, StartsAgainAt5001Bytes) {
    const TestHome home;
    const FixedClock clock;
    for (const std::size_t size : {5000u, 5001u}) {
        home.write("Error.log", std::string(size - 6, 'x'));
        Log log(home.path("Error.log"), clock, "");
        log.WriteErrorLog("xxxx");  // a failure before the run starts
        log.startRun();
        const std::string banner = "\r\nVersion: 6.0.00 - " + shortDateTime(clock.now(), QLocale::system()) +
                                   "\r\n-------------------------------------\r\n\r\n";
        const std::string kept = size == 5000 ? std::string(size - 2, 'x') + "\r\n" : std::string();
        EXPECT_EQ(home.read("Error.log"), kept + banner);
    }
}

TEST(Log, TracesOnlyWithTheSwitch) {
    const FixedClock clock;
    for (const auto& [commandLine, traces] :
         {std::pair{"submit /D", true}, {"--home /data/x", true}, {"-d", false}}) {
        const TestHome home;
        Log log(home.path("Error.log"), clock, commandLine);
        log.WriteErrorLog("err\xC2\x9B[2J\nor");
        log.WriteTraceLog("trace");
        log.WriteErrorLog("again");
        const std::string time = shortDateTime(clock.now(), QLocale::system());
        EXPECT_EQ(home.read("Error.log"), "err\\xC2\\x9B[2J\\x0Aor\r\n" +
                                              (traces ? time + "\r\ntrace\r\n" : std::string()) + "again\r\n")
            << commandLine;
    }
}

TEST(Log, TwoProgramsAppendAndAFailureStopsNothing) {
    const TestHome home;
    const FixedClock clock;
    Log one(home.path("Error.log"), clock, "");
    Log other(home.path("Error.log"), clock, "");
    one.WriteErrorLog("1");
    other.WriteErrorLog("2");
    one.WriteErrorLog("3");
    EXPECT_EQ(home.read("Error.log"), "1\r\n2\r\n3\r\n");
    // A long log stays while another program writes it, and is removed at the next start.
    one.WriteErrorLog(std::string(5001, 'x'));
    other.startRun();
    EXPECT_GT(home.read("Error.log").size(), 5001u);
    one.closeAll();
    other.startRun();
    EXPECT_LT(home.read("Error.log").size(), 5001u);
    std::filesystem::remove(home.path("Error.log"));
    other.WriteErrorLog("4");
    EXPECT_EQ(home.read("Error.log"), "4\r\n");
    Log nowhere(home.path("absent/Error.log"), clock, "/D");
    nowhere.startRun();
    nowhere.WriteTraceLog("lost");
    home.write("other", "mine");
    std::filesystem::create_symlink(home.path("other"), home.path("link.log"));
    Log linked(home.path("link.log"), clock, "");
    linked.WriteErrorLog("not there");
    EXPECT_EQ(home.read("other"), "mine");
}

TEST(Clock, WritesDatesForReportsAndNames) {
    const FixedClock clock;
    EXPECT_EQ(reportDate(clock.now()), "Apr 01, 2002 13:05");
    EXPECT_EQ(fileDate(clock.now()), "2002-Apr-01-1305");
    EXPECT_EQ(longDate(clock.now(), QLocale(QLocale::English, QLocale::UnitedStates)),
              "Monday, April 1, 2002");
    EXPECT_EQ(shortDateTime(clock.now(), QLocale(QLocale::English, QLocale::UnitedStates)), "4/1/02 1:05 PM");
}

}  // namespace
}  // namespace relay::test
