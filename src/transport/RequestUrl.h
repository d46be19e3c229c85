// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

// The URL as sent: blanks at both ends dropped, blanks inside as "%20", bytes above 127 in the path as "%xx"
// and elsewhere unchanged, a fragment dropped. Throws Failure on a control byte, a scheme other than http and
// https, and a user name or password in the URL, as credentials are never sent.
std::string wireUrl(std::string_view url);

// The URL for a log line: control bytes as "%XX", user name and password as "***".
std::string loggableUrl(std::string_view url);

}  // namespace relay
