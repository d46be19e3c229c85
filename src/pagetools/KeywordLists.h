// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// Plain work on lists of keywords. Equal without regard to case is equal; the first spelling stays.

// The entries of a text, one a line or separated by commas, blanks around them removed, empty ones left out.
std::vector<std::string> keywordsOf(std::string_view text);
std::vector<std::string> withoutDuplicates(const std::vector<std::string>& keywords);
// Every entry of the first list before every one of the second, and so on, joined by blanks and without
// duplicates. Throws Failure when there would be more than a million, or more than 256 MB of them.
std::vector<std::string> combineKeywords(const std::vector<std::vector<std::string>>& lists);

struct CountedWords final {
    std::string words;
    std::int64_t count = 0;
};
// How often each sequence of `fewest` to `most` words stands in a text, most frequent first, equal ones by
// their letters; in lower case. A sequence ends at a line's end and at punctuation, and none has a stop word
// or is a single letter.
std::vector<CountedWords> countWords(std::string_view text, std::size_t fewest, std::size_t most);
// The text of a page that is counted: what a reader sees of it, one block a line. A page that is not parsed
// gives its text as the meta tag reader finds it, and why it was not parsed.
struct CountedText final {
    std::string text;
    std::string problem;
};
CountedText countedText(std::string_view html);

// A list as one text, for a field with a limit: joined with ", ", as many entries as fit.
std::string joinedKeywords(const std::vector<std::string>& keywords, std::size_t limit);

}  // namespace relay
