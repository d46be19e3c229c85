// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Countries.h"
#include "catalogue/EngineFields.h"
#include "catalogue/clsEngines.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"
#include "support/CaseTable.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

constexpr std::string_view kWebsite =
    "[Web Site Info]\r\nTitle=Tea & Cups, a shop for all who like their tea hot and their cups of china\r\n"
    "Keyword=tea, cups\r\nDescription=Tea\t<hot>  and   cold      too\r\nWebType=Commercial Site\r\n"
    "Language=English/US\r\nMainCategory=Business and Finance\r\nCategory=Shops & Malls\r\n"
    "YourName=Ann Lee Fox\r\nEmail=ann@tea.test\r\nCompany=Tea + Co\r\nAddress=1 Hill St.\r\nCity=Hull\r\n"
    "postcode=HU1 2AB\r\nState=York\"s\r\nCountry=United Kingdom\r\nPhone=+44 (0)1\r\nFax=~2\r\n"
    "Password=p@ss;w=rd\r\nBlockFFA=0\r\n"
    "[CustomEngineCategory]\r\nCat=Food & Drink\r\nCatSpaceID=1&<City>\r\nLoopSpaceID=<spaceid>\r\n"
    "GrowSpaceID=ab<SpaceID><spaceid>\r\nOpenSpaceID=<ti\r\n";

using Inputs = std::vector<std::string>;

// Expands a template for the website above. What differs is "key=value;...": keys of the engine's record, of
// the settings, or of the website.
std::string expand(const Inputs& in) {
    const TestHome home;
    home.write("country.kws", "[Country Name]\nUnited Kingdom=UK\n[Country Code]\nUK=x\n");
    const Countries countries{home.paths()};
    const IniFile file = IniFile::parse(kWebsite);
    WebDetails web = readWebDetails("http://tea.test/?a=1", file);
    bool blockSpam = false;
    // The engine's values are views of the one text.
    const std::string record = in[0] + ";Query=" + in[1];
    const EngineTexts texts{record, record};
    clsEngines engine{texts};
    for (std::string_view rest = record; !rest.empty();) {
        const bool last = rest.starts_with("Query=");
        const std::string_view pair = last ? rest : rest.substr(0, rest.find(';'));
        rest.remove_prefix(last ? rest.size() : pair.size() + 1);
        const std::string_view key = pair.substr(0, pair.find('='));
        const std::string_view value = pair.substr(std::min(pair.size(), key.size() + 1));
        if (key == "BlockSpam") blockSpam = true;
        if (key == "BlockFFA") web.BlockFFA = toInt16(leadingNumber(value));
        if (key == "Email") web.Email = value;
        for (const EngineField& field : EngineFields)
            if (equalsNoCase(field.name, key)) engine.set(field.key, value);
    }
    return expandQuery({engine, web, file, countries, blockSpam});
}

TEST(TemplateTest, FollowsItsTable) {
    playCases(TEST_FOLDER "/cases/template.txt",
              {{"expand", expand},
               {"getSearchString",
                [](const Inputs& in) { return std::string(getSearchString(in[0], in[1], '>', in[2])); }},
               {"classifyReply",
                [](const Inputs& in) {
                    const auto result = classifyReply(std::stoi(in[0]));
                    return std::to_string(result) + " " + std::string(resultWord(result));
                }},
               {"resultWord", [](const Inputs& in) {
                    return std::string(resultWord(static_cast<std::int16_t>(std::stoi(in[0]))));
                }}});
}

}  // namespace

}  // namespace relay::test
