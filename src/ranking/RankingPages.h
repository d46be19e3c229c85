// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankEngine.h"

#include <string>
#include <string_view>

// The addresses a ranking run asks for, and the files it saves the answers in. Plain functions; nothing is
// fetched.
namespace relay {

struct Paths;

// The phrase in URL form: each blank becomes "+", each double quote "%22", and nothing else is escaped.
std::string praseSpace(std::string_view phrase);
// The URL without the first occurrence of the text.
std::string CleanURL(std::string_view url, std::string_view text);

// The address of an engine's first page; `keywords` in URL form.
std::string queryURL(const RankEngine& engine, std::string_view keywords);
// The same without EngineURL: what goes to the pool as data.
std::string queryData(const RankEngine& engine, std::string_view keywords);

// A result page as it was received.
struct ResultPage final {
    std::string_view text;
    std::string_view URL;  // it was asked for
    int number = 1;        // from 1
};
// The address of the page after this one: read from the page (a page without a marker leads to the folder of
// its own URL), or computed for an engine whose isButton() is true. Never longer than page and record
// together.
std::string getNextURL(const RankEngine& engine, const ResultPage& page, std::string_view keywords);

// "harbour search2.html": the name of the n-th saved page of an engine. A name that is no plain file name is
// mended and gets "~" and a checksum, so that it never leaves its folder and two such names stay apart.
std::string pageFileName(std::string_view EngineName, int page);

// AppPath/Reports/Ranking, and the folder of a profile in it (without a trailing separator). The second
// throws Failure for a name that is no plain file name.
std::string rankingReportsFolder(const Paths& paths);
std::string rankingFolder(const Paths& paths, std::string_view profile);

}  // namespace relay
