// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace relay {

class EngineCollection;

// The HTML page that lists all engines by type. Names are not escaped.
std::string engineListPage(const EngineCollection& engines);

}  // namespace relay
