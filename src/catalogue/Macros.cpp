// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Macros.h"

#include "core/Text.h"

#include <algorithm>
#include <array>

namespace relay {

bool isKnownMacro(std::string_view name) noexcept {
    static constexpr std::array<std::string_view, 28> kMacros{
        "title",          "keyword", "keywords", "description", "url",       "category", "subcategory",
        "customcategory", "spaceid", "name",     "fullname",    "firstname", "lastname", "email",
        "company",        "address", "city",     "postcode",    "state",     "country",  "countrycode",
        "phone",          "fax",     "language", "webtype",     "password",  "entryby",  "entryurl",
    };
    return std::any_of(kMacros.begin(), kMacros.end(),
                       [&](std::string_view macro) { return equalsNoCase(name, macro); });
}

}  // namespace relay
