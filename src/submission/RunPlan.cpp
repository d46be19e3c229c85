// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RunPlan.h"

namespace relay {

std::string siteKey(std::string_view path) {
    std::string key;
    for (const char c : path) {
        if ((c >= 'A' && c <= 'Z') || c == '\1') key += '\1';
        key += c;
    }
    return key;
}

std::string urlKey(std::string_view websiteFile, std::string_view URL) {
    return siteKey(websiteFile).append("|").append(URL);
}

}  // namespace relay
