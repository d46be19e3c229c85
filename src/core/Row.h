// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// One row of a keyed list, as it is handed in.
struct Row final {
    std::string key{};   // unique in its list without regard to case; empty: a row without a key
    std::string text{};  // column 0
    std::vector<std::string> subItems{};  // columns 1 and up
    std::string icon{};                   // icon key; logic reads it back, views turn it into a picture
    std::string tag{};                    // what the row stands for (a file, a link); never shown
    bool checked = false;
    bool highlighted = false;
};

// A text inside a list. It is a view, good until its row changes, and becomes a string where one is asked
// for.
struct RowText final : std::string_view {
    RowText() = default;
    explicit RowText(std::string_view text) : std::string_view(text) {}
    operator std::string() const { return std::string(data(), size()); }
};

// The columns behind the first of a row inside a list.
class RowSubItems final {
  public:
    RowSubItems() = default;
    RowSubItems(const std::uint32_t* lengths, std::size_t count, const char* bytes)
        : m_lengths(lengths), m_count(count), m_bytes(bytes) {}

    std::size_t size() const noexcept { return m_count; }
    bool empty() const noexcept { return m_count == 0; }
    // `i` must be less than size().
    RowText operator[](std::size_t i) const;
    // Throws std::out_of_range.
    RowText at(std::size_t i) const;

  private:
    const std::uint32_t* m_lengths = nullptr;
    std::size_t m_count = 0;
    const char* m_bytes = nullptr;
};

// A row as it stands in a list: views that are good until the row changes.
struct RowView final {
    RowText key;
    RowText text;
    RowSubItems subItems;
    RowText icon;
    RowText tag;
    bool checked = false;
    bool highlighted = false;

    // A copy to keep or to change.
    operator Row() const;
};

// The front of a packed row's block; behind it lie the sub-items' lengths and then all bytes.
struct PackedHead final {
    std::uint32_t textLength, keyLength, iconLength, tagLength, subItemCount;
    std::uint32_t place;  // where the list last saw the row
    bool keyIsText, checked, highlighted;

    std::string_view key() const noexcept;
    const std::uint32_t* lengths() const noexcept { return reinterpret_cast<const std::uint32_t*>(this + 1); }
    const char* bytes() const noexcept { return reinterpret_cast<const char*>(lengths() + subItemCount); }
};

// A row in one block of memory, about a third of what separate strings take: lists hold 100,000 of them
// beside their engines. The block stays where it is while the row moves in its list.
class PackedRow final {
  public:
    explicit PackedRow(const Row& row);

    RowView view() const;
    const PackedHead* operator->() const noexcept { return head(); }
    PackedHead* operator->() noexcept { return head(); }
    PackedHead* head() const noexcept { return reinterpret_cast<PackedHead*>(m_block.get()); }

  private:
    std::unique_ptr<std::byte[]> m_block;
};

}  // namespace relay
