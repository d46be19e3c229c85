// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class IniFile;

// A search engine of the ranking catalogue: how it is asked, and how its result pages are read. Fields have
// the names of their keys; values are used byte for byte and compared without regard to case.
struct RankEngine final {
    std::string EngineName;     // lower-cased, the beginning of its pages' file names
    std::string EngineKey;      // a link with this word is the engine's own
    std::string EngineURL;      // beginning of the first query, and base of relative links
    std::string QueryKeyword1;  // between EngineURL and the keywords
    std::string QueryKeyword2;  // after the keywords
    std::string NextPage1;      // markers of the next page's link, or pieces of its address
    std::string NextPage2;
    std::string NextPage3;
    std::string NextPage4;  // in front of the next page's address; see nextPageAttribute()
    std::string ResultStartString;
    std::string ResultEndString;
    std::string NoFoundString;   // what the engine prints when nothing was found
    std::string FilterKeyword1;  // links with these texts are no results
    std::string FilterKeyword2;
    std::string HREF_KEYWORD1;  // beginnings of a result's link; see linkOpener1() and linkOpener2()
    std::string HREF_KEYWORD2;
    std::string LinkType;
    std::int16_t Start = 0;     // the n-th following page has the offset n times this
    std::int16_t PerPage = 0;   // results on a page
    std::string URLVisibility;  // for the web search: the word that asks for a host

    // The next page's address is computed, not read from the page.
    bool isButton() const;
    // The texts that stand for empty fields.
    std::string_view nextPageAttribute() const;
    std::string_view linkOpener1() const;
    std::string_view linkOpener2() const;
};

// An engine as the keyword builder reads it.
struct KeywordEngine final {
    RankEngine engine;           // without the fields of the next page
    std::string URLStartString;  // around a result's URL within its link
    std::string URLEndString;
};

// The engines that the keyword builder offers.
struct KeywordEngines final {
    std::vector<std::string> names;
    std::string Engine;  // the one to be chosen first
};

// The readers of the catalogue; all stop a numbered list at its first empty value. An engine without a
// section has empty fields.

// Appends the engines with everything but URLVisibility. Throws Failure "Overflow" when Start or PerPage
// exceeds 16 bits; what was read so far stays, with the engine it stopped at as the last one.
void readRankEngines(const IniFile& file, std::vector<RankEngine>& engines);
// Appends the engines with EngineName, EngineKey, EngineURL, QueryKeyword1, QueryKeyword2 and URLVisibility.
void readSearchEngines(const IniFile& file, std::vector<RankEngine>& engines);
KeywordEngines readKeywordEngines(const IniFile& file);
KeywordEngine readKeywordEngine(const IniFile& file, std::string_view name);
// How many of an engine's results the keyword builder reads. Throws Failure "Overflow" beyond 16 bits.
std::int16_t readNumOfURLs(const IniFile& file);

}  // namespace relay
