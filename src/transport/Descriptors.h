// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace relay {

// Raises the limit of open files to what the largest pool can use, as far as the hard limit allows. Call at
// program start. A limit that cannot be raised stays as it is.
void raiseDescriptorLimit() noexcept;

// How many connections can be open besides the files open now: 1 to 32767. Beyond that, requests would fail
// for lack of descriptors.
std::int16_t mostConnections() noexcept;
// The same under a limit of `descriptors` with `open` of them in use.
std::int16_t mostConnections(std::size_t descriptors, std::size_t open) noexcept;

}  // namespace relay
