// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// One row to be added to a keyed list.
struct Row final {
    std::string key{};   // unique in its list without regard to case; empty for a row without a key
    std::string text{};  // column 0
    std::vector<std::string> subItems{};  // columns 1 and up
    std::string icon{};                   // icon key; logic reads it back, views draw it
    std::string tag{};                    // what the row stands for (a file, a link); never shown
    bool checked = false;
    bool highlighted = false;
};

// Makes rows from records stored elsewhere: a list refers to them and copies nothing. A record must outlive
// its rows and keep its key until then.
class RowSource {
  public:
    virtual ~RowSource() = default;

    virtual std::string_view key(const void* record) const = 0;
    virtual std::size_t columns(const void* record) const = 0;
    // `column` is less than columns().
    virtual std::string_view text(const void* record, std::size_t column) const = 0;
    virtual std::string_view icon(const void* record) const = 0;
    virtual std::string_view tag(const void*) const { return {}; }
    // Called when the row is removed.
    virtual void release(const void*) const noexcept {}
};

// The columns of a row after the first.
class RowSubItems final {
  public:
    RowSubItems(const RowSource& source, const void* record) : m_source(source), m_record(record) {}

    std::size_t size() const { return m_source.columns(m_record) - 1; }
    bool empty() const { return size() == 0; }
    // `i` must be less than size().
    std::string_view operator[](std::size_t i) const { return m_source.text(m_record, i + 1); }
    // Throws std::out_of_range.
    std::string_view at(std::size_t i) const;

  private:
    const RowSource& m_source;
    const void* m_record;
};

// A row of a list, as views that are valid until the row changes.
struct RowView final {
    std::string_view key;
    std::string_view text;
    RowSubItems subItems;
    std::string_view icon;
    std::string_view tag;
    bool checked = false;
    bool highlighted = false;

    // A copy to keep or change.
    explicit operator Row() const;
};

}  // namespace relay
