// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/PageDiff.h"

#include "core/Text.h"

#include <algorithm>
#include <unordered_map>

namespace relay {

namespace {

constexpr std::size_t kAround = 3;               // lines of context
constexpr std::size_t kMostDifferences = 1500;   // lines that are compared one by one; bounds time and memory
constexpr std::size_t kMostComparisons = 10000;  // of removed lines with added ones, in one change

// Bytes from `from` to before `end` of a text.
struct Span final {
    std::size_t from = 0;
    std::size_t end = 0;

    bool empty() const { return from == end; }
    std::string_view of(std::string_view text) const { return text.substr(from, end - from); }
};
// Whole lines that differ.
struct Change final {
    Span before;
    Span after;
};

std::size_t commonStart(std::string_view a, std::string_view b) {
    const auto most = static_cast<std::ptrdiff_t>(std::min(a.size(), b.size()));
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.begin() + most, b.begin()).first - a.begin());
}

std::size_t commonEnd(std::string_view a, std::string_view b) {
    const auto most = static_cast<std::ptrdiff_t>(std::min(a.size(), b.size()));
    return static_cast<std::size_t>(std::mismatch(a.rbegin(), a.rbegin() + most, b.rbegin()).first -
                                    a.rbegin());
}

// The start of the line with the byte at `at`, and of the line behind it.
std::size_t lineStart(std::string_view text, std::size_t at) {
    const std::size_t end = at == 0 ? npos : text.rfind('\n', at - 1);
    return end == npos ? 0 : end + 1;
}
std::size_t nextLine(std::string_view text, std::size_t at) {
    const std::size_t end = text.find('\n', at);
    return end == npos ? text.size() : end + 1;
}

std::size_t lineCount(std::string_view text) {
    const auto ends = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return ends + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

std::vector<Span> linesOf(std::string_view text, Span span) {
    std::vector<Span> lines;
    for (std::size_t at = span.from; at < span.end; at = lines.back().end)
        lines.push_back({at, std::min(nextLine(text, at), span.end)});
    return lines;
}

// The shortest way from one list of lines to the other, by the greedy search of Myers.
class LineMatcher final {
  public:
    LineMatcher(std::string_view before, std::string_view after, const Change& stretch)
        : m_before(linesOf(before, stretch.before)), m_after(linesOf(after, stretch.after)) {
        for (const Span& line : m_before) m_a.push_back(number(line.of(before)));
        for (const Span& line : m_after) m_b.push_back(number(line.of(after)));
    }

    // The stretches without an equal line; false when there are too many differences.
    bool match(const Change& stretch, std::vector<Change>& changes) {
        if (!search()) return false;
        std::vector<std::pair<long, long>> equal = equalLines();
        equal.emplace_back(size(m_a), size(m_b));
        long a = 0;
        long b = 0;
        for (const auto& [nextA, nextB] : equal) {
            if (nextA > a || nextB > b)
                changes.push_back({{from(m_before, a, stretch.before), from(m_before, nextA, stretch.before)},
                                   {from(m_after, b, stretch.after), from(m_after, nextB, stretch.after)}});
            a = nextA + 1;
            b = nextB + 1;
        }
        return true;
    }

  private:
    static long size(const std::vector<int>& lines) { return static_cast<long>(lines.size()); }
    static std::size_t from(const std::vector<Span>& lines, long line, const Span& all) {
        return line < static_cast<long>(lines.size()) ? lines[static_cast<std::size_t>(line)].from : all.end;
    }
    int number(std::string_view line) {
        return m_numbers.emplace(line, static_cast<int>(m_numbers.size())).first->second;
    }
    // How far each diagonal reaches with d differences, for every d that was needed.
    long& reach(std::vector<long>& row, long diagonal) {
        return row[static_cast<std::size_t>(diagonal + static_cast<long>(row.size() / 2))];
    }

    bool search() {
        const long most = std::min(size(m_a) + size(m_b), static_cast<long>(kMostDifferences));
        std::vector<long> last(3, 0);
        for (long d = 0; d <= most; ++d) {
            std::vector<long> row(static_cast<std::size_t>(2 * d + 3), 0);
            for (long k = -d; k <= d; k += 2) {
                long a = 0;
                if (d > 0) {
                    const bool down = k == -d || (k != d && reach(last, k - 1) < reach(last, k + 1));
                    a = down ? reach(last, k + 1) : reach(last, k - 1) + 1;
                }
                long b = a - k;
                while (a < size(m_a) && b < size(m_b) && m_a[idx(a)] == m_b[idx(b)]) ++a, ++b;
                reach(row, k) = a;
                if (a >= size(m_a) && b >= size(m_b)) {
                    m_rows.push_back(std::move(row));
                    return true;
                }
            }
            m_rows.push_back(row);
            last = std::move(row);
        }
        return false;
    }

    std::vector<std::pair<long, long>> equalLines() {
        std::vector<std::pair<long, long>> equal;
        long a = size(m_a);
        long b = size(m_b);
        for (long d = static_cast<long>(m_rows.size()) - 1; d >= 0; --d) {
            long previousA = 0;
            long previousB = 0;
            if (d > 0) {
                std::vector<long>& last = m_rows[idx(d - 1)];
                const long k = a - b;
                const bool down = k == -d || (k != d && reach(last, k - 1) < reach(last, k + 1));
                const long previous = down ? k + 1 : k - 1;
                previousA = reach(last, previous);
                previousB = previousA - previous;
            }
            while (a > previousA && b > previousB) equal.emplace_back(--a, --b);
            a = previousA;
            b = previousB;
        }
        std::reverse(equal.begin(), equal.end());
        return equal;
    }

    static std::size_t idx(long place) { return static_cast<std::size_t>(place); }

    std::vector<Span> m_before;
    std::vector<Span> m_after;
    std::unordered_map<std::string_view, int> m_numbers;
    std::vector<int> m_a;
    std::vector<int> m_b;
    std::vector<std::vector<long>> m_rows;
};

void matchLines(std::string_view before, std::string_view after, const Change& stretch,
                std::vector<Change>& changes) {
    if (!LineMatcher(before, after, stretch).match(stretch, changes)) changes.push_back(stretch);
}

// The lines that differ. A line break that was added at the end is set apart first: then a change of the
// front and the break do not make one stretch of the whole file.
std::vector<Change> findChanges(std::string_view before, std::string_view after) {
    std::vector<Change> changes;
    if (before == after) return changes;
    std::string_view core = after;
    if (after.ends_with("\r\n")) core.remove_suffix(2);
    if (commonEnd(before, core) <= commonEnd(before, after)) core = after;
    const std::size_t same = commonStart(before, core);
    const std::size_t sameEnd = commonEnd(before.substr(same), core.substr(same));
    const std::size_t start = lineStart(before, same);
    const std::size_t rest = before.size() - nextLine(before, before.size() - sameEnd);
    const std::size_t last = before.size() - lineStart(before, before.size());
    if (core.size() == after.size()) {
        matchLines(before, after, {{start, before.size() - rest}, {start, after.size() - rest}}, changes);
    } else if (rest == 0 || rest < last) {
        matchLines(before, after, {{start, before.size()}, {start, after.size()}}, changes);
    } else {
        matchLines(before, after, {{start, before.size() - rest}, {start, core.size() - rest}}, changes);
        changes.push_back({{before.size() - last, before.size()}, {core.size() - last, after.size()}});
    }
    return changes;
}

// The lines of one side of a change, with the bytes that the other side does not have.
void addSide(char sign, std::string_view text, Span lines, Span touched, std::vector<DiffLine>& result) {
    for (const Span& line : linesOf(text, lines)) {
        const std::size_t from = std::clamp(touched.from, line.from, line.end);
        const std::size_t end = std::clamp(touched.end, from, line.end);
        result.push_back({sign, line.of(text), from - line.from, end - line.from});
    }
}

// A removed line and the added one that stands for it, by their places among the lines of a change.
using LinePair = std::pair<std::size_t, std::size_t>;

// The bytes that two lines share at their ends; 0 when that is less than half of the shorter one.
std::size_t likeness(std::string_view a, std::string_view b) {
    const std::size_t start = commonStart(a, b);
    const std::size_t same = start + commonEnd(a.substr(start), b.substr(start));
    return 2 * same >= std::min(a.size(), b.size()) ? same : 0;
}

// The pairs, in order, that share the most bytes; none where comparing every line with every other one would
// take too long.
std::vector<LinePair> pairLikeLines(std::string_view before, const std::vector<Span>& removed,
                                    std::string_view after, const std::vector<Span>& added) {
    std::vector<LinePair> pairs;
    if (removed.size() * added.size() > kMostComparisons) return pairs;
    // best[a][b]: what the lines from a and b on can share.
    std::vector<std::vector<std::size_t>> best(removed.size() + 1,
                                               std::vector<std::size_t>(added.size() + 1, 0));
    std::vector<std::vector<std::size_t>> alike = best;
    for (std::size_t a = removed.size(); a-- > 0;) {
        for (std::size_t b = added.size(); b-- > 0;) {
            alike[a][b] = likeness(removed[a].of(before), added[b].of(after));
            best[a][b] = std::max({best[a + 1][b], best[a][b + 1], best[a + 1][b + 1] + alike[a][b]});
        }
    }
    for (std::size_t a = 0, b = 0; a < removed.size() && b < added.size();) {
        if (alike[a][b] > 0 && best[a][b] == best[a + 1][b + 1] + alike[a][b])
            pairs.emplace_back(a++, b++);
        else
            best[a][b] == best[a + 1][b] ? ++a : ++b;
    }
    return pairs;
}

std::vector<LinePair> pairLines(std::string_view before, const std::vector<Span>& removed,
                                std::string_view after, const std::vector<Span>& added) {
    if (removed.size() != added.size()) return pairLikeLines(before, removed, after, added);
    std::vector<LinePair> pairs;
    for (std::size_t i = 0; i < removed.size(); ++i) pairs.emplace_back(i, i);
    return pairs;
}

// A line without a partner is touched altogether.
void addChange(std::string_view before, std::string_view after, const Change& change,
               std::vector<DiffLine>& lines) {
    const std::vector<Span> removed = linesOf(before, change.before);
    const std::vector<Span> added = linesOf(after, change.after);
    std::vector<Span> removedTouched = removed;
    std::vector<Span> addedTouched = added;
    for (const auto& [a, b] : pairLines(before, removed, after, added)) {
        const std::string_view old = removed[a].of(before);
        const std::string_view now = added[b].of(after);
        const std::size_t start = commonStart(old, now);
        const std::size_t end = commonEnd(old.substr(start), now.substr(start));
        removedTouched[a] = {removed[a].from + start, removed[a].end - end};
        addedTouched[b] = {added[b].from + start, added[b].end - end};
    }
    for (std::size_t i = 0; i < removed.size(); ++i)
        addSide('-', before, removed[i], removedTouched[i], lines);
    for (std::size_t i = 0; i < added.size(); ++i) addSide('+', after, added[i], addedTouched[i], lines);
}

// Where up to kAround lines in front of `at` begin, not before `from`.
std::size_t linesBack(std::string_view text, std::size_t at, std::size_t from) {
    for (std::size_t i = 0; i < kAround && at > from; ++i) at = lineStart(text, at - 1);
    return std::max(at, from);
}
std::size_t linesOn(std::string_view text, std::size_t at, std::size_t end) {
    for (std::size_t i = 0; i < kAround && at < end; ++i) at = nextLine(text, at);
    return std::min(at, end);
}

// Makes the hunks from front to back and counts the lines between them once.
class HunkBuilder final {
  public:
    HunkBuilder(std::string_view before, std::string_view after) : m_before(before), m_after(after) {}

    std::vector<DiffHunk> build(const std::vector<Change>& changes) {
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const Change& change = changes[i];
            const std::size_t last = i == 0 ? 0 : changes[i - 1].before.end;
            const std::size_t next = i + 1 < changes.size() ? changes[i + 1].before.from : m_before.size();
            if (i == 0 || linesBack(m_before, change.before.from, last) > m_end) begin(change, last);
            addContext(change.before.from);
            addChange(m_before, m_after, change, m_hunks.back().lines);
            m_end = change.before.end;
            addContext(linesOn(m_before, m_end, next));
        }
        for (DiffHunk& hunk : m_hunks) number(hunk);
        return std::move(m_hunks);
    }

  private:
    void begin(const Change& change, std::size_t last) {
        const std::size_t from = linesBack(m_before, change.before.from, last);
        const std::size_t shift = change.before.from - from;
        m_hunks.emplace_back();
        m_starts.push_back({from, change.after.from - shift});
        m_end = from;
    }
    void addContext(std::size_t end) {
        if (end <= m_end) return;
        addSide(' ', m_before, {m_end, end}, {}, m_hunks.back().lines);
        m_end = end;
    }
    void number(DiffHunk& hunk) {
        const auto [before, after] = m_starts[static_cast<std::size_t>(&hunk - m_hunks.data())];
        m_beforeLines += lineCount(m_before.substr(m_beforeAt, before - m_beforeAt));
        m_afterLines += lineCount(m_after.substr(m_afterAt, after - m_afterAt));
        m_beforeAt = before;
        m_afterAt = after;
        for (const DiffLine& line : hunk.lines) {
            hunk.beforeCount += line.sign != '+' ? 1 : 0;
            hunk.afterCount += line.sign != '-' ? 1 : 0;
        }
        hunk.beforeLine = m_beforeLines + (hunk.beforeCount > 0 ? 1 : 0);
        hunk.afterLine = m_afterLines + (hunk.afterCount > 0 ? 1 : 0);
    }

    std::string_view m_before;
    std::string_view m_after;
    std::vector<DiffHunk> m_hunks;
    std::vector<std::pair<std::size_t, std::size_t>> m_starts;
    std::size_t m_end = 0;  // of the lines of the text before that the last hunk has
    std::size_t m_beforeAt = 0;
    std::size_t m_afterAt = 0;
    std::size_t m_beforeLines = 0;
    std::size_t m_afterLines = 0;
};

}  // namespace

std::string_view DiffLine::withoutEnd(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::string DiffHunk::title() const {
    return "@@ -" + std::to_string(beforeLine) + "," + std::to_string(beforeCount) + " +" +
           std::to_string(afterLine) + "," + std::to_string(afterCount) + " @@";
}

std::vector<DiffHunk> diffTexts(std::string_view before, std::string_view after) {
    return HunkBuilder(before, after).build(findChanges(before, after));
}

std::string unifiedDiff(std::string_view name, const std::vector<DiffHunk>& hunks) {
    if (hunks.empty()) return {};
    const std::string shown = escapeControlCharacters(name);
    std::string text = "--- " + shown + "\n+++ " + shown + "\n";
    for (const DiffHunk& hunk : hunks) {
        text += hunk.title() + "\n";
        for (const DiffLine& line : hunk.lines) {
            text.append(1, line.sign).append(line.text);
            if (!line.text.ends_with('\n')) text += "\n\\ No newline at end of file\n";
        }
    }
    return text;
}

}  // namespace relay
