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

// The folder of the files that are installed with the programs: $KORVEL_RELAY_DATA where it is set, else
// "../share/korvel-relay" beside the program (whose folder comes without a trailing separator), the source
// tree that it was built from, or the folder it was configured to be installed to. Empty when none of them is
// there.
std::string installedDataFolder(std::string_view programFolder,
                                const std::function<std::optional<std::string>(const char*)>& environment);

// The path from the root, without "." and doubled separators. A ".." after a link leads where the system
// leads: to the folder above the link's target.
std::string absolutePath(std::string_view path);
// Makes the folder (and its parents) when absent; throws Failure with the folder's name and the reason.
void makeFolder(const std::string& folder, unsigned mode = 0755);
bool fileExists(std::string_view path) noexcept;  // a regular file, or a link to one
bool folderExists(std::string_view path) noexcept;
// Copies country.kws and cat.kws from `installedData` into AppPath where they are absent, makes the folders
// of AppPath and WindowsPath. Never overwrites. Throws Failure when the home cannot be written.
void prepareHome(const Paths& paths, std::string_view installedData);

// The one gate for a name that came from a file, a page or a server before it becomes part of a path: throws
// Failure on an empty name, "." and "..", separators (slash, backslash), control bytes and names over 255
// bytes.
std::string safeFileName(std::string_view name);
// The same gate for names that must be mended rather than refused (report files): separators and control
// bytes become "_", leading dots too, and the name is cut to `limit` bytes.
std::string mendedFileName(std::string_view name, std::size_t limit = 200);

}  // namespace relay
