// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/KeywordLists.h"

#include "core/Failure.h"
#include "core/Keys.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "pagetools/HtmlPage.h"
#include "pagetools/MetaTags.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace relay {

namespace {

constexpr std::size_t kMostCombined = 1'000'000;
constexpr std::size_t kMostBytes = std::size_t{256} * 1024 * 1024;

std::size_t bytesOf(const std::vector<std::string>& keywords) {
    std::size_t bytes = 0;
    for (const std::string& keyword : keywords) bytes += keyword.size() + 1;
    return bytes;
}

bool isStopWord(std::string_view word) {
    static const std::unordered_set<std::string_view> kWords = {
        "about", "above",   "after",  "again", "all",    "also",   "am",     "an",      "and",   "any",
        "are",   "as",      "at",     "be",    "been",   "before", "being",  "below",   "but",   "by",
        "can",   "could",   "did",    "do",    "does",   "down",   "during", "each",    "few",   "for",
        "from",  "further", "had",    "has",   "have",   "he",     "her",    "here",    "hers",  "him",
        "his",   "how",     "if",     "in",    "into",   "is",     "it",     "its",     "just",  "may",
        "me",    "more",    "most",   "my",    "no",     "nor",    "not",    "now",     "of",    "off",
        "on",    "once",    "only",   "or",    "other",  "our",    "ours",   "out",     "over",  "own",
        "same",  "she",     "should", "so",    "some",   "such",   "than",   "that",    "the",   "their",
        "them",  "then",    "there",  "these", "they",   "this",   "those",  "through", "to",    "too",
        "under", "until",   "up",     "us",    "very",   "was",    "we",     "were",    "what",  "when",
        "where", "which",   "while",  "who",   "whom",   "why",    "will",   "with",    "would", "you",
        "your",  "yours",   "don't",  "it's",  "you're", "we're",  "i'm",    "isn't",   "can't"};
    return kWords.contains(word);
}

bool isWordByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
           (byte >= 'A' && byte <= 'Z');
}

// Inside a word, not at its ends: "don't", "e-mail".
bool joins(char c) {
    return c == '\'' || c == '-';
}

// Counts the sequences of one text. The words of a run stand in m_run with one blank between, so that every
// sequence is a piece of it.
class WordCounter final {
  public:
    WordCounter(std::size_t fewest, std::size_t most) : m_fewest(fewest), m_most(most) {}

    void read(std::string_view text) {
        std::size_t at = 0;
        while (at < text.size()) {
            if (isWordByte(text[at])) {
                std::size_t end = at + 1;
                while (end < text.size() &&
                       (isWordByte(text[end]) ||
                        (joins(text[end]) && end + 1 < text.size() && isWordByte(text[end + 1]))))
                    ++end;
                take(text.substr(at, end - at));
                at = end;
            } else {
                if (text[at] != ' ') m_starts.clear();
                ++at;
            }
        }
    }
    std::vector<CountedWords> counts() const {
        std::vector<CountedWords> all;
        all.reserve(m_counts.size());
        for (const auto& [words, count] : m_counts) all.push_back({std::string(words), count});
        std::sort(all.begin(), all.end(), [](const CountedWords& a, const CountedWords& b) {
            return a.count != b.count ? a.count > b.count : a.words < b.words;
        });
        return all;
    }

    // Must be set aside before reading: the counts point into it.
    void reserve(std::size_t length) { m_words.reserve(2 * length + 2); }

  private:
    void take(std::string_view word) {
        if (characterCount(word) < 2 || isStopWord(word)) {
            m_starts.clear();
            return;
        }
        m_words += ' ';
        m_starts.push_back(m_words.size());
        m_words += word;
        if (m_starts.size() > m_most) m_starts.erase(m_starts.begin());
        for (std::size_t words = m_fewest; words <= m_starts.size(); ++words) {
            const std::size_t first = m_starts[m_starts.size() - words];
            ++m_counts[std::string_view(m_words).substr(first)];
        }
    }

    std::size_t m_fewest;
    std::size_t m_most;
    std::string m_words;
    std::vector<std::size_t> m_starts;  // of the last words, as long as nothing stood between them
    std::unordered_map<std::string_view, std::int64_t> m_counts;
};

}  // namespace

std::vector<std::string> keywordsOf(std::string_view text) {
    std::vector<std::string> keywords;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(",\r\n"), text.size());
        const std::string_view entry = trim(text.substr(0, end));
        if (!entry.empty()) keywords.emplace_back(entry);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return keywords;
}

std::vector<std::string> withoutDuplicates(const std::vector<std::string>& keywords) {
    std::vector<std::string> kept;
    std::unordered_set<std::string_view, KeyHash, KeyEqual> known;
    for (const std::string& keyword : keywords)
        if (known.insert(keyword).second) kept.push_back(keyword);
    return kept;
}

std::vector<std::string> combineKeywords(const std::vector<std::vector<std::string>>& lists) {
    std::vector<std::string> combined;
    bool first = true;
    for (const std::vector<std::string>& list : lists) {
        const std::vector<std::string> words = withoutDuplicates(list);
        if (first) {
            combined = words;
            first = false;
            continue;
        }
        if (!words.empty() && combined.size() > kMostCombined / words.size())
            throw Failure("The lists make more than a million keywords.");
        if (bytesOf(combined) * words.size() + bytesOf(words) * combined.size() > kMostBytes)
            throw Failure("The lists make more than 256 MB of keywords.");
        std::vector<std::string> longer;
        longer.reserve(combined.size() * words.size());
        for (const std::string& start : combined)
            for (const std::string& word : words) longer.push_back(start + " " + word);
        combined = std::move(longer);
    }
    return withoutDuplicates(combined);
}

std::vector<CountedWords> countWords(std::string_view text, std::size_t fewest, std::size_t most) {
    const std::string lowered = fromScreen(toScreen(text).toLower());
    WordCounter counter(std::max<std::size_t>(fewest, 1), most);
    counter.reserve(lowered.size());
    counter.read(lowered);
    return counter.counts();
}

CountedText countedText(std::string_view html) {
    const HtmlPage page(html);
    if (page.problem().empty()) return {page.visibleText(), {}};
    PageTexts texts;
    // As far as it can be read.
    (void)failureOf([&] { retrieveMetaTag(html, texts); });
    return {std::move(texts.body), page.problem()};
}

std::string joinedKeywords(const std::vector<std::string>& keywords, std::size_t limit) {
    std::string joined;
    for (const std::string& keyword : keywords) {
        const std::size_t more = keyword.size() + (joined.empty() ? 0 : 2);
        if (joined.size() + more > limit) break;
        joined.append(joined.empty() ? "" : ", ").append(keyword);
    }
    return joined;
}

}  // namespace relay
