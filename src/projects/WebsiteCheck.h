// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/WebsiteFields.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

class Prompts;

// The tabs of the website panel, SSTab1, in their order.
enum class WebsiteTab { SiteInfo, Urls, Category, Contact, Reports };

// A field that is not filled in: its control, its tab, and the message for the user.
struct MissingField final {
    std::string_view control;
    WebsiteTab tab;
    std::string_view message;
};

// True for a tab or another control character in the value: a request with it in its URL would fail before it
// is sent. Line breaks do not count, as none reaches a file. The message follows the field's name.
bool breaksGet(std::string_view value);
inline constexpr std::string_view kBreaksGet =
    ": contains a tab or another control character; engines that take it by GET cannot be sent anything.";
// The message for the first such field of a website; empty if there is none.
std::string breaksGetNotice(const WebsiteFields& fields);

// The first field that fails the check before saving. Nothing is trimmed, so a blank passes.
std::optional<MissingField> firstMissingField(const WebsiteFields& fields);
// The check only warns: for a missing field, `show` brings it to the front and the user is asked whether to
// save anyway.
bool isValidFields(const WebsiteFields& fields, Prompts& prompts,
                   const std::function<void(const MissingField&)>& show);

}  // namespace relay
