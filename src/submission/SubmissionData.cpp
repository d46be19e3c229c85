// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/SubmissionData.h"

#include "catalogue/Countries.h"
#include "catalogue/Macros.h"
#include "catalogue/clsEngines.h"
#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "core/Url.h"
#include "projects/WebsiteFile.h"

#include <algorithm>
#include <array>
#include <limits>

namespace relay {

namespace {

// Limits for values that contain macros themselves; ordinary templates need one pass.
constexpr int kNestedExpansions = 1000;
constexpr std::size_t kLargestGrowth = 4u * 1024 * 1024;

[[noreturn]] void outOfStringSpace() {
    throw Failure("Out of string space", 14);
}

std::string_view cut(std::string_view text, std::int32_t limit) {
    return limit > 0 ? left(text, static_cast<std::size_t>(limit)) : text;
}

std::string title(const TemplateSource& source) {
    const clsEngines& engine = source.engine;
    const std::string& text = equalsNoCase(engine.Category(), "C") ? source.web.Company : source.web.Title;
    if (engine.MaxTitle() <= 0 && equalsNoCase(engine.EngineType(), "FFA"))
        return std::string(left(text, 60));
    return std::string(cut(text, engine.MaxTitle()));
}

std::string disguised(const std::string& email) {
    const std::size_t at = email.find('@');
    if (at == npos) return "nospam_" + std::string(trim(email)) + ".NOSPAM";
    return "nospam_" + email.substr(0, at + 1) + "nospam-" + email.substr(at + 1);
}

std::string email(const TemplateSource& source) {
    const bool blocks = source.blockSpam || source.web.BlockFFA != 0;
    if (blocks && equalsNoCase(source.engine.EngineType(), "FFA")) return disguised(source.web.Email);
    return source.web.Email;
}

std::string category(const TemplateSource& source) {
    return EncodeURLValue(
        getSearchString(source.engine.CategoryData(), source.web.Category, '>', source.web.MainCategory));
}

std::string fromWebsiteFile(const TemplateSource& source, std::string_view suffix) {
    return source.websiteFile.value(kCustomCategorySection, std::string(source.engine.name()).append(suffix));
}

template <std::string WebDetails::*field>
std::string plain(const TemplateSource& source) {
    return source.web.*field;
}

struct MacroRow final {
    Macro macro;
    std::string (*value)(const TemplateSource&);
};

// In the order of Macro.
constexpr std::array<MacroRow, kMacroCount> kMacroValues = {{
    {Macro::Title, title},
    {Macro::Keyword, [](auto& s) { return std::string(cut(s.web.Keyword, s.engine.MaxKeywords())); }},
    {Macro::Description,
     [](auto& s) { return std::string(cut(s.web.Description, s.engine.MaxDescriptions())); }},
    {Macro::URL, plain<&WebDetails::URL>},
    {Macro::Category, category},
    {Macro::CustomCategory, [](auto& s) { return EncodeURLValue(fromWebsiteFile(s, "")); }},
    {Macro::SpaceID, [](auto& s) { return fromWebsiteFile(s, "SpaceID"); }},
    {Macro::Name, plain<&WebDetails::Name>},
    {Macro::FirstName, [](auto& s) { return s.web.Name.substr(0, s.web.Name.find('+')); }},
    // The whole name when there is no "+".
    {Macro::LastName, [](auto& s) { return s.web.Name.substr(s.web.Name.find('+') + 1); }},
    {Macro::Email, email},
    {Macro::Company, plain<&WebDetails::Company>},
    {Macro::Address, plain<&WebDetails::Address>},
    {Macro::City, plain<&WebDetails::City>},
    {Macro::Postcode, plain<&WebDetails::Postcode>},
    {Macro::State, plain<&WebDetails::State>},
    {Macro::Country, plain<&WebDetails::Country>},
    {Macro::CountryCode, [](auto& s) { return s.countries.getCountryCode(s.web.Country); }},
    {Macro::Phone, plain<&WebDetails::Phone>},
    {Macro::Fax, plain<&WebDetails::Fax>},
    {Macro::Language, plain<&WebDetails::Language>},
    {Macro::WebType,
     [](auto& s) { return EncodeURLValue(getSearchString(s.engine.WebType(), s.web.WebType, '|', {})); }},
    {Macro::Password, plain<&WebDetails::Password>},
    {Macro::EntryBy, plain<&WebDetails::EntryBy>},
    {Macro::EntryURL, plain<&WebDetails::EntryURL>},
}};
static_assert(std::adjacent_find(kMacroValues.begin(), kMacroValues.end(),
                                 [](auto& a, auto& b) { return a.macro >= b.macro; }) == kMacroValues.end());

std::string macroValue(std::string_view name, const TemplateSource& source) {
    const std::optional<Macro> macro = macroOf(name);
    return macro ? kMacroValues[static_cast<std::size_t>(*macro)].value(source) : std::string(name);
}

}  // namespace

IniFile loadWebsiteQuietly(const std::string& path) {
    try {
        return IniFile::load(path);
    } catch (const Failure&) {
        return {};
    }
}

WebDetails readWebDetails(std::string_view URL, const IniFile& websiteFile) {
    const auto raw = [&](std::string_view key) { return websiteFile.value(kWebsiteSection, key); };
    const auto encoded = [&](std::string_view key) { return EncodeURLValue(raw(key)); };
    WebDetails web;
    web.Title = encoded("Title");
    web.Keyword = EncodeURLValue(encoded("Keyword"));
    web.Description = EncodeURLValue(CleanLineBreaks(raw("Description")));
    web.WebType = raw("WebType");
    web.Language = EncodeURLValue(encoded("Language"));
    web.URL = EncodeURLValue(URL);
    web.MainCategory = raw("MainCategory");
    web.Category = raw("Category");
    web.Name = encoded("YourName");
    web.Email = encoded("Email");
    web.Company = encoded("Company");
    web.Address = encoded("Address");
    web.City = encoded("City");
    web.Postcode = encoded("postcode");
    web.State = encoded("State");
    web.Country = encoded("Country");
    web.Phone = encoded("Phone");
    web.Fax = encoded("Fax");
    web.Password = encoded("Password");
    // Only zero or not matters, so a number beyond 16 bits stays a yes.
    web.BlockFFA = static_cast<std::int16_t>(std::clamp<int>(leadingInteger(raw("BlockFFA")),
                                                             std::numeric_limits<std::int16_t>::min(),
                                                             std::numeric_limits<std::int16_t>::max()));
    return web;
}

std::string expandQuery(const TemplateSource& source) {
    const std::string_view query = source.engine.Query();
    if (query.find('<') == npos) return {};

    std::string result;  // finished text, without "<"
    std::string nested;  // owns the text of `work` after a value with macros
    std::string_view work = query;
    int expansions = 0;
    for (;;) {
        const std::size_t open = work.find('<');
        const std::size_t close = open == npos ? npos : work.find('>', open);
        if (close == npos || close == open + 1) return result.append(work);
        result.append(work.substr(0, open));
        const std::string value = macroValue(work.substr(open + 1, close - open - 1), source);
        work.remove_prefix(close + 1);
        if (value.find('<') == npos) {
            result.append(value);
        } else {
            if (++expansions > kNestedExpansions) outOfStringSpace();
            std::string joined = value;
            joined.append(work);
            nested = std::move(joined);
            work = nested;
        }
        if (result.size() + work.size() > query.size() + kLargestGrowth) outOfStringSpace();
    }
}

std::string getSearchString(std::string_view Data, std::string_view Key, char Delimiter,
                            std::string_view Fallback) {
    constexpr std::string_view other = "Other";
    if (Data.empty()) return std::string(Key);
    std::string_view word = Key;
    std::size_t place = findNoCase(Data, word);
    if (place == npos) {
        word = Fallback.empty() ? other : Fallback.substr(0, Fallback.find(' '));
        place = findNoCase(Data, word);
    }
    if (place == npos) {
        word = other;
        place = findNoCase(Data, word);
    }
    if (place == npos) return std::string(trim(word));
    const std::size_t equals = Data.find('=', place);
    const std::size_t end = Data.find(Delimiter, place);
    if (equals == npos || end == npos || end < equals) return std::string(trim(word));
    return std::string(trim(Data.substr(equals + 1, end - equals - 1)));
}

bool SubmissionRequest::isPost() const noexcept {
    return equalsNoCase(method, "POST");
}

std::optional<SubmissionRequest> submissionRequest(std::string_view method, std::string_view action,
                                                   std::string data) {
    if (data.empty() || action.empty()) return std::nullopt;
    SubmissionRequest request{std::string(method), std::string(action), std::move(data)};
    if (equalsNoCase(request.method, "GET")) request.URL.append("?").append(request.data);
    return request;
}

std::string maskPassword(std::string_view text, const WebDetails& web) {
    return web.Password.empty() ? std::string(text) : replaceAll(text, web.Password, "********");
}

}  // namespace relay
