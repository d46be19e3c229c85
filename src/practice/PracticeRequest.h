// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

using NamedValues = std::vector<std::pair<std::string, std::string>>;

// A request as received; nothing is decoded or rewritten.
struct PracticeRequest final {
    std::string method;
    std::string target;
    NamedValues headers;
    std::string body;

    std::string_view path() const noexcept;                         // of the target, up to "?"
    std::string_view query() const noexcept;                        // of the target, after the first "?"
    std::string_view header(std::string_view name) const noexcept;  // the first of that name, or empty
};

// Assembles a request from incoming bytes. Limits: a head of 64 KiB and 200 headers, a body of 1 MiB. A
// larger or invalid request is refused with the matching status.
class PracticeRequestReader final {
  public:
    static constexpr std::size_t kHeadLimit = std::size_t{64} * 1024;
    static constexpr std::size_t kBodyLimit = std::size_t{1024} * 1024;
    static constexpr std::size_t kHeaderLimit = 200;

    enum class State { NeedsMore, Complete, Refused };

    State feed(std::string_view bytes);
    const PracticeRequest& request() const noexcept { return m_request; }
    // 400, 413, 431 or 501 after a refusal.
    int refusal() const noexcept { return m_refusal; }

  private:
    State refuse(int status);
    State readHead(std::string_view head);
    bool readRequestLine(std::string_view line);
    bool readHeader(std::string_view line);
    State readBodyLength();

    PracticeRequest m_request;
    std::string m_head;
    std::size_t m_bodyLength = 0;
    int m_refusal = 0;
    bool m_headDone = false;
};

// Decodes a query or a form body: fields split at "&", name and value at the first "=", "+" becomes a blank
// and percent escapes become bytes; an invalid escape stays. At most `limit` fields.
NamedValues decodeForm(std::string_view text, std::size_t limit = 500);

}  // namespace relay
