// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

class CommandLineContext;

// A page of the command line: a file, or an address of the web.
struct SourcePage final {
    std::string text;      // what there is of it
    std::string problem;   // why it is missing or incomplete; empty if it is whole
    bool isPage = false;   // there is something to work on
    bool stopped = false;  // Ctrl-C
};
// Reads the file, or fetches the page; `purpose` is the request's. Throws Failure for a file that cannot be
// read.
SourcePage readSourcePage(CommandLineContext& context, const std::string& name, std::string_view purpose);

}  // namespace relay
