// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace relay {

// The path from the root, without "." and doubled separators. A ".." after a link leads to the folder above
// the link's target, as in the system.
std::string absolutePath(std::string_view path);
// Makes the folder (and its parents) if missing; throws Failure with the folder's name and the reason.
void makeFolder(const std::string& folder, unsigned mode = 0755);
bool fileExists(std::string_view path) noexcept;  // a regular file, or a link to one
bool folderExists(std::string_view path) noexcept;
// When the file's content was changed last, in seconds since 1970; nullopt when there is no such file.
std::optional<std::int64_t> changeTime(std::string_view path) noexcept;

// The names in a folder, sorted by their bytes; a link counts as what it leads to.
struct FolderContent final {
    std::vector<std::string> folders;
    std::vector<std::string> files;
};
// `error` is set when the folder cannot be read. Names that begin with a dot are hidden ones.
FolderContent listFolder(const std::string& folder, std::error_code& error, bool withHidden = false);

}  // namespace relay
