// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/ReceivedLog.h"

#include <algorithm>

namespace relay {

namespace {

std::size_t sizeOf(const PracticeRequest& request) {
    std::size_t bytes = request.target.size() + request.body.size();
    for (const auto& [name, value] : request.headers) bytes += name.size() + value.size() + 64;
    return bytes + 256;
}

NamedValues fieldsOf(const PracticeRequest& request) {
    NamedValues fields = decodeForm(request.query());
    if (request.method == "POST") {
        for (auto& field : decodeForm(request.body)) fields.push_back(std::move(field));
    }
    return fields;
}

}  // namespace

ReceivedSubmission ReceivedLog::Kept::decoded() const {
    return {time, engine, request.method, request.target, request.body, request.headers, fieldsOf(request)};
}

void ReceivedLog::add(std::string_view engine, const PracticeRequest& request) {
    Kept kept{QDateTime::currentDateTime(), std::string(engine), request, sizeOf(request)};
    const std::lock_guard lock(m_mutex);
    m_bytes += kept.bytes;
    m_kept.push_back(std::move(kept));
    ++m_total;
    while (m_kept.size() > kMostSubmissions || m_bytes > kMostBytes) {
        m_bytes -= m_kept.front().bytes;
        m_kept.pop_front();
    }
}

std::vector<ReceivedSubmission> ReceivedLog::newest(std::size_t count) const {
    const std::lock_guard lock(m_mutex);
    std::vector<ReceivedSubmission> submissions;
    const std::size_t first = m_kept.size() > count ? m_kept.size() - count : 0;
    submissions.reserve(m_kept.size() - first);
    for (std::size_t i = first; i < m_kept.size(); ++i) submissions.push_back(m_kept[i].decoded());
    return submissions;
}

std::optional<ReceivedLog::Numbered> ReceivedLog::newestBefore(std::size_t before) const {
    const std::lock_guard lock(m_mutex);
    const std::size_t oldest = m_total - m_kept.size();
    before = std::min(before, m_total);
    if (before <= oldest) return std::nullopt;
    return Numbered{before - 1, m_kept[before - 1 - oldest].decoded()};
}

std::size_t ReceivedLog::kept() const {
    const std::lock_guard lock(m_mutex);
    return m_kept.size();
}

std::size_t ReceivedLog::total() const {
    const std::lock_guard lock(m_mutex);
    return m_total;
}

void ReceivedLog::clear() {
    const std::lock_guard lock(m_mutex);
    m_kept.clear();
    m_bytes = 0;
    m_total = 0;
}

}  // namespace relay
