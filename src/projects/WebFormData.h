// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace relay {

struct WebsiteFields;

// A web form data file: what an order form on the web sent, one field a line. A line is "name: value", or
// "name=value" if it has no colon; unknown names and other lines are skipped.

// The title of the messages about one, and the filter of the dialog that opens it.
inline constexpr std::string_view kFormDataTitle = "Import Web Form Data";
inline constexpr std::string_view kWebFormFilter =
    "Text Files(*.txt)|*.txt|Data Files(*.dat)|*.dat|All Files(*.*)|*.*";

// The bytes of the file. Throws Failure when it cannot be read, is larger than a website file may be, or is
// UTF-16.
std::string readWebFormData(const std::string& file);

// Selects a website's category; called at each line of one with what the file has named so far.
using SelectFormCategory = std::function<void(std::string_view main, std::string_view sub)>;
// Empties title, web type, URLs, reports and the work area, then applies the lines in their order; the other
// fields keep what no line replaces. Returns how many lines were applied.
int applyWebFormData(std::string_view text, WebsiteFields& fields, const SelectFormCategory& select);
// What to say afterwards of the file's name and that number.
std::string webFormDataNotice(const std::string& file, int applied);

}  // namespace relay
