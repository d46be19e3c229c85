// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/Authorities.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <curl/curl.h>
#include <filesystem>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

// Names like "5ed36f99.0": look-ups in a certificate folder use no others.
bool isHashed(const std::string& name) {
    return name.size() > 9 && name[8] == '.' && name.find_first_not_of("0123456789abcdef") == 8 &&
           name.find_first_not_of("0123456789", 9) == npos;
}

// Files that cannot be read are left out, as any look-up in a folder does.
void addFolder(std::string_view folder, std::string& bundle) {
    std::error_code failure;
    std::filesystem::directory_iterator entries(folder, failure);
    for (; !failure && entries != std::filesystem::directory_iterator(); entries.increment(failure)) {
        if (!isHashed(entries->path().filename().string())) continue;
        try {
            bundle += '\n' + readFile(entries->path().string());
        } catch (const Failure&) {
        }
    }
}

// Bundle and folders as one file in memory; just the folders when the bundle cannot be read as a file.
Authorities inMemory(const std::string& file, const std::string& folders) {
    if (!fileExists(file) || ::access(file.c_str(), R_OK) != 0) return {{}, folders, {}, {}};
    std::string bundle = readFile(file);
    for (std::size_t start = 0; start <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', start), folders.size());
        addFolder(std::string_view(folders).substr(start, end - start), bundle);
        start = end + 1;
    }
    const int descriptor = ::memfd_create("certificates", MFD_CLOEXEC);
    if (descriptor < 0) throw Failure(std::strerror(errno));
    std::shared_ptr<void> memory(nullptr, [descriptor](void*) { ::close(descriptor); });
    if (::write(descriptor, bundle.data(), bundle.size()) != static_cast<ssize_t>(bundle.size()))
        throw Failure(std::strerror(errno));
    return {"/proc/self/fd/" + std::to_string(descriptor), {}, std::move(memory), {}};
}

}  // namespace

Authorities Authorities::fromEnvironment(
    const std::function<std::optional<std::string>(const char*)>& environment) {
    std::string file = environment("SSL_CERT_FILE").value_or("");
    std::string folder = environment("SSL_CERT_DIR").value_or("");
    if (!file.empty() && !folder.empty()) {
        try {
            return inMemory(file, folder);
        } catch (const std::exception& failure) {
            // Only a request by https needs it.
            return {std::move(file), std::move(folder), {}, failureText(failure)};
        }
    }
    // libcurl would wait for the other end of a pipe.
    std::error_code failure;
    if (!file.empty() && std::filesystem::exists(file, failure) && !fileExists(file))
        return {{}, {}, {}, file + ": Not a regular file"};
    if (!file.empty() || !folder.empty()) return {std::move(file), std::move(folder), {}, {}};
    // The system's certificate folder holds the same certificates as its bundle.
    const curl_version_info_data& built = *curl_version_info(CURLVERSION_NOW);
    if (built.cainfo != nullptr) return {built.cainfo, {}, {}, {}};
    return {{}, built.capath == nullptr ? "" : built.capath, {}, {}};
}

void Authorities::check() const {
    std::string why = problem;
    if (why.empty() && !file.empty() && ::access(file.c_str(), R_OK) != 0)
        why = file + ": " + std::strerror(errno);
    if (!why.empty()) throw Failure("The certificates for https cannot be read: " + why);
}

}  // namespace relay
