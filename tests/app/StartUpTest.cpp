// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/QuickStart.h"
#include "app/StartUp.h"
#include "app/clsMain.h"
#include "core/FileSystem.h"
#include "session/Session.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

using ::testing::ElementsAre;

// One run of the program on a home. Records what it shows, in order, by title or by name of the screen.
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

TEST(StartUpTest, AnEmptyHomeShowsAllThatIsMissing) {
    const TestHome home;
    ProgramRun run(home);
    EXPECT_TRUE(run.startUp.run());
    EXPECT_THAT(run.shown(), ElementsAre("Load Country File", "Load Category File", "frmPreference",
                                         "frmUpdateEngines", kApplication));
    EXPECT_EQ(
        run.prompts.shown.at(0).text,
        "The country file is missing ! You need to re-install the full installation program and try again.");
    EXPECT_EQ(
        run.prompts.shown.at(1).text,
        "The category file is missing ! You need to re-install the full installation program and try again.");
    EXPECT_EQ(
        run.downloadPrompt,
        "Engine Data file was not found or missing. If this is the first time you run the program, you "
        "need to download the engine data file from our web site before you can use it. \r\n\r\nPlease "
        "ensure you are connected to the Internet and then press the 'Start' button. This will take a few "
        "minutes depending on Internet connection.");
    EXPECT_EQ(
        run.prompts.last().text,
        "Engine Data file was not found or missing. If this is the first time you run the program, you "
        "need to download the engine data file from our web server to make Korvel Relay works correctly. "
        "\r\n\r\nPlease click on the 'File/Update Engine Data' menu item from the menu bar and following "
        "the instruction on the screen. Please re-start the program after you updated the engine data "
        "file.");
    EXPECT_GE(run.splashClosed, 1);
    for (const char* folder : {"Reports/Submition", "Reports/Ranking", "Projects", "Engines"})
        EXPECT_TRUE(folderExists(home.path(folder))) << folder;
    EXPECT_EQ(run.main.workspace.tree().count(), 1u);
    EXPECT_EQ(run.main.workspace.currentNode(), &run.main.workspace.tree().root());
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
        EXPECT_EQ(
            upgraded.prompts.last().text,
            "If this is the first time you upgrade from version 5.0 or older to version 6.0, please make "
            "sure to update the new engine data file from our web site by clicking the 'File/Update "
            "Engine Data File' menu item from the menu bar.");
        EXPECT_EQ(upgraded.prompts.last().icon, Icon::Information);
    }
    ProgramRun run(home);
    EXPECT_TRUE(run.startUp.run());
    EXPECT_THAT(run.shown(), ElementsAre());
    EXPECT_EQ(run.main.workspace.currentNode()->text, "Shop");
    EXPECT_EQ(run.main.workspace.panels().txtProjectDescr, "d");
    EXPECT_EQ(run.main.webTypes().size(), 4u);
    run.preference.AcceptAdultSite = "NO";
    EXPECT_THAT(run.main.webTypes(), ElementsAre("Commercial Site", "Personal Site", "General"));
}

TEST(StartUpTest, AFailedStepIsShownAndTheOthersStillRun) {
    const TestHome home;
    giveWords(home);
    giveEngineData(home);
    for (const char* folder : {"Reports/Ranking", "Engines"}) home.write(folder, "a file in the way");
    home.write("project.kwj", "[Shop]\r\nLast=1\r\n1=Home|\r\n");
    ProgramRun run(home);
    run.preference.LoadConfigure = 1;
    run.preference.Version = "6.0";
    EXPECT_FALSE(run.startUp.run());
    const auto words = [&home](const std::string& step, const char* folder) {
        return "Formload_Error: " + step + " " + home.path(folder) +
               ": File exists\r\nYour program may not work properly. Please report this error to "
               "'support@korvel.example'";
    };
    ASSERT_THAT(run.shown(), ElementsAre("Error", "Error"));
    EXPECT_EQ(run.prompts.shown[0].text, words("create report folder1", "Reports/Ranking"));
    EXPECT_EQ(run.prompts.shown[1].text, words("create engines folder", "Engines"));
    EXPECT_THAT(home.read("Error.log"), ::testing::HasSubstr(run.prompts.shown[1].text));
    EXPECT_GE(run.splashClosed, 2) << "it would cover the messages";
    EXPECT_TRUE(folderExists(home.path("Projects")));
    EXPECT_EQ(run.main.catalogue.lists.lsvEngines.count(), 1);
    EXPECT_EQ(run.main.workspace.currentNode()->text, "Shop");
}

TEST(StartUpTest, TheQuickStartReadsLineByLine) {
    std::vector<std::string> lines;
    for (const QuickStartLine& line : quickStartLines()) lines.emplace_back(line.text);
    EXPECT_THAT(
        lines,
        ElementsAre("Quick Start:", "",
                    "1. Click on the 'New Project' button from the menu bar to create a new project and "
                    "specify a name for your new project.",
                    "2. Click on the 'New Web' button from the menu bar to create a new web site and "
                    "specify a name for your web site.",
                    "3. Enter ALL the details of Web Site info, URLs, Contact Info etc.",
                    "4. Select category you want to submit to.",
                    "5. Click on the 'Save' button to save your web site details.",
                    "7. Select the engines you want to submit to by clicking the 'Engine' button.",
                    "8. Click on the 'Submit' button from the menu bar to start submitting.",
                    "9. Then follow the instructions on the 'Submit' screen to submit your web site.",
                    "Need More Help:",
                    "Please click the 'Help/Contents' menu item from the menu bar for more help "
                    "information."));
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

TEST(ReadyToSubmitTest, AsksForEnginesAndOffersToBlockTheMailOfFreeForAllSites) {
    const TestHome home;
    ProgramRun run(home);
    clsMain& main = run.main;
    ScriptedPrompts& prompts = run.prompts;
    EXPECT_FALSE(main.readyToSubmit());
    EXPECT_EQ(prompts.last().text,
              "There is no engine selected.\r\n\r\nPlease select the engines before start submitting.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    EXPECT_EQ(main.workspace.panels().panel, MainPanel::Engines);

    struct Case {
        const char* type;
        int blockSpam;
        bool answer;
        int asked;
        int blockedAfter;
    };
    const Case cases[] = {
        {"ENG", 0, true, 0, 0}, {"ffa", 1, true, 0, 1}, {"ffa", 0, false, 1, 0}, {"FFA", 0, true, 1, 1}};
    for (const Case& test : cases) {
        main.catalogue.lists.lsvSelectedEngines.clear();
        main.catalogue.lists.lsvSelectedEngines.add({"One", "One", {}, test.type, {}});
        run.preference.BlockSpam = static_cast<std::int16_t>(test.blockSpam);
        prompts.shown.clear();
        prompts.answers = {test.answer};
        EXPECT_TRUE(main.readyToSubmit());
        EXPECT_EQ(static_cast<int>(prompts.shown.size()), test.asked);
        EXPECT_EQ(run.preference.BlockSpam, test.blockedAfter);
    }
    EXPECT_EQ(prompts.last().title, "Submit");
    EXPECT_EQ(
        prompts.last().text,
        "Your selected engines contain FFA links, do you want to block auto-response confirmation email or "
        "spam ads from FFA sites?");
}

TEST(WindowPositionTest, TakeExactlyFourFields) {
    struct Case {
        const char* text;
        const char* position;  // written back as text
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
