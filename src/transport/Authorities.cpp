// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/Authorities.h"

#include "core/Failure.h"

#include <cerrno>
#include <cstring>
#include <curl/curl.h>
#include <unistd.h>

namespace relay {

Authorities Authorities::fromEnvironment(
    const std::function<std::optional<std::string>(const char*)>& environment) {
    Authorities named{environment("SSL_CERT_FILE").value_or(""), environment("SSL_CERT_DIR").value_or("")};
    if (!named.file.empty() || !named.folder.empty()) return named;
    // The folder that a system has beside its bundle holds the same certificates.
    const curl_version_info_data& built = *curl_version_info(CURLVERSION_NOW);
    if (built.cainfo != nullptr) return {built.cainfo, {}};
    return {{}, built.capath == nullptr ? "" : built.capath};
}

void Authorities::check() const {
    if (file.empty() || ::access(file.c_str(), R_OK) == 0) return;
    throw Failure("The certificates for https cannot be read: " + file + ": " + std::strerror(errno));
}

}  // namespace relay
