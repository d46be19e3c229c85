// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "pagetools/FindingRule.h"
#include "pagetools/HtmlPage.h"

#include <array>

namespace relay {

namespace {

class ImageAlt final : public FindingRule {
  public:
    ImageAlt()
        : FindingRule({"image-alt", Severity::Warning,
                       "Search engines and screen readers know an image by its alt text only.",
                       "Say in the alt text what the image shows; write alt=\"\" for mere decoration."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& image : page.html.elements(GUMBO_TAG_IMG))
            if (!image.has("alt"))
                sink.add(image.line(), "An image without alt text: " + inQuotes(image.attribute("src")));
    }
};

class MixedContent final : public FindingRule {
  public:
    MixedContent()
        : FindingRule({"mixed-content", Severity::Error,
                       "Browsers refuse or upgrade what a secure page loads over http, so parts of the page "
                       "go missing.",
                       "Load it over https."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        if (!isSecure(page)) return;
        struct Place final {
            GumboTag tag;
            const char* attribute;
        };
        constexpr std::array kPlaces = {
            Place{GUMBO_TAG_IMG, "src"},      Place{GUMBO_TAG_SCRIPT, "src"},  Place{GUMBO_TAG_IFRAME, "src"},
            Place{GUMBO_TAG_FRAME, "src"},    Place{GUMBO_TAG_AUDIO, "src"},   Place{GUMBO_TAG_VIDEO, "src"},
            Place{GUMBO_TAG_VIDEO, "poster"}, Place{GUMBO_TAG_SOURCE, "src"},  Place{GUMBO_TAG_TRACK, "src"},
            Place{GUMBO_TAG_EMBED, "src"},    Place{GUMBO_TAG_OBJECT, "data"}, Place{GUMBO_TAG_INPUT, "src"},
            Place{GUMBO_TAG_FORM, "action"}};
        for (const Place& place : kPlaces)
            for (const HtmlElement& element : page.html.elements(place.tag))
                test(element, element.attribute(place.attribute), sink);
        for (const HtmlElement& link : page.html.elements(GUMBO_TAG_LINK))
            for (const std::string_view loaded : {"stylesheet", "icon", "preload", "manifest"})
                if (containsNoCase(link.attribute("rel"), loaded)) {
                    test(link, link.attribute("href"), sink);
                    break;
                }
    }

  private:
    // A local file, or a copy of the page on a test server, is as secure as the address it will have.
    static bool isSecure(const CheckedPage& page) {
        if (startsWithNoCase(page.address, "https://")) return true;
        for (const HtmlElement& link : page.html.elements(GUMBO_TAG_LINK))
            if (equalsNoCase(trim(link.attribute("rel")), "canonical"))
                return startsWithNoCase(trim(link.attribute("href")), "https://");
        return false;
    }
    static void test(const HtmlElement& element, std::string_view address, FindingSink& sink) {
        if (startsWithNoCase(trim(address), "http://"))
            sink.add(element.line(), "Loaded over http: " + inQuotes(trim(address)));
    }
};

}  // namespace

void addContentRules(Rules& rules) {
    addRules<ImageAlt, MixedContent>(rules);
}

}  // namespace relay
