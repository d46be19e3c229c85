// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Reads the categories of an outside directory: the menu that the catalogue has of it, and its live pages.
// All by plain searches without regard to case.
namespace relay {

// A row: what the user sees, and where it leads.
struct CategoryLink final {
    std::string label;
    std::string target;
};

// The menu of a directory in its category table.
struct CategoryMenu final {
    std::string url;                 // of the directory's root; empty when the table has none
    std::vector<CategoryLink> rows;  // targets begin with "/"
};
CategoryMenu readCategoryMenu(std::string_view categoryData, bool refusesAdultSites);

// The hosts of the two directories whose pages have add links of their own.
struct DirectoryHosts final {
    std::string yahooAdd;  // HOST or HOST:PORT, in front of "/fast/add?"
    std::string dmoz;      // what is put in front of an add link, scheme included
};

// What a page is read for.
struct CategoryPageWish final {
    std::string_view engine;       // the directory's name in the catalogue
    std::string_view currentPath;  // of the main category
    const DirectoryHosts& hosts;
    bool refusesAdultSites = false;
};
// Only relative links make rows, at most 100,000.
struct CategoryPage final {
    std::vector<CategoryLink> rows;
    std::optional<std::string> spaceID;  // of an add link of Yahoo
    std::string nextUrl;                 // the add page of dmoz; empty without one
};
CategoryPage readCategoryPage(std::string_view html, const CategoryPageWish& wish);

// The query of an add link: `link` is what stands behind "href=".
std::string getSpaceID(std::string_view link);
// The identifier on the add page of dmoz; a quote at its start stays. Nothing when the page has none.
std::optional<std::string> getDmozID(std::string_view html);

enum class UrlPart : std::uint8_t { Up, Last };
// What stands in front of the last "/" of an address, or behind it; a "/" at its end is ignored. Empty
// without a "/".
std::string getString(std::string_view url, UrlPart part);

}  // namespace relay
