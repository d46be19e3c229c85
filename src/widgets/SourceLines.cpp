// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/SourceLines.h"

#include "core/ScreenText.h"

#include <algorithm>

namespace relay {

void SourceLines::setSource(std::string_view source) {
    beginResetModel();
    m_source = source.substr(0, kLargest);
    m_rows.clear();
    m_widest = 0;
    std::size_t start = 0;
    std::uint32_t line = 1;
    for (std::size_t at = 0; at < m_source.size(); ++at) {
        const char c = m_source[at];
        if (c != '\n' && c != '\r') continue;
        addLine(start, at, line++);
        if (c == '\r' && at + 1 < m_source.size() && m_source[at + 1] == '\n') ++at;
        start = at + 1;
    }
    if (start < m_source.size()) addLine(start, m_source.size(), line);
    endResetModel();
}

void SourceLines::addLine(std::size_t start, std::size_t end, std::uint32_t line) {
    do {
        std::size_t next = std::min(end, start + kLongestRow);
        // Not inside a character.
        for (int step = 0; step < 3 && next < end && (m_source[next] & 0xC0) == 0x80; ++step) --next;
        m_rows.push_back({static_cast<std::uint32_t>(start), line});
        m_widest = std::max(m_widest, next - start);
        start = next;
    } while (start < end);
}

int SourceLines::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

std::string_view SourceLines::bytesOf(std::size_t row) const {
    const std::size_t end = row + 1 < m_rows.size() ? m_rows[row + 1].start : m_source.size();
    std::string_view bytes = std::string_view(m_source).substr(m_rows[row].start, end - m_rows[row].start);
    if (bytes.ends_with('\n')) bytes.remove_suffix(1);
    if (bytes.ends_with('\r')) bytes.remove_suffix(1);
    return bytes;
}

QString SourceLines::textOf(std::size_t row) const {
    constexpr char16_t kPictures = 0x2400;
    QString text = toScreen(bytesOf(row));
    for (QChar& c : text) {
        const char16_t code = c.unicode();
        if (code < 0x20 && code != u'\t') c = QChar(static_cast<char16_t>(kPictures + code));
        if (code == 0x7F) c = QChar(static_cast<char16_t>(kPictures + 0x21));
        if (code >= 0xDC80 && code <= 0xDCFF) {
            const bool pair = &c != text.cbegin() && (&c)[-1].isHighSurrogate();
            if (!pair) c = QChar(static_cast<char16_t>(code - 0xDC00));
        }
    }
    return text.replace(QLatin1Char('\t'), QStringLiteral("    "));
}

QVariant SourceLines::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= m_rows.size()) return {};
    if (role == Qt::DisplayRole) return textOf(row);
    if (role == Qt::AccessibleTextRole) return tr("Line %1: %2").arg(m_rows[row].line).arg(textOf(row));
    return {};
}

std::size_t SourceLines::numberAt(int row) const {
    const auto place = static_cast<std::size_t>(row);
    const std::uint32_t line = m_rows.at(place).line;
    return place > 0 && m_rows[place - 1].line == line ? 0 : line;
}

int SourceLines::rowOf(std::size_t line) const {
    if (m_rows.empty()) return -1;
    const std::size_t wanted = std::clamp<std::size_t>(line, 1, lineCount());
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), wanted,
                                        [](const Row& row, std::size_t number) { return row.line < number; });
    return static_cast<int>(found - m_rows.begin());
}

}  // namespace relay
