// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RunResults.h"

#include "core/Text.h"

#include <charconv>
#include <map>

namespace relay {

namespace {
template <std::size_t Size>
void writeNumber(std::array<char, Size>& text, std::int64_t number) {
    text.fill('\0');
    std::to_chars(text.data(), text.data() + text.size() - 1, number);
}
}  // namespace

class RunResults::Source final : public RowSource {
  public:
    explicit Source(const RunResults& results) : m_results(results) {}

    std::string_view key(const void*) const override { return {}; }
    std::size_t columns(const void*) const override { return 6; }
    std::string_view text(const void* record, std::size_t column) const override {
        const Record& result = *static_cast<const Record*>(record);
        switch (column) {
            case 0:
                return m_results.m_names[result.engine];
            case 1:
                return m_results.m_names[result.url];
            case 2:
                return m_results.m_names[result.website];
            case 3:
                return resultWord(result.result);
            case 4:
                return result.code.data();
            default:
                return result.milliseconds.data();
        }
    }
    std::string_view icon(const void* record) const override {
        return static_cast<const Record*>(record)->result == Success ? "Completed" : "Failed";
    }
    std::string_view tag(const void* record) const override { return text(record, 0); }

  private:
    const RunResults& m_results;
};

RunResults::RunResults() : m_source(std::make_unique<Source>(*this)) {
    lsvResults.setColumns({"Engine", "URL", "Web site", "Result", "Code", "ms"});
    lsvResults.setNumberColumns({4, 5});
}

RunResults::~RunResults() {
    lsvResults.clear();
}

void RunResults::clear() {
    lsvResults.clear();
    m_records.clear();
    m_places.clear();
    m_names.clear();
}

std::uint32_t RunResults::placeOf(std::string_view name) {
    if (const auto known = m_places.find(name); known != m_places.end()) return known->second;
    const auto place = static_cast<std::uint32_t>(m_names.size());
    m_places.emplace(m_names.emplace_back(name), place);
    return place;
}

void RunResults::add(const EngineEnded& ended, std::string_view website) {
    if (m_records.size() == kMost) return;
    Record record{placeOf(ended.engine), placeOf(ended.URL), placeOf(website), ended.result, {}, {}};
    writeNumber(record.code, ended.code);
    writeNumber(record.milliseconds, ended.milliseconds);
    m_records.push_back(record);
}

std::vector<RunResults::Choice> RunResults::choices() const {
    std::map<std::int16_t, std::size_t> byClass;
    for (const Record& record : m_records) ++byClass[record.result];
    std::vector<Choice> all{{"All results", {}}};
    std::vector<std::size_t> counts{m_records.size()};
    for (const auto& [result, count] : byClass) {
        const std::string_view word = resultWord(result);
        std::size_t place = 1;
        while (place < all.size() && all[place].word != word) ++place;
        if (place == all.size()) {  // two classes share one word
            all.push_back({std::string(word), word});
            counts.push_back(0);
        }
        counts[place] += count;
    }
    for (std::size_t place = 0; place < all.size(); ++place)
        all[place].caption += " (" + std::to_string(counts[place]) + ")";
    return all;
}

void RunResults::show(std::string_view word) {
    const int column = lsvResults.sortedColumn();
    const bool ascending = lsvResults.sortedAscending();
    const RowsBatch batch(lsvResults);
    lsvResults.clear();
    for (const Record& record : m_records)
        if (word.empty() || resultWord(record.result) == word) lsvResults.add(*m_source, &record);
    if (column >= 0) lsvResults.sort(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

std::string RunResults::text() const {
    std::string text;
    constexpr int kColumns = 6;
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
