// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueReader.h"

#include "core/Text.h"

#include <array>

namespace relay {

namespace {

struct KeyRow final {
    std::string_view text;
    EngineKey key;
};

// Ordered by length, so that a key is compared only with its equals in length.
constexpr std::array<KeyRow, 25> kKeys{{
    {"Name", EngineKey::Name},
    {"Home", EngineKey::Home},
    {"Type", EngineKey::EngineType},
    {"Query", EngineKey::Query},
    {"Adult", EngineKey::Adults},
    {"AddURL", EngineKey::AddURL},
    {"Method", EngineKey::Method},
    {"Action", EngineKey::Action},
    {"Adults", EngineKey::Adults},
    {"Country", EngineKey::Country},
    {"Category", EngineKey::Category},
    {"Language", EngineKey::Language},
    {"MaxTitle", EngineKey::MaxTitle},
    {"MaxDescr", EngineKey::MaxDescriptions},
    {"AdultSite", EngineKey::Adults},
    {"SiteLevel", EngineKey::SiteLevel},
    {"EngineType", EngineKey::EngineType},
    {"MaxKeyword", EngineKey::MaxKeywords},
    {"AdultSites", EngineKey::Adults},
    {"CountryOnly", EngineKey::CountryOnly},
    {"MaxKeywords", EngineKey::MaxKeywords},
    {"CategoryType", EngineKey::Category},
    {"AdultOnlySite", EngineKey::AdultOnlySites},
    {"AdultOnlySites", EngineKey::AdultOnlySites},
    {"MaxDescription", EngineKey::MaxDescriptions},
}};

constexpr std::size_t kLongestKey = kKeys.back().text.size();

// Place of the first key of each length; one more for the end.
constexpr auto kFirstOfLength = [] {
    std::array<std::size_t, kLongestKey + 2> first{};
    for (std::size_t length = 0; length < first.size(); ++length) {
        while (first[length] < kKeys.size() && kKeys[first[length]].text.size() < length) ++first[length];
    }
    return first;
}();

constexpr std::string_view kTerminator = "END:Version 6.0";

}  // namespace

EngineKey engineKey(std::string_view text) noexcept {
    if (text.size() > kLongestKey) return EngineKey::Unknown;
    const std::size_t end = kFirstOfLength[text.size() + 1];
    for (std::size_t place = kFirstOfLength[text.size()]; place < end; ++place) {
        if (equalsNoCase(text, kKeys[place].text)) return kKeys[place].key;
    }
    return EngineKey::Unknown;
}

bool CatalogueReader::next() noexcept {
    while (m_items.next(m_item)) {
        if (m_item.empty() || m_item.front() == '#') continue;
        if (equalsNoCase(m_item, kTerminator)) return false;
        const std::size_t equals = m_item.find('=');
        if (equals == npos) {
            m_keyText = m_value = {};
            m_key = EngineKey::None;
        } else {
            m_keyText = m_item.substr(0, equals);
            m_value = trim(m_item.substr(equals + 1));
            m_key = engineKey(m_keyText);
        }
        return true;
    }
    return false;
}

bool CatalogueReader::quoted() const noexcept {
    return m_item.data() > m_text.data() && m_item.data()[-1] == '"';
}

}  // namespace relay
