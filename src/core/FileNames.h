// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// Names and parts of paths, as text: nothing here looks at the disk.
namespace relay {

// The part in front of the last separator: "." when there is none, "/" for what stands right below the root.
std::string folderOf(std::string_view path);
// The part behind the last separator, extension included.
std::string getFileNameFromFile(std::string_view path);
std::string withoutEndSlash(std::string_view folder);

// The one gate for a name that came from a file, a page or a server before it becomes part of a path: throws
// Failure on an empty name, "." and "..", separators (slash, backslash), control bytes and names over 255
// bytes.
std::string safeFileName(std::string_view name);
// The same gate for names that must be mended rather than refused (report files): separators and control
// bytes become "_", leading dots too, and the name is cut to `limit` bytes.
std::string mendedFileName(std::string_view name, std::size_t limit = 200);

}  // namespace relay
