// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class CommandLineContext;

// Loads the home's engines, or their category tables alone. False when the files are missing or unusable; the
// user was told, and what to do about it.
bool loadEngines(CommandLineContext& context);
bool loadEngineCategories(CommandLineContext& context);

}  // namespace relay
