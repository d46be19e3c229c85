// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Row.h"

#include "core/Failure.h"

#include <cstring>
#include <limits>
#include <new>
#include <numeric>
#include <stdexcept>

namespace relay {

RowText RowSubItems::operator[](std::size_t i) const {
    const std::size_t offset = std::accumulate(m_lengths, m_lengths + i, std::size_t{0});
    return RowText({m_bytes + offset, m_lengths[i]});
}

RowText RowSubItems::at(std::size_t i) const {
    if (i >= m_count) throw std::out_of_range("no such column");
    return (*this)[i];
}

RowView::operator Row() const {
    Row row{key, text, {}, icon, tag, checked, highlighted};
    row.subItems.reserve(subItems.size());
    for (std::size_t i = 0; i < subItems.size(); ++i) row.subItems.push_back(subItems[i]);
    return row;
}

PackedRow::PackedRow(const Row& row) {
    const bool keyIsText = row.key == row.text;
    std::size_t bytes = row.text.size() + (keyIsText ? 0 : row.key.size()) + row.icon.size() + row.tag.size();
    for (const std::string& item : row.subItems) bytes += item.size();
    if (bytes > std::numeric_limits<std::uint32_t>::max()) throw Failure("Out of memory", 7);
    const auto length = [](const auto& list) { return static_cast<std::uint32_t>(list.size()); };

    m_block.reset(new std::byte[sizeof(PackedHead) + row.subItems.size() * sizeof(std::uint32_t) + bytes]);
    new (m_block.get()) PackedHead{length(row.text), length(row.key),      length(row.icon),
                                   length(row.tag),  length(row.subItems), 0,
                                   keyIsText,        row.checked,          row.highlighted};
    std::byte* out = m_block.get() + sizeof(PackedHead);
    const auto put = [&out](const void* data, std::size_t size) {
        if (size > 0) std::memcpy(out, data, size);
        out += size;
    };
    for (const std::string& item : row.subItems) {
        const std::uint32_t size = length(item);
        put(&size, sizeof size);
    }
    put(row.text.data(), row.text.size());
    if (!keyIsText) put(row.key.data(), row.key.size());
    put(row.icon.data(), row.icon.size());
    put(row.tag.data(), row.tag.size());
    for (const std::string& item : row.subItems) put(item.data(), item.size());
}

RowView PackedRow::view() const {
    const PackedHead& sizes = *head();
    const char* at = sizes.bytes();
    const auto take = [&at](std::uint32_t length) {
        const RowText text({at, length});
        at += length;
        return text;
    };
    RowView view;
    view.text = take(sizes.textLength);
    view.key = sizes.keyIsText ? view.text : take(sizes.keyLength);
    view.icon = take(sizes.iconLength);
    view.tag = take(sizes.tagLength);
    view.subItems = RowSubItems(sizes.lengths(), sizes.subItemCount, at);
    view.checked = sizes.checked;
    view.highlighted = sizes.highlighted;
    return view;
}

std::string_view PackedHead::key() const noexcept {
    return {bytes() + (keyIsText ? 0 : textLength), keyLength};
}

}  // namespace relay
