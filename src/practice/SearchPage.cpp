// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "core/Url.h"
#include "practice/PracticePages.h"

#include <algorithm>
#include <array>

namespace relay {

namespace {

constexpr std::string_view kFolder = "/search/";
constexpr int kSites = 45;    // in the index that all search engines share
constexpr int kPerPage = 10;  // unless the query says otherwise

// What a query asks for.
struct SearchQuery final {
    std::string phrase;
    int from = 0;  // results to leave out
    int perPage = kPerPage;
};

// "www.site-07.example"
std::string siteName(int site) {
    return std::string("www.site-") + (site < 10 ? "0" : "") + std::to_string(site) + ".example";
}

std::string titleOf(int site) {
    return "Page of site " + std::to_string(site);
}

std::string bareLink(int site) {
    return "<a href=http://" + siteName(site) + "/>" + titleOf(site) + "</a>";
}

std::string quotedLink(int site) {
    return "<a href=\"http://" + siteName(site) + "/\">" + titleOf(site) + "</a>";
}

std::string bareResult(int site, int) {
    return bareLink(site);
}

std::string quotedResult(int site, int) {
    return quotedLink(site);
}

// The last two of ten are quoted.
std::string mixedResult(int site, int place) {
    return place % kPerPage < 8 ? bareLink(site) : quotedLink(site);
}

std::string redirectResult(int site, int) {
    return "<a href=\"/search/lantern/go?to=http%3A%2F%2F" + replaceAll(siteName(site), ".", "%2E") +
           "%2F\">" + titleOf(site) + "</a>";
}

// Each result has the engine's own links beside it, and every fourth comes behind an advertisement.
std::string crowdedResult(int site, int place) {
    std::string html;
    if (place % 4 == 0)
        html = "<a href=\"http://ads.example/click?site=" + siteName(site) + "\">Sponsor</a>\n";
    return html + quotedLink(site) + "\n<a href=\"http://copies.example/" + siteName(site) +
           "\">cached copy</a>\n<a href=\"http://" + siteName(site) + "/all\">More this site</a>";
}

// The address of the query's next page from "?" on.
std::string nextQuery(const SearchQuery& query) {
    return "?q=" + EncodeURLValue(query.phrase) + "&amp;n=" + std::to_string(query.perPage) +
           "&amp;from=" + std::to_string(query.from + query.perPage);
}

std::string absoluteNext(const std::string& address, const std::string& query) {
    return "<a href=\"" + address + "/search/harbour" + query + "\">Next page</a>";
}

std::string rootedNext(const std::string&, const std::string& query) {
    return "<a href=/search/lantern" + query + "><b>Further on</b></a>";
}

std::string relativeNext(const std::string&, const std::string& query) {
    return "<a href=compass" + query + ">More results</a>";
}

std::string attributeNext(const std::string&, const std::string& query) {
    return "<a href=# data-go=\"/search/anchor" + query + "\">Forward</a>";
}

std::string noNext(const std::string&, const std::string&) {
    return "";
}

// How later pages of an engine come.
enum class Later { Usual, Stalled };

struct SearchEngine final {
    std::string_view word;  // in its addresses
    std::string_view name;
    int shift;  // of its first result in the index
    std::string_view listStart;
    std::string_view listEnd;
    std::string_view nothing;  // what it says when nothing was found
    std::string (*result)(int site, int place);
    std::string (*next)(const std::string& address, const std::string& query);
    Later later = Later::Usual;
};

constexpr std::array<SearchEngine, 7> kEngines = {
    {{"harbour", "Harbour Search", 0, "<!-- results -->", "<!-- end of results -->", "No pages were found",
      bareResult, absoluteNext},
     {"beacon", "Beacon Finder", 5, "<ol class=\"results\">", "</ol>", "Nothing found", quotedResult, noNext},
     {"lantern", "Lantern Index", 10, "<div id=hits>", "</div>", "No light on this", redirectResult,
      rootedNext},
     {"compass", "Compass Web", 15, "<h2>Results</h2>", "<h2>Elsewhere</h2>", "Your search has no results",
      crowdedResult, relativeNext},
     {"anchor", "Anchor Directory", 20, "<dl>", "</dl>", "The directory lists no such page", mixedResult,
      attributeNext},
     {"tide", "Slow Tide", 25, "<ul id=found>", "</ul>", "The tide brought nothing", quotedResult, noNext,
      Later::Stalled},
     {"quay", "Empty Quay", 30, "<ul>", "</ul>", "There is nothing here", quotedResult, noNext}}};

constexpr std::string_view kChangedName = "Old Pier";
constexpr std::string_view kGuardedName = "Gate House";

SearchQuery readQuery(const PracticeRequest& request) {
    SearchQuery query;
    for (const auto& [name, value] : decodeForm(request.query())) {
        if (name == "q" || name == "query") query.phrase = value;
        if (name == "from") query.from = std::clamp(leadingInteger(value), 0, 1000);
        if (name == "n") query.perPage = std::clamp(leadingInteger(value), 1, kSites);
    }
    return query;
}

// Letters and digits; a byte above 127 counts as a letter.
int lettersOf(std::string_view phrase) {
    const auto isLetter = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte > 127 || (byte >= '0' && byte <= '9') || ((byte | 0x20) >= 'a' && (byte | 0x20) <= 'z');
    };
    return static_cast<int>(std::count_if(phrase.begin(), phrase.end(), isLetter));
}

bool findsNothing(const SearchEngine& engine, const SearchQuery& query) {
    return engine.word == "quay" || lettersOf(query.phrase) == 0 || containsNoCase(query.phrase, "nothing");
}

// The number of the site at a place of the list, which counts from 0.
int siteAt(const SearchEngine& engine, const SearchQuery& query, int place) {
    return (lettersOf(query.phrase) % kSites + engine.shift + place + kSites - 1) % kSites + 1;
}

std::string resultPage(const SearchEngine& engine, const SearchQuery& query, const std::string& address) {
    const std::string word(engine.word);
    std::string html = "<p><a href=\"" + address + "/search/" + word + "/help\">Help</a> " +
                       "<a href=\"http://partner.example/\">Our partner</a></p>\n";
    if (findsNothing(engine, query)) return html + "<p>" + std::string(engine.nothing) + ".</p>\n";
    html.append(engine.listStart) += '\n';
    const int end = std::min(query.from + query.perPage, kSites);
    for (int place = query.from; place < end; ++place)
        html += "<li>" + engine.result(siteAt(engine, query, place), place) + "\n";
    html += "<li><a href=\"" + address + "/search/" + word + "/help\">About this list</a>\n";
    html.append(engine.listEnd) += '\n';
    if (end < kSites) html += engine.next(address, nextQuery(query)) + "\n";
    return html + "<p><a href=\"http://partner.example/\">Our partner</a></p>\n";
}

// An engine whose pages look other than the catalogue says.
std::string changedPage(const SearchQuery& query) {
    std::string html = "<section>\n";
    for (int place = 0; place < query.perPage; ++place)
        html +=
            "<article onclick=\"go('" + siteName(place + 1) + "')\">" + titleOf(place + 1) + "</article>\n";
    return html + "</section>\n";
}

std::string captchaPage() {
    return "<form action=\"/search/gate/check\" method=\"post\">\n<p>Please show that you are not a robot: "
           "enter the letters of the picture.</p>\n<input name=\"captcha\">\n<button>Go "
           "on</button>\n</form>\n";
}

PracticeReply indexPage() {
    std::string html = "<p>The search engines of the practice web.</p>\n<ul>\n";
    const auto add = [&html](std::string_view word, std::string_view name) {
        html +=
            "<li><a href=\"/search/" + std::string(word) + "?q=paper+shop\">" + std::string(name) + "</a>\n";
    };
    for (const SearchEngine& engine : kEngines) add(engine.word, engine.name);
    add("pier", kChangedName);
    add("gate", kGuardedName);
    PracticeReply reply;
    reply.body = htmlPage("Search engines", html + "</ul>\n");
    return reply;
}

std::optional<PracticeReply> answerQuery(std::string_view word, const SearchQuery& query,
                                         const std::string& address) {
    PracticeReply reply;
    const auto page = [&](std::string_view name, const std::string& content) {
        reply.body = htmlPage(std::string(name) + ": " + query.phrase, content);
        return reply;
    };
    if (word == "pier") return page(kChangedName, changedPage(query));
    if (word == "gate") return page(kGuardedName, captchaPage());
    for (const SearchEngine& engine : kEngines) {
        if (engine.word != word) continue;
        if (engine.later == Later::Stalled && query.from > 0) reply.ending = PracticeReply::Ending::Stall;
        return page(engine.name, resultPage(engine, query, address));
    }
    return std::nullopt;
}

}  // namespace

std::optional<PracticeReply> searchPage(const PracticeRequest& request, PracticeSite& site) {
    std::string_view path = request.path();
    // A next page that begins with "/" is asked for with a second one.
    if (path.starts_with("//")) path.remove_prefix(1);
    if (path == kFolder || path == "/search") return indexPage();
    if (!path.starts_with(kFolder)) return std::nullopt;
    path.remove_prefix(kFolder.size());
    if (path == "lantern/go") {
        PracticeReply reply;
        reply.body = htmlPage("A redirect", "<p>A real engine would send you on from here.</p>\n");
        return reply;
    }
    return answerQuery(path, readQuery(request), site.address);
}

}  // namespace relay
