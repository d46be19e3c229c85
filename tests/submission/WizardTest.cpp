// SPDX-License-Identifier: GPL-3.0-or-later
#include "SubmissionFixture.h"
#include "core/Failure.h"

#include <gmock/gmock.h>

namespace relay::test {

namespace {

using testing::ElementsAre;

struct WizardTest : testing::Test, SubmissionFixture {};

TEST_F(WizardTest, ListsTheWebsitesOfTheProjects) {
    const std::string shop = website("Shop", {"http://a.test/1", "http://a.test/2"});
    const std::string empty = website("Empty", {});
    home.write("Projects/Unsaved.kws", "[Web Site Info]\r\nTitle=x\r\n");
    home.write("project.kwj", "[Spring]\r\nLast=4\r\n1=Home|" + shop + "\r\n2=\r\n3=Blank|" + empty +
                                  "\r\n4=New|\r\n[Autumn]\r\nLast=2\r\n1=Again|" + shop + "\r\n2=U|" +
                                  home.path("Projects/Unsaved.kws") + "\r\n");
    SubmissionController& wizard = *controller;
    wizard.loadProject();
    Rows& sites = wizard.state().lsvSiteSelection;
    EXPECT_THAT(texts(sites), ElementsAre("Home", "Blank"));
    const Row first(sites.at(0));
    EXPECT_EQ(first.tag, shop);
    EXPECT_THAT(first.subItems, ElementsAre("Spring", "2"));
    EXPECT_TRUE(first.checked);
    EXPECT_FALSE(sites.at(1).checked);

    sites.setChecked(1, true);
    Q_EMIT sites.checkToggled(1, true);
    EXPECT_FALSE(sites.at(1).checked);
    EXPECT_THAT(boxes(),
                ElementsAre("Submit|There is not URL in current selected web site, please enter the web site "
                            "URL before submit."));
    // A path in another case is another website, with its own URLs; one that cannot be read gives the reason.
    EXPECT_TRUE(wizard.addSite(website("shop", {"http://a.test/1"}), "shop", ""));
    EXPECT_FALSE(wizard.addSite(website("shop", {"http://a.test/1"}), "shop", ""));
    EXPECT_TRUE(wizard.createSubmissionData());
    EXPECT_EQ(wizard.state().lsvSiteSubmitting.count(), 3);
    EXPECT_THROW(wizard.addSite(home.path("Projects"), "", ""), Failure);
    wizard.selectAllSites(false);
    EXPECT_FALSE(sites.at(0).checked);
    wizard.selectAllSites(true);
    EXPECT_TRUE(sites.at(0).checked);
    EXPECT_FALSE(sites.at(1).checked);
}

TEST_F(WizardTest, ShowsTheSummaryOrRefuses) {
    SubmissionController& wizard = *controller;
    EXPECT_FALSE(wizard.cmdNext());
    EXPECT_FALSE(wizard.cmdStart());
    selectEngines(records("E", 1234, ""));
    EXPECT_FALSE(wizard.cmdNext());
    EXPECT_EQ(wizard.state().page, 0);
    EXPECT_THAT(
        boxes(),
        ElementsAre("Submit|There is no engine selected, please select the engines you want to submit and "
                    "try again.",
                    "Confirm Submit|There is no web site to be submitted. Please make sure to select the "
                    "web site you want to submit and try again.",
                    "Submit|There is no web site selected, please select the web site you want to submit "
                    "and press the 'Next' button."));

    wizard.addSite(website("Shop", std::vector<std::string>(90, "http://a.test/same")), "Shop", "P");
    ASSERT_TRUE(wizard.cmdNext());
    const SubmissionState& state = wizard.state();
    EXPECT_EQ(state.lblNumOfEngines + " " + state.lblNumOfWebsites + " " + state.lblNumOfURLs + " " +
                  state.lblNumOfConnections + " " + state.lblEstimatedTime,
              "1234 1 90 9 2,468");
    EXPECT_EQ(state.page, 1);
    ASSERT_TRUE(wizard.cmdStart());
    EXPECT_EQ(state.page, 2);
    EXPECT_EQ(state.progressMaximum, 1234 + 1 + 90);
    EXPECT_EQ(state.progressValue, 1234 + 90);
    EXPECT_THAT(texts(state.lsvSiteSubmitting), ElementsAre("http://a.test/same"));
}

TEST_F(WizardTest, RemovesTheHighlightedURLs) {
    selectEngines(records("E", 1, "/200/s"));
    prepare({website("A", {"http://a.test/1", "", "http://a.test/2"}), website("B", {"http://a.test/1"})});
    SubmissionController& wizard = *controller;
    Rows& urls = wizard.state().lsvSiteSubmitting;
    EXPECT_THAT(texts(urls), ElementsAre("http://a.test/1", "http://a.test/2", "http://a.test/1"));
    urls.setHighlighted(1, true);
    wizard.cmdRemove();
    ASSERT_TRUE(wizard.cmdSubmit());
    // URLs that a run has started stay.
    for (int row = 0; row < urls.count(); ++row) urls.setHighlighted(row, true);
    wizard.cmdRemove();
    EXPECT_THAT(texts(urls), ElementsAre("http://a.test/1"));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(reports.size(), 1U);
}

TEST_F(WizardTest, RefusesWhatCannotBeCountedOrStarted) {
    selectEngines(records("E", 1, ""));
    SubmissionController& wizard = *controller;
    Rows& selected = lists.lsvSelectedEngines;
    wizard.addSite(website("A", {"http://a.test/1"}), "A", "P");
    // Each website may have this many URLs, but not all of them together.
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

TEST_F(WizardTest, ViewsTheReportThatIsChosen) {
    SubmissionController& wizard = *controller;
    wizard.viewReport();
    EXPECT_EQ(prompts.last().title, "View Report");
    Rows& list = wizard.state().lsvReport;
    list.add({"a", "a", {}, {}, "/nowhere.html"});
    list.add({"b", "b", {}, {}, home.write("b.html", "x"), true});
    wizard.viewReport();
    EXPECT_EQ(prompts.last().kind, "system");
    EXPECT_EQ(prompts.last().text, home.path("b.html"));
    list.setHighlighted(0, true);
    wizard.viewReport();
    EXPECT_EQ(prompts.last().text,
              "Report file is corrupted or missing, please re-run the submission again.");
    EXPECT_THAT(logText(), testing::HasSubstr("ReportFile: /nowhere.html\r\n"));
}

TEST_F(WizardTest, AsksBeforeItClosesDuringARun) {
    EXPECT_TRUE(controller->closing());
    selectEngines(records("E", 2, "/never"));
    start({website("A", {"http://a.test/1"})});
    ASSERT_TRUE(waitUntil([&] { return server.connections() == 2; }));
    prompts.answers = {false, true};
    EXPECT_FALSE(controller->closing());
    EXPECT_TRUE(controller->isRunning());
    EXPECT_TRUE(controller->closing());
    EXPECT_FALSE(controller->isRunning());
    EXPECT_THAT(logText(), testing::HasSubstr("Cancel submit by user.\r\n"));
    controller.reset();
    EXPECT_FALSE(done);
}

}  // namespace

}  // namespace relay::test
