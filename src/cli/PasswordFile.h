// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace relay {

class CommandLineContext;

// The password of --password-file: the first line of the file, or of standard input for "-", where it is not
// shown while it is typed. Throws Failure when the file cannot be read.
std::string passwordFromFile(CommandLineContext& context, const std::string& file);

}  // namespace relay
