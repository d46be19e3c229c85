// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpListing.h"

#include "core/Failure.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace relay {

namespace {

constexpr std::size_t kFields = 10;

std::string cleaned(std::string_view text) {
    std::string clean(text);
    cleanLineBreaks(clean);
    return clean;
}

std::int64_t numberFrom(std::string_view text) {
    std::int64_t number = 0;
    std::from_chars(text.begin(), text.end(), number);
    return std::max<std::int64_t>(number, 0);
}

std::string typeOf(std::string_view name, bool folder) {
    if (folder) return "Folder";
    return name.find(".htm") == npos ? "File" : "HTML File";
}

// "20260105123000" as "2026-01-05 12:30".
std::string mlsdDate(std::string_view time) {
    if (time.size() < 12 || time.substr(0, 12).find_first_not_of("0123456789") != npos) return {};
    const auto part = [time](std::size_t from, std::size_t length) {
        return std::string(time.substr(from, length));
    };
    return part(0, 4) + "-" + part(4, 2) + "-" + part(6, 2) + " " + part(8, 2) + ":" + part(10, 2);
}

// Columns 0 and up: name and type tell what a row is, whatever the language of the screen.
int rankOf(const RowView& row) {
    if (row.icon == kFolderIcon) return row.text.starts_with("\xC2\xA0") ? 0 : 1;
    return 2;
}

}  // namespace

std::optional<FtpEntry> readListLine(std::string_view line, std::string_view remotePath) {
    std::array<std::string_view, kFields> field;
    const std::size_t blank = line.find(' ');
    const std::string_view mode = line.substr(0, blank);
    std::size_t count = 0;
    for (std::size_t at = blank; at < line.size();) {
        const std::size_t begin = line.find_first_not_of(' ', at);
        if (begin == npos) break;
        at = std::min(line.find(' ', begin), line.size());
        if (count == kFields) throw Failure("Subscript out of range", 9);
        field[count++] = line.substr(begin, at - begin);
    }
    const bool link = mode.starts_with('l');
    const bool folder = link || mode.starts_with('d');
    const bool leads = link && field[8] == "->";
    FtpEntry entry;
    entry.name = trim(cleaned(leads ? field[9] : field[7]));
    if (entry.name.empty()) return std::nullopt;
    entry.path = leads ? entry.name : cleaned(remotePathOf(remotePath, entry.name));
    entry.type = typeOf(entry.name, folder);
    entry.size = numberFrom(field[3]);
    entry.date = std::string(field[4]).append(" ").append(field[5]).append(" ").append(field[6]);
    return entry;
}

std::optional<FtpEntry> readMlsdLine(std::string_view line, std::string_view remotePath) {
    const std::size_t blank = line.find(' ');
    if (blank == npos || blank + 1 == line.size()) return std::nullopt;
    FtpEntry entry;
    entry.name = line.substr(blank + 1);
    bool folder = false;
    for (std::size_t at = 0; at < blank;) {
        const std::size_t end = std::min(line.find(';', at), blank);
        const std::string_view fact = line.substr(at, end - at);
        at = end + 1;
        const std::size_t equals = std::min(fact.find('='), fact.size());
        const std::string_view name = fact.substr(0, equals);
        const std::string_view value = fact.substr(std::min(equals + 1, fact.size()));
        if (equalsNoCase(name, "type")) {
            if (equalsNoCase(value, "cdir") || equalsNoCase(value, "pdir")) return std::nullopt;
            folder = equalsNoCase(value, "dir") || startsWithNoCase(value, "OS.unix=slink") ||
                     startsWithNoCase(value, "OS.unix=symlink");
        } else if (equalsNoCase(name, "size")) {
            entry.size = numberFrom(value);
        } else if (equalsNoCase(name, "modify")) {
            entry.date = mlsdDate(value);
        }
    }
    entry.type = typeOf(entry.name, folder);
    entry.path = remotePathOf(remotePath, entry.name);
    return entry;
}

std::string GetUpDir(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    return slash == npos || slash == 0 ? "/" : std::string(path.substr(0, slash));
}

std::string remotePathOf(std::string_view folder, std::string_view name) {
    return std::string(folder).append(folder.ends_with('/') ? "" : "/").append(name);
}

std::string grouped(std::int64_t number) {
    std::string digits = std::to_string(number);
    const std::size_t first = digits.starts_with('-') ? 1 : 0;
    for (std::size_t at = digits.size(); at > first + 3;) digits.insert(at -= 3, ",");
    return digits;
}

void setUpFileList(Rows& rows) {
    rows.setColumns({"Name", "Type", "Size", "Date"});
    rows.setOrder({.rank = rankOf, .number = [](const RowView& row, int column) -> std::optional<double> {
                       if (column != 2) return std::nullopt;
                       std::string digits;
                       for (const char c : row.subItems.at(1))
                           if (c >= '0' && c <= '9') digits += c;
                       return leadingNumber(digits);
                   }});
}

Row upRow(std::string path) {
    return {.text = "\xC2\xA0Up",
            .subItems = {"Folder", "", ""},
            .icon = std::string(kFolderIcon),
            .tag = std::move(path)};
}

Row remoteRow(const FtpEntry& entry) {
    const bool folder = entry.isFolder();
    const std::string_view icon = folder                      ? kFolderIcon
                                  : entry.type == "HTML File" ? kWebFileIcon
                                                              : kWinFileIcon;
    return {.text = (folder ? "" : " ") + entry.name,
            .subItems = {entry.type, grouped(entry.size) + " Bytes", entry.date},
            .icon = std::string(icon),
            .tag = entry.path};
}

}  // namespace relay
