// SPDX-License-Identifier: GPL-3.0-or-later
//
// From a page with a form to its source, rows and Query, in interleaved pairs with libxml2's HTML push
// parser, which gets the same page in pieces of 16 KB, as from a network, and keeps no tree. Hostile pages
// are compared with themselves: ten times the page.
//
//   bench_scraper [pairs]
#include "Ratios.h"
#include "catalogue/CategoryPage.h"
#include "catalogue/FormHints.h"
#include "catalogue/FormScraper.h"

#include <cstdlib>
#include <libxml/HTMLparser.h>
#include <string>
#include <string_view>

namespace {

using namespace relay;
using relay::bench::median;

constexpr std::size_t kPage = 10'000'000;

// Rows of a table, each with a label and a field, as forms were written; 100 bytes a field.
std::string pageOfFields(std::size_t size) {
    std::string page =
        "<html><head><title>Add</title></head><body><form action=\"http://x.example/add\" method=post>\n";
    for (int field = 0; page.size() < size; ++field)
        page += "<tr><td>Your answer:</td><td><input type=\"text\" name=\"field" +
                std::to_string(1'000'000 + field) + "\" size=\"40\" value=\"\"></td></tr>\n";
    return page + "</form></body></html>\n";
}

std::string repeated(std::string_view part, std::size_t size) {
    std::string page;
    while (page.size() < size) page += part;
    return page;
}

std::size_t scrape(const std::string& page) {
    const std::string source = extractFormSource(page);
    const ScrapedForm form = readForm(source);
    return source.size() + buildQuery(form.fields).size();
}

std::size_t hints(const std::string& page) {
    return readFieldHints(page).size();
}

std::size_t categories(const std::string& page) {
    static const DirectoryHosts kHosts{"add.test", "http://dmoz.test"};
    return readCategoryPage(page, {"dir", "", kHosts}).rows.size();
}

std::size_t parse(const std::string& page) {
    constexpr std::size_t kPiece = 16 * 1024;
    static std::size_t elements = 0;
    xmlSAXHandler handler{};
    handler.startElement = [](void*, const xmlChar*, const xmlChar**) { ++elements; };
    htmlParserCtxtPtr parser =
        htmlCreatePushParserCtxt(&handler, nullptr, nullptr, 0, nullptr, XML_CHAR_ENCODING_8859_1);
    for (std::size_t at = 0; at < page.size(); at += kPiece)
        htmlParseChunk(parser, page.data() + at, static_cast<int>(std::min(kPiece, page.size() - at)), 0);
    htmlParseChunk(parser, nullptr, 0, 1);
    htmlFreeParserCtxt(parser);
    return elements;
}

template <typename Work>
double timeOf(Work&& work, const std::string& page) {
    return bench::milliseconds([&] { benchmark::DoNotOptimize(work(page)); });
}

template <typename Work>
double medianOf(int times, Work&& work, const std::string& page) {
    std::vector<double> all;
    for (int i = 0; i <= times; ++i) all.push_back(timeOf(work, page));
    all.erase(all.begin());  // warms up
    return median(all);
}

void compareWithParser(int pairs) {
    const std::string page = pageOfFields(kPage);
    const std::string tenth = pageOfFields(kPage / 10);
    std::vector<double> ours, theirs, small;
    for (int pair = 0; pair <= pairs; ++pair) {
        const double parsed = timeOf(parse, page);
        const double scraped = timeOf(scrape, page);
        const double scrapedTenth = timeOf(scrape, tenth);
        if (pair == 0) continue;
        theirs.push_back(parsed);
        ours.push_back(scraped);
        small.push_back(scrapedTenth);
    }
    std::printf(
        "%zu bytes, %zu fields: push parser %.1f ms; source, rows and query %.1f ms: speed %.2f of it "
        "(3.00 wanted); ten times the page %.1f times (15.0 at most)\n",
        page.size(), readForm(extractFormSource(page)).fields.size(), median(theirs), median(ours),
        median(theirs) / median(ours), median(ours) / median(small));
}

template <typename Work>
void compareWithTenth(const char* name, Work&& work, std::string_view part, std::string_view end = {}) {
    const double small = medianOf(3, work, repeated(part, kPage / 10).append(end));
    const double large = medianOf(3, work, repeated(part, kPage).append(end));
    std::printf("%-34s %8.1f ms for 10 MB; ten times the page %.1f times\n", name, large, large / small);
}

}  // namespace

int main(int argc, char** argv) {
    compareWithParser(argc > 1 ? std::atoi(argv[1]) : 9);
    compareWithTenth("forms without end", scrape, "<form ");
    compareWithTenth("forms without end, with fields", scrape, "<form ><input name=a>");
    compareWithTenth("forms in forms", scrape, "<form ><input name=a><select><textarea>", "</form>");
    compareWithTenth("inputs without end", scrape, "<form ><input ");
    compareWithTenth("end tags only", scrape, "<form ></select></textarea>");
    compareWithTenth("hints: labels without end", hints, "<label for=a>x<input id=a name=b ");
    compareWithTenth("hints: text areas without end", hints, "<textarea name=a>");
    compareWithTenth("categories: anchors without end", categories, "<a href=");
    compareWithTenth("categories: one end for all", categories, "<a href=x><b>y</b>", "</a>");
    compareWithTenth("categories: a usual page", categories, "<li><a href=\"/a/\"><b>Arts</b></a>\r\n");
    return 0;
}
