// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/Workspace.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace relay {

class clsMain;
struct Services;

// What decides whether a command can be given.
struct CommandState final {
    NodeKind node = NodeKind::Root;  // the kind of the current node
    MainPanel panel = MainPanel::Project;
    bool urlSelected = false;  // a row of the URL list is
};

// What a command works on, and what only the window can do for it.
struct CommandTarget final {
    const Services& services;
    clsMain& main;
    std::function<void(std::string_view screen)> show;  // opens a screen by its name, over the window
    std::function<void()> close;                        // closes the window
};

// One command of the toolbars, menus and popups; its caption and its place stand in the form.
struct Command final {
    std::string_view name;  // the objectName of its QAction, or of its QMenu
    std::string_view icon;
    std::string_view toolTip = {};
    std::string_view shortcut = {};  // "Ctrl+N"
    // When it can be given; none: it comes with a later version.
    bool (*enabled)(const CommandState& state) = nullptr;
    std::string_view trapWords = {};                           // before the text of a failure
    void (*operation)(const CommandTarget& target) = nullptr;  // none for a menu
    std::string_view shownKey = {};  // stands in the menu; the key belongs to another command or to the tree
    std::string_view whyDisabled = {};  // in the tool tip, while the command cannot be given

    bool comesLater() const noexcept { return enabled == nullptr; }
    bool isEnabled(const CommandState& state) const { return enabled != nullptr && enabled(state); }
    // The tool tip, behind which it says why the command cannot be given, where that is not plain to see.
    std::string shownToolTip(const CommandState& state) const;
    // Runs the operation and shows its failure.
    void run(const CommandTarget& target) const;
};

// The commands of the main window, and those of the URL list's own toolbar.
std::span<const Command> mainCommands();
std::span<const Command> urlCommands();

}  // namespace relay
