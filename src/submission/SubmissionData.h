// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// From an engine's template, one website and one URL to the text that is sent. Nothing here knows of a run.
namespace relay {

class Countries;
class IniFile;
struct clsEngines;

// One website's fields as they go into a request: percent-encoded where the name of a field does not say
// otherwise. Keyword and Language are encoded twice, which engines have always received.
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
    std::string EntryBy;  // nothing fills these two
    std::string EntryURL;
};

// A website file that cannot be read reads as empty, as every reader of single keys has it.
IniFile loadWebsiteQuietly(const std::string& path);

// Fills the details from the section "Web Site Info"; an absent key reads as empty.
WebDetails readWebDetails(std::string_view URL, const IniFile& websiteFile);

// Everything that a template is expanded from.
struct TemplateSource final {
    const clsEngines& engine;
    const WebDetails& web;
    const IniFile& websiteFile;
    const Countries& countries;
    bool blockSpam = false;  // the setting BlockSpam
};

// The engine's Query with its macros filled in; empty for a template without any "<". An unknown macro gives
// its own text, and a "<" that no macro follows ends the expansion. A value that holds macros itself (only a
// raw SpaceID can) is expanded again; Failure 14 "Out of string space" when that comes to no end.
std::string expandQuery(const TemplateSource& source);

// Looks `Key` up in a list of name=value entries, each closed by `Delimiter`: the first place where the key
// stands, also inside a longer name; then the first word of `Fallback`, then "Other". An empty list gives the
// key, a failed search the word last searched for.
std::string getSearchString(std::string_view Data, std::string_view Key, char Delimiter,
                            std::string_view Fallback);

// What goes to the pool. A GET carries its data in the URL too; any other method than POST is sent as a GET,
// but only "GET" itself brings the data into the URL.
struct SubmissionRequest final {
    std::string method;  // as the engine's record has it
    std::string URL;
    std::string data;

    bool isPost() const noexcept;
};

// Nothing when there is nothing to send: the engine has no action, or its template is unusable.
std::optional<SubmissionRequest> submissionRequest(std::string_view method, std::string_view action,
                                                   std::string data);

// The text with every occurrence of the encoded password covered, for a log.
std::string maskPassword(std::string_view text, const WebDetails& web);

}  // namespace relay
