// SPDX-License-Identifier: GPL-3.0-or-later
//
// The page tools, in interleaved pairs: counting 500 keywords in a page of 10 MB compared with one case-free
// scan for each keyword, as core/TextSearch does it: 32 bytes at a time by first and last letter; the whole
// report on a page and on one ten times as long; and 1,000 pages of 50 KB through all rules compared with the
// parser alone.
//
//   bench_pagetools [pairs]
#include "Ratios.h"
#include "core/Text.h"
#include "core/clsPreference.h"
#include "pagetools/FindingRules.h"
#include "pagetools/KeywordCounter.h"
#include "pagetools/OptimizerReport.h"
#include "session/Session.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <cstdio>
#include <cstdlib>
#include <gumbo.h>

namespace {

using namespace relay;
using relay::bench::median;
using relay::bench::milliseconds;

std::vector<std::string> keywordList(int count) {
    std::vector<std::string> keywords;
    for (int i = 0; i < count; ++i) {
        const char* const words[] = {"wheel ", "Spoke ", "greased ", "owner ", "paragraph "};
        keywords.push_back(words[i % 5] + std::to_string(i));
    }
    return keywords;
}

// A page whose words include some of the keywords.
std::string pageOf(std::size_t size, int keywords) {
    std::string page =
        "<html lang=en><head><title>Lantern Bicycle Repairs</title>\r\n<meta name=\"keywords\" content=\"";
    for (const std::string& keyword : keywordList(keywords)) page += keyword + ",";
    page += "\">\r\n<meta name=\"description\" content=\"Mends bicycles\"></head>\r\n<body>\r\n";
    for (int row = 0; page.size() < size; ++row)
        page += "<p>Every wheel " + std::to_string(row % 2500) +
                " that comes in is trued by hand, <b>checked</b> for loose spokes and greased before it goes "
                "back to its owner.\r\nA second paragraph would say <a href=\"/p" +
                std::to_string(row) + ".html\">nothing new</a><img src=\"a.gif\" alt=\"\">.</p>\r\n";
    return page + "</body></html>";
}

void compareCounting(int pairs) {
    const std::string html = pageOf(10 * 1024 * 1024, 500);
    PageTexts page;
    retrieveMetaTag(html, page);
    const std::vector<std::string> keywords = keywordList(500);
    const std::vector<std::string_view> views(keywords.begin(), keywords.end());
    std::vector<double> ratios;
    for (int pair = 0; pair < pairs; ++pair) {
        std::int64_t scanned = 0;
        std::int64_t counted = 0;
        const double scan = milliseconds([&] {
            for (const std::string_view keyword : views)
                for (std::size_t at = findNoCase(page.body, keyword); at != npos;
                     at = findNoCase(page.body, keyword, at + keyword.size()))
                    ++scanned;
        });
        const double count = milliseconds([&] {
            for (const std::int64_t hits : KeywordCounter(views).count(page.body)) counted += hits;
        });
        if (scanned != counted) std::exit(1);
        ratios.push_back(count / scan);
        std::printf("500 keywords in %.1f MB: %lld hits, scans %.0f ms, counter %.0f ms\n",
                    static_cast<double>(page.body.size()) / 1e6, static_cast<long long>(counted), scan,
                    count);
    }
    std::printf("densities: median %.3f of the scans' time (1.2 at most)\n", median(ratios));
}

void compareReports(int pairs, const clsPreference& preference) {
    const auto report = [&preference](const std::string& html) {
        PageTexts page;
        retrieveMetaTag(html, page);
        return buildOptimizerReport({html, page, "http://a.test/", preference, QDateTime(), QLocale::c()})
            .size();
    };
    const std::string tenth = pageOf(1024 * 1024, 500);
    const std::string whole = pageOf(10 * 1024 * 1024, 500);
    std::vector<double> ratios;
    for (int pair = 0; pair < pairs; ++pair) {
        std::size_t length = 0;
        const double small = milliseconds([&] { length += report(tenth); });
        const double large = milliseconds([&] { length += report(whole); });
        benchmark::DoNotOptimize(length);
        ratios.push_back(large / small);
        std::printf("whole report: 1 MB %.1f ms, 10 MB %.1f ms\n", small, large);
    }
    std::printf("ten times the page: median %.2f times (10 wanted)\n", median(ratios));
}

void compareRules(int pairs) {
    const std::string html = pageOf(50 * 1024, 20);
    const RuleSettings settings;
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    constexpr int kPages = 1000;
    std::vector<double> ratios;
    for (int pair = 0; pair < pairs; ++pair) {
        std::size_t findings = 0;
        const double parse = milliseconds([&] {
            for (int i = 0; i < kPages; ++i) {
                GumboOutput* const output = gumbo_parse_with_options(&options, html.data(), html.size());
                benchmark::DoNotOptimize(output);
                gumbo_destroy_output(&options, output);
            }
        });
        const double check = milliseconds([&] {
            for (int i = 0; i < kPages; ++i) findings += checkPage(html, "https://a.test/", settings).size();
        });
        benchmark::DoNotOptimize(findings);
        ratios.push_back(check / parse);
        std::printf("%d pages of 50 KB: parser %.0f ms, all rules %.0f ms\n", kPages, parse, check);
    }
    std::printf("rules: median %.2f of the parser's time (3 at most)\n", median(ratios));
}

}  // namespace

int main(int argc, char** argv) {
    const int pairs = argc > 1 ? std::atoi(argv[1]) : 5;
    const test::TestHome home;
    const test::FixedClock clock;
    test::ScriptedPrompts prompts;
    const Session session(home.paths(), clock, {}, prompts);
    compareCounting(pairs);
    compareReports(pairs, session.preference);
    compareRules(pairs);
}
