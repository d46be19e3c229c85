// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileSystem.h"
#include "core/SettingsStore.h"
#include "core/clsPreference.h"
#include "extras/AddIns.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace relay::test {

namespace {

using ::testing::StartsWith;
using Flags = AddIns::Flags;

class AddInsTest : public ::testing::Test, protected SessionFixture {
  protected:
    // Where the tools were installed, in the order of the menu; empty: not at all.
    void install(const std::array<std::string, 3>& folders) {
        session.settings.setValue("Korvel Rank Watch V4", "Preference", "Location", folders[0]);
        session.settings.setValue("Korvel Link Builder", "Version", "Location", folders[1]);
        session.settings.setValue("Korvel Bid Keeper", "Version", "Location", folders[2]);
        session.readSettings();
    }
    std::string run(std::size_t addIn) {
        prompts.shown.clear();
        addIns.run(addIn);
        std::string text;
        for (const ScriptedPrompts::Shown& one : prompts.shown) text += one.kind + " " + one.text + "\n";
        return text;
    }

    AddIns addIns{services};
};

}  // namespace

TEST_F(AddInsTest, TheListNamesWhatIsInstalled) {
    EXPECT_EQ(addIns.GetAddIns(), "");
    install({"/r", "/l", "/b"});
    EXPECT_EQ(addIns.GetAddIns(), "KRW,KLB,KBK");
    EXPECT_EQ(addIns.pathOf(0) + " " + addIns.pathOf(1) + " " + addIns.pathOf(2),
              "/r/krw.exe /l/klink.exe /b/kbk20.exe");
    install({"/r", "", ""});
    EXPECT_EQ(addIns.GetAddIns(), "KRW,");
    install({"", "", "/b"});
    EXPECT_EQ(addIns.GetAddIns(), "KBK");
}

TEST_F(AddInsTest, WhatTheMenuShowsStaysShown) {
    addIns.LoadAddIns("klb,,XYZ, KRW");
    EXPECT_EQ(addIns.shown(), (Flags{false, true, false}));
    addIns.LoadAddIns("KBK");
    EXPECT_EQ(addIns.shown(), (Flags{false, true, true}));
    addIns.LoadAddIns("");
    EXPECT_EQ(addIns.shown(), (Flags{false, true, true}));
}

TEST_F(AddInsTest, TheManagerOffersWhatIsMissing) {
    install({"/r", "", ""});
    EXPECT_EQ(addIns.confirm({true, false, false}), "KRW,");
    EXPECT_TRUE(prompts.shown.empty());
    EXPECT_EQ(addIns.confirm({true, true, true}), "KRW,");
    EXPECT_EQ(prompts.last().text,
              "Following the application(s) is not installed: \r\n\r\nKorvel Link Builder\r\nKorvel Bid "
              "Keeper\r\n\r\nDo you want to download and install these software(s) on your PC?");
    prompts.answers = {true, true};
    addIns.confirm({false, true, false});
    EXPECT_EQ(prompts.last().kind + prompts.last().text, "systemhttps://www.korvel.example/upgrade.html");
    preference.UpdateURL = "/bin/sh";
    addIns.confirm({false, true, false});
    EXPECT_THAT(prompts.last().text, StartsWith("This is not a web address:"));
}

TEST_F(AddInsTest, OnlyAFileIsStartedAndUnderItsOwnName) {
    const auto missing = [](const std::string& path) {
        return "message File not found for '" + path + "'. Please re-install the program and try again\n";
    };
    EXPECT_EQ(run(0), missing(""));
    const std::string folder = home.path("my \"tools\"; touch x");
    install({folder, home.path("gone"), home.path("")});
    EXPECT_EQ(run(0), missing(folder + "/krw.exe"));
    std::filesystem::create_directories(folder + "/krw.exe");
    EXPECT_EQ(run(0), missing(folder + "/krw.exe")) << "a folder";
    std::filesystem::remove(folder + "/krw.exe");
    home.write("my \"tools\"; touch x/krw.exe", "#!/bin/sh\n");
    EXPECT_EQ(run(0), "system " + folder + "/krw.exe\n") << "no program, so the system's handler has it";
    std::filesystem::permissions(folder + "/krw.exe", std::filesystem::perms::owner_all);
    EXPECT_EQ(run(0), "start " + folder + "/krw.exe\n");
    prompts.systemOpens = false;
    EXPECT_EQ(run(0), "start " + folder + "/krw.exe\nsystem " + folder +
                          "/krw.exe\nmessage This system has no program that opens\r\n" + folder +
                          "/krw.exe\n");
}

}  // namespace relay::test
