// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineListPage.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "support/SessionFixture.h"

#include <filesystem>

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

struct SelectionFixture final : SessionFixture {
    SelectionFixture() { EXPECT_TRUE(loadEngines(kEngines)); }

    void select(std::string_view names) {
        for (std::size_t place = 0; place < names.size(); ++place) {
            for (const clsEngines& engine : lists.engines)
                if (engine.name().front() == names[place]) selection.EngineSingleSelect(engine.name());
        }
    }
    void highlight(Rows& rows, std::string_view initials) {
        for (int row = 0; row < rows.count(); ++row)
            rows.setHighlighted(row, initials.find(rows.at(row).text.front()) != npos);
    }
    // The initials of the selected rows; also checks the title and the engines' own fields.
    std::string selected() const {
        std::string initials;
        const Rows& rows = lists.lsvSelectedEngines;
        for (int row = 0; row < rows.count(); ++row) initials += rows.at(row).text.front();
        EXPECT_EQ(rows.columnTitle(0), "Selected Engines (" + std::to_string(rows.count()) + ")");
        for (const clsEngines& engine : lists.engines)
            EXPECT_EQ(engine.Selected, rows.contains(engine.name()));
        EXPECT_EQ(prompts.busyDepth, 0);
        return initials;
    }
};

TEST(EngineSelectionTest, EachOperationSelectsItsEngines) {
    using Operation = void (*)(SelectionFixture&);
    const struct {
        const char* what;
        const char* before;
        Operation operation;
        const char* after;
    } cases[] = {
        {"hot sites join every type", "", [](auto& f) { f.selection.EngineSelectByType("ENG", true); },
         "ADO"},
        {"no second row", "AD", [](auto& f) { f.selection.EngineSelectByType("eng", true); }, "ADO"},
        {"hot sites leave with any type", "DAB",
         [](auto& f) { f.selection.EngineSelectByType("NEWS", false); }, "AB"},
        {"a click on a box", "", [](auto& f) { f.selection.clickType(2, true); }, "GDO"},
        {"a country", "P", [](auto& f) { f.selection.EngineSelectByCountry("United States(US)"); }, "PAG"},
        {"a country again", "AG", [](auto& f) { f.selection.EngineSelectByCountry("(us)"); }, "AG"},
        {"a name with a bracket hides its code", "",
         [](auto& f) { f.selection.EngineSelectByCountry("Here (DExx)(GB)"); }, "B"},
        {"a bare code", "", [](auto& f) { f.selection.EngineSelectByCountry("GB"); }, "D"},
        {"all countries", "", [](auto& f) { f.selection.EngineSelectByCountry("all"); }, "ABGDPSO"},
        {"major sites replace", "BG", [](auto& f) { f.selection.SelectByMode("MajorSite"); }, "AP"},
        {"custom engines", "A", [](auto& f) { f.selection.selectCustomEngines(); }, "B"},
        {"top engines", "G", [](auto& f) { f.selection.selectTopEngines(); }, "AP"},
        {"adult only", "A", [](auto& f) { f.selection.SelectByMode("AdultOnlySite"); }, "G"},
        {"no such mode", "AB", [](auto& f) { f.selection.SelectByMode("Nothing"); }, ""},
        {"no adult sites only shrinks", "ABG", [](auto& f) { f.selection.EngineSelectNoAdultSites(); }, "A"},
        {"the highlighted rows", "B",
         [](auto& f) {
             f.highlight(f.lists.lsvEngines, "BP");
             f.selection.EngineSelect(false);
         },
         "BP"},
        {"nothing highlighted", "B", [](auto& f) { f.selection.EngineSelect(false); }, "B"},
        {"all rows", "B", [](auto& f) { f.selection.EngineSelect(true); }, "BAGDPSO"},
        {"highlighted rows go", "ABGD",
         [](auto& f) {
             f.highlight(f.lists.lsvSelectedEngines, "BG");
             f.selection.EngineRemove(false);
         },
         "AD"},
        {"all rows go", "ABG", [](auto& f) { f.selection.EngineRemove(true); }, ""},
        {"one twice", "A", [](auto& f) { EXPECT_TRUE(f.selection.EngineSingleSelect("ALPHA")); }, "A"},
        {"one unknown", "A", [](auto& f) { EXPECT_FALSE(f.selection.EngineSingleSelect("Alph")); }, "A"},
        {"by keyword", "P", [](auto& f) { f.selection.findEnginesByKeyword("P"); }, "PAS"},
    };
    for (const auto& example : cases) {
        SCOPED_TRACE(example.what);
        SelectionFixture fixture;
        fixture.select(example.before);
        example.operation(fixture);
        EXPECT_EQ(fixture.selected(), example.after);
        EXPECT_TRUE(fixture.prompts.shown.empty());
    }
}

TEST(EngineSelectionTest, FindHighlightsMatchesOrShowsThatThereAreNone) {
    SelectionFixture fixture;
    fixture.selection.findEnginesByKeyword("elt");
    EXPECT_EQ(fixture.lists.lsvEngines.at(fixture.lists.lsvEngines.firstHighlighted()).text, "Delta");
    fixture.selection.findEnginesByKeyword("zzz");
    EXPECT_EQ(fixture.prompts.last().title, "Find Engine");
    EXPECT_EQ(fixture.prompts.last().text, "No matches found.");
}

TEST(EngineSelectionTest, IgnoresTypeClicksWhileItTicksTheBoxes) {
    SelectionFixture fixture;
    int changes = 0;
    // A form reacts by setting its check boxes, which reports each as a click.
    fixture.lists.typeBoxesChanged = [&] {
        ++changes;
        for (std::size_t index = 0; index < EngineTypes.size(); ++index)
            fixture.selection.clickType(index, fixture.lists.chkType[index].checked);
    };
    fixture.selection.EngineSelect(true);
    EXPECT_EQ(fixture.selected().size(), 7u);
    EXPECT_EQ(fixture.selection.getEngineType(), "ENG,DIR,FFA,NEWS,MALL,HOT,MIS");
    EXPECT_TRUE(fixture.selection.isThereFFASites());
    fixture.selection.EngineRemove(true);
    EXPECT_EQ(fixture.selection.getEngineType(), "");
    EXPECT_EQ(changes, 2);
    fixture.selection.clickType(1, true);
    EXPECT_EQ(fixture.selected(), "BDO");
    EXPECT_EQ(fixture.selection.getEngineType(), ",DIR");
    EXPECT_FALSE(fixture.selection.isThereFFASites());
}

TEST(EngineSelectionTest, DeletingListedEnginesLeavesTheirSelectedRows) {
    SelectionFixture fixture;
    fixture.select("AB");
    fixture.highlight(fixture.lists.lsvEngines, "BG");
    fixture.selection.deleteListedEngines();
    EXPECT_EQ(fixture.lists.lsvEngines.columnTitle(0), "Engines (5)");
    EXPECT_EQ(texts(fixture.lists.lsvSelectedEngines), (std::vector<std::string>{"Alpha", "Beta"}));
    EXPECT_FALSE(fixture.lists.engines.find("Beta")->Selected);

    fixture.selection.EngineSelectByType("FFA", true);  // the engine itself is still there
    EXPECT_TRUE(fixture.lists.lsvSelectedEngines.contains("Gamma"));
    fixture.selection.EngineSelectByType("DIR", true);  // so is its row
    EXPECT_TRUE(fixture.lists.engines.find("Beta")->Selected);
    EXPECT_TRUE(fixture.prompts.shown.empty());
}

TEST(SelectionFilesTest, SaveAndLoad) {
    SelectionFixture fixture;
    fixture.select("BSA");
    const std::string path = fixture.home.path("set.eng");
    fixture.selection.saveSelectedEngine(path);
    EXPECT_EQ(fixture.home.read("set.eng"), "Beta\r\nShop, corner\r\nAlpha\r\n");

    fixture.selection.EngineRemove(true);
    fixture.select("G");
    fixture.home.write("set.eng", "Beta\nGone\r\n\r\nShop, corner\nAlpha, Paper");
    EXPECT_TRUE(fixture.selection.loadSelectedEngine(path));
    EXPECT_EQ(fixture.selected(), "GBAP");  // the name with a comma was read as two
    EXPECT_TRUE(fixture.selection.loadSelectedEngine(fixture.home.path("absent.eng")));
    EXPECT_TRUE(fixture.prompts.shown.empty());

    fixture.home.write("set.eng", "Delta\nBETA\nOdd\n");
    EXPECT_FALSE(fixture.selection.loadSelectedEngine(path));
    EXPECT_EQ(fixture.selected(), "GBAPD");
    EXPECT_EQ(fixture.prompts.last().title, "Error");
    EXPECT_EQ(
        fixture.prompts.last().text,
        "The engine \"Beta\" is selected already, and the reading stopped there. Engines taken from the "
        "file before it: 1.\r\nModule: Load Selected Engine");
}

TEST(EnginesMenuTest, SavesThroughTheDialog) {
    SelectionFixture fixture;
    fixture.selection.saveSelection();
    EXPECT_EQ(fixture.prompts.last().title, "Save Selected Engines");
    EXPECT_EQ(fixture.prompts.last().text,
              "No engines have been selected. Please select the engines you would like to save.");
    EXPECT_TRUE(folderExists(fixture.home.path("Engines")));

    fixture.select("A");
    const struct {
        const char* chosen;
        int filter;
        const char* written;
    } cases[] = {{"one", 1, "one.eng"},
                 {"two.ENG", 1, "two.ENG"},
                 {"three.eng", 2, "three.eng.txt"},
                 {"four", 3, "four"}};
    for (const auto& example : cases) {
        fixture.prompts.files.push_back({fixture.home.path(example.chosen), example.filter});
        fixture.selection.saveSelection();
        EXPECT_EQ(fixture.home.read(example.written), "Alpha\r\n");
    }
    EXPECT_EQ(fixture.prompts.last().text,
              "Korvel Engine Files (*.eng)|*.eng|Text Files(*.txt)|*.txt|All Files(*.*)|*.*");

    fixture.select("B");
    for (const bool replace : {false, true}) {
        fixture.prompts.files.push_back({fixture.home.path("one.eng"), 1});
        fixture.prompts.answers.push_back(replace);
        fixture.selection.saveSelection();
        EXPECT_EQ(fixture.prompts.last().text, "The file '" + fixture.home.path("one.eng") +
                                                   "' already exists.\r\nDo you want to replace it?");
        EXPECT_EQ(fixture.home.read("one.eng"), replace ? "Alpha\r\nBeta\r\n" : "Alpha\r\n");
    }

    fixture.prompts.files.push_back({fixture.home.path("absent/deep.eng"), 1});
    fixture.selection.saveSelection();
    EXPECT_EQ(fixture.prompts.last().title, "Error");
    EXPECT_EQ(fixture.prompts.last().text.rfind("EngineItems_Error: ", 0), 0u);
}

TEST(EnginesMenuTest, LoadsFilesAndFailedEngines) {
    SelectionFixture fixture;
    for (const std::size_t boxes : {1U, 2U}) {  // without the file, and with an empty one
        fixture.selection.selectFailedEngines();
        ASSERT_EQ(fixture.prompts.shown.size(), boxes);
        EXPECT_EQ(fixture.prompts.last().title, "Load Engines");
        EXPECT_EQ(fixture.prompts.last().text, "Failed engine list is empty.");
        fixture.home.write("fail.eng", "");
    }
    fixture.home.write("fail.eng", "Gamma\r\n");
    fixture.selection.selectFailedEngines();
    EXPECT_EQ(fixture.selected(), "G");

    fixture.prompts.files.push_back({fixture.home.write("mine.eng", "Odd\r\n"), 1});
    fixture.selection.loadSelection();
    fixture.selection.loadSelection();  // cancelled
    EXPECT_EQ(fixture.selected(), "GO");
}

TEST(EnginesMenuTest, ExportsThePage) {
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
