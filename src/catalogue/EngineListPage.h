// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace relay {

class EngineCollection;

// The page that lists all engines by type. Names stand in it as they are.
std::string engineListPage(const EngineCollection& engines);

}  // namespace relay
