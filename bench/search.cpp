// SPDX-License-Identifier: GPL-3.0-or-later
//
// How fast the case-insensitive search goes through a page-like text of 100 MB, compared with memchr counting
// the lines of the same text and with the C library's strcasestr.
//
//   bench_search
#include "Ratios.h"
#include "core/Text.h"

#include <cstring>
#include <random>
#include <string>

namespace {

using namespace relay;

constexpr std::size_t kSize = 100u * 1000 * 1000;
// Both occur only at the end of the text: "z" is rare, "e" and "t" are the most common letters of English.
constexpr const char* kRare = "Zugzwang";
constexpr const char* kCommon = "Escapement";

std::string makePage() {
    static constexpr const char* kWords[] = {
        "the",         "of",    "and",        "a",      "to",       "in",      "is",      "you",
        "that",        "it",    "he",         "was",    "for",      "on",      "are",     "with",
        "as",          "his",   "they",       "at",     "be",       "this",    "from",    "have",
        "or",          "one",   "had",        "by",     "word",     "but",     "not",     "what",
        "all",         "were",  "when",       "your",   "can",      "said",    "there",   "use",
        "each",        "which", "she",        "how",    "their",    "will",    "other",   "about",
        "out",         "many",  "then",       "them",   "these",    "so",      "some",    "her",
        "would",       "make",  "like",       "Search", "engine",   "website", "Submit",  "Keywords",
        "title",       "<p>",   "<a href=\"", "\">",    "</a>",     "<b>",     "</b>",    "<br>",
        "<td>",        "</td>", "size",       "Email",  "category", "free",    "listing", "page",
        "http://www.", "2002",  "&nbsp;",     "queue",  "journal",  "example", "links",   "country",
        "report",      "extra"};
    std::mt19937 random(1);
    std::string page;
    page.reserve(kSize + 200);
    std::size_t lineStart = 0;
    while (page.size() < kSize) {
        page += kWords[random() % std::size(kWords)];
        const bool full = page.size() - lineStart > 60 + random() % 40;
        page += full ? "\r\n" : " ";
        if (full) lineStart = page.size();
    }
    return page.append(kRare).append(" ").append(kCommon).append("\r\n");
}

const std::string& page() {
    static const std::string text = makePage();
    return text;
}

void memchrLines(benchmark::State& state) {
    const std::string& text = page();
    for (auto _ : state) {
        std::size_t lines = 0;
        const char* at = text.data();
        const char* const end = at + text.size();
        while (at < end) {
            const void* const found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
            if (found == nullptr) break;
            ++lines;
            at = static_cast<const char*>(found) + 1;
        }
        benchmark::DoNotOptimize(lines);
    }
}

template <typename Find>
void search(benchmark::State& state, const char* needle, Find&& find) {
    const std::string& text = page();
    for (auto _ : state) {
        const std::size_t at = find(text, needle);
        if (at == npos || at < kSize) state.SkipWithError("the needle stands at the end");
    }
}

std::size_t fast(const std::string& text, const char* needle) {
    return findNoCase(text, needle);
}
std::size_t portable(const std::string& text, const char* needle) {
    return findNoCasePortable(text, needle);
}
std::size_t library(const std::string& text, const char* needle) {
    const char* const found = strcasestr(text.c_str(), needle);
    return found == nullptr ? npos : static_cast<std::size_t>(found - text.c_str());
}

void findNoCaseRare(benchmark::State& state) {
    search(state, kRare, fast);
}
void findNoCaseCommon(benchmark::State& state) {
    search(state, kCommon, fast);
}
void portableRare(benchmark::State& state) {
    search(state, kRare, portable);
}
void portableCommon(benchmark::State& state) {
    search(state, kCommon, portable);
}
void strcasestrRare(benchmark::State& state) {
    search(state, kRare, library);
}
void strcasestrCommon(benchmark::State& state) {
    search(state, kCommon, library);
}

BENCHMARK(memchrLines);
BENCHMARK(findNoCaseRare);
BENCHMARK(findNoCaseCommon);
BENCHMARK(portableRare);
BENCHMARK(portableCommon);
BENCHMARK(strcasestrRare);
BENCHMARK(strcasestrCommon);

}  // namespace

int main(int argc, char** argv) {
    return relay::bench::runInterleaved(argc, argv, "memchrLines");
}
