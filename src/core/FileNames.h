// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// Names and parts of paths, as text; these functions do not access the disk.
namespace relay {

// The part before the last separator: "." if there is none, "/" for a file in the root.
std::string folderOf(std::string_view path);
// The part after the last separator, extension included.
std::string getFileNameFromFile(std::string_view path);
std::string withoutEndSlash(std::string_view folder);

// Use for every name from a file, a page or a server before it becomes part of a path. Throws Failure on an
// empty name, "." and "..", separators (slash, backslash), control bytes and names over 255 bytes.
std::string safeFileName(std::string_view name);
// Changes a name instead of refusing it (report files): separators, control bytes and leading dots become
// "_", and the name is cut to `limit` bytes.
std::string mendedFileName(std::string_view name, std::size_t limit = 200);

}  // namespace relay
