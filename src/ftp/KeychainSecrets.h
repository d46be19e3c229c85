// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/SecretStore.h"

#include <memory>

namespace relay {

// The secret service of the desktop, or null when the session bus has none. Belongs to the window program:
// the command line takes its password from a file.
std::unique_ptr<SecretStore> desktopSecrets();

}  // namespace relay
