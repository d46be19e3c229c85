// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace relay {

// Where the certificates stand of the authorities that the servers of https are checked against: a bundle or
// a folder. libcurl keeps what it read from a bundle only as long as there is no folder beside it.
struct Authorities final {
    std::string file;
    std::string folder;            // of files named by their hashes, several parted by ":"
    std::shared_ptr<void> memory;  // of a file that stands in memory only
    std::string problem;           // why there is none, or empty

    // What SSL_CERT_FILE and SSL_CERT_DIR of the environment name, where both are set as one bundle in
    // memory; without either, the system's bundle.
    static Authorities fromEnvironment(
        const std::function<std::optional<std::string>(const char*)>& environment);
    // Throws Failure when the bundle cannot be read, or is no file: every server would be refused.
    void check() const;
};

}  // namespace relay
