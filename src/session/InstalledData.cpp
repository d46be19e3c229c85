// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/InstalledData.h"

#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"

#include <cerrno>
#include <sys/stat.h>

namespace relay {

std::string installedDataFolder(std::string_view programFolder,
                                const std::function<std::optional<std::string>(const char*)>& environment) {
    const std::optional<std::string> chosen = environment("KORVEL_RELAY_DATA");
    if (chosen && !chosen->empty()) return *chosen;
    const std::string places[] = {std::string(programFolder) + "/../share/korvel-relay",
                                  RELAY_SOURCE_DATA_FOLDER, RELAY_INSTALLED_DATA_FOLDER};
    for (const std::string& place : places) {
        if (fileExists(place + "/country.kws")) return place;
    }
    return {};
}

std::string installedGuideFolder(const std::string& installedData) {
    for (const std::string& place : {installedData + "/guide", std::string(RELAY_SOURCE_GUIDE_FOLDER),
                                     std::string(RELAY_INSTALLED_DATA_FOLDER "/guide")})
        if (fileExists(place + "/contents.md")) return place;
    return {};
}

void prepareHome(const Paths& paths, std::string_view installedData) {
    makeFolder(paths.AppPath);
    makeFolder(paths.WindowsPath);
    for (const char* const name : {"country.kws", "cat.kws"}) {
        const std::string target = paths.inApp(name);
        const std::string source = std::string(installedData) + "/" + name;
        struct stat status {};
        // A dangling link counts as present: it belongs to the user.
        const bool absent = ::lstat(target.c_str(), &status) != 0 && errno == ENOENT;
        if (absent && fileExists(source)) writeFile(target, readFile(source));
    }
}

}  // namespace relay
