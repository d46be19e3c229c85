// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineFields.h"
#include "core/ItemReader.h"

#include <cstddef>
#include <string_view>

namespace relay {

// Walks through the engine file item by item, skipping empty items and comments, to the terminator or the
// end. The loader and the check both use it, so they see the same file. The views point into the given text.
class CatalogueReader final {
  public:
    explicit CatalogueReader(std::string_view text) noexcept : m_text(text), m_items(text) {}

    bool next() noexcept;

    // For the last item.
    EngineKey key() const noexcept { return m_key; }
    std::string_view item() const noexcept { return m_item; }
    // The text before the first "=", untrimmed; empty when there is no "=".
    std::string_view keyText() const noexcept { return m_keyText; }
    std::string_view value() const noexcept { return m_value; }  // the text after it, trimmed
    std::size_t line() noexcept { return m_items.line(); }       // counted from 1
    bool quoted() const noexcept;
    bool closedByComma() const noexcept { return m_items.closedByComma(); }

  private:
    std::string_view m_text;
    ItemReader m_items;
    std::string_view m_item;
    std::string_view m_keyText;
    std::string_view m_value;
    EngineKey m_key = EngineKey::None;
};

}  // namespace relay
