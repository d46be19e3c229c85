// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/Workspace.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

class QWidget;

namespace relay {

class clsMain;
struct Services;

// What the enabling of commands depends on.
struct CommandState final {
    NodeKind node = NodeKind::Root;  // the kind of the current node
    MainPanel panel = MainPanel::Project;
    bool urlSelected = false;  // in the URL list
};

// What a command works on, and the functions that only the window has.
struct CommandTarget final {
    const Services& services;
    clsMain& main;
    std::function<void(std::string_view screen)> show;  // opens the named screen over the window
    std::function<void()> close;                        // closes the window
    std::function<void(QWidget* over)>
        help;  // opens the help about a window; none: what the main window shows
    std::function<bool(QWidget& over)> guide;  // the guide alone; false where none is installed
};

// One command of the toolbars, menus and popups; the form has its caption and place.
struct Command final {
    std::string_view name;  // the objectName of its QAction, or of its QMenu
    std::string_view icon;
    std::string_view toolTip = {};
    std::string_view shortcut = {};                            // "Ctrl+N"
    bool (*enabled)(const CommandState& state) = nullptr;      // when it is enabled; every command has it
    std::string_view trapWords = {};                           // before the text of a failure
    void (*operation)(const CommandTarget& target) = nullptr;  // none for a menu
    std::string_view shownKey = {};     // shown in the menu; another command, or the tree, handles the key
    std::string_view whyDisabled = {};  // added to the tool tip while the command is disabled

    bool isEnabled(const CommandState& state) const { return enabled(state); }
    // The tool tip, with a note why the command is disabled where that is not obvious.
    std::string shownToolTip(const CommandState& state) const;
    // Runs the operation and shows its failure.
    void run(const CommandTarget& target) const;
};

// The commands of the main window and of the URL list's toolbar.
std::span<const Command> mainCommands();
std::span<const Command> urlCommands();

}  // namespace relay
