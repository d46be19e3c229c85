// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/FormScraper.h"

#include <string>
#include <string_view>
#include <vector>

// What a page says about the meaning of its form's fields, for suggesting a macro where the name says
// nothing. Only for suggestions: the rows themselves come from FormScraper.
namespace relay {

// What the page says about one field.
struct FieldHint final {
    std::string name;  // as in the field's row
    // The words of its label; without one, the words in front of the field. At most 200 bytes.
    std::string label;
    std::string autocomplete;
};
// In page order, the first of each name.
std::vector<FieldHint> readFieldHints(std::string_view html);

// A value for a row that has none.
struct FieldSuggestion final {
    std::string value;  // a macro in angle brackets; empty: none
    FieldReason why = FieldReason::None;
};
// The autocomplete attribute says it more exactly than the label; a field without a label has only its name.
FieldSuggestion suggestValue(const FieldHint& hint);

// What a form has become since its record was stored: one line for each difference, for the user.
struct StoredForm final {
    std::string method;
    std::string action;
    std::string query;
};
std::vector<std::string> compareWithStored(const StoredForm& stored, const ScrapedForm& form);

}  // namespace relay
