// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "pagetools/FindingRule.h"
#include "pagetools/HtmlPage.h"
#include "pagetools/TextWidth.h"

#include <optional>

namespace relay {

namespace {

// A text of the page that search results show.
struct ShownText final {
    std::string text;
    std::size_t line = 1;
};

std::optional<ShownText> titleOf(const HtmlPage& page) {
    const auto& titles = page.elements(GUMBO_TAG_TITLE);
    if (titles.empty()) return std::nullopt;
    return ShownText{titles.front().text(), titles.front().line()};
}

std::optional<ShownText> descriptionOf(const HtmlPage& page) {
    for (const HtmlElement& meta : page.elements(GUMBO_TAG_META))
        if (equalsNoCase(trim(meta.attribute("name")), "description"))
            return ShownText{std::string(trim(meta.attribute("content"))), meta.line()};
    return std::nullopt;
}

bool hasText(const std::optional<ShownText>& shown) {
    return shown && !shown->text.empty();
}

void checkLength(const std::optional<ShownText>& shown, FindingSink& sink) {
    if (!hasText(shown)) return;
    const auto length = static_cast<int>(characterCount(shown->text));
    const int minimum = sink.bound("Minimum");
    const int maximum = sink.bound("Maximum");
    if (length < minimum)
        sink.add(shown->line, std::to_string(length) + " characters, fewer than " + std::to_string(minimum) +
                                  ": " + inQuotes(shown->text));
    if (length > maximum)
        sink.add(shown->line, std::to_string(length) + " characters, more than " + std::to_string(maximum) +
                                  ": " + inQuotes(shown->text));
}

void checkWidth(const std::optional<ShownText>& shown, FindingSink& sink) {
    if (!hasText(shown)) return;
    const int width = textWidth(shown->text, sink.bound("PixelSize"));
    const int maximum = sink.bound("Maximum");
    if (width > maximum)
        sink.add(shown->line, std::to_string(width) + " pixels wide, more than " + std::to_string(maximum) +
                                  ": " + inQuotes(shown->text));
}

class TitleMissing final : public FindingRule {
  public:
    TitleMissing()
        : FindingRule({"title-missing", Severity::Error,
                       "The title is the link that people click in search results; without one, search "
                       "engines make one up.",
                       "Put one title element with a few words on the page's subject into the head."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto title = titleOf(page.html);
        if (!title)
            sink.add(1, "The page has no title");
        else if (title->text.empty())
            sink.add(title->line, "The title is empty");
    }
};

class TitleTwice final : public FindingRule {
  public:
    TitleTwice()
        : FindingRule({"title-twice", Severity::Error,
                       "Only the first title counts; the others show that two parts of a site write the "
                       "head.",
                       "Leave one title element."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto& titles = page.html.elements(GUMBO_TAG_TITLE);
        for (std::size_t i = 1; i < titles.size(); ++i)
            sink.add(titles[i].line(), "Another title: " + inQuotes(titles[i].text(kQuoted + 1)));
    }
};

class TitleLength final : public FindingRule {
  public:
    TitleLength()
        : FindingRule({"title-length",
                       Severity::Warning,
                       "A title of one word says too little, and the end of a long one is cut off.",
                       "Write a title within the bounds, with the important words first.",
                       {{"Minimum", 15}, {"Maximum", 65}}}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        checkLength(titleOf(page.html), sink);
    }
};

class TitleWidth final : public FindingRule {
  public:
    TitleWidth()
        : FindingRule({"title-width",
                       Severity::Warning,
                       "Search results cut a title by its width, not by its letters.",
                       "Shorten the title, or move its less important words to the end.",
                       {{"Maximum", 580}, {"PixelSize", 20, 1, 100}}}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        checkWidth(titleOf(page.html), sink);
    }
};

class DescriptionMissing final : public FindingRule {
  public:
    DescriptionMissing()
        : FindingRule({"description-missing", Severity::Warning,
                       "The description is the text below the link in search results; without one, search "
                       "engines pick a piece of the page.",
                       "Add a meta description of one or two sentences that invite to the page."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto description = descriptionOf(page.html);
        if (!description)
            sink.add(1, "The page has no description");
        else if (description->text.empty())
            sink.add(description->line, "The description is empty");
    }
};

class DescriptionLength final : public FindingRule {
  public:
    DescriptionLength()
        : FindingRule({"description-length",
                       Severity::Notice,
                       "A short description wastes the place in search results, and a long one is cut off.",
                       "Write a description within the bounds.",
                       {{"Minimum", 50}, {"Maximum", 160}}}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        checkLength(descriptionOf(page.html), sink);
    }
};

class DescriptionWidth final : public FindingRule {
  public:
    DescriptionWidth()
        : FindingRule({"description-width",
                       Severity::Notice,
                       "Search results show about two lines of a description and cut the rest.",
                       "Shorten the description, or say the important things first.",
                       {{"Maximum", 990}, {"PixelSize", 14, 1, 100}}}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        checkWidth(descriptionOf(page.html), sink);
    }
};

class HeadingCount final : public FindingRule {
  public:
    HeadingCount()
        : FindingRule({"h1-count",
                       Severity::Warning,
                       "The h1 heading says what a page is about, to readers, screen readers and search "
                       "engines alike.",
                       "Give the page one h1 heading and use h2 to h6 below it.",
                       {{"Minimum", 1}, {"Maximum", 1}}}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto& headings = page.html.elements(GUMBO_TAG_H1);
        const auto count = static_cast<int>(headings.size());
        if (count < sink.bound("Minimum"))
            sink.add(1, count == 0 ? "The page has no h1 heading"
                                   : "The page has " + std::to_string(count) + " h1 headings, fewer than " +
                                         std::to_string(sink.bound("Minimum")));
        for (std::size_t i = static_cast<std::size_t>(sink.bound("Maximum")); i < headings.size(); ++i)
            sink.add(headings[i].line(), "h1 heading number " + std::to_string(i + 1) + ": " +
                                             inQuotes(headings[i].text(kQuoted + 1)));
    }
};

class HeadingEmpty final : public FindingRule {
  public:
    HeadingEmpty()
        : FindingRule({"h1-empty", Severity::Notice,
                       "A heading without words says nothing; one with an image needs its alt text.",
                       "Write the heading as text, or give its image an alt text."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& heading : page.html.elements(GUMBO_TAG_H1))
            if (heading.text(0).empty()) sink.add(heading.line(), "The h1 heading has no text");
    }
};

}  // namespace

void addTextRules(Rules& rules) {
    addRules<TitleMissing, TitleTwice, TitleLength, TitleWidth, DescriptionMissing, DescriptionLength,
             DescriptionWidth, HeadingCount, HeadingEmpty>(rules);
}

}  // namespace relay
