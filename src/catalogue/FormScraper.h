// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// From the web form of a page to an engine's rows and its Query: page, form source, rows, query. Everything
// is found by plain searches without regard to case, never by parsing HTML; the results on odd pages are part
// of the format of the catalogue.
namespace relay {

// Why a row has its value.
enum class FieldReason : std::uint8_t {
    None,          // it has none, or the user typed it
    Name,          // the field's name is known
    Hidden,        // the page gives the value of a hidden field
    Label,         // accepted: the words beside the field
    Autocomplete,  // accepted: the field's autocomplete attribute
    Stored,        // accepted: what the stored record has for the field
};
// "name", "hidden", "label", "autocomplete", "stored" or empty.
std::string_view reasonName(FieldReason why) noexcept;

// A row: a field of the form and what is sent in it, a macro in angle brackets or a constant.
struct FormField final {
    std::string name;
    std::string value;
    FieldReason why = FieldReason::None;
};

// More rows than this are dropped.
inline constexpr std::size_t kMostFormFields = 250'000;

// The method of a record before a form was read.
inline constexpr std::string_view kUsualMethod = "Get";

// What the form source says.
struct ScrapedForm final {
    bool found = false;  // there is a form with a whole opening tag; else all below is empty
    std::string method;  // "GET" or "POST"
    std::string action;
    std::vector<FormField> fields;  // names are unique without regard to case
};

// The opening tag of each form and its inputs, text areas and selects, one per line, each form closed by a
// line of "="; the whole page if it has no form. A form that is never closed has everything up to the page's
// end, so many of them repeat it: the result is limited to 16 MiB, or eight times the page if that is more.
std::string extractFormSource(std::string_view html);

// The rows of a form source. Method and action are those of the first form, the fields those of all.
ScrapedForm readForm(std::string_view source);

// The value of an attribute of a tag that ends in ">": what stands after the "=" that follows the first
// occurrence of the key, even within a longer word, up to a blank. A double quote at either end is dropped.
std::string getFieldValue(std::string_view tag, std::string_view key);

// The Query of the rows. Values except the first are encoded unless they are in angle brackets.
std::string buildQuery(const std::vector<FormField>& fields);
// The rows of a Query, nothing decoded; parts without "=" and repeated names are dropped.
std::vector<FormField> splitQuery(std::string_view query);

}  // namespace relay
