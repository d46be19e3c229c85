// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/FieldRows.h"

#include "core/Keys.h"
#include "core/Text.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace relay {

namespace {

template <typename Named>
using ByName = std::unordered_map<std::string_view, const Named*, KeyHash, KeyEqual>;

// The first of each name.
template <typename Named>
ByName<Named> byName(const std::vector<Named>& all) {
    ByName<Named> found;
    for (const Named& one : all) found.emplace(one.name, &one);
    return found;
}

// A row that has no value but a suggestion says what it would be.
std::string whyText(const FormField& field, const FieldSuggestion& suggestion) {
    if (suggestion.value.empty()) return std::string(reasonName(field.why));
    return "use " + suggestion.value + " (" + std::string(reasonName(suggestion.why)) + ")";
}

}  // namespace

FieldRows::FieldRows(Rows& list) : m_list(list) {
    m_list.setColumns({"Field Name", "Variable/Value", "Why"});
}

bool FieldRows::isRow(int row) const noexcept {
    return row >= 0 && static_cast<std::size_t>(row) < m_fields.size();
}

void FieldRows::show(std::vector<FormField> fields) {
    m_fields = std::move(fields);
    m_suggestions.assign(m_fields.size(), {});
    const ByName<FieldHint> hints = byName(m_hints);
    const RowsBatch batch(m_list);
    m_list.clear();
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const FormField& field = m_fields[i];
        const auto hint = field.value.empty() ? hints.find(field.name) : hints.end();
        if (hint != hints.end()) m_suggestions[i] = suggestValue(*hint->second);
        m_list.add(Row{field.name, field.name, {field.value, whyText(field, m_suggestions[i])}});
    }
}

void FieldRows::showRow(int row) {
    const auto place = static_cast<std::size_t>(row);
    m_list.setSubItem(row, 1, m_fields[place].value);
    m_list.setSubItem(row, 2, whyText(m_fields[place], m_suggestions[place]));
}

void FieldRows::suggestStored(const std::vector<FormField>& stored) {
    const ByName<FormField> before = byName(stored);
    const RowsBatch batch(m_list);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const auto known = m_fields[i].value.empty() ? before.find(m_fields[i].name) : before.end();
        if (known == before.end() || !known->second->value.starts_with('<')) continue;
        m_suggestions[i] = {known->second->value, FieldReason::Stored};
        showRow(static_cast<int>(i));
    }
}

void FieldRows::setValue(int row, const std::string& value) {
    if (!isRow(row) || m_fields[static_cast<std::size_t>(row)].value == value) return;
    FormField& field = m_fields[static_cast<std::size_t>(row)];
    field.value = value;
    field.why = FieldReason::None;
    m_suggestions[static_cast<std::size_t>(row)] = {};
    showRow(row);
}

bool FieldRows::rename(int row, const std::string& name) {
    if (!isRow(row) || m_fields[static_cast<std::size_t>(row)].name == name) return true;
    std::vector<FormField> renamed = m_fields;
    FormField& field = renamed[static_cast<std::size_t>(row)];
    if (m_list.contains(name) && !equalsNoCase(field.name, name)) return false;
    field.name = name;
    show(std::move(renamed));
    m_list.setHighlighted(row, true);
    return true;
}

void FieldRows::remove(int row) {
    if (!isRow(row)) return;
    std::vector<FormField> rest = m_fields;
    rest.erase(rest.begin() + row);
    show(std::move(rest));
    if (m_list.count() > 0) m_list.setHighlighted(std::min(row, m_list.count() - 1), true);
}

bool FieldRows::hasSuggestion(int row) const noexcept {
    return isRow(row) && !m_suggestions[static_cast<std::size_t>(row)].value.empty();
}

bool FieldRows::hasSuggestions() const noexcept {
    return std::any_of(m_suggestions.begin(), m_suggestions.end(),
                       [](const FieldSuggestion& suggestion) { return !suggestion.value.empty(); });
}

bool FieldRows::accept(int row) {
    if (!hasSuggestion(row)) return false;
    const auto place = static_cast<std::size_t>(row);
    m_fields[place].value = m_suggestions[place].value;
    m_fields[place].why = m_suggestions[place].why;
    m_suggestions[place] = {};
    showRow(row);
    return true;
}

int FieldRows::acceptAll() {
    const RowsBatch batch(m_list);
    int accepted = 0;
    for (int row = 0; row < m_list.count(); ++row)
        if (accept(row)) ++accepted;
    return accepted;
}

}  // namespace relay
