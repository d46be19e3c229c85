// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// Names and parts of paths, as text; nothing here looks at the disk.
namespace relay {

// The part before the last separator: "." if there is none, "/" for a file in the root.
std::string folderOf(std::string_view path);
// The part after the last separator, extension included.
std::string getFileNameFromFile(std::string_view path);
std::string withoutEndSlash(std::string_view folder);

// Every name from a file, a page or a server passes here before it becomes part of a path. Throws Failure on
// an empty name, "." and "..", separators (slash, backslash), control bytes and names over 255 bytes.
std::string safeFileName(std::string_view name);
// The same for names that are mended rather than refused (report files): separators, control bytes and
// leading dots become "_", and the name is cut to `limit` bytes.
std::string mendedFileName(std::string_view name, std::size_t limit = 200);

}  // namespace relay
