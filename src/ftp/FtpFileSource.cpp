// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpFileSource.h"

#include "core/Failure.h"
#include "core/FileStore.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

// Without waiting for the other end of a pipe.
std::int64_t openToSend(Descriptor& file, const std::string& path) {
    file.reset(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0) throw fileFailure(path, errno);
    if (!S_ISREG(status.st_mode)) throw fileFailure(path, "Not a regular file", 75);
    return status.st_size;
}

}  // namespace

std::int64_t sizeToSend(const std::string& path) {
    Descriptor file;
    const std::int64_t size = openToSend(file, path);
    if (size == 0) throw Failure(std::string(kBadFile));
    return size;
}

void FtpFileSource::open(const std::string& path, bool asText) {
    forget();
    m_path = path;
    m_size = m_left = openToSend(m_file, path);
    ::posix_fadvise(m_file, 0, 0, POSIX_FADV_SEQUENTIAL);
    m_block.resize(kChunk * kReads);
    m_asText = asText;
    m_lastOfText = '\n';
}

std::string_view FtpFileSource::nextBlock() {
    while (true) {
        const std::string_view block = read();
        if (!m_asText) return block;
        const std::string_view text = textOf(block);
        if (block.empty() || !text.empty()) return text;
    }
}

// Up to kReads reads of the file; nothing at its end.
std::string_view FtpFileSource::read() {
    std::size_t filled = 0;
    for (int reads = 0; reads < kReads && m_left > 0;) {
        const std::size_t most = std::min(static_cast<std::size_t>(m_left), kChunk);
        const ssize_t got = ::read(m_file, m_block.data() + filled, most);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw fileFailure(m_path, errno);
        if (got == 0) throw fileFailure(m_path, "The file became shorter while it was sent", 75);
        m_left -= got;
        filled += static_cast<std::size_t>(got);
        ++reads;
    }
    return {m_block.data(), filled};
}

std::string_view FtpFileSource::textOf(std::string_view block) {
    m_text.clear();
    for (const char c : block) {
        const char before = std::exchange(m_lastOfText, c);
        if (before == '\r' && c == '\n') continue;
        if (c == '\r' || c == '\n')
            m_text += "\r\n";
        else
            m_text += c;
    }
    if (block.empty() && m_lastOfText != '\n' && m_lastOfText != '\r') m_text += "\r\n";
    if (block.empty()) m_lastOfText = '\n';
    return m_text;
}

}  // namespace relay
