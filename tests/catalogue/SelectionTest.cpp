// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every file under transcripts/ is a case: what a user does with the engines' lists, the categories and the
// countries, and what comes of it.
#include "catalogue/EngineListPage.h"
#include "core/FileStore.h"
#include "support/CaseTable.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"
#include "support/Transcript.h"

#include <sys/stat.h>

namespace relay::test {

namespace {

constexpr std::string_view kEngines =
    "Name=Alpha\nType=ENG\nCountry=US\nSiteLevel=1\nAdults=Yes\n"
    "Name=Beta\nType=DIR\nCountry=DE\nCategory=C\nSiteLevel=2\nAdults=No\n"
    "Name=Gamma\nType=FFA\nCountry=US\nCategory=N\nAdultOnlySites=Yes\n"
    "Name=Delta\nType=HOT\nCountry=GB\n"
    "Name=Paper\nType=NEWS\nSiteLevel=1\n"
    "\"Name=Shop, corner\"\nType=MALL\n"
    "Name=Odd\nType=HOTEL\n";

class SelectionTest : public testing::TestWithParam<std::string>, protected SessionFixture {
  protected:
    SelectionTest() {
        transcript.on("load-engines", [this](auto&) { EXPECT_TRUE(loadEngines(kEngines)); });
        // A form answers the change by setting its check boxes, which reports each as a click.
        transcript.on("answer-boxes-by-clicks", [this](auto&) {
            lists.typeBoxesChanged = [this] {
                out += "boxes changed\n";
                for (std::size_t index = 0; index < EngineTypes.size(); ++index)
                    selection.clickType(index, lists.chkType[index].checked);
            };
        });
        addSelection("select", [this](auto& names) {
            for (const std::string& name : names)
                out += selection.EngineSingleSelect(name) ? "" : "no engine " + name + "\n";
        });
        addSelection("by-type",
                     [this](auto& in) { selection.EngineSelectByType(in.at(0), in.at(1) == "on"); });
        addSelection("click-type",
                     [this](auto& in) { selection.clickType(std::stoul(in.at(0)), in.at(1) == "on"); });
        addSelection("by-country", [this](auto& row) { selection.EngineSelectByCountry(row.at(0)); });
        addSelection("by-mode", [this](auto& mode) { selection.SelectByMode(mode.at(0)); });
        addSelection("top", [this](auto&) { selection.selectTopEngines(); });
        addSelection("custom", [this](auto&) { selection.selectCustomEngines(); });
        addSelection("no-adults", [this](auto&) { selection.EngineSelectNoAdultSites(); });
        addSelection("find", [this](auto& text) { selection.findEnginesByKeyword(text.at(0)); });
        addSelection("add",
                     [this](auto& names) { selection.EngineSelect(highlight(lists.lsvEngines, names)); });
        addSelection("remove", [this](auto& names) {
            selection.EngineRemove(highlight(lists.lsvSelectedEngines, names));
        });
        addSelection("failed", [this](auto&) { selection.selectFailedEngines(); });
        addSelection("load-selection", [this](auto&) { selection.loadSelection(); });
        addSelection("load-file", [this](auto& file) {
            out += selection.loadSelectedEngine(file.at(0)) ? "" : "failed\n";
        });
        transcript.on("delete-listed", [this](auto& names) {
            highlight(lists.lsvEngines, names);
            selection.deleteListedEngines();
            out += lists.lsvEngines.columnTitle(0) + ": " + joined(texts(lists.lsvEngines)) + "\n";
        });
        transcript.on("types", [this](auto&) {
            out += selection.getEngineType() + (selection.isThereFFASites() ? " with FFA" : "") + "\n";
        });
        transcript.on("save-selection", [this](auto&) { selection.saveSelection(); });
        transcript.on("highlighted", [this](auto&) {
            for (int row = 0; row < lists.lsvEngines.count(); ++row)
                if (lists.lsvEngines.at(row).highlighted)
                    out.append(lists.lsvEngines.at(row).text).append("\n");
        });
        addCategories();
        addLoading();
    }

    void addLoading() {
        catalogue.beforeFailure = [this] { out += "the splash is closed\n"; };
        transcript.on("pipe",
                      [this](auto& file) { EXPECT_EQ(mkfifo(home.path(file.at(0)).c_str(), 0600), 0); });
        transcript.on("load", [this](auto&) {
            out += catalogue.loadEngineData() ? "" : "failed\n";
            out += lists.lsvEngines.columnTitle(0) + ": " + joined(texts(lists.lsvEngines)) + "\n";
            out += lists.lsvSelectedEngines.columnTitle(0) + "\n";
        });
        transcript.on("table", [this](auto& name) {
            out.append(catalogue.engineCategories.getEngineCategoryData(name.at(0))).append("\n");
        });
    }

    void addCategories() {
        Categories& tree = catalogue.categories;
        transcript.on("load-categories", [&](auto&) {
            out += tree.loadCategory() ? "" : "failed\n";
            out += joined(texts(tree.lstMainCategory)) + "\n" + joined(texts(tree.lstCategory)) + "\n";
        });
        transcript.on("sub-categories", [&](auto& name) {
            tree.loadSubCategory(name.at(0));
            out += joined(texts(tree.lstCategory)) + "\n";
        });
        transcript.on("choose-category", [&](auto& names) {
            std::string main = "-";
            std::string sub = "-";
            if (!names.empty()) tree.setSelectedCategory(names.at(0), names.at(1));
            tree.getSelectedCategory(main, sub);
            out += main + " / " + sub + "\n";
        });
        transcript.on("has",
                      [&](auto& names) { out += tree.has(names.at(0), names.at(1)) ? "yes\n" : "no\n"; });
        transcript.on("refuse-adults", [this](auto&) { preference.AcceptAdultSite = "NO"; });
        transcript.on("load-countries", [this](auto&) {
            out += catalogue.countries.loadCountry() ? "" : "failed\n";
            out += joined(catalogue.countries.cboCountry) + "\n";
        });
        transcript.on("country", [this](auto& text) {
            out += "name " + catalogue.countries.getCountryName(text.at(0)) + ", code " +
                   catalogue.countries.getCountryCode(text.at(0)) + "\n";
        });
    }
    // Lists the selected engines; the title and the engines' own fields must agree with them.
    void addSelection(const std::string& name, const std::function<void(const Arguments&)>& command) {
        transcript.on(name, [this, command](const Arguments& arguments) {
            command(arguments);
            const Rows& rows = lists.lsvSelectedEngines;
            out += joined(texts(rows)) + "\n";
            EXPECT_EQ(rows.columnTitle(0), "Selected Engines (" + std::to_string(rows.count()) + ")");
            for (const clsEngines& engine : lists.engines)
                if (engine.Selected != rows.contains(engine.name()))
                    out.append("at odds with its row: ").append(engine.name()).append("\n");
        });
    }
    // "all" is what the buttons for all rows ask for.
    static bool highlight(Rows& rows, const Arguments& names) {
        for (int row = 0; row < rows.count(); ++row)
            rows.setHighlighted(row, std::count(names.begin(), names.end(), rows.at(row).text) > 0);
        return names == Arguments{"all"};
    }

    Transcript transcript{home, &prompts};
    std::string& out = transcript.out;
};

TEST_P(SelectionTest, DoesWhatTheTranscriptSays) {
    transcript.play(TEST_FOLDER "/transcripts/" + GetParam());
}

INSTANTIATE_TEST_SUITE_P(Transcripts, SelectionTest,
                         testing::ValuesIn(goldenCases(TEST_FOLDER "/transcripts")), goldenName);

TEST(EngineListPageTest, IsExported) {
    SessionFixture fixture;
    ASSERT_TRUE(fixture.loadEngines(
        "Name=A <b>\nType=ENG\nName=M\nType=MALL\nName=N\nType=NEWS\nName=X\nName=F\nType=FFA\n"
        "Name=A2\nType=eng\nName=H\nType=HOT\n"));
    fixture.selection.offerEngineList();  // answered with No
    EXPECT_FALSE(fileExists(fixture.home.path("englist.htm")));
    EXPECT_EQ(fixture.prompts.last().text,
              "Create a list of all the search engines. Do you want to continue?");

    fixture.prompts.answers.push_back(true);
    fixture.selection.offerEngineList();
    EXPECT_EQ(fixture.prompts.last().kind, "system");
    EXPECT_EQ(fixture.prompts.last().text, fixture.home.path("englist.htm"));
    const std::string page = fixture.home.read("englist.htm");
    EXPECT_EQ(page.substr(0, page.find("<hr ")), readFile(TEST_FOLDER "/englist.htm"));

    const std::string empty = engineListPage(EngineCollection());  // the first three groups remain
    EXPECT_EQ(empty.size() - replaceAll(empty, "<b>", "").size(), 9U);
}

}  // namespace

}  // namespace relay::test
