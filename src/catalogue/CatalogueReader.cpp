// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueReader.h"

#include "core/Text.h"

namespace relay {

namespace {

// Trims only when necessary: few values have blanks at their ends.
std::string_view trimmed(std::string_view value) noexcept {
    return !value.empty() && (value.front() == ' ' || value.back() == ' ') ? trim(value) : value;
}

constexpr std::string_view kTerminator = "END:Version 6.0";

}  // namespace

bool CatalogueReader::next() noexcept {
    if (!m_items.nextEntry(m_item)) return false;
    if (m_item.size() == kTerminator.size() && equalsNoCase(m_item, kTerminator)) return false;
    const std::size_t equals = m_item.find('=');
    if (equals == npos) {
        m_keyText = m_value = {};
        m_key = EngineKey::None;
    } else {
        m_keyText = m_item.substr(0, equals);
        m_value = trimmed(m_item.substr(equals + 1));
        m_key = engineKey(m_keyText);
    }
    return true;
}

bool CatalogueReader::quoted() const noexcept {
    return m_item.data() > m_text.data() && m_item.data()[-1] == '"';
}

}  // namespace relay
