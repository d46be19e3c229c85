// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Descriptor.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

inline constexpr std::string_view kBadFile = "Bad File Name. Transfer Aborted";  // it is empty

// The size of a local file that can be sent, in bytes. Throws Failure, also for an empty file and for what is
// not a regular one.
std::int64_t sizeToSend(const std::string& path);

// A local file on its way to a server, block by block. What is added to it while it is sent is left out.
class FtpFileSource final {
  public:
    static constexpr std::size_t kChunk = 32000;  // the most that is read at a time
    static constexpr int kReads = 8;              // that make a block

    // Throws Failure when it cannot be read or is not a regular file. As text each line goes out with CR LF,
    // the last one, too.
    void open(const std::string& path, bool asText);
    void close() noexcept { m_file.reset(); }
    // Empty at the end of the file; valid until the next call. Throws Failure, also when the file became
    // shorter.
    std::string_view nextBlock();

    // Of the file that is open, or was the last: bytes.
    std::int64_t size() const noexcept { return m_size; }
    std::int64_t sent() const noexcept { return m_size - m_left; }
    void forget() noexcept { m_size = m_left = 0; }

  private:
    std::string_view read();
    std::string_view textOf(std::string_view block);

    std::string m_path;
    Descriptor m_file;
    std::int64_t m_size = 0;
    std::int64_t m_left = 0;
    std::vector<char> m_block;
    bool m_asText = false;
    std::string m_text;        // a block as text
    char m_lastOfText = '\n';  // its last byte so far
};

}  // namespace relay
