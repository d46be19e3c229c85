// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// Engines that are sent the website's password. Those of IndexNow take it as the site's key, and refuse one
// that is empty or made up; yet their refusal has a status below 499, which counts as a success.
namespace relay {

struct EngineLists;
struct clsEngines;

// The engine's template holds <PASSWORD>.
bool sendsPassword(const clsEngines& engine) noexcept;

// What a user of the starter catalogue should know.
extern const std::string_view kPasswordKeyNotice;

// The warning for a website without a password when one of the selected engines is sent it, or the one engine
// is; empty where none is.
std::string emptyPasswordWarning(const EngineLists& lists);
std::string emptyPasswordWarning(const clsEngines& engine);

}  // namespace relay
