// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/IndexNowKeyFile.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Services.h"

#include <algorithm>

namespace relay {

std::string indexNowKeyProblem(std::string_view key) {
    const bool known = std::all_of(key.begin(), key.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
    });
    if (known && key.size() >= 8 && key.size() <= 128) return {};
    return "An IndexNow key has 8 to 128 characters: letters a to z, digits and dashes.";
}

std::string writeIndexNowKeyFile(const Services& services, std::string_view key) {
    const std::string problem = indexNowKeyProblem(key);
    if (!problem.empty()) throw Failure(problem);
    const std::string folder = services.paths.inApp("IndexNow");
    makeFolder(folder);
    const std::string file = folder + "/" + std::string(key) + ".txt";
    writeFile(file, key);
    return file;
}

}  // namespace relay
