// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace relay {

// Where the certificates stand of the authorities that the servers of https are checked against.
struct Authorities final {
    std::string
        file;  // a bundle; read once a day as long as there is no folder beside it, else for each request
    std::string folder;  // of files named by their hashes, several parted by ":"; searched for each request

    // What SSL_CERT_FILE and SSL_CERT_DIR of the environment name; without either, the system's bundle.
    static Authorities fromEnvironment(
        const std::function<std::optional<std::string>(const char*)>& environment);
    // Throws Failure when the bundle cannot be read: every server would be refused.
    void check() const;
};

}  // namespace relay
