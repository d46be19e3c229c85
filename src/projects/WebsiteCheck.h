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

// A field that is not filled in: its control, the tab it stands on, and the words for the user.
struct MissingField final {
    std::string_view control;
    WebsiteTab tab;
    std::string_view message;
};

// A tab or another control character in a value ends every request that carries it in its URL before it is
// sent. Line breaks do not count: none reaches a file. The words follow the field's name.
bool breaksGet(std::string_view value);
inline constexpr std::string_view kBreaksGet =
    ": holds a tab or another control character, so no engine that takes it by GET can be sent anything.";
// The words for the first such field of a website; empty when there is none.
std::string breaksGetNotice(const WebsiteFields& fields);

// The first field that fails the check before saving. Nothing is trimmed, so a blank passes.
std::optional<MissingField> firstMissingField(const WebsiteFields& fields);
// The check warns and does not forbid: with a missing field `show` brings it to the front, and the user is
// asked whether to save anyway.
bool isValidFields(const WebsiteFields& fields, Prompts& prompts,
                   const std::function<void(const MissingField&)>& show);

}  // namespace relay
