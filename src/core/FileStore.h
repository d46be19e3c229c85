// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"

#include <functional>
#include <string>
#include <string_view>

// Reading and writing whole files. A write goes to a temporary file in the same folder, is flushed, renamed
// over the old one, and the folder is flushed: a crash or a full disk leaves the old file or the new one,
// whole. Where the path is a link, the link is replaced; what it points to is never written through.
// Temporary files of programs that were killed are removed by the next save in their folder.
namespace relay {

enum class Readable { Everyone, OwnerOnly };

// A failure of the file system: the path, shown so that it stays on one line, and the reason.
Failure fileFailure(const std::string& path, const std::string& reason, int number);
Failure fileFailure(const std::string& path, int error);  // in the system's words for an errno value

// The whole file as bytes. Throws Failure (53 when absent; over `limit` bytes; unreadable; not a regular
// file).
std::string readFile(const std::string& path, std::size_t limit = 256u * 1024 * 1024);
// Keeps the permissions of an existing file unless OwnerOnly asks for 0600. Throws Failure with path and
// reason.
void writeFile(const std::string& path, std::string_view bytes, Readable readable = Readable::Everyone);
// The same without the two flushes, for files that can be made again: after a power cut the file may be
// empty.
void replaceFile(const std::string& path, std::string_view bytes);
// Appends in one write to the end of the file, creating it (mode 0644, or 0600 for OwnerOnly).
void appendFile(const std::string& path, std::string_view bytes, Readable readable = Readable::Everyone);
// Removes the file; false when there was none. Throws Failure when it is there and cannot be removed.
bool removeFile(const std::string& path);

// The steps of a save, in the order they happen. Tests make the n-th one fail.
enum class SaveStep { Create, Write, Flush, Rename, FolderFlush };
// Called before each step; returns 0 to go on or an errno value with which the step fails. Empty in the
// program. Returns the hook that was set before.
using SaveFault = std::function<int(SaveStep)>;
SaveFault setSaveFault(SaveFault fault);

}  // namespace relay
