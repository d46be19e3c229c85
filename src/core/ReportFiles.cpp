// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ReportFiles.h"

#include "core/Clock.h"
#include "core/FileNames.h"
#include "core/Text.h"
#include "core/Url.h"

#include <algorithm>
#include <cstdio>

namespace relay {

namespace {

constexpr std::size_t kLongestName = 200;  // bytes
constexpr std::size_t kKeptOfLongName = 180;

std::string withChecksum(std::string_view name) {
    char sum[10];
    std::snprintf(sum, sizeof sum, "~%08x", static_cast<unsigned>(crc32(name)));
    std::size_t kept = std::min(kKeptOfLongName, name.size());
    // Not within a character of UTF-8.
    for (int i = 0; i < 3 && kept < name.size() && (static_cast<unsigned char>(name[kept]) & 0xC0) == 0x80;
         ++i)
        --kept;
    return std::string(left(name, kept)) + sum;
}

}  // namespace

std::string reportFileName(std::string_view title, const QDateTime& time) {
    std::string name = URLToFileName(title);
    if (name.size() > kLongestName) name = withChecksum(name);
    return (name.empty() ? name : mendedFileName(name)) + "(" + fileDate(time) + ").html";
}

std::string distinctFileName(std::string_view name) {
    if (name.size() <= kLongestName && mendedFileName(name) == name) return std::string(name);
    return mendedFileName(withChecksum(name));
}

}  // namespace relay
