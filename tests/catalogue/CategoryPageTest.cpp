// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CategoryPage.h"
#include "support/CaseTable.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

const DirectoryHosts kHosts{"add.test", "http://dmoz.test"};

std::string shown(const std::vector<CategoryLink>& rows) {
    std::string text;
    for (const CategoryLink& row : rows) text += " " + row.label + ":" + row.target;
    return text;
}

std::string shownPage(const std::string& engine, const std::string& path, const std::string& html) {
    const CategoryPage page = readCategoryPage(html, {engine, path, kHosts, true});
    std::string text = shown(page.rows);
    if (page.spaceID) text += " id " + *page.spaceID;
    if (!page.nextUrl.empty()) text += " next " + page.nextUrl;
    return text.empty() ? text : text.substr(1);
}

}  // namespace

TEST(CategoryPageTest, PlaysTheCases) {
    playCases(TEST_FOLDER "/cases/categories",
              {{"parts",
                [](const auto& in) {
                    const std::string url = in.empty() ? "" : in[0];
                    return getString(url, UrlPart::Up) + "; " + getString(url, UrlPart::Last);
                }},
               {"spaceid", [](const auto& in) { return getSpaceID(in.at(0)); }},
               {"dmozid",
                [](const auto& in) {
                    const auto id = getDmozID(in.at(0));
                    return id ? id->empty() ? "\"\"" : *id : "none";
                }},
               {"menu",
                [](const auto& in) {
                    const CategoryMenu menu = readCategoryMenu(in.at(0), in.at(1) == "No");
                    return menu.url + shown(menu.rows);
                }},
               {"page", [](const auto& in) { return shownPage(in.at(0), in.at(1), in.at(2)); }}});
}

// Anchors that are never closed have everything behind them as their text.
TEST(CategoryPageTest, ReadsLargeAndHostilePages) {
    constexpr std::size_t kPage = 10'000'000;
    const auto filled = [](std::string_view part, std::string_view end) {
        std::string page;
        while (page.size() < kPage) page += part;
        return page.append(end);
    };
    EXPECT_EQ(readCategoryPage(filled("<a href=\"a/\"><b>A</b></a>\n", ""), {"dir", "", kHosts}).rows.size(),
              100'000u);
    for (const std::string_view part : {"<a href=", "<a href=x>", "<a href=x><b>y", "<a href=\"/fast/add?"}) {
        EXPECT_EQ(readCategoryPage(filled(part, ""), {"dmoz", "/a", kHosts}).rows.size(), 0u);
        EXPECT_LE(readCategoryPage(filled(part, "></a>"), {"dmoz", "", kHosts}).rows.size(), 10u);
    }
}

}  // namespace relay::test
