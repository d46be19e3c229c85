// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RunLock.h"

#include "core/Failure.h"
#include "core/FileStore.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace relay {

RunLock::RunLock(const std::string& folder) : m_path(folder + "/.ranking-run") {
    // The run that ends may remove the file between the two steps.
    for (;;) {
        m_file.reset(
            ::open(m_path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600));
        if (m_file < 0) throw fileFailure(m_path, errno);
        if (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK) return;  // a file system without locks
            throw Failure(
                "A ranking of this profile is already running. Please wait for its end or stop it.");
        }
        if (hasName(m_file)) return;
    }
}

RunLock::~RunLock() {
    ::unlink(m_path.c_str());
}

}  // namespace relay
