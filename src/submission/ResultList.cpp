// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/ResultList.h"

#include "core/Text.h"

#include <array>
#include <charconv>

namespace relay {

namespace {
constexpr int kColumns = 6;

template <std::size_t Size>
void writeNumber(std::array<char, Size>& text, std::int64_t number) {
    text.fill('\0');
    std::to_chars(text.data(), text.data() + text.size() - 1, number);
}
}  // namespace

// What a row refers to. It has the texts of the numbers, as rows are views of texts.
struct ResultList::Line final {
    int place;
    std::array<char, 8> code;
    std::array<char, 16> milliseconds;
};

class ResultList::Source final : public RowSource {
  public:
    explicit Source(const Results& results) : m_results(results) {}

    std::string_view key(const void*) const override { return {}; }
    std::size_t columns(const void*) const override { return kColumns; }
    std::string_view text(const void* record, std::size_t column) const override {
        const Line& line = *static_cast<const Line*>(record);
        switch (column) {
            case 0:
                return resultOf(record).engine;
            case 1:
                return resultOf(record).URL;
            case 2:
                return resultOf(record).site;
            case 3:
                return resultOf(record).word();
            case 4:
                return line.code.data();
            default:
                return line.milliseconds.data();
        }
    }
    std::string_view icon(const void* record) const override {
        return resultOf(record).result == Success ? "Completed" : "Failed";
    }
    std::string_view tag(const void* record) const override { return resultOf(record).AddURL; }

  private:
    PairResult resultOf(const void* record) const {
        return m_results.at(static_cast<const Line*>(record)->place);
    }

    const Results& m_results;
};

ResultList::ResultList(const Results& results)
    : m_results(results), m_source(std::make_unique<Source>(results)) {
    lsvResults.setColumns({"Engine", "URL", "Web site", "Result", "Code", "ms"});
    lsvResults.setNumberColumns({4, 5});
}

ResultList::~ResultList() {
    clear();
}

void ResultList::clear() {
    lsvResults.clear();
    m_lines.clear();
}

std::vector<ResultList::Choice> ResultList::choices() const {
    std::vector<Choice> all{{"All results (" + std::to_string(m_results.count()) + ")", {}}};
    std::vector<int> counts{m_results.count()};
    for (std::int16_t result = 0; result <= ServerError; ++result) {
        const int count = m_results.countOf(result);
        if (count == 0) continue;
        const std::string_view word = resultWord(result);
        std::size_t place = 1;
        while (place < all.size() && all[place].word != word) ++place;
        if (place == all.size()) {  // two classes share one word
            all.push_back({{}, word});
            counts.push_back(0);
        }
        counts[place] += count;
        all[place].caption = std::string(word) + " (" + std::to_string(counts[place]) + ")";
    }
    return all;
}

void ResultList::show(std::string_view word) {
    const int column = lsvResults.sortedColumn();
    const bool ascending = lsvResults.sortedAscending();
    const RowsBatch batch(lsvResults);
    clear();
    for (int place = 0; place < m_results.count(); ++place) {
        const PairResult result = m_results.at(place);
        if (!word.empty() && result.word() != word) continue;
        Line& line = m_lines.emplace_back(Line{place, {}, {}});
        writeNumber(line.code, result.code);
        writeNumber(line.milliseconds, result.milliseconds);
    }
    for (const Line& line : m_lines) lsvResults.add(*m_source, &line);
    if (column >= 0) lsvResults.sort(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

std::string ResultList::text() const {
    std::string text;
    for (int column = 0; column < kColumns; ++column)
        text.append(column == 0 ? "" : "\t").append(lsvResults.columnTitle(column));
    text += '\n';
    const bool all = lsvResults.firstHighlighted() < 0;
    for (int row = 0; row < lsvResults.count(); ++row) {
        const RowView result = lsvResults.at(row);
        if (!all && !result.highlighted) continue;
        text += escapeControlCharacters(result.text);
        for (std::size_t item = 0; item < result.subItems.size(); ++item)
            text.append("\t").append(escapeControlCharacters(result.subItems[item]));
        text += '\n';
    }
    return text;
}

}  // namespace relay
