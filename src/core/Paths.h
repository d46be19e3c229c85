// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

// Where things lie. AppPath has no trailing separator, WindowsPath (the shared data folder) has one.
struct Paths final {
    std::string AppPath;
    std::string WindowsPath;
    std::string ProjectFilePath;
    std::string settingsFile;
    std::string installedData;   // of the files installed with the programs; empty if not looked up
    std::string installedGuide;  // the folder of the guide; empty if there is none

    // Everything inside one folder: AppPath = home, WindowsPath = home/data/, settings home/settings.ini.
    static Paths insideHome(std::string_view home);
    // The desktop's folders: $XDG_DATA_HOME/korvel-relay and $XDG_CONFIG_HOME/korvel-relay/settings.ini, or
    // insideHome($KORVEL_RELAY_HOME) where that is set. `environment` gives a variable's value or nullopt.
    static Paths fromEnvironment(const std::function<std::optional<std::string>(const char*)>& environment);

    std::string inApp(std::string_view name) const;      // AppPath + separator + name
    std::string inWindows(std::string_view name) const;  // WindowsPath + name
    std::string reportFolder() const;                    // of the submission's reports
};

// The process's own environment: a variable's value or nullopt. Programs pass it in; tests pass their own.
std::optional<std::string> environmentVariable(const char* name);

}  // namespace relay
