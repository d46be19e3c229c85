// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Keys.h"
#include "core/Text.h"
#include "core/Url.h"
#include "pagetools/FindingRule.h"
#include "pagetools/HtmlPage.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <unordered_map>

namespace relay {

namespace {

bool isWebAddress(std::string_view text) {
    return startsWithNoCase(text, "http://") || startsWithNoCase(text, "https://");
}

// Calls `take` with each word of a list separated by `separators`, blanks removed.
template <typename Take>
void forEachWord(std::string_view list, std::string_view separators, Take&& take) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find_first_of(separators), list.size());
        const std::string_view word = trim(list.substr(0, end));
        if (!word.empty()) take(word);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

bool hasRelation(const HtmlElement& link, std::string_view relation) {
    bool has = false;
    forEachWord(link.attribute("rel"), " \t\r\n",
                [&](std::string_view word) { has = has || equalsNoCase(word, relation); });
    return has;
}

std::vector<HtmlElement> linksOf(const HtmlPage& page, std::string_view relation) {
    std::vector<HtmlElement> links;
    for (const HtmlElement& link : page.elements(GUMBO_TAG_LINK))
        if (hasRelation(link, relation)) links.push_back(link);
    return links;
}

bool isNamed(const HtmlElement& meta, std::string_view name) {
    return equalsNoCase(trim(meta.attribute("name")), name);
}

// "en", "de-AT", "zh-Hant-TW": a language of two or three letters, then parts of one to eight letters and
// digits.
bool isLanguage(std::string_view text) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const std::size_t language = std::min(text.find('-'), text.size());
    if (language < 2 || language > 3) return false;
    if (!std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(language), isLetter))
        return false;
    std::string_view rest = text.substr(language);
    while (!rest.empty()) {
        rest.remove_prefix(1);
        const std::size_t end = std::min(rest.find('-'), rest.size());
        const auto known = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
        if (end < 1 || end > 8 ||
            !std::all_of(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(end), known))
            return false;
        rest.remove_prefix(end);
    }
    return true;
}

class CanonicalMissing final : public FindingRule {
  public:
    CanonicalMissing()
        : FindingRule({"canonical-missing", Severity::Notice,
                       "A page that can be reached by several addresses competes with itself; the canonical "
                       "link names the one that counts.",
                       "Add a link with rel=\"canonical\" and the page's own address to the head."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        if (linksOf(page.html, "canonical").empty()) sink.add(1, "The page has no canonical link");
    }
};

class CanonicalTwice final : public FindingRule {
  public:
    CanonicalTwice()
        : FindingRule({"canonical-twice", Severity::Error,
                       "Search engines ignore canonical links that contradict each other.",
                       "Leave one canonical link."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto links = linksOf(page.html, "canonical");
        for (std::size_t i = 1; i < links.size(); ++i)
            sink.add(links[i].line(), "Another canonical link: " + inQuotes(links[i].attribute("href")));
    }
};

class CanonicalAddress final : public FindingRule {
  public:
    CanonicalAddress()
        : FindingRule({"canonical-address", Severity::Warning,
                       "A canonical link counts only with a whole address.",
                       "Write the address with http:// or https:// and the host."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& link : linksOf(page.html, "canonical")) {
            const std::string_view address = trim(link.attribute("href"));
            if (address.empty())
                sink.add(link.line(), "The canonical link has no address");
            else if (!isWebAddress(address))
                sink.add(link.line(), "The canonical link is not a whole address: " + inQuotes(address));
        }
    }
};

class RobotsBlocked final : public FindingRule {
  public:
    RobotsBlocked()
        : FindingRule({"robots-noindex", Severity::Warning,
                       "A page that forbids its listing is not found, however good it is.",
                       "Remove noindex, none or nofollow from the robots tag if the page is to be found."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& meta : page.html.elements(GUMBO_TAG_META)) {
            if (!isNamed(meta, "robots") && !isNamed(meta, "googlebot") && !isNamed(meta, "bingbot"))
                continue;
            forEachWord(meta.attribute("content"), ", \t\r\n", [&](std::string_view word) {
                for (const std::string_view blocked : {"noindex", "nofollow", "none"})
                    if (equalsNoCase(word, blocked))
                        sink.add(meta.line(), "The tag " + inQuotes(trim(meta.attribute("name"))) + " says " +
                                                  inQuotes(word));
            });
        }
    }
};

class ViewportMissing final : public FindingRule {
  public:
    ViewportMissing()
        : FindingRule({"viewport-missing", Severity::Warning,
                       "Without a viewport tag phones show a page as wide as a desk's, in tiny letters, and "
                       "search engines rank what phones see.",
                       "Add <meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto& metas = page.html.elements(GUMBO_TAG_META);
        const auto isViewport = [](const HtmlElement& meta) { return isNamed(meta, "viewport"); };
        const auto found = std::find_if(metas.begin(), metas.end(), isViewport);
        if (found == metas.end())
            sink.add(1, "The page has no viewport tag");
        else if (!containsNoCase(found->attribute("content"), "width"))
            sink.add(found->line(),
                     "The viewport tag has no width: " + inQuotes(found->attribute("content")));
    }
};

class ViewportZoom final : public FindingRule {
  public:
    ViewportZoom()
        : FindingRule({"viewport-zoom", Severity::Notice,
                       "Readers with weak eyes cannot enlarge a page that forbids it.",
                       "Remove user-scalable and maximum-scale from the viewport tag."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& meta : page.html.elements(GUMBO_TAG_META)) {
            if (!isNamed(meta, "viewport")) continue;
            forEachWord(meta.attribute("content"), ",;", [&](std::string_view word) {
                const std::size_t sign = std::min(word.find('='), word.size());
                const std::string_view name = trim(word.substr(0, sign));
                const std::string_view value = trim(word.substr(std::min(sign + 1, word.size())));
                const bool fixed =
                    equalsNoCase(name, "user-scalable") && (equalsNoCase(value, "no") || value == "0");
                const bool limited = equalsNoCase(name, "maximum-scale") && leadingNumber(value) < 2;
                if (fixed || limited) sink.add(meta.line(), "The viewport tag says " + inQuotes(word));
            });
        }
    }
};

class Language final : public FindingRule {
  public:
    Language()
        : FindingRule({"lang", Severity::Warning,
                       "The language tells screen readers how to speak, and browsers and search engines whom "
                       "the page is for.",
                       "Write <html lang=\"en\"> with the code of the page's language."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto& roots = page.html.elements(GUMBO_TAG_HTML);
        if (roots.empty()) return;
        const std::string_view language = trim(roots.front().attribute("lang"));
        if (language.empty())
            sink.add(roots.front().line(), "The html tag names no language");
        else if (!isLanguage(language))
            sink.add(roots.front().line(),
                     "The html tag's language is no language code: " + inQuotes(language));
    }
};

class DuplicateMeta final : public FindingRule {
  public:
    DuplicateMeta()
        : FindingRule({"duplicate-meta", Severity::Warning,
                       "Of two tags of the same name only one counts, and not every search engine takes the "
                       "same one.",
                       "Leave one of them."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        constexpr std::array<std::string_view, 12> kOnce = {
            "description", "keywords", "robots", "viewport",       "charset",      "generator",
            "og:title",    "og:type",  "og:url", "og:description", "twitter:card", "referrer"};
        std::array<std::size_t, kOnce.size()> first{};
        for (const HtmlElement& meta : page.html.elements(GUMBO_TAG_META)) {
            std::string_view name = trim(meta.attribute("name"));
            if (name.empty()) name = trim(meta.attribute("property"));
            if (name.empty() && meta.has("charset")) name = "charset";
            for (std::size_t i = 0; i < kOnce.size(); ++i) {
                if (!equalsNoCase(name, kOnce[i])) continue;
                if (first[i] == 0)
                    first[i] = meta.line();
                else
                    sink.add(meta.line(), "The tag " + inQuotes(kOnce[i]) + " is in line " +
                                              std::to_string(first[i]) + " already");
            }
        }
    }
};

class OpenGraph final : public FindingRule {
  public:
    OpenGraph()
        : FindingRule({"open-graph", Severity::Notice,
                       "Social networks show a page that is shared by its Open Graph tags; without them they "
                       "guess its title and image.",
                       "Add meta tags with the properties og:title, og:type, og:image and og:url."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        std::string missing;
        for (const std::string_view wanted : {"og:title", "og:type", "og:image", "og:url"}) {
            const auto isWanted = [wanted](const HtmlElement& meta) {
                return (equalsNoCase(trim(meta.attribute("property")), wanted) || isNamed(meta, wanted)) &&
                       !trim(meta.attribute("content")).empty();
            };
            const auto& metas = page.html.elements(GUMBO_TAG_META);
            if (std::none_of(metas.begin(), metas.end(), isWanted))
                missing.append(missing.empty() ? "" : ", ").append(wanted);
        }
        if (!missing.empty()) sink.add(1, "Missing Open Graph tags: " + missing);
    }
};

std::vector<HtmlElement> structuredData(const HtmlPage& page) {
    std::vector<HtmlElement> scripts;
    for (const HtmlElement& script : page.elements(GUMBO_TAG_SCRIPT))
        if (equalsNoCase(trim(script.attribute("type")), "application/ld+json")) scripts.push_back(script);
    return scripts;
}

class StructuredDataMissing final : public FindingRule {
  public:
    StructuredDataMissing()
        : FindingRule(
              {"json-ld-missing", Severity::Notice,
               "Search engines show prices, ratings, dates and more of pages that say them in "
               "JSON-LD.",
               "Add a script of the type application/ld+json that describes what the page is about."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        if (structuredData(page.html).empty()) sink.add(1, "The page has no JSON-LD");
    }
};

class StructuredDataBroken final : public FindingRule {
  public:
    StructuredDataBroken()
        : FindingRule({"json-ld-broken", Severity::Error,
                       "JSON-LD with a mistake in it is ignored as a whole.",
                       "Mend the JSON at the line of the finding."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& script : structuredData(page.html)) {
            const std::string text = script.rawText();
            try {
                // Only looks whether it can be read; builds nothing, so deep nesting costs nothing.
                Reader reader;
                nlohmann::json::sax_parse(text, &reader);
                if (reader.failed)
                    sink.add(script.textLine() + linesBefore(text, reader.at), "The JSON-LD cannot be read");
                else if (!reader.typed)
                    sink.add(script.line(), "The JSON-LD names no \"@type\"");
            } catch (const nlohmann::json::exception&) {
                sink.add(script.line(), "The JSON-LD cannot be read");
            }
        }
    }

  private:
    struct Reader final : nlohmann::json_sax<nlohmann::json> {
        bool typed = false;
        bool failed = false;
        std::size_t at = 0;

        bool null() override { return true; }
        bool boolean(bool) override { return true; }
        bool number_integer(number_integer_t) override { return true; }
        bool number_unsigned(number_unsigned_t) override { return true; }
        bool number_float(number_float_t, const string_t&) override { return true; }
        bool string(string_t&) override { return true; }
        bool binary(binary_t&) override { return true; }
        bool start_object(std::size_t) override { return true; }
        bool key(string_t& name) override {
            typed = typed || name == "@type" || name == "@graph";
            return true;
        }
        bool end_object() override { return true; }
        bool start_array(std::size_t) override { return true; }
        bool end_array() override { return true; }
        bool parse_error(std::size_t position, const std::string&,
                         const nlohmann::detail::exception&) override {
            failed = true;
            at = position;
            return false;
        }
    };
    static std::size_t linesBefore(std::string_view text, std::size_t position) {
        const std::string_view before = text.substr(0, position > 0 ? position - 1 : 0);
        return static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    }
};

std::vector<HtmlElement> alternates(const HtmlPage& page) {
    std::vector<HtmlElement> links;
    for (const HtmlElement& link : linksOf(page, "alternate"))
        if (link.has("hreflang")) links.push_back(link);
    return links;
}

class AlternateInvalid final : public FindingRule {
  public:
    AlternateInvalid()
        : FindingRule({"hreflang-invalid", Severity::Error,
                       "Search engines pass over a language version whose code or address they cannot read.",
                       "Use a code such as \"en\", \"de-AT\" or \"x-default\", and a whole address."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        for (const HtmlElement& link : alternates(page.html)) {
            const std::string_view language = trim(link.attribute("hreflang"));
            const std::string_view address = trim(link.attribute("href"));
            if (!equalsNoCase(language, "x-default") && !isLanguage(language))
                sink.add(link.line(), "No language code: " + inQuotes(language));
            if (!isWebAddress(address))
                sink.add(link.line(),
                         "The version " + inQuotes(language) + " has no whole address: " + inQuotes(address));
        }
    }
};

class AlternateTwice final : public FindingRule {
  public:
    AlternateTwice()
        : FindingRule({"hreflang-twice", Severity::Error,
                       "Two addresses for the same language contradict each other.",
                       "Name one address for each language."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        std::unordered_map<std::string_view, std::size_t, KeyHash, KeyEqual> lines;
        for (const HtmlElement& link : alternates(page.html)) {
            const std::string_view language = trim(link.attribute("hreflang"));
            const auto [known, added] = lines.emplace(language, link.line());
            if (!added)
                sink.add(link.line(), "The version " + inQuotes(language) + " is in line " +
                                          std::to_string(known->second) + " already");
        }
    }
};

class AlternateDefault final : public FindingRule {
  public:
    AlternateDefault()
        : FindingRule({"hreflang-default", Severity::Notice,
                       "Readers of a language that is not listed are sent to the version x-default.",
                       "Add a link with hreflang=\"x-default\" and the address for everyone else."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto links = alternates(page.html);
        const auto isDefault = [](const HtmlElement& link) {
            return equalsNoCase(trim(link.attribute("hreflang")), "x-default");
        };
        if (!links.empty() && std::none_of(links.begin(), links.end(), isDefault))
            sink.add(links.front().line(), "The language versions have no x-default");
    }
};

class AlternateSelf final : public FindingRule {
  public:
    AlternateSelf()
        : FindingRule({"hreflang-self", Severity::Warning,
                       "Language versions count only if each of them names all, itself included.",
                       "Add a link with the page's own language and address."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        const auto links = alternates(page.html);
        const auto canonical = linksOf(page.html, "canonical");
        const std::string_view own =
            canonical.empty() ? page.address : trim(canonical.front().attribute("href"));
        if (links.empty() || !isWebAddress(own)) return;
        const auto isOwn = [own](const HtmlElement& link) {
            return withoutSlash(trim(link.attribute("href"))) == withoutSlash(own);
        };
        if (std::none_of(links.begin(), links.end(), isOwn))
            sink.add(links.front().line(), "The language versions do not name this page: " + inQuotes(own));
    }

  private:
    static std::string_view withoutSlash(std::string_view address) {
        return address.ends_with('/') ? address.substr(0, address.size() - 1) : address;
    }
};

}  // namespace

void addHeadRules(Rules& rules) {
    addRules<CanonicalMissing, CanonicalTwice, CanonicalAddress, RobotsBlocked, ViewportMissing, ViewportZoom,
             Language, DuplicateMeta, OpenGraph, StructuredDataMissing, StructuredDataBroken,
             AlternateInvalid, AlternateTwice, AlternateDefault, AlternateSelf>(rules);
}

}  // namespace relay
