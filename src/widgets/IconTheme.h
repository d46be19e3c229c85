// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

#include <string_view>

namespace relay {

// The program's picture for an icon key ("ENG", "ProjectFolder", "NewWeb", ...); keys are case-sensitive. The
// drawings have two colours, which follow the application's palette when painted, and are drawn in device
// pixels, so they are sharp at every scale. A key without a drawing gives an icon that paints nothing.
QIcon themedIcon(std::string_view key);
// The program's own coloured mark.
QIcon programIcon();

}  // namespace relay
