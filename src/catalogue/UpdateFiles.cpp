// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/UpdateFiles.h"

#include "core/Failure.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace relay {

std::string UpdateFile::path(const Paths& paths) const {
    return inWindows ? paths.inWindows(name) : paths.inApp(name);
}

std::string serverAddress(std::string_view host) {
    const std::string_view written = host;
    host = trim(host);
    if (startsWithNoCase(host, "http://")) host.remove_prefix(7);
    if (host.ends_with('/')) host.remove_suffix(1);
    const auto allowed = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || std::strchr(".-_:[]", c) != nullptr;
    };
    if (host.empty() || !std::all_of(host.begin(), host.end(), allowed))
        throw Failure("\"" + escapeControlCharacters(written) +
                      "\" is no server. Write HOST or HOST:PORT, as in 127.0.0.1:8080.");
    return "http://" + std::string(host);
}

}  // namespace relay
