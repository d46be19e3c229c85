// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// Percent escapes and the parts of a URL, by plain searches; none of these judges whether a URL is valid.
namespace relay {

// For a URL query or a form body: blank to "+", the listed punctuation to escapes, all else as it stands.
// The double quote goes out as "%27".
std::string EncodeURLValue(std::string_view text);
// The reverse: percent escapes to characters (the name is of long standing). Unknown escapes are removed.
std::string EncodeString(std::string_view text);
std::string GetURLHost(std::string_view url);
std::string GetURLPath(std::string_view url);
std::string GetURLDirectory(std::string_view url);
// A flat name for report and result files. Bytes that could leave the folder are gone; control bytes are not
// judged here: pass the name through safeFileName before it becomes a path.
std::string URLToFileName(std::string_view url);

}  // namespace relay
