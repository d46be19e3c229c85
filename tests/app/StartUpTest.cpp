// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every file under transcripts/ is a case: what stands in a home, and what the program shows when it starts
// on it.
#include "app/QuickStart.h"
#include "app/StartUp.h"
#include "app/clsMain.h"
#include "core/FileSystem.h"
#include "session/Session.h"
#include "support/CaseTable.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"
#include "support/Transcript.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

class StartUpTest : public testing::TestWithParam<std::string> {
  protected:
    // One run of the program. Screens are among what it showed.
    struct ProgramRun final {
        explicit ProgramRun(StartUpTest& test)
            : session(test.home.paths(), test.clock, "", test.prompts),
              main(session.services, session.catalogue),
              startUp(session.services, main,
                      {[&test] { test.screen("the splash is closed"); },
                       [&test] { test.screen("frmPreference"); },
                       [&test](std::string_view prompt) {
                           test.screen("frmUpdateEngines", prompt);
                           if (test.updates) test.giveEngineData();
                       }}) {
            EXPECT_TRUE(session.preference.GetSettings());
        }
        Session session;
        clsMain main;
        StartUp startUp;
    };

    StartUpTest() {
        transcript.on("words", [this](auto&) {
            home.write("country.kws", "[Country Name]\r\nAustralia=AU\r\n[Country Code]\r\nAU=Australia\r\n");
            home.write("cat.kws", "[Shopping]\r\nClothes\r\n");
        });
        transcript.on("engine-data", [this](auto&) { giveEngineData(); });
        transcript.on("update-when-asked", [this](auto&) { updates = true; });
        transcript.on("start", [this](auto&) {
            run.reset();
            run = std::make_unique<ProgramRun>(*this);
            out += run->startUp.run() ? "" : "failed\n";
        });
        transcript.on("show", [this](auto&) { show(); });
        transcript.on("refuse-adults", [this](auto&) { run->session.preference.AcceptAdultSite = "NO"; });
        transcript.on("quick-start", [this](auto&) {
            for (const QuickStartLine& line : quickStartLines()) out.append(line.text).append("\n");
        });
        transcript.on("exit", [this](auto&) { out += run->startUp.confirmExit() ? "" : "refused\n"; });
        transcript.on("finish", [this](auto&) {
            run->session.preference.TimeOut = 45;
            run->startUp.finish(windowPositionText({10, 20.5, 800, 600}));
        });
        transcript.on("select-type", [this](auto& type) {
            run->main.catalogue.lists.lsvSelectedEngines.clear();
            run->main.catalogue.lists.lsvSelectedEngines.add({"One", "One", {}, type.at(0), {}});
        });
        transcript.on("ready-to-submit", [this](auto& blockSpam) {
            run->session.preference.BlockSpam = static_cast<std::int16_t>(std::stoi(blockSpam.at(0)));
            out += run->main.readyToSubmit() ? "ready" : "not ready";
            out += ", BlockSpam=" + std::to_string(run->session.preference.BlockSpam) + "\n";
        });
    }

    void screen(const char* name, std::string_view text = {}) {
        prompts.shown.push_back({"screen", std::string(text), name, Icon::None});
    }
    void giveEngineData() {
        home.write("data/krveng5.dat", "Name=One\r\nType=ENG\r\nCategory=N\r\n");
        home.write("data/catkws.dat", "[One]\r\na=b\r\n");
    }
    void show() {
        Workspace& workspace = run->main.workspace;
        out += "at " + workspace.currentNode()->text + ", " + std::to_string(workspace.tree().count()) +
               " nodes\n";
        out += "description " + workspace.panels().txtProjectDescr + "\n";
        out += std::string("panel ") +
               (workspace.panels().panel == MainPanel::Engines ? "of the engines\n" : "of the node\n");
        out += "engines " + joined(texts(run->main.catalogue.lists.lsvEngines)) + "\n";
        out += "web types " + joined(run->main.webTypes()) + "\n";
    }

    TestHome home;
    FixedClock clock;
    ScriptedPrompts prompts;
    bool updates = false;
    std::unique_ptr<ProgramRun> run;
    Transcript transcript{home, &prompts};
    std::string& out = transcript.out;
};

TEST_P(StartUpTest, ShowsWhatTheTranscriptSays) {
    transcript.play(TEST_FOLDER "/transcripts/" + GetParam());
}

INSTANTIATE_TEST_SUITE_P(Transcripts, StartUpTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/transcripts")),
                         goldenName);

TEST(WindowPositionTest, FollowsItsTable) {
    playCases(TEST_FOLDER "/cases/window-position.txt",
              {{"position", [](const std::vector<std::string>& in) {
                    const auto position = parseWindowPosition(in[0]);
                    return position ? windowPositionText(*position) : "none";
                }}});
}

}  // namespace

}  // namespace relay::test
