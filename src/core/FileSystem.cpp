// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileSystem.h"

#include "core/FileNames.h"
#include "core/FileStore.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace relay {

namespace {

bool statusOf(std::string_view path, struct stat& status) noexcept {
    try {
        return ::stat(std::string(path).c_str(), &status) == 0;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

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
    if (const std::string parent = folderOf(path); parent != ".") makeFolder(parent);
    if (::mkdir(path.c_str(), mode) == 0 || (errno == EEXIST && folderExists(path))) return;
    throw fileFailure(path, errno);
}

bool fileExists(std::string_view path) noexcept {
    struct stat status {};
    return statusOf(path, status) && S_ISREG(status.st_mode);
}

bool folderExists(std::string_view path) noexcept {
    struct stat status {};
    return statusOf(path, status) && S_ISDIR(status.st_mode);
}

std::optional<std::int64_t> changeTime(std::string_view path) noexcept {
    struct stat status {};
    if (!statusOf(path, status)) return std::nullopt;
    return status.st_mtime;
}

FolderContent listFolder(const std::string& folder, std::error_code& error, bool withHidden) {
    namespace fs = std::filesystem;
    FolderContent content;
    error.clear();
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        std::string name = entries->path().filename().string();
        if (!withHidden && name.starts_with('.')) continue;
        std::error_code vanished;
        if (entries->is_directory(vanished))
            content.folders.push_back(std::move(name));
        else if (entries->is_regular_file(vanished))
            content.files.push_back(std::move(name));
    }
    std::sort(content.files.begin(), content.files.end());
    std::sort(content.folders.begin(), content.folders.end());
    return content;
}

}  // namespace relay
