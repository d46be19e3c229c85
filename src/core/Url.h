// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Paths.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Percent escapes and the parts of a URL, found by plain searches; none of these checks that a URL is valid.
namespace relay {

// For a URL query or a form body: blank becomes "+", listed punctuation is escaped, all else stays. The
// double quote becomes "%27".
std::string EncodeURLValue(std::string_view text);
// The reverse, despite its old name: decodes percent escapes and removes unknown ones.
std::string EncodeString(std::string_view text);
std::string GetURLHost(std::string_view url);
std::string GetURLPath(std::string_view url);
std::string GetURLDirectory(std::string_view url);
// A name without folders for report and result files. Control bytes stay: pass the name through safeFileName
// before using it as a path.
std::string URLToFileName(std::string_view url);

// The address as it can be requested: "http://" in front of one without "://".
std::string withScheme(std::string_view address);

// Where a text that may be a web address or a local file was typed.
enum class TypedIn {
    Field,        // a file begins with "/" or "~/", where "~" is the user's home folder
    CommandLine,  // a web address begins with "http://" or "https://"; all else is a file, as the shell left
                  // it
};
// The path of the local file that the text names, or nullopt for a web address.
std::optional<std::string> localPath(
    std::string_view text, TypedIn where,
    const std::function<std::optional<std::string>(const char*)>& environment = environmentVariable);

}  // namespace relay
