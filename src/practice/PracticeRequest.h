// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

using NamedValues = std::vector<std::pair<std::string, std::string>>;

// A request as it stood on the wire; nothing is decoded or re-spelled.
struct PracticeRequest final {
    std::string method;
    std::string target;
    NamedValues headers;
    std::string body;

    std::string_view path() const noexcept;                         // of the target, up to "?"
    std::string_view query() const noexcept;                        // of the target, behind the first "?"
    std::string_view header(std::string_view name) const noexcept;  // the first of that name, or empty
};

// Puts a request together from the bytes that come in. Bounded: a head of 64 KiB and 200 headers, a body of
// 1 MiB; what goes beyond, or is no request at all, is refused with the status that says so.
class PracticeRequestReader final {
  public:
    static constexpr std::size_t kHeadLimit = std::size_t{64} * 1024;
    static constexpr std::size_t kBodyLimit = std::size_t{1024} * 1024;
    static constexpr std::size_t kHeaderLimit = 200;

    enum class State { NeedsMore, Complete, Refused };

    State feed(std::string_view bytes);
    const PracticeRequest& request() const noexcept { return m_request; }
    // 400, 413, 431 or 501 once refused.
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

// Decodes a query or a form body: fields split at "&", name and value at the first "=", "+" to a blank and
// percent escapes to bytes; a broken escape stays as it stands. At most `limit` fields.
NamedValues decodeForm(std::string_view text, std::size_t limit = 500);

}  // namespace relay
