// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Row.h"
#include "core/Rows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Reading a server's directory listing.
namespace relay {

// One entry of a remote folder.
struct FtpEntry final {
    std::string name;
    std::string type;       // "Folder", "HTML File" or "File"
    std::int64_t size = 0;  // bytes
    std::string date;       // as the server wrote it ("Jan 5 12:30"); of MLSD "2026-01-05 12:30" in UTC
    std::string path;       // full path on the server; of a link, its target as it stands

    bool isFolder() const noexcept { return type == "Folder"; }
};

// One line of a UNIX-style LIST reply; nothing for a line without a name, such as the summary that begins a
// listing. A name with a blank is cut there. Throws Failure "Subscript out of range" on more than ten fields.
std::optional<FtpEntry> readListLine(std::string_view line, std::string_view remotePath);
// One line of an MLSD reply: names whole. Nothing for a line without a name and for the folder itself and its
// parent.
std::optional<FtpEntry> readMlsdLine(std::string_view line, std::string_view remotePath);

// The parent path, cut at the last "/"; the root is its own parent.
std::string GetUpDir(std::string_view path);
// The path of `name` in a remote folder.
std::string remotePathOf(std::string_view folder, std::string_view name);

// Icon names of the lists of files.
inline constexpr std::string_view kFolderIcon = "Folder";
inline constexpr std::string_view kWebFileIcon = "WebFile";
inline constexpr std::string_view kWinFileIcon = "WinFile";

// Titles of a list of files ("Name", "Type", "Size", "Date") and its order: "Up" first, then folders, then
// files, whichever way the list is sorted; sizes by number.
void setUpFileList(Rows& rows);
// The row that leads to the folder above: text is character 160 and "Up", type "Folder", tag `path`.
Row upRow(std::string path);
// The row of an entry: folders by their name, files with a blank before it.
Row remoteRow(const FtpEntry& entry);
// "1,234,567"
std::string grouped(std::int64_t number);

}  // namespace relay
