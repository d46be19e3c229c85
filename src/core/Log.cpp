// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Log.h"

#include "core/Text.h"

#include <QVersionNumber>

#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
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

// CR LF alone ends a line; whatever else commands a terminal is shown as the bytes it is.
std::string harmless(std::string_view text) {
    constexpr std::string_view kLineEnd = "\r\n";
    std::string lines;
    for (std::size_t end = text.find(kLineEnd); end != npos; end = text.find(kLineEnd)) {
        lines.append(escapeControlCharacters(text.substr(0, end))).append(kLineEnd);
        text.remove_prefix(end + kLineEnd.size());
    }
    return lines.append(escapeControlCharacters(text));
}

}  // namespace

Log::Log(std::string path, const Clock& clock, std::string_view commandLine)
    : m_path(std::move(path)), m_clock(clock), m_trace(containsNoCase(commandLine, "/D")) {}

Log::~Log() {
    closeAll();
}

void Log::startRun() {
    struct stat status {};
    if (::lstat(m_path.c_str(), &status) == 0 && status.st_size >= kSizeLimit) {
        closeAll();  // a line written before the run began must not keep the old file open
        ::unlink(m_path.c_str());
    }
    WriteErrorLog("\r\nVersion: " + bannerVersion() + " - " +
                  shortDateTime(m_clock.now(), QLocale::system()) +
                  "\r\n-------------------------------------\r\n");
}

void Log::WriteErrorLog(std::string_view text) {
    append(m_errorDescriptor, harmless(text) + "\r\n");
}

void Log::WriteTraceLog(std::string_view text) {
    if (!m_trace) return;
    append(m_traceDescriptor,
           shortDateTime(m_clock.now(), QLocale::system()) + "\r\n" + harmless(text) + "\r\n");
}

void Log::closeAll() {
    for (int* const descriptor : {&m_errorDescriptor, &m_traceDescriptor}) {
        if (*descriptor >= 0) ::close(*descriptor);
        *descriptor = -1;
    }
}

void Log::append(int& descriptor, std::string_view bytes) {
    // O_APPEND puts every write behind those of other writers; a link is not followed, so that a log never
    // grows into another file.
    if (descriptor < 0)
        descriptor =
            ::open(m_path.c_str(),
                   O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0644);
    while (descriptor >= 0 && !bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;  // a log that cannot be written stops nothing
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace relay
