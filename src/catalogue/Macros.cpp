// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Macros.h"

#include "core/Text.h"

#include <array>
#include <utility>

namespace relay {

namespace {

constexpr std::array<std::pair<std::string_view, Macro>, 28> kMacros{{
    {"title", Macro::Title},
    {"keyword", Macro::Keyword},
    {"keywords", Macro::Keyword},
    {"description", Macro::Description},
    {"url", Macro::URL},
    {"category", Macro::Category},
    {"subcategory", Macro::Category},
    {"customcategory", Macro::CustomCategory},
    {"spaceid", Macro::SpaceID},
    {"name", Macro::Name},
    {"fullname", Macro::Name},
    {"firstname", Macro::FirstName},
    {"lastname", Macro::LastName},
    {"email", Macro::Email},
    {"company", Macro::Company},
    {"address", Macro::Address},
    {"city", Macro::City},
    {"postcode", Macro::Postcode},
    {"state", Macro::State},
    {"country", Macro::Country},
    {"countrycode", Macro::CountryCode},
    {"phone", Macro::Phone},
    {"fax", Macro::Fax},
    {"language", Macro::Language},
    {"webtype", Macro::WebType},
    {"password", Macro::Password},
    {"entryby", Macro::EntryBy},
    {"entryurl", Macro::EntryURL},
}};

}  // namespace

std::optional<Macro> macroOf(std::string_view name) noexcept {
    for (const auto& [known, macro] : kMacros)
        if (equalsNoCase(name, known)) return macro;
    return std::nullopt;
}

}  // namespace relay
