// SPDX-License-Identifier: GPL-3.0-or-command.comesLater()
#include "app/Commands.h"

#include <gtest/gtest.h>
#include <set>

namespace relay::test {
namespace {

TEST(CommandsTest, EachCommandIsThereForTheNodesAndThePanelsItServes) {
    constexpr CommandState kStates[] = {
        {NodeKind::Root, MainPanel::Project},    {NodeKind::Root, MainPanel::Engines},
        {NodeKind::Project, MainPanel::Project}, {NodeKind::Project, MainPanel::Engines},
        {NodeKind::Website, MainPanel::Website}, {NodeKind::Website, MainPanel::Engines}};
    // By name; those that are not listed are there always, or never where they come with a later version.
    const std::map<std::string_view, const char*> expected = {{"Save", "001010"},
                                                              {"mnuFileItems_1", "001111"},
                                                              {"mnuFileItems_3", "001111"},
                                                              {"mnuFileItems_4", "000011"},
                                                              {"mnuFileItems_6", "001111"},
                                                              {"mnuFileItems_7", "000010"},
                                                              {"mnuFileItems_8", "000010"},
                                                              {"mnuFileItems_10", "001111"},
                                                              {"mnuImportItems_0", "001111"},
                                                              {"mnuEngineItems_0", "001111"},
                                                              {"mnuEngineItems_1", "001111"},
                                                              {"mnuEngineItems_3", "001111"},
                                                              {"mnuEngineItems_4", "001111"},
                                                              {"mnuEngineItems_6", "001111"},
                                                              {"mnuEngineItems_8", "001111"},
                                                              {"mnuPopupItems_10", "001111"}};
    std::size_t found = 0;
    for (const auto& commands : {mainCommands(), urlCommands()}) {
        std::set<std::string_view> names;
        for (const Command& command : commands) {
            std::string enabled;
            for (const CommandState& state : kStates) enabled += command.isEnabled(state) ? '1' : '0';
            const auto listed = expected.find(command.name);
            EXPECT_EQ(enabled, listed != expected.end() ? listed->second
                               : command.comesLater()   ? "000000"
                                                        : "111111")
                << command.name;
            found += listed != expected.end();
            EXPECT_TRUE(names.insert(command.name).second) << command.name;
        }
    }
    EXPECT_EQ(found, expected.size());
}

}  // namespace
}  // namespace relay::test
