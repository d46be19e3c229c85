// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace relay {

// Owns a file descriptor and closes it at the end; negative if there is none.
class Descriptor final {
  public:
    explicit Descriptor(int descriptor = -1) noexcept : m_descriptor(descriptor) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    operator int() const noexcept { return m_descriptor; }
    int release() noexcept { return std::exchange(m_descriptor, -1); }
    // Closes the file and takes the new one; returns the result of ::close.
    int reset(int descriptor = -1) noexcept {
        const int old = std::exchange(m_descriptor, descriptor);
        return old < 0 ? 0 : ::close(old);
    }

  private:
    int m_descriptor;
};

// False if the file has been removed.
inline bool hasName(int file) noexcept {
    struct stat status {};
    return ::fstat(file, &status) == 0 && status.st_nlink > 0;
}

inline bool isOwnFile(const struct stat& status) noexcept {
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

}  // namespace relay
