// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <string>
#include <string_view>

namespace relay {

// "a.test_b_c(2002-Apr-01-1305).html" for a report on a URL or under another title: never a path. A name over
// 200 bytes is cut to 180, or just before a character of UTF-8 that would be split, and gets "~" and the
// CRC-32 of the whole name in hex digits, so that long ones stay distinct.
std::string reportFileName(std::string_view title, const QDateTime& time);

// The name if it is a plain file name of at most 200 bytes; otherwise it is mended and cut to 180 bytes, and
// gets the checksum as above.
std::string distinctFileName(std::string_view name);

}  // namespace relay
