// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankEngine.h"

#include <cstdint>
#include <string>
#include <string_view>

// The keys of the ranking catalogue: the one place that names them, for its readers and its check.
namespace relay {

inline constexpr std::string_view kRankingCatalogueName = "kwreng.dat";
inline constexpr std::string_view kEnginesSection = "Engines";
inline constexpr std::string_view kKeywordSection = "KeywordBuilder";
inline constexpr std::string_view kNumOfURLsKey = "NumOfURLs";
inline constexpr std::string_view kFirstEngineKey = "Engine";

// Who reads a field of an engine's section; a sum of these.
namespace RankUse {
inline constexpr unsigned Ranking = 1;
inline constexpr unsigned Search = 2;
inline constexpr unsigned Keywords = 4;
inline constexpr unsigned All = Ranking | Search | Keywords;
}  // namespace RankUse

struct RankTextField final {
    std::string_view key;
    std::string RankEngine::*text;
    unsigned readers;
};
inline constexpr RankTextField kRankTextFields[] = {
    {"EngineKey", &RankEngine::EngineKey, RankUse::All},
    {"EngineURL", &RankEngine::EngineURL, RankUse::All},
    {"QueryKeyword1", &RankEngine::QueryKeyword1, RankUse::All},
    {"QueryKeyword2", &RankEngine::QueryKeyword2, RankUse::All},
    {"NextPage1", &RankEngine::NextPage1, RankUse::Ranking},
    {"NextPage2", &RankEngine::NextPage2, RankUse::Ranking},
    {"NextPage3", &RankEngine::NextPage3, RankUse::Ranking},
    {"NextPage4", &RankEngine::NextPage4, RankUse::Ranking},
    {"ResultStartString", &RankEngine::ResultStartString, RankUse::Ranking | RankUse::Keywords},
    {"ResultEndString", &RankEngine::ResultEndString, RankUse::Ranking | RankUse::Keywords},
    {"NoFoundString", &RankEngine::NoFoundString, RankUse::Ranking | RankUse::Keywords},
    {"FilterKeyword1", &RankEngine::FilterKeyword1, RankUse::Ranking | RankUse::Keywords},
    {"FilterKeyword2", &RankEngine::FilterKeyword2, RankUse::Ranking | RankUse::Keywords},
    {"HREF_KEYWORD1", &RankEngine::HREF_KEYWORD1, RankUse::Ranking | RankUse::Keywords},
    {"HREF_KEYWORD2", &RankEngine::HREF_KEYWORD2, RankUse::Ranking | RankUse::Keywords},
    {"LinkType", &RankEngine::LinkType, RankUse::Ranking},
    {"URLVisibility", &RankEngine::URLVisibility, RankUse::Search},
};

struct RankNumberField final {
    std::string_view key;
    std::int16_t RankEngine::*number;
};
inline constexpr RankNumberField kRankNumberFields[] = {
    {"Start", &RankEngine::Start},
    {"PerPage", &RankEngine::PerPage},
};

// Read by the keyword builder alone.
inline constexpr std::string_view kURLStartKey = "URLStartString";
inline constexpr std::string_view kURLEndKey = "URLEndString";

}  // namespace relay
