// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileNames.h"

#include "core/Failure.h"
#include "core/Text.h"

#include <algorithm>

namespace relay {

namespace {

bool isUnsafe(char c) {
    return isControlByte(c) || c == '/' || c == '\\';
}

}  // namespace

std::string folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == npos) return ".";
    return std::string(path.substr(0, std::max<std::size_t>(slash, 1)));
}

std::string getFileNameFromFile(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

std::string withoutEndSlash(std::string_view folder) {
    while (!folder.empty() && folder.back() == '/') folder.remove_suffix(1);
    return std::string(folder);
}

std::string safeFileName(std::string_view name) {
    const bool refused = name.empty() || name == "." || name == ".." || name.size() > 255 ||
                         std::any_of(name.begin(), name.end(), isUnsafe);
    if (refused) throw Failure("Bad file name: " + mendedFileName(name), 75);
    return std::string(name);
}

std::string mendedFileName(std::string_view name, std::size_t limit) {
    std::string mended(name.substr(0, std::max<std::size_t>(limit, 1)));
    std::replace_if(mended.begin(), mended.end(), isUnsafe, '_');
    for (std::size_t i = 0; i < mended.size() && mended[i] == '.'; ++i) mended[i] = '_';
    return mended.empty() ? "_" : mended;
}

}  // namespace relay
