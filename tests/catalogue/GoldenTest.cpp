// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueCheck.h"
#include "catalogue/EngineFields.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <sstream>

namespace relay::test {

namespace {

void dumpEngine(std::ostream& out, const clsEngines& engine) {
    out << engine.name() << "\n";
    for (const EngineField& field : EngineFields) {
        if (field.key == EngineKey::Name) continue;
        if (!clsEngines::isNumber(field.key)) {
            if (const auto text = engine.text(field.key); !text.empty())
                out << "  " << field.name << "=" << text << "\n";
        } else if (const auto number = engine.number(field.key); number != 0) {
            out << "  " << field.name << "=" << number << "\n";
        }
    }
}

std::string dump(const SessionFixture& fixture, bool loaded, const std::vector<Finding>& findings) {
    std::ostringstream out;
    out << (loaded ? "loaded" : "failed") << ", " << fixture.lists.lsvEngines.columnTitle(0) << "\n";
    for (const auto& shown : fixture.prompts.shown)
        out << "box " << shown.title << ": " << shown.text.substr(0, 34) << "\n";
    for (const TypeBox& box : fixture.lists.chkType) out << box.caption << "\n";
    out << "filter " << fixture.lists.countryFilter.text() << "\n";
    for (const std::string& country : texts(fixture.lists.lstCountry)) out << "country " << country << "\n";
    for (const std::string& name : fixture.lists.cboCustomEngines) out << "custom " << name << "\n";
    for (const clsEngines& engine : fixture.lists.engines) dumpEngine(out, engine);
    for (int place = 0; place < fixture.lists.lsvEngines.count(); ++place) {
        const RowView row = fixture.lists.lsvEngines.at(place);
        out << "row " << row.text << "|" << row.subItems.at(0) << "|" << row.subItems.at(1) << "|" << row.icon
            << "\n";
    }
    out << "log\n" << replaceAll(fixture.logText(), "\r\n", "\n") << "check\n";
    for (const Finding& finding : findings) {
        out << finding.line << " [" << finding.record << "] " << findingName(finding.kind) << ": "
            << finding.text << "\n";
    }
    return out.str();
}

// Every folder has the files of a home (krveng5.dat, and if needed catkws.dat, korvel.ini and country.kws)
// and the expected result of a load: expected.txt.
class CatalogueGoldenTest : public testing::TestWithParam<std::string> {};

TEST_P(CatalogueGoldenTest, LoadsAsExpected) {
    const std::filesystem::path folder = std::filesystem::path(TEST_FOLDER "/golden") / GetParam();
    SessionFixture fixture;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        fixture.home.write(name == "country.kws" ? name : "data/" + name, readFile(entry.path().string()));
    }
    fixture.preference.AcceptAdultSite =
        ReadIniValue(fixture.home.path("data/korvel.ini"), "Dealer", "AcceptAdultSite");

    const bool loaded = fixture.catalogue.loadEngineData();
    const auto findings =
        checkCatalogue(fixture.home.read("data/krveng5.dat"), fixture.catalogue.engineCategories,
                       fixture.preference.refusesAdultSites());
    EXPECT_EQ(dump(fixture, loaded, findings), readFile((folder / "expected.txt").string()));
}

INSTANTIATE_TEST_SUITE_P(Golden, CatalogueGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

}  // namespace

}  // namespace relay::test
