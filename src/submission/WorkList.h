// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace relay {

class Rows;

// The key of a website's row: keys compare without regard to case and paths do not, so every capital is
// marked.
std::string siteKey(std::string_view path);
// The key of a URL's row.
std::string urlKey(std::string_view websiteFile, std::string_view URL);

// Fills lsvSiteSubmitting with the URLs of the checked rows of lsvSiteSelection, in their order: a URL may go
// out for two websites, but not twice for one. Calls `listed` for every URL of the files. Throws Failure 6
// "Overflow" where there are too many.
void listSiteURLs(const Rows& lsvSiteSelection, Rows& lsvSiteSubmitting, const std::function<void()>& listed);

}  // namespace relay
