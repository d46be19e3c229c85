// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace relay {

// The keys of an engine's record, one for all spellings. Texts come first, then single letters, then numbers.
enum class EngineKey : std::uint8_t {
    Name,
    Home,
    AddURL,
    Country,
    CountryOnly,
    EngineType,
    Category,
    Method,
    Action,
    Query,
    Language,
    CategoryData,  // found by the category rule; not a key of the file
    AdultOnlySites,
    Adults,
    MaxTitle,
    MaxKeywords,
    MaxDescriptions,
    SiteLevel,
    None,     // an item without "="
    Unknown,  // any other key
};

// What the records of one load point into; less than 4 GiB each, as larger files are not read.
struct EngineTexts final {
    std::string_view file;    // the engine file
    std::string_view tables;  // the category tables
};

// One engine: a record of offsets into EngineTexts, which must outlive it. This keeps a hundred thousand
// records small.
class clsEngines final {
  public:
    explicit clsEngines(const EngineTexts& texts) noexcept : m_texts(&texts) {}

    // Key in the collection, in the lists and in selection files.
    std::string_view name() const noexcept { return text(EngineKey::Name); }
    std::string_view Home() const noexcept { return text(EngineKey::Home); }
    std::string_view AddURL() const noexcept { return text(EngineKey::AddURL); }
    std::string_view Country() const noexcept { return text(EngineKey::Country); }  // two letters, upper case
    std::string_view CountryOnly() const noexcept { return text(EngineKey::CountryOnly); }
    // ENG, DIR, FFA, NEWS, MALL, HOT, MIS, or other text as written.
    std::string_view EngineType() const noexcept { return text(EngineKey::EngineType); }
    // Category rule, as written: F, G, Y, C, N.
    std::string_view Category() const noexcept { return text(EngineKey::Category); }
    // label=value entries, each ended by ">".
    std::string_view CategoryData() const noexcept { return text(EngineKey::CategoryData); }
    std::string_view Method() const noexcept { return text(EngineKey::Method); }
    std::string_view Action() const noexcept { return text(EngineKey::Action); }
    // Template with macros in angle brackets.
    std::string_view Query() const noexcept { return text(EngineKey::Query); }
    // "Y", "N" or empty.
    std::string_view AdultOnlySites() const noexcept { return text(EngineKey::AdultOnlySites); }
    std::string_view Adults() const noexcept { return text(EngineKey::Adults); }
    std::string_view WebType() const noexcept { return {}; }  // never set by the file
    std::string_view Language() const noexcept { return text(EngineKey::Language); }
    std::int32_t MaxTitle() const noexcept { return number(EngineKey::MaxTitle); }
    std::int32_t MaxKeywords() const noexcept { return number(EngineKey::MaxKeywords); }
    std::int32_t MaxDescriptions() const noexcept { return number(EngineKey::MaxDescriptions); }
    std::int32_t SiteLevel() const noexcept { return number(EngineKey::SiteLevel); }  // 1: a major site

    static constexpr bool isNumber(EngineKey key) noexcept { return key >= EngineKey::MaxTitle; }
    // For a key that is not a number.
    std::string_view text(EngineKey key) const noexcept {
        const auto place = static_cast<std::size_t>(key);
        if (place >= kTexts) return letter(m_letters[place - kTexts]);
        const Part& part = m_parts[place];
        return {(key == EngineKey::CategoryData ? m_texts->tables : m_texts->file).data() + part.offset,
                part.length};
    }
    std::int32_t number(EngineKey key) const noexcept {
        return m_numbers[static_cast<std::size_t>(key) - kTexts - kLetters];
    }
    // Converts the value and stores it under its key; None and Unknown change nothing. A text must be part of
    // EngineTexts, or empty.
    void set(EngineKey key, std::string_view value) noexcept;

  private:
    struct Part final {
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
    };

    static constexpr auto kTexts = static_cast<std::size_t>(EngineKey::AdultOnlySites);
    static constexpr auto kLetters = static_cast<std::size_t>(EngineKey::MaxTitle) - kTexts;
    static constexpr auto kNumbers = static_cast<std::size_t>(EngineKey::None) - kTexts - kLetters;

    static std::string_view letter(std::uint16_t code) noexcept;

    const EngineTexts* m_texts;
    std::array<Part, kTexts> m_parts{};
    std::array<std::int32_t, kNumbers> m_numbers{};
    std::array<std::uint16_t, kLetters> m_letters{};  // the byte plus one; 0 for none

  public:
    bool Selected = false;  // in the selected list; not in the file; placed last to need no padding
};

}  // namespace relay
