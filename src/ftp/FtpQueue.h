// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace relay {

// A file to upload.
struct FtpUpload final {
    std::string file;        // its local path
    std::string remoteName;  // as STOR gets it: a name in the present folder, or a full path
};

// How a file of the queue ended.
struct FtpFileEnd final {
    std::string file{};        // its local path
    std::string remotePath{};  // where it is, or was to be, on the server
    int code = 0;              // of the server's last reply; 0: nothing was sent; 999: no reply in time
    std::int64_t bytes = 0;    // that went out
    bool ok = false;           // all of it was sent, and the reply was 226 or 250
    std::string problem{};     // why it failed, for the user; empty when it did not
};

// How far the queue is; sizes in bytes.
struct FtpProgress final {
    int file = 0;   // number of the file being sent, from 1
    int files = 0;  // in the queue; 0: there is none
    std::string name;
    std::int64_t fileSent = 0;
    std::int64_t fileSize = 0;
    std::int64_t sent = 0;  // of the whole queue; a failed file counts as passed
    std::int64_t size = 0;

    // For progress bars: 0 to 1000.
    int filePermille() const noexcept { return permille(fileSent, fileSize); }
    int queuePermille() const noexcept { return permille(sent, size); }

  private:
    static int permille(std::int64_t part, std::int64_t whole) noexcept {
        return whole <= 0 ? 0
                          : static_cast<int>(static_cast<double>(part) * 1000.0 / static_cast<double>(whole));
    }
};

// The files of an upload: what is to be sent, how far it is, and how each file ended.
class FtpQueue final {
  public:
    // A new queue. `again`: of files that failed before, so that what was published then stays.
    void begin(bool again);
    // No file ended, and none was published.
    void forget() { *this = {}; }
    // Into the queue. A file that cannot be sent ends at once instead; then the result says why.
    std::string take(const FtpUpload& upload, std::string remotePath);

    bool isAtEnd() const noexcept { return m_index == m_waiting.size(); }
    const FtpUpload& next();  // goes on to the next file
    void moved(std::int64_t sent, std::int64_t size);
    // Of the file that `next` gave, whose paths are filled in. `passed`: all of it counts as sent.
    void end(FtpFileEnd end, bool passed);
    void skip(const std::string& problem);  // the next file fails instead of being sent

    // Those taken, as files that have not ended.
    std::vector<FtpFileEnd> waiting() const;
    const std::vector<FtpFileEnd>& ended() const noexcept { return m_ended; }
    std::vector<FtpFileEnd> failed() const;
    // That went well, before retries and in them.
    const std::vector<FtpFileEnd>& published() const noexcept { return m_published; }
    const FtpProgress& progress() const noexcept { return m_progress; }

    // "2 of 5 files were not sent: a.html, b.html", or empty when none failed.
    std::string failureSummary() const;
    // The same files with their reasons, a line each.
    std::string failureReasons() const;

  private:
    struct Waiting final {
        FtpUpload upload;
        std::string remotePath;
        std::int64_t size = 0;
    };

    void add(FtpFileEnd end);

    std::vector<Waiting> m_waiting;
    std::size_t m_index = 0;  // of the file being sent, from 1
    std::int64_t m_sentBefore = 0;
    FtpProgress m_progress;
    std::vector<FtpFileEnd> m_ended;
    std::vector<FtpFileEnd> m_published;
};

}  // namespace relay
