// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineListPage.h"

#include "catalogue/EngineCollection.h"
#include "core/Text.h"

#include <array>

namespace relay {

namespace {

struct Group final {
    std::string_view type;
    std::string_view title;
    std::string_view closer;
    bool evenWhenEmpty;
};

constexpr std::string_view kCloser = "</ol></font></td></tr>";

// The last group takes all other types.
constexpr std::array<Group, 7> kGroups{{
    {"ENG", "General Engines", kCloser, true},
    {"DIR", "Directories", "</ol></font></font></td></tr>", true},
    {"FFA", "Free For All Links", kCloser, true},
    {"NEWS", "News & Media", kCloser, false},
    {"HOT", "Hot Sites", kCloser, false},
    {"MALL", "Online Malls", kCloser, false},
    {"", "Miscellenous", kCloser, false},
}};

std::size_t groupOf(std::string_view type) noexcept {
    std::size_t group = 0;
    while (group + 1 < kGroups.size() && !equalsNoCase(type, kGroups[group].type)) ++group;
    return group;
}

}  // namespace

std::string engineListPage(const EngineCollection& engines) {
    std::array<std::string, kGroups.size()> items;
    for (const clsEngines& engine : engines) {
        items[groupOf(engine.EngineType())].append("<li>").append(engine.name()).append("</li>\r\n");
    }
    std::string page =
        "<html><body>\r\n"
        "<h3><font face=arial color=#FF0000>Korvel Relay Manager Engine List</font></h3>\r\n"
        "<br><table border = 0 width=580 cellspacing=0>\r\n";
    for (std::size_t group = 0; group < kGroups.size(); ++group) {
        if (items[group].empty() && !kGroups[group].evenWhenEmpty) continue;
        page.append("<tr><td bgcolor=#0080C0><font face=arial color=#FFFFFF><b>")
            .append(kGroups[group].title)
            .append("</b></font></td></tr>\r\n<tr><td><font face=arial size=2><ol>")
            .append(items[group])
            .append(kGroups[group].closer);
    }
    page +=
        "</table><br>\r\n"
        "<hr align=left width=500 size=1>\r\n"
        "<font face=arial size=1>Made by Korvel Relay. Brenmoor Pty Ltd.</font></body></html>\r\n";
    return page;
}

}  // namespace relay
