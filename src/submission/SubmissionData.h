// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Builds the text that is sent from an engine's template, one website and one URL. Independent of a run.
namespace relay {

class Countries;
class IniFile;
struct clsEngines;

// The fields of one website as they go into a request: percent-encoded unless noted. Keyword and Language are
// encoded twice, as engines have always received them.
struct WebDetails final {
    std::string Title;
    std::string Keyword;
    std::string Description;  // on one line, then encoded
    std::string WebType;      // raw
    std::string Language;
    std::string URL;
    std::string MainCategory;  // raw
    std::string Category;      // raw
    std::string Name;
    std::string Email;
    std::string Company;
    std::string Address;
    std::string City;
    std::string Postcode;
    std::string State;
    std::string Country;
    std::string Phone;
    std::string Fax;
    std::string Password;
    std::int16_t BlockFFA = 0;
    std::string EntryBy;  // never filled, like EntryURL
    std::string EntryURL;
};

// A website file that cannot be read counts as empty, as with every reader of single keys.
IniFile loadWebsiteQuietly(const std::string& path);

// Reads the section "Web Site Info"; a missing key counts as empty.
WebDetails readWebDetails(std::string_view URL, const IniFile& websiteFile);

// The data for expanding a template.
struct TemplateSource final {
    const clsEngines& engine;
    const WebDetails& web;
    const IniFile& websiteFile;
    const Countries& countries;
    bool blockSpam = false;  // the setting BlockSpam
};

// The engine's Query with its macros expanded; empty for a template without "<". An unknown macro expands to
// its name; a "<" without a macro ends the expansion. A value that contains macros (only a raw SpaceID can)
// is expanded again; Failure 14 "Out of string space" when that does not end.
std::string expandQuery(const TemplateSource& source);

// Looks up `Key` in a list of name=value entries, each ended by `Delimiter`: the first occurrence of the key,
// even within a longer name; then the first word of `Fallback`, then "Other". An empty list gives the key, a
// failed search the last word searched for.
std::string getSearchString(std::string_view Data, std::string_view Key, char Delimiter,
                            std::string_view Fallback);

// What goes to the pool. Any method other than POST is sent as a GET, but only "GET" itself puts the data
// into the URL.
struct SubmissionRequest final {
    std::string method;  // as in the engine's record
    std::string URL;
    std::string data;

    bool isPost() const noexcept;
};

// Nothing if there is nothing to send: the engine has no action, or its template is unusable.
std::optional<SubmissionRequest> submissionRequest(std::string_view method, std::string_view action,
                                                   std::string data);

// The text with every occurrence of the encoded password masked, for logs.
std::string maskPassword(std::string_view text, const WebDetails& web);

}  // namespace relay
