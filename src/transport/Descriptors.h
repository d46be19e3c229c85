// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace relay {

// Raises the limit of files this program may have open as far as the largest pool can use and the hard limit
// allows. At the start of a program; a limit that cannot be raised stays as it is.
void raiseDescriptorLimit() noexcept;

// How many connections can be open at a time beside the files that are open now: 1 to 32767. More would end
// healthy requests for want of a descriptor.
std::int16_t mostConnections() noexcept;
// The same under a limit of `descriptors` with `open` of them in use.
std::int16_t mostConnections(std::size_t descriptors, std::size_t open) noexcept;

}  // namespace relay
