// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// Engines that are sent the website's password. IndexNow engines use it as the site's key and refuse one that
// is empty or invented; but their refusal has a status below 499, which counts as a success.
namespace relay {

struct EngineLists;
struct clsEngines;

// True if the engine's template contains <PASSWORD>.
bool sendsPassword(const clsEngines& engine) noexcept;

// For users of the starter catalogue.
extern const std::string_view kPasswordKeyNotice;

// The warning about a website without a password: for the selected engines, or for one engine. Empty if none
// of them is sent the password.
std::string emptyPasswordWarning(const EngineLists& lists);
std::string emptyPasswordWarning(const clsEngines& engine);

}  // namespace relay
