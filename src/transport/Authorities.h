// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace relay {

// Where to find the certificates of the authorities that https servers are checked against: a bundle or a
// folder. libcurl keeps a bundle it has read in memory only if there is no folder beside it.
struct Authorities final {
    std::string file;
    std::string folder;            // files named by their hashes; several folders are separated by ":"
    std::shared_ptr<void> memory;  // owns a file that exists only in memory
    std::string problem;           // why there are none, or empty

    // What SSL_CERT_FILE and SSL_CERT_DIR name, joined into one bundle in memory if both are set; the
    // system's bundle if neither is.
    static Authorities fromEnvironment(
        const std::function<std::optional<std::string>(const char*)>& environment);
    // Throws Failure when the bundle cannot be read or is not a file: every server would be refused.
    void check() const;
};

}  // namespace relay
