// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every file under transcripts/ is a case: what a user does on the pages of a submission, and what comes of
// it.
#include "SubmissionFixture.h"
#include "core/Failure.h"
#include "support/GoldenCases.h"
#include "support/Transcript.h"

#include <gmock/gmock.h>

namespace relay::test {

namespace {

using testing::ElementsAre;

class WizardTest : public testing::TestWithParam<std::string>, protected SubmissionFixture {
  protected:
    WizardTest() {
        transcript.on("engines", [this](auto& in) {
            selectEngines(records("E", std::stoi(in.at(0)), in.size() > 1 ? in[1] : ""));
        });
        transcript.on("website",
                      [this](auto& in) { website(in.at(0), Arguments(in.begin() + 1, in.end())); });
        transcript.on("load-project", [this](auto&) { controller->loadProject(); });
        transcript.on("add-site", [this](auto& in) {
            refusedUnless(controller->addSite(home.path("Projects/" + in.at(0) + ".kws"), in.at(0), "P"));
        });
        // As a view reports a click on a box.
        transcript.on("tick", [this](auto& row) {
            sites.setData(sites.index(std::stoi(row.at(0)), 0), Qt::Checked, Qt::CheckStateRole);
        });
        transcript.on("select-all", [this](auto& on) { controller->selectAllSites(on.at(0) == "on"); });
        transcript.on("next", [this](auto&) { refusedUnless(controller->cmdNext()); });
        transcript.on("start", [this](auto&) { refusedUnless(controller->cmdStart()); });
        transcript.on("submit", [this](auto&) { refusedUnless(controller->cmdSubmit()); });
        transcript.on("wait-for-requests", [this](auto& count) {
            EXPECT_TRUE(waitUntil([&] { return server.connections() == std::stoi(count.at(0)); }));
        });
        transcript.on("wait-for-end", [this](auto&) { EXPECT_TRUE(waitForEnd()); });
        transcript.on("remove", [this](auto& rows) {
            Rows& urls = controller->state().lsvSiteSubmitting;
            for (const std::string& row : rows) urls.setHighlighted(std::stoi(row), true);
            controller->cmdRemove();
        });
        transcript.on("add-report", [this](auto& in) {
            controller->state().lsvReport.add({in.at(0), in.at(0), {}, {}, in.at(1)});
        });
        transcript.on("view-report", [this](auto& rows) {
            controller->state().lsvReport.clearHighlights();
            for (const std::string& row : rows)
                controller->state().lsvReport.setHighlighted(std::stoi(row), true);
            controller->viewReport();
        });
        transcript.on("close", [this](auto&) { refusedUnless(controller->closing()); });
        transcript.on("show", [this](auto&) { show(); });
    }

    void refusedUnless(bool taken) { out += taken ? "" : "refused\n"; }
    void show() {
        const SubmissionState& state = controller->state();
        out += "page " + std::to_string(state.page) + (controller->isRunning() ? ", running\n" : "\n");
        for (int row = 0; row < sites.count(); ++row) {
            const Row site(sites.at(row));
            out += (site.checked ? "[x] " : "[ ] ") + site.text + " of " + site.subItems.at(0) + ", " +
                   site.subItems.at(1) + " URLs, " + site.tag + "\n";
        }
        if (!state.lblNumOfEngines.empty())
            out += state.lblNumOfEngines + " engines, " + state.lblNumOfWebsites + " websites, " +
                   state.lblNumOfURLs + " URLs, " + state.lblNumOfConnections + " connections, " +
                   state.lblEstimatedTime + " minutes; " + std::to_string(state.progressValue) + " of " +
                   std::to_string(state.progressMaximum) + "\n";
        for (const std::string& url : texts(state.lsvSiteSubmitting)) out += url + "\n";
    }

    Rows& sites = controller->state().lsvSiteSelection;
    Transcript transcript{home, &prompts};
    std::string& out = transcript.out;
};

TEST_P(WizardTest, DoesWhatTheTranscriptSays) {
    transcript.play(TEST_FOLDER "/transcripts/" + GetParam());
}

INSTANTIATE_TEST_SUITE_P(Transcripts, WizardTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/transcripts")),
                         goldenName);

struct FullWizardTest : testing::Test, SubmissionFixture {};

TEST_F(FullWizardTest, RefusesWhatCannotBeCountedOrBegun) {
    selectEngines(records("E", 1, ""));
    SubmissionController& wizard = *controller;
    Rows& selected = lists.lsvSelectedEngines;
    wizard.addSite(website("A", {"http://a.test/1"}), "A", "P");
    EXPECT_THROW(wizard.addSite(home.path("Projects"), "", ""), Failure);
    // Each website may hold as many URLs, but not all of them together.
    std::vector<std::string> urls;
    for (int i = 1; i <= 16384; ++i) urls.push_back("http://b.test/" + std::to_string(i));
    for (const char* name : {"B", "C"}) wizard.addSite(website(name, urls), name, "P");
    ASSERT_TRUE(wizard.cmdNext());
    EXPECT_EQ(wizard.state().lblNumOfURLs, "32769");
    EXPECT_FALSE(wizard.cmdStart());
    EXPECT_TRUE(wizard.state().lsvSiteSubmitting.empty());
    wizard.selectAllSites(false);
    wizard.state().lsvSiteSelection.setChecked(0, true);
    ASSERT_TRUE(wizard.cmdNext());
    {
        const RowsBatch batch(selected);
        for (int i = 0; i < 32767; ++i) selected.add({"X" + std::to_string(i), "X", {}, {}, {}});
    }
    EXPECT_FALSE(wizard.cmdStart());
    EXPECT_TRUE(wizard.state().lsvSiteSubmitting.empty());
    EXPECT_EQ(wizard.submit().NumOfEngines(), 0);
    // There is nothing to submit, and then no connection.
    EXPECT_FALSE(wizard.cmdSubmit());
    preference.Connections = 0;
    EXPECT_FALSE(wizard.cmdSubmit());
    EXPECT_EQ(wizard.state().cmdSubmit, "&Submit");
    EXPECT_FALSE(wizard.cmdNext());
    EXPECT_THAT(boxes(), ElementsAre("Error|createSubmissionData_Error:\r\nOverflow",
                                     "Error|createSubmissionData_Error:\r\nOverflow",
                                     "Error|setSiteSubmittingStatus_Error: Index out of bounds",
                                     "Error|Module: StartSubmit\r\nErrorCode: 9",
                                     "Error|getSubmitSummary_Error: Overflow"));
}

}  // namespace

}  // namespace relay::test
