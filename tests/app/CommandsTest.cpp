// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Commands.h"

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

TEST(CommandsTest, EachCommandIsEnabledForItsNodesAndPanels) {
    constexpr CommandState kStates[] = {{NodeKind::Root, MainPanel::Project},
                                        {NodeKind::Project, MainPanel::Project},
                                        {NodeKind::Project, MainPanel::Engines},
                                        {NodeKind::Website, MainPanel::Website},
                                        {NodeKind::Website, MainPanel::Engines}};
    std::map<std::string, std::string> names;  // of commands enabled in the same states
    for (const Command& command : mainCommands()) {
        std::string enabled;
        for (const CommandState& state : kStates) enabled += command.isEnabled(state) ? '1' : '0';
        names[enabled].append(" ").append(command.name);
    }
    EXPECT_THAT(
        names,
        ElementsAre(
            Pair("00010", " mnuFileItems_7 mnuFileItems_8"), Pair("00011", " mnuFileItems_4"),
            Pair("01010", " Save"),
            Pair("01111",
                 " mnuFileItems_1 mnuFileItems_3 mnuFileItems_6 mnuFileItems_10 "
                 "mnuImportItems_0 mnuImportItems_2 mnuEngineItems_0 mnuEngineItems_1 mnuEngineItems_3 "
                 "mnuEngineItems_4 mnuEngineItems_6 mnuEngineItems_8 mnuPopupItems_10"),
            Pair("11111",
                 " NewProject NewWeb Engines Submit MetaTag Optimizer Ranking Search News mnuFileItems_0 "
                 "mnuFileItems_12 "
                 "mnuFileItems_13 mnuFileItems_15 mnuToolsItems_0 mnuToolsItems_1 mnuToolsItems_2 "
                 "mnuToolsItems_3 mnuToolsItems_5 mnuToolsItems_6 mnuToolsItems_7 mnuToolsItems_9 "
                 "mnuAddInsItems_1 "
                 "mnuAddInsItems_3 "
                 "mnuAddInsItems_4 mnuAddInsItems_5 mnuHelpItems_0 "
                 "mnuHelpItems_6 mnuHelpItems_7 "
                 "mnuHelpItems_8 mnuHelpItems_10")));
}

TEST(CommandsTest, ADisabledCommandSaysWhyWhereItIsNotPlainToSee) {
    for (const Command& command : urlCommands()) {
        if (command.name != "DeleteURL") continue;
        EXPECT_FALSE(command.isEnabled({}));
        EXPECT_THAT(command.shownToolTip({}), testing::EndsWith(". Select a URL in the list first."));
        const CommandState selected{NodeKind::Website, MainPanel::Website, true};
        EXPECT_TRUE(command.isEnabled(selected));
        EXPECT_EQ(command.shownToolTip(selected), command.toolTip);
        return;
    }
    FAIL() << "no such command";
}

}  // namespace
}  // namespace relay::test
