// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Countries.h"
#include "catalogue/clsEngines.h"
#include "core/Failure.h"
#include "core/IniFile.h"
#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"
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

// Expands a template for the website above; tests change what they need.
struct Expansion final {
    TestHome home;
    Countries countries{home.paths()};
    IniFile file = IniFile::parse(kWebsite);
    WebDetails web = readWebDetails("http://tea.test/?a=1", file);
    std::string record;
    std::string table;
    EngineTexts texts{};
    clsEngines engine{texts};
    bool blockSpam = false;

    Expansion() { home.write("country.kws", "[Country Name]\nUnited Kingdom=UK\n[Country Code]\nUK=x\n"); }
    void set(EngineKey key, std::string_view value) {
        std::string& text = key == EngineKey::CategoryData ? table : record;
        const std::size_t start = text.size();
        text += value;
        texts = {record, table};
        engine.set(key, std::string_view(text).substr(start));
    }
    std::string of(std::string_view query) {
        set(EngineKey::Query, query);
        return expandQuery({engine, web, file, countries, blockSpam});
    }
};

struct Case final {
    std::string_view query;
    std::string_view expected;
};

TEST(TemplateTest, FillsInEveryMacro) {
    Expansion expansion;
    expansion.set(EngineKey::Name, "cat");
    for (const Case& c : std::vector<Case>{
             {"a=<TITLE>", "a=Tea+%26+Cups%2C+a+shop+for+all+who+like+their+tea+hot+and+their+cups+of+china"},
             {"<keyword>|<Keywords>", "tea%252C%2Bcups|tea%252C%2Bcups"},
             {"<description>", "Tea\t%3Chot%3E+and++coldtoo"},
             {"<url>", "http%3A%2F%2Ftea.test%2F%3Fa%3D1"},
             {"<category>,<subcategory>", "Shops+%26+Malls,Shops+%26+Malls"},
             {"<customcategory>", "Food+%26+Drink"},
             {"<spaceid>", "1&Hull"},
             {"<name>|<fullname>|<firstname>|<lastname>", "Ann+Lee+Fox|Ann+Lee+Fox|Ann|Lee+Fox"},
             {"<email>", "ann@tea.test"},
             {"<company>|<address>|<city>", "Tea+%2B+Co|1+Hill+St.|Hull"},
             {"<postcode>|<state>|<country>|<countrycode>", "HU1+2AB|York%27s|United+Kingdom|UK"},
             {"<phone>|<fax>|<language>", "%2B44+%280%291|%7E2|English%252FUS"},
             {"<webtype>|<password>|<entryby><entryurl>", "Commercial+Site|p@ss%3Bw%3Drd|"},
             // Not a macro, or not a template.
             {"a=1&b=2", ""},
             {"", ""},
             {"c=<foo>&d=<a b>", "c=foo&d=a b"},
             {"a=<city>&b=<", "a=Hull&b=<"},
             {"a=<city>&b=<>&c=<city>", "a=Hull&b=<>&c=<city>"},
             {"x>y<city>", "x>yHull"},
             // A "<" inside a macro makes it a different macro.
             {"<a<city>", "a<city"},
         })
        EXPECT_EQ(expansion.of(c.query), c.expected) << c.query;
}

TEST(TemplateTest, CutsTheEncodedText) {
    Expansion expansion;
    expansion.set(EngineKey::MaxTitle, "5");
    expansion.set(EngineKey::MaxKeywords, "4");
    expansion.set(EngineKey::MaxDescriptions, "6");
    EXPECT_EQ(expansion.of("<title>|<keyword>|<description>"), "Tea+%|tea%|Tea\t%3");
    expansion.set(EngineKey::EngineType, "ffa");
    expansion.set(EngineKey::MaxTitle, "0");
    EXPECT_EQ(expansion.of("<title>").size(), 60U);
    expansion.set(EngineKey::MaxTitle, "-3");
    EXPECT_EQ(expansion.of("<title>").size(), 60U);
    expansion.set(EngineKey::MaxTitle, "65");
    EXPECT_EQ(expansion.of("<title>").size(), 65U);
    expansion.set(EngineKey::Category, "c");
    EXPECT_EQ(expansion.of("<title>"), "Tea+%2B+Co");
}

TEST(TemplateTest, DisguisesTheMailboxForFreeForAllPages) {
    struct Disguise final {
        bool blockSpam;
        int blockFFA;
        std::string_view type;
        std::string_view email;
        std::string_view expected;
    };
    for (const Disguise& d : std::vector<Disguise>{
             {false, 0, "FFA", "a@b.test", "a@b.test"},
             {true, 0, "ENG", "a@b.test", "a@b.test"},
             {true, 0, "ffa", "a@b.test", "nospam_a@nospam-b.test"},
             {false, 1, "FFA", "a@b@c", "nospam_a@nospam-b@c"},
             {false, -1, "FFA", " ab ", "nospam_ab.NOSPAM"},
         }) {
        Expansion expansion;
        expansion.blockSpam = d.blockSpam;
        expansion.web.BlockFFA = static_cast<std::int16_t>(d.blockFFA);
        expansion.web.Email = d.email;
        expansion.set(EngineKey::EngineType, d.type);
        EXPECT_EQ(expansion.of("<email>"), d.expected) << d.type << d.email;
    }
}

TEST(TemplateTest, EndsWhenValuesContainMacros) {
    Expansion expansion;
    expansion.set(EngineKey::Name, "Open");  // its macro is closed by the text after it
    EXPECT_EQ(expansion.of("<spaceid>tle>"), expansion.of("<title>"));
    for (const std::string_view name : {"Loop", "Grow"}) {
        expansion.set(EngineKey::Name, name);
        EXPECT_THROW(expansion.of("a=<spaceid>"), Failure) << name;
    }
}

TEST(TemplateTest, LooksUpCodedLists) {
    struct Lookup final {
        std::string_view data, key, fallback, expected;
    };
    const std::string_view table = "Shops=12>Business Shops= 7 >Arts=A=1>Other=99>";
    for (const Lookup& l : std::vector<Lookup>{
             {"", " Shops ", "x", " Shops "},
             {table, "shops", "", "12"},
             {table, "ness shops", "", "7"},
             {table, "Arts", "", "A=1"},
             {table, "12", "", "12"},  // found in a value: no "=" before the entry's end
             {table, "Cars", "Arts and Crafts", "A=1"},
             {table, "Cars", "Planes", "99"},
             {table, "Cars", "", "99"},
             {table, "", "Arts", "12"},  // an empty key is found at once
             {"Arts=1>", " Cars ", "Ships x", "Other"},
             {"Arts=1>", "Cars", "", "Other"},
             {"Arts=1", "Arts", "", "Arts"},  // the entry is not closed
             {"Arts>Cars=2>", "Arts", "", "Arts"},
         })
        EXPECT_EQ(getSearchString(l.data, l.key, '>', l.fallback), l.expected) << l.data << " " << l.key;
    Expansion expansion;
    expansion.set(EngineKey::CategoryData, "Business=Trade & Co>");
    EXPECT_EQ(expansion.of("<category>"), "Trade+%26+Co");
}

TEST(ResultTest, ClassAndWordOfEveryCode) {
    struct Reply final {
        int code, result;
        std::string_view word;
    };
    for (const Reply& r : std::vector<Reply>{
             {200, 2, "Success"},
             {404, 2, "Success"},
             {498, 2, "Success"},
             {499, 3, "Failed"},
             {500, 14, "Server Error"},
             {599, 14, "Server Error"},
             {600, 13, "Unknown Error"},
             {10100, 10, "Server Error"},
             {10200, 4, "Submission Timeout"},
         }) {
        EXPECT_EQ(classifyReply(r.code), r.result) << r.code;
        EXPECT_EQ(resultWord(classifyReply(r.code)), r.word) << r.code;
    }
    for (const std::int16_t outside : {std::int16_t{-1}, std::int16_t{0}, std::int16_t{1}, std::int16_t{15}})
        EXPECT_EQ(resultWord(outside), "Unknown Error");
}

}  // namespace

}  // namespace relay::test
