// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The lines of a page's source as rows of a list. Long lines take several rows, so that a page without line
// ends is as quick to show as any other. Lines end with LF, CR or both, and count from 1.
class SourceLines final : public QAbstractListModel {
    Q_OBJECT
  public:
    static constexpr std::size_t kLargest = 16u * 1024 * 1024;  // what is behind is left out
    static constexpr std::size_t kLongestRow = 200;             // bytes

    explicit SourceLines(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    void setSource(std::string_view source);

    int rowCount(const QModelIndex& parent = {}) const override;
    // The text as it is shown: control characters as their pictures, bytes that are not UTF-8 as Latin-1.
    QVariant data(const QModelIndex& index, int role) const override;

    // 0 for a row that continues the line above it.
    std::size_t numberAt(int row) const;
    // The line's first row; the last line's for a line that does not exist, -1 for an empty source.
    int rowOf(std::size_t line) const;
    std::size_t lineCount() const noexcept { return m_rows.empty() ? 0 : m_rows.back().line; }
    // Of the longest row, roughly.
    std::size_t widestRow() const noexcept { return m_widest; }

  private:
    struct Row final {
        std::uint32_t start = 0;
        std::uint32_t line = 1;
    };

    void addLine(std::size_t start, std::size_t end, std::uint32_t line);
    std::string_view bytesOf(std::size_t row) const;
    QString textOf(std::size_t row) const;

    std::string m_source;
    std::vector<Row> m_rows;
    std::size_t m_widest = 0;
};

}  // namespace relay
