// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IniFile.h"
#include "core/Text.h"
#include "ranking/RankingPages.h"
#include "support/CaseTable.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

using Inputs = std::vector<std::string>;

// "Key=value;Key=value" as the catalogue's reader reads it.
RankEngine engineOf(const std::string& fields) {
    std::vector<RankEngine> engines;
    const std::string name = fields.starts_with("EngineName=") ? GetToken(fields.substr(11), ';', 1) : "x";
    readRankEngines(
        IniFile::parse("[Engines]\n1=" + name + "\n[" + name + "]\n" + replaceAll(fields, ";", "\n")),
        engines);
    return engines.at(0);
}

}  // namespace

TEST(RankingPagesTest, FollowTheirTable) {
    playCases(TEST_FOLDER "/cases/pages.txt",
              {{"praseSpace", [](const Inputs& in) { return praseSpace(in[0]); }},
               {"CleanURL", [](const Inputs& in) { return CleanURL(in[0], in[1]); }},
               {"pageFileName", [](const Inputs& in) { return pageFileName(in[0], std::stoi(in[1])); }},
               {"queryURL", [](const Inputs& in) { return queryURL(engineOf(in[0]), in[1]); }},
               {"getNextURL", [](const Inputs& in) {
                    return getNextURL(engineOf(in[0]), {in.at(3), in.at(1), std::stoi(in.at(2))}, in.at(4));
                }}});
}

}  // namespace relay::test
