// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueReader.h"

#include "core/Text.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace relay {

namespace {

// A key as two numbers that are equal for equal keys of one length, whatever their case: its first and its
// last bytes (which may overlap), with the bit set that tells small letters from capitals. Keys are letters
// only, so no other byte can pass for one of theirs.
struct Signature final {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    bool operator==(const Signature&) const = default;
};

constexpr std::size_t kShortestKey = 4;
constexpr std::size_t kLongestKey = 14;

// Of a text from kShortestKey to kLongestKey long.
Signature signatureOf(std::string_view text) noexcept {
    const auto load = [](const char* from, auto word) {
        std::memcpy(&word, from, sizeof word);
        return static_cast<std::uint64_t>(word) | 0x2020202020202020u;
    };
    const char* const end = text.data() + text.size();
    if (text.size() < 8) return {load(text.data(), std::uint32_t()), load(end - 4, std::uint32_t())};
    return {load(text.data(), std::uint64_t()), load(end - 8, std::uint64_t())};
}

struct KeyRow final {
    KeyRow(std::string_view text, EngineKey meaning)
        : length(text.size()), signature(signatureOf(text)), key(meaning) {}

    std::size_t length;
    Signature signature;
    EngineKey key;
};

const std::array<KeyRow, 25> kKeys{{
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

// Place of the first key of each length; one more for the end.
const auto kFirstOfLength = [] {
    std::array<std::size_t, kLongestKey + 2> first{};
    for (std::size_t length = 0; length < first.size(); ++length) {
        while (first[length] < kKeys.size() && kKeys[first[length]].length < length) ++first[length];
    }
    return first;
}();

// Few values have blanks to lose.
std::string_view trimmed(std::string_view value) noexcept {
    return !value.empty() && (value.front() == ' ' || value.back() == ' ') ? trim(value) : value;
}

constexpr std::string_view kTerminator = "END:Version 6.0";

}  // namespace

EngineKey engineKey(std::string_view text) noexcept {
    if (text.size() < kShortestKey || text.size() > kLongestKey) return EngineKey::Unknown;
    const Signature signature = signatureOf(text);
    const std::size_t end = kFirstOfLength[text.size() + 1];
    for (std::size_t place = kFirstOfLength[text.size()]; place < end; ++place) {
        if (signature == kKeys[place].signature) return kKeys[place].key;
    }
    return EngineKey::Unknown;
}

bool CatalogueReader::next() noexcept {
    while (m_items.next(m_item)) {
        if (m_item.empty() || m_item.front() == '#') continue;
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
    return false;
}

bool CatalogueReader::quoted() const noexcept {
    return m_item.data() > m_text.data() && m_item.data()[-1] == '"';
}

}  // namespace relay
