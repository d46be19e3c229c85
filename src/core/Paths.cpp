// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Paths.h"

#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/FileSystem.h"

#include <cstdlib>

namespace relay {

namespace {

Paths inFolders(std::string_view app, std::string settings) {
    Paths paths;
    paths.AppPath = withoutEndSlash(app);
    paths.WindowsPath = paths.inApp("data/");
    paths.ProjectFilePath = paths.inApp("project.kwj");
    paths.settingsFile = std::move(settings);
    return paths;
}

}  // namespace

Paths Paths::insideHome(std::string_view home) {
    const std::string folder = absolutePath(home);
    return inFolders(folder, withoutEndSlash(folder) + "/settings.ini");
}

Paths Paths::fromEnvironment(const std::function<std::optional<std::string>(const char*)>& environment) {
    const auto value = [&](const char* name) { return environment(name).value_or(std::string()); };
    const std::string home = value("KORVEL_RELAY_HOME");
    if (!home.empty()) return insideHome(home);
    const auto folder = [&](const char* name, const char* fallback) {
        // A relative folder is to be ignored in these two.
        std::string given = value(name);
        if (!given.empty() && given.front() == '/') return withoutEndSlash(given);
        const std::string userHome = value("HOME");
        if (userHome.empty()) throw Failure(std::string("Neither ") + name + " nor HOME is set", 75);
        return withoutEndSlash(userHome) + fallback;
    };
    return inFolders(folder("XDG_DATA_HOME", "/.local/share") + "/korvel-relay",
                     folder("XDG_CONFIG_HOME", "/.config") + "/korvel-relay/settings.ini");
}

std::string Paths::inApp(std::string_view name) const {
    return AppPath + "/" + std::string(name);
}

std::string Paths::reportFolder() const {
    return inApp("Reports/Submition");
}

std::string Paths::inWindows(std::string_view name) const {
    return WindowsPath + std::string(name);
}

std::optional<std::string> environmentVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace relay
