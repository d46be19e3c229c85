// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineFields.h"

#include "catalogue/EngineCategories.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <vector>

namespace relay {

namespace {

constexpr std::string_view kSharedFFA = "Free For All Links";
constexpr std::string_view kSharedGeneral = "General For All Links";

// A key as two numbers, equal for equal keys of one length without regard to case: its first and last bytes
// (which may overlap) with the case bit set. Keys are letters only, so no other byte can be mistaken for one
// of theirs.
struct Signature final {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    bool operator==(const Signature&) const = default;
};

constexpr std::size_t kShortestKey = 4;
constexpr std::size_t kLongestKey = 16;

// For a text of kShortestKey to kLongestKey bytes.
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

// Every spelling of every key, shortest first.
const std::vector<KeyRow> kKeys = [] {
    std::vector<KeyRow> keys;
    for (const EngineField& field : EngineFields) {
        for (const std::string_view spelling : field.spellings)
            if (!spelling.empty()) keys.emplace_back(spelling, field.key);
    }
    std::sort(keys.begin(), keys.end(), [](const KeyRow& a, const KeyRow& b) { return a.length < b.length; });
    return keys;
}();

// Index of the first key of each length, and one more for the end.
const auto kFirstOfLength = [] {
    std::array<std::size_t, kLongestKey + 2> first{};
    for (std::size_t length = 0; length < first.size(); ++length) {
        while (first[length] < kKeys.size() && kKeys[first[length]].length < length) ++first[length];
    }
    return first;
}();

// Storage for one-letter fields: every byte once, small letters as capitals.
constexpr auto kUpperBytes = [] {
    std::array<char, 256> bytes{};
    for (std::size_t code = 0; code < bytes.size(); ++code) {
        bytes[code] = static_cast<char>(code >= 'a' && code <= 'z' ? code - 'a' + 'A' : code);
    }
    return bytes;
}();

// The file mostly has short whole numbers; other values take the slow path.
int number(std::string_view value) noexcept {
    constexpr std::size_t kSafeDigits = 9;
    int sum = 0;
    for (const char c : value.substr(0, kSafeDigits)) {
        if (c < '0' || c > '9') return leadingInteger(value);
        sum = sum * 10 + (c - '0');
    }
    return value.size() > kSafeDigits ? leadingInteger(value) : sum;
}

std::int16_t siteLevel(std::string_view value) noexcept {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(number(value), Limits::min(), Limits::max()));
}

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

std::string_view clsEngines::letter(std::uint16_t code) noexcept {
    return code == 0 ? std::string_view() : std::string_view(&kUpperBytes[code - 1u], 1);
}

void clsEngines::set(EngineKey key, std::string_view value) noexcept {
    const auto place = static_cast<std::size_t>(key);
    if (place < kTexts) {
        const std::string_view& from = key == EngineKey::CategoryData ? m_texts->tables : m_texts->file;
        m_parts[place] = value.empty() ? Part()
                                       : Part{static_cast<std::uint32_t>(value.data() - from.data()),
                                              static_cast<std::uint32_t>(value.size())};
    } else if (place < kTexts + kLetters) {
        m_letters[place - kTexts] =
            static_cast<std::uint16_t>(value.empty() ? 0 : static_cast<unsigned char>(value.front()) + 1);
    } else if (key < EngineKey::None) {
        m_numbers[place - kTexts - kLetters] =
            key == EngineKey::SiteLevel ? siteLevel(value) : relay::number(value);
    }
}

void CategoryRule::resolve(clsEngines& engine) {
    const std::string_view rule = engine.Category();
    if (equalsNoCase(rule, "F") || (equalsNoCase(rule, "N") && equalsNoCase(engine.EngineType(), "FFA"))) {
        engine.set(EngineKey::CategoryData, m_categories.getEngineCategoryData(kSharedFFA));
    } else if (equalsNoCase(rule, "G")) {
        engine.set(EngineKey::CategoryData, m_categories.getEngineCategoryData(kSharedGeneral));
    } else if (equalsNoCase(rule, "Y") || equalsNoCase(rule, "C")) {
        if (engine.name().data() != m_name.data()) {
            m_ownData = m_categories.getEngineCategoryData(engine.name());
            m_name = engine.name();
        }
        engine.set(EngineKey::CategoryData, m_ownData);
    }
}

bool missesCategoryData(const clsEngines& engine) noexcept {
    return engine.CategoryData().empty() && !equalsNoCase(engine.Category(), "N");
}

bool isAdultOnly(const clsEngines& engine) noexcept {
    return engine.AdultOnlySites() == "Y";
}

}  // namespace relay
