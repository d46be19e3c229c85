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

}  // namespace relay
