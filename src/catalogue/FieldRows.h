// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/FormHints.h"
#include "catalogue/FormScraper.h"
#include "core/Rows.h"

#include <string>
#include <vector>

namespace relay {

// The rows of a form's fields in a list: name, value, and why it has that value. A row without a value may
// have a suggestion, from what the page says about its field or from a stored record. Rows that do not exist
// are ignored.
class FieldRows final {
  public:
    // Fills `list`, which outlives it.
    explicit FieldRows(Rows& list);

    const std::vector<FormField>& fields() const noexcept { return m_fields; }
    // In place of all rows.
    void show(std::vector<FormField> fields);
    // What the page says about the fields that are shown next.
    void setHints(std::vector<FieldHint> hints) { m_hints = std::move(hints); }
    bool hasHints() const noexcept { return !m_hints.empty(); }
    // Suggests the macros of stored fields for rows without a value, before anything else.
    void suggestStored(const std::vector<FormField>& stored);

    void setValue(int row, const std::string& value);
    // False when another row has the name.
    bool rename(int row, const std::string& name);
    void remove(int row);

    bool hasSuggestion(int row) const noexcept;
    bool hasSuggestions() const noexcept;
    // Gives the row its suggestion as its value; false when it has none.
    bool accept(int row);
    int acceptAll();

  private:
    bool isRow(int row) const noexcept;
    void showRow(int row);

    Rows& m_list;
    std::vector<FormField> m_fields;
    std::vector<FieldSuggestion> m_suggestions;  // in the same order
    std::vector<FieldHint> m_hints;
};

}  // namespace relay
