// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// What a change does to a file, as a unified diff. Lines end after each LF.
namespace relay {

struct DiffLine final {
    char sign = ' ';              // ' ' in both files, '-' only before, '+' only after
    std::string_view text;        // with its line end, if it has one; part of the compared text
    std::size_t touchedFrom = 0;  // the bytes of the line that the change removes or adds
    std::size_t touchedEnd = 0;

    std::string_view untouchedStart() const { return text.substr(0, touchedFrom); }
    std::string_view touched() const { return text.substr(touchedFrom, touchedEnd - touchedFrom); }
    std::string_view untouchedEnd() const { return text.substr(touchedEnd); }
};

// Changed lines that are near each other, with up to three lines around them.
struct DiffHunk final {
    std::size_t beforeLine = 0;  // from 1; the line in front where the hunk has none of that side
    std::size_t beforeCount = 0;
    std::size_t afterLine = 0;
    std::size_t afterCount = 0;
    std::vector<DiffLine> lines;

    std::string title() const;  // "@@ -1,4 +1,5 @@"
};

// The hunks refer to the two texts, which must outlive them. The time is proportional to the texts, however
// large they are; a stretch with too many differences for that counts as changed altogether.
std::vector<DiffHunk> diffTexts(std::string_view before, std::string_view after);
// The diff as text, for "patch" and other programs: two lines with the name, then the hunks. Empty when the
// texts are equal.
std::string unifiedDiff(std::string_view name, const std::vector<DiffHunk>& hunks);

}  // namespace relay
