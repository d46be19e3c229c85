// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Log.h"

#include "core/Text.h"

#include <QVersionNumber>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

constexpr off_t kSizeLimit = 5001;

// Major, minor and a revision of at least two digits.
std::string bannerVersion() {
    const QVersionNumber version = QVersionNumber::fromString(QLatin1String(RELAY_VERSION));
    std::string revision = std::to_string(version.microVersion());
    if (revision.size() < 2) revision.insert(0, "0");
    return std::to_string(version.majorVersion()) + "." + std::to_string(version.minorVersion()) + "." +
           revision;
}

// Only CR LF ends a line; other control characters are escaped.
std::string harmless(std::string_view text) {
    constexpr std::string_view kLineEnd = "\r\n";
    std::string lines;
    for (std::size_t end = text.find(kLineEnd); end != npos; end = text.find(kLineEnd)) {
        lines.append(escapeControlCharacters(text.substr(0, end))).append(kLineEnd);
        text.remove_prefix(end + kLineEnd.size());
    }
    return lines.append(escapeControlCharacters(text));
}

// With O_APPEND, writers do not overwrite each other; with O_NOFOLLOW, a link cannot make the log grow into
// another file. The shared lock (where the file system has locks) marks the log as in use; it waits only for
// a program that is just removing the file.
int openToAppend(const std::string& path) {
    constexpr int kAttempts = 100;
    for (int attempt = 1;; ++attempt) {
        const int file =
            ::open(path.c_str(),
                   O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0644);
        if (file < 0) return file;
        const bool waits = ::flock(file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (attempt == kAttempts || (!waits && hasName(file))) return file;
        ::close(file);
        if (waits) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

// A log that another program is writing stays: that program's lines would be lost.
void removeUnlessInUse(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const bool inUse = file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (!inUse) ::unlink(path.c_str());
}

}  // namespace

Log::Log(std::string path, const Clock& clock, std::string_view commandLine)
    : m_path(std::move(path)), m_clock(clock), m_trace(containsNoCase(commandLine, "/D")) {}

void Log::startRun() {
    struct stat status {};
    if (::lstat(m_path.c_str(), &status) == 0 && status.st_size >= kSizeLimit) {
        closeAll();  // a line written before the run started must not keep the old file open
        removeUnlessInUse(m_path);
    }
    WriteErrorLog("\r\nVersion: " + bannerVersion() + " - " +
                  shortDateTime(m_clock.now(), QLocale::system()) +
                  "\r\n-------------------------------------\r\n");
}

void Log::WriteErrorLog(std::string_view text) {
    append(m_errorFile, harmless(text) + "\r\n");
}

void Log::WriteTraceLog(std::string_view text) {
    if (!m_trace) return;
    append(m_traceFile, shortDateTime(m_clock.now(), QLocale::system()) + "\r\n" + harmless(text) + "\r\n");
}

void Log::closeAll() {
    m_errorFile.reset();
    m_traceFile.reset();
}

void Log::append(Descriptor& file, std::string_view bytes) {
    if (file >= 0 && !hasName(file)) file.reset();
    if (file < 0) file.reset(openToAppend(m_path));
    while (file >= 0 && !bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;  // a log that cannot be written stops nothing
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace relay
