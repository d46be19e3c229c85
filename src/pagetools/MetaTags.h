// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Reads and writes the head of a page by plain searches, without regard to case; nothing here parses HTML.
// Positions count from 1 and have 16 bits, as pages have always been read: a marker found beyond character
// 32,767 throws Failure 6 "Overflow". Every function takes time proportional to the page.
namespace relay {

// What a page says about itself.
struct MetaTags final {
    std::string title;
    std::string keywords;
    std::string description;
};

// What can be read of a page.
struct PageTexts final {
    MetaTags tags;
    std::string body;  // the visible text, on one line
};

// Reads the page. A member of `page.tags` keeps its value when the page has nothing for it. Positions are
// relative to the place already read, so only a gap between two tags overflows, or a title beyond it; what
// was found before stays in `page`.
void retrieveMetaTag(std::string_view html, PageTexts& page);

// What to write into a page.
struct MetaTagChange final {
    enum class Way {
        Insert,   // add the new texts in front of the old ones
        Replace,  // overwrite the old ones
    };
    MetaTags tags;
    Way way = Way::Insert;
    bool titleOnTop = false;  // of Replace: the title becomes the first line of the head
};

// The changed page, which always has one line break more at its end than before.
std::string changedPage(std::string_view html, const MetaTagChange& change);

enum class HtmlPart : std::int16_t { Whole = 0, Head = 1, Body = 2 };
// The part of the page with its tags; empty when a tag is missing or they are in the wrong order.
std::string_view htmlSection(std::string_view html, HtmlPart part);

}  // namespace relay
