// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace relay {

class Rows;

// The limit for URLs of a run and for engines: both are counted in 16 bits.
inline constexpr int kMostOfWork = 32767;

// Fills lsvSiteSubmitting with the URLs of the checked rows of lsvSiteSelection, in order; the same URL once
// per website. Calls `listed` for every URL in the files. Throws Failure 6 "Overflow" if there are too many.
void listSiteURLs(const Rows& lsvSiteSelection, Rows& lsvSiteSubmitting, const std::function<void()>& listed);

}  // namespace relay
