// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeRequest.h"

#include "core/Text.h"

#include <algorithm>
#include <charconv>

namespace relay {

namespace {

std::string_view withoutCarriageReturn(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::string decodeField(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int high = hexDigit(text[i + 1]);
            const int low = hexDigit(text[i + 2]);
            if (high >= 0 && low >= 0) {
                decoded += static_cast<char>(high * 16 + low);
                i += 2;
                continue;
            }
        }
        decoded += text[i] == '+' ? ' ' : text[i];
    }
    return decoded;
}

}  // namespace

std::string_view PracticeRequest::path() const noexcept {
    return std::string_view(target).substr(0, target.find('?'));
}

std::string_view PracticeRequest::query() const noexcept {
    const std::size_t mark = target.find('?');
    return mark == npos ? std::string_view() : std::string_view(target).substr(mark + 1);
}

std::string_view PracticeRequest::header(std::string_view name) const noexcept {
    for (const auto& [key, value] : headers) {
        if (equalsNoCase(key, name)) return value;
    }
    return {};
}

PracticeRequestReader::State PracticeRequestReader::feed(std::string_view bytes) {
    if (m_refusal != 0) return State::Refused;
    if (!m_headDone) {
        const std::size_t held = m_head.size();
        const std::size_t searchFrom = held < 3 ? 0 : held - 3;
        m_head.append(bytes.substr(0, kHeadLimit + 4 - held));
        std::size_t end = m_head.find("\r\n\r\n", searchFrom);
        std::size_t bodyAt = end + 4;
        if (const std::size_t bare = m_head.find("\n\n", searchFrom); bare < end) {
            end = bare;
            bodyAt = end + 2;
        }
        if (end == npos) return m_head.size() > kHeadLimit ? refuse(431) : State::NeedsMore;
        bytes.remove_prefix(bodyAt - held);
        if (readHead(std::string_view(m_head).substr(0, end)) == State::Refused) return State::Refused;
        m_headDone = true;
    }
    // Bytes after the body belong to no request: every reply closes its connection.
    m_request.body.append(bytes.substr(0, m_bodyLength - m_request.body.size()));
    return m_request.body.size() == m_bodyLength ? State::Complete : State::NeedsMore;
}

PracticeRequestReader::State PracticeRequestReader::refuse(int status) {
    m_refusal = status;
    return State::Refused;
}

PracticeRequestReader::State PracticeRequestReader::readHead(std::string_view head) {
    bool first = true;
    while (first || !head.empty()) {
        const std::size_t lineEnd = head.find('\n');
        const std::string_view line = withoutCarriageReturn(head.substr(0, lineEnd));
        head = lineEnd == npos ? std::string_view() : head.substr(lineEnd + 1);
        if (m_request.headers.size() == kHeaderLimit) return refuse(431);
        if (!(first ? readRequestLine(line) : readHeader(line))) return refuse(400);
        first = false;
    }
    return readBodyLength();
}

bool PracticeRequestReader::readRequestLine(std::string_view line) {
    const std::size_t methodEnd = line.find(' ');
    const std::size_t targetEnd = line.rfind(' ');
    if (methodEnd == npos || methodEnd == 0 || targetEnd <= methodEnd + 1) return false;
    const std::string_view version = line.substr(targetEnd + 1);
    m_request.method = line.substr(0, methodEnd);
    m_request.target = line.substr(methodEnd + 1, targetEnd - methodEnd - 1);
    const bool methodIsWord = m_request.method.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == npos;
    return methodIsWord && m_request.target.starts_with('/') && version.starts_with("HTTP/") &&
           !hasControlByte(line);
}

bool PracticeRequestReader::readHeader(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == npos || colon == 0 || line.front() == ' ' || line.front() == '\t') return false;
    const auto isBad = [](char c) { return isControlByte(c) && c != '\t'; };
    if (std::any_of(line.begin(), line.end(), isBad)) return false;
    m_request.headers.emplace_back(line.substr(0, colon), trim(line.substr(colon + 1)));
    return true;
}

PracticeRequestReader::State PracticeRequestReader::readBodyLength() {
    if (!m_request.header("Transfer-Encoding").empty()) return refuse(501);
    const std::string_view text = m_request.header("Content-Length");
    if (text.empty()) return State::Complete;
    if (text.find_first_not_of("0123456789") != npos) return refuse(400);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), m_bodyLength);
    if (error != std::errc() || m_bodyLength > kBodyLimit) return refuse(413);
    return State::NeedsMore;
}

NamedValues decodeForm(std::string_view text, std::size_t limit) {
    NamedValues fields;
    while (!text.empty() && fields.size() < limit) {
        const std::size_t end = text.find('&');
        const std::string_view field = text.substr(0, end);
        text = end == npos ? std::string_view() : text.substr(end + 1);
        if (field.empty()) continue;
        const std::size_t equals = field.find('=');
        fields.emplace_back(decodeField(field.substr(0, equals)),
                            equals == npos ? std::string() : decodeField(field.substr(equals + 1)));
    }
    return fields;
}

}  // namespace relay
