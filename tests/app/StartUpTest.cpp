// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"
#include "app/clsMain.h"
#include "session/Session.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

// One run of the program on a home; what it showed, in order, by title or by the name of the screen.
class ProgramRun final {
  public:
    explicit ProgramRun(const TestHome& home)
        : session(home.paths(), clock, "", prompts),
          main(session.services, session.catalogue),
          startUp(session.services, main,
                  {[this] { ++splashClosed; }, [this] { screen("frmPreference"); },
                   [this](std::string_view prompt) {
                       screen("frmUpdateEngines");
                       downloadPrompt = prompt;
                       if (whileUpdating) whileUpdating();
                   }}) {
        EXPECT_TRUE(preference.GetSettings());
    }

    FixedClock clock;
    ScriptedPrompts prompts;
    Session session;
    clsPreference& preference = session.preference;
    clsMain main;
    StartUp startUp;
    std::function<void()> whileUpdating;
    std::string downloadPrompt;
    int splashClosed = 0;

    std::vector<std::string> shown() const {
        std::vector<std::string> titles;
        for (const auto& box : prompts.shown) titles.push_back(box.title);
        return titles;
    }

  private:
    void screen(const char* name) { prompts.shown.push_back({"screen", "", name, Icon::None}); }
};

void giveEngineData(const TestHome& home) {
    home.write("data/krveng5.dat", "Name=One\r\nType=ENG\r\nCategory=N\r\n");
    home.write("data/catkws.dat", "[One]\r\na=b\r\n");
}

void giveWords(const TestHome& home) {
    home.write("country.kws", "[Country Name]\r\nAustralia=AU\r\n[Country Code]\r\nAU=Australia\r\n");
    home.write("cat.kws", "[Shopping]\r\nClothes\r\n");
}

}  // namespace

TEST(StartUpTest, AnEmptyHomeIsToldAllThatIsMissing) {
    const TestHome home;
    ProgramRun run(home);
    EXPECT_TRUE(run.startUp.run());
    EXPECT_THAT(run.shown(), ElementsAre("Load Country File", "Load Category File", "frmPreference",
                                         "frmUpdateEngines", kApplication));
    EXPECT_THAT(run.prompts.last().text, StartsWith("Engine Data file was not found or missing."));
    EXPECT_THAT(run.downloadPrompt, StartsWith("Engine Data file was not found or missing."));
    EXPECT_GE(run.splashClosed, 1);
    for (const char* folder : {"Reports/Submition", "Reports/Ranking", "Projects", "Engines"})
        EXPECT_TRUE(folderExists(home.path(folder))) << folder;
    EXPECT_EQ(run.main.desk.tree().count(), 1u);
    EXPECT_EQ(run.main.desk.currentNode(), &run.main.desk.tree().root());
    EXPECT_TRUE(run.main.catalogue.lists.lsvEngines.empty());
}

TEST(StartUpTest, ADownloadIsLoadedAtOnce) {
    const TestHome home;
    giveWords(home);
    ProgramRun run(home);
    run.whileUpdating = [&home] { giveEngineData(home); };
    EXPECT_TRUE(run.startUp.run());
    EXPECT_THAT(run.shown(), ElementsAre("frmPreference", "frmUpdateEngines"));
    EXPECT_EQ(run.main.catalogue.lists.lsvEngines.count(), 1);
}

TEST(StartUpTest, LaterStartsShowTheFirstProjectAndNothingElse) {
    const TestHome home;
    giveWords(home);
    giveEngineData(home);
    home.write("project.kwj", "[Shop]\r\nDescription=d\r\nLast=1\r\n1=Home|\r\n[Blog]\r\nLast=0\r\n");
    {
        ProgramRun upgraded(home);
        EXPECT_TRUE(upgraded.startUp.run());
        EXPECT_THAT(upgraded.shown(), ElementsAre("frmPreference", kApplication));
        EXPECT_THAT(upgraded.prompts.last().text, StartsWith("If this is the first time you upgrade"));
        EXPECT_EQ(upgraded.prompts.last().icon, Icon::Information);
    }
    ProgramRun run(home);
    EXPECT_TRUE(run.startUp.run());
    EXPECT_THAT(run.shown(), ElementsAre());
    EXPECT_EQ(run.main.desk.currentNode()->text, "Shop");
    EXPECT_EQ(run.main.desk.panels().txtProjectDescr, "d");
    EXPECT_EQ(run.main.webTypes().size(), 4u);
    run.preference.AcceptAdultSite = "NO";
    EXPECT_THAT(run.main.webTypes(), ElementsAre("Commercial Site", "Personal Site", "General"));
}

TEST(StartUpTest, ABrokenHomeIsReportedWithItsStep) {
    const TestHome home;
    home.write("Reports/Ranking", "a file in the way");
    ProgramRun run(home);
    EXPECT_FALSE(run.startUp.run());
    EXPECT_EQ(run.splashClosed, 1) << "or it covers the message";
    EXPECT_THAT(run.prompts.last().text, StartsWith("Formload_Error: create report folder1 "));
    EXPECT_THAT(run.prompts.last().text,
                ::testing::EndsWith("Please report this error to '" + std::string(kSupportAddress) + "'"));
    EXPECT_THAT(home.read("Error.log"), ::testing::HasSubstr(run.prompts.last().text));
}

TEST(StartUpTest, TheEndAsksAndSavesTheSettings) {
    const TestHome home;
    {
        ProgramRun run(home);
        EXPECT_FALSE(run.startUp.confirmExit());
        EXPECT_EQ(run.prompts.last().text, "Are you sure you want to exit?");
        run.preference.TimeOut = 45;
        run.startUp.finish(windowPositionText({10, 20.5, 800, 600}));
    }
    const SettingsStore store(home.paths().settingsFile);
    EXPECT_EQ(store.value(kApplication, "Preference", "TimeOut"), "45");
    EXPECT_EQ(store.value(kApplication, "Preference", "MainFormPos"), "10,20.5,800,600");
}

TEST(WindowPositions, TakeExactlyFourFields) {
    struct Case {
        const char* text;
        const char* position;  // as text again
    };
    const Case cases[] = {
        {"", nullptr},
        {"1,2,3", nullptr},
        {"1,2,3,4,5", nullptr},
        {"1,2,3,", "1,2,3,0"},
        {"1,2,3,4", "1,2,3,4"},
        {"-5,-1,9,8", "0,0,9,8"},
        {"1,2,-3,99999", "1,2,-3,99999"},
        {"a,b,c,d", "0,0,0,0"},
    };
    for (const Case& test : cases) {
        const auto position = parseWindowPosition(test.text);
        EXPECT_EQ(position.has_value(), test.position != nullptr) << test.text;
        if (position && test.position) {
            EXPECT_EQ(windowPositionText(*position), test.position);
        }
    }
}

}  // namespace relay::test
