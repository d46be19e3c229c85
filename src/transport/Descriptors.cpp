// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/Descriptors.h"

#include <algorithm>
#include <dirent.h>
#include <limits>
#include <sys/resource.h>

namespace relay {

namespace {

constexpr std::size_t kMost = std::numeric_limits<std::int16_t>::max();
// A connection uses three while its host name is looked up: a pair of sockets that signal the result and one
// to the name server. Later it uses one socket, or two while both address families are tried.
constexpr std::size_t kForEachConnection = 3;
// Reports, the log, a certificate file, and files that the desktop's libraries open.
constexpr std::size_t kSpare = 64;

rlimit descriptorLimit() noexcept {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) limit = {1024, 1024};
    return limit;
}

std::size_t openDescriptors() noexcept {
    DIR* const folder = ::opendir("/proc/self/fd");
    if (folder == nullptr) return kSpare;
    std::size_t count = 0;
    while (const dirent* entry = ::readdir(folder)) count += entry->d_name[0] == '.' ? 0 : 1;
    ::closedir(folder);
    return count;
}

}  // namespace

void raiseDescriptorLimit() noexcept {
    rlimit limit = descriptorLimit();
    const rlim_t wanted = std::min<rlim_t>(limit.rlim_max, kForEachConnection * kMost + 1024);
    if (limit.rlim_cur >= wanted) return;
    limit.rlim_cur = wanted;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

std::int16_t mostConnections() noexcept {
    return mostConnections(descriptorLimit().rlim_cur, openDescriptors());
}

std::int16_t mostConnections(std::size_t descriptors, std::size_t open) noexcept {
    const std::size_t taken = open + kSpare;
    const std::size_t left = descriptors > taken ? descriptors - taken : 0;
    return static_cast<std::int16_t>(std::clamp<std::size_t>(left / kForEachConnection, 1, kMost));
}

}  // namespace relay
