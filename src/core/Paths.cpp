// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Paths.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace relay {

namespace {

std::string withoutEndSlash(std::string_view folder) {
    while (!folder.empty() && folder.back() == '/') folder.remove_suffix(1);
    return std::string(folder);
}

Paths inFolders(std::string_view app, std::string settings) {
    Paths paths;
    paths.AppPath = withoutEndSlash(app);
    paths.WindowsPath = paths.inApp("data/");
    paths.ProjectFilePath = paths.inApp("project.kwj");
    paths.settingsFile = std::move(settings);
    return paths;
}

bool statusOf(std::string_view path, struct stat& status) noexcept {
    try {
        return ::stat(std::string(path).c_str(), &status) == 0;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool isUnsafe(char c) {
    return isControlByte(c) || c == '/' || c == '\\';
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

std::string absolutePath(std::string_view path) {
    const std::filesystem::path absolute = std::filesystem::absolute(path);
    const bool climbs = std::find(absolute.begin(), absolute.end(), "..") != absolute.end();
    if (!climbs) return absolute.lexically_normal().string();
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(absolute, error);
    return error ? absolute.string() : resolved.string();
}

void makeFolder(const std::string& folder, unsigned mode) {
    if (folder.empty() || folderExists(folder)) return;
    const std::string path = withoutEndSlash(folder);
    const std::size_t slash = path.rfind('/');
    if (slash != std::string::npos && slash > 0) makeFolder(path.substr(0, slash));
    if (::mkdir(path.c_str(), mode) == 0 || (errno == EEXIST && folderExists(path))) return;
    const int error = errno;
    const int number = error == EACCES || error == EPERM || error == EROFS ? 70 : error == ENOSPC ? 61 : 75;
    throw fileFailure(path, std::generic_category().message(error), number);
}

bool fileExists(std::string_view path) noexcept {
    struct stat status {};
    return statusOf(path, status) && S_ISREG(status.st_mode);
}

bool folderExists(std::string_view path) noexcept {
    struct stat status {};
    return statusOf(path, status) && S_ISDIR(status.st_mode);
}

void prepareHome(const Paths& paths, std::string_view installedData) {
    makeFolder(paths.AppPath);
    makeFolder(paths.WindowsPath);
    for (const char* const name : {"country.kws", "cat.kws"}) {
        const std::string target = paths.inApp(name);
        const std::string source = std::string(installedData) + "/" + name;
        struct stat status {};
        // A link that leads nowhere is there too: it is the user's, and stays.
        const bool absent = ::lstat(target.c_str(), &status) != 0 && errno == ENOENT;
        if (absent && fileExists(source)) writeFile(target, readFile(source));
    }
}

std::string safeFileName(std::string_view name) {
    const bool refused = name.empty() || name == "." || name == ".." || name.size() > 255 ||
                         std::any_of(name.begin(), name.end(), isUnsafe);
    if (refused) throw Failure("Bad file name: " + mendedFileName(name), 75);
    return std::string(name);
}

std::string mendedFileName(std::string_view name, std::size_t limit) {
    std::string mended(name.substr(0, std::max<std::size_t>(limit, 1)));
    std::replace_if(mended.begin(), mended.end(), isUnsafe, '_');
    for (std::size_t i = 0; i < mended.size() && mended[i] == '.'; ++i) mended[i] = '_';
    return mended.empty() ? "_" : mended;
}

}  // namespace relay
