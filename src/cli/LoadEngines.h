// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class CommandLineContext;

// Loads the home's engines, or just their category tables. When the files are missing or unusable, returns
// false after a message that says what to do.
bool loadEngines(CommandLineContext& context);
bool loadEngineCategories(CommandLineContext& context);

}  // namespace relay
