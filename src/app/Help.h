// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Services;

// The first page of the guide.
inline constexpr std::string_view kHelpContents = "contents.md";

// A screen or a part of one, by the name of its form or page, and the page of the guide about it: a file and,
// after "#", the heading.
struct HelpTopic final {
    std::string_view screen;
    std::string_view page;
};
const std::vector<HelpTopic>& helpTopics();
// The page about the screen; empty if there is none.
std::string_view helpPageOf(std::string_view screen);
// The name by which links to a heading know it: "2. A website" is "2-a-website".
std::string headingName(std::string_view heading);

// Opens the help: the file korvel.hlp of the program folder in the system's handler, else the installed guide
// by calling `showGuide`. Shows a message when neither is there.
void openHelp(const Services& services, const std::function<void()>& showGuide);

}  // namespace relay
