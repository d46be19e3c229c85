// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace relay {

class Rows;

// URLs of a run and engines of a URL: both are counted in 16 bits.
inline constexpr int kMostOfWork = 32767;

// Fills lsvSiteSubmitting with the URLs of the checked rows of lsvSiteSelection, in their order: a URL may go
// out for two websites, but not twice for one. Calls `listed` for every URL of the files. Throws Failure 6
// "Overflow" where there are too many.
void listSiteURLs(const Rows& lsvSiteSelection, Rows& lsvSiteSubmitting, const std::function<void()>& listed);

}  // namespace relay
