// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/FormHints.h"
#include "catalogue/FormScraper.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "support/CaseTable.h"
#include "support/GoldenCases.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace relay::test {

namespace {

// Every folder under scraper/ has a page, page.html; the form source, source.txt; the rows, rows.txt, as
// "name|value|why|suggestion|its reason"; and the Query, query.txt. RELAY_GOLDEN_UPDATE writes them instead.
class ScraperGoldenTest : public testing::TestWithParam<std::string> {
  protected:
    void compare(const char* name, const std::string& text) const {
        const std::string file = TEST_FOLDER "/scraper/" + GetParam() + "/" + name;
        if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr) writeFile(file, text);
        EXPECT_EQ(text, readFile(file)) << name;
    }
    const std::string m_page = readFile(TEST_FOLDER "/scraper/" + GetParam() + "/page.html");
};

std::string rowsOf(const ScrapedForm& form, const std::vector<FieldHint>& hints) {
    std::string rows = (form.found ? form.method : "no form") + "|" + form.action + "\n";
    for (const FormField& field : form.fields) {
        rows += field.name + "|" + field.value + "|" + std::string(reasonName(field.why));
        for (const FieldHint& hint : hints) {
            if (!equalsNoCase(hint.name, field.name) || !field.value.empty()) continue;
            const FieldSuggestion suggestion = suggestValue(hint);
            rows += "|" + suggestion.value + "|" + std::string(reasonName(suggestion.why));
        }
        rows += "\n";
    }
    return rows;
}

// The form source by the rules one after the other, as slow as they are.
std::string slowSource(const std::string& html) {
    const auto find = [](const std::string& text, std::string_view what, std::size_t from) {
        return findNoCase(text, what, from);
    };
    std::string source;
    std::size_t p = find(html, "<form ", 0);
    if (p == npos) return html;
    while (p != npos) {
        if (const std::size_t g = html.find('>', p); g != npos) source += html.substr(p, g + 1 - p) + "\r\n";
        std::size_t e = find(html, "</form>", p);
        const std::string form = e == npos ? html.substr(p) : html.substr(p, e + 7 - p);
        if (e == npos) e = p + 5;
        const std::size_t next = find(html, "<form ", e);
        struct Kind final {
            std::string_view start, end;
            std::size_t at;
        };
        Kind kinds[] = {{"<input", ">", 0}, {"<textarea", "</textarea>", 0}, {"<select", "</select>", 0}};
        for (Kind& kind : kinds) kind.at = find(form, kind.start, 0);
        for (bool any = true; any;) {
            any = false;
            for (Kind& kind : kinds) {
                if (kind.at == npos) continue;
                const std::size_t g = find(form, kind.end, kind.at);
                if (g != npos) source += form.substr(kind.at, g + kind.end.size() - kind.at) + "\r\n";
                kind.at = g == npos ? npos : find(form, kind.start, g);
                any = true;
            }
        }
        source += "=============================\r\n";
        p = next;
    }
    return source;
}

}  // namespace

TEST_P(ScraperGoldenTest, GoesFromPageToQuery) {
    const std::string source = extractFormSource(m_page);
    compare("source.txt", source);
    const ScrapedForm form = readForm(source);
    compare("rows.txt", rowsOf(form, readFieldHints(m_page)));
    compare("query.txt", buildQuery(form.fields) + "\n");
}

// A page cut anywhere: the source is that of the slow rules, and every row has a name of its own.
TEST_P(ScraperGoldenTest, ReadsAPageCutAtEveryByte) {
    for (std::size_t length = 0; length <= m_page.size(); ++length) {
        const std::string page = m_page.substr(0, length);
        const std::string source = extractFormSource(page);
        ASSERT_EQ(source, slowSource(page)) << length;
        for (const std::string& text : {source, page, source.substr(0, length / 2)}) {
            std::set<std::string> names;
            for (const FormField& field : readForm(text).fields)
                ASSERT_TRUE(!field.name.empty() && names.insert(toLower(field.name)).second);
        }
        for (const FieldHint& hint : readFieldHints(page)) ASSERT_FALSE(hint.name.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, ScraperGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/scraper")),
                         goldenName);

TEST(ScraperTest, PlaysTheCases) {
    playCases(TEST_FOLDER "/cases/scraper",
              {{"value", [](const auto& in) { return getFieldValue(in.at(0), in.at(1)); }},
               {"query", [](const auto& in) { return buildQuery(splitQuery(in.at(0))); }},
               {"suggestion",
                [](const auto& in) {
                    return suggestValue({"x", in.at(0), in.size() > 1 ? in[1] : ""}).value;
                }},
               {"difference", [](const auto& in) {
                    return joined(compareWithStored({"post", "http://x.example/", in.at(0)},
                                                    readForm(extractFormSource(in.at(1)))));
                }}});
}

// Pages of forms that are never closed would repeat the rest of the page without end.
TEST(ScraperTest, StaysSmallOnHostilePages) {
    const auto times = [](std::string_view text, int count) {
        std::string page;
        for (int i = 0; i < count; ++i) page += text;
        return page;
    };
    const std::string pages[] = {times("<form ", 200'000),
                                 times("<form <input>", 100'000),
                                 times("<form ><textarea><select>", 50'000),
                                 times("<form></form>", 100'000),
                                 times("<form > <input name=a ", 100'000) + ">",
                                 "<form >" + times("<select></textarea><input", 100'000)};
    for (const std::string& page : pages) {
        const std::string source = extractFormSource(page);
        EXPECT_LT(source.size(), 32u * 1024 * 1024);
        EXPECT_LE(readForm(source).fields.size(), 2u);
        EXPECT_LE(readFieldHints(page).size(), 2u);
    }
    std::string many = "<form action=http://x.example/ method=post>";
    for (int i = 0; i < 100'000; ++i) many += "<input name=field" + std::to_string(i) + " size=20>\r\n";
    EXPECT_EQ(readForm(extractFormSource(many + "</form>")).fields.size(), 100'000u);
}

}  // namespace relay::test
