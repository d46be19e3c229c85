// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/FileStore.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// A file of sections and keys, kept whole and in order, every byte of unknown lines included. Names compare
// without regard to case; blanks around them do not count. If two sections or keys have the same name, the
// first one counts. The cost of a look-up does not depend on the number of keys.
// Reading: a line ends at CR, LF or both. A section name runs to the last "]" of its line. A line that begins
// with ";" is not a key. A value loses the blanks around it and one pair of surrounding quotes (single or
// double), is cut to the limit, loses its trailing blanks, and ends at a NUL.
// Writing: an existing key is replaced in place, a new key goes to the end of its section (before its closing
// blank lines), a new section to the end of the file. A value is written up to its first line break. Lines
// end with CR LF.
class IniFile final {
  public:
    static constexpr std::size_t kShortLimit = 559;
    static constexpr std::size_t kLongLimit = 1499;
    static constexpr std::size_t kLargestFile = 64u * 1024 * 1024;  // bytes that load() takes

    // Profile: as above. Settings: lines end with LF, sections are separated by a blank line, and new keys
    // and sections are inserted in order of name.
    enum class Style { Profile, Settings };

    IniFile();
    ~IniFile();
    IniFile(IniFile&&) noexcept;
    IniFile& operator=(IniFile&&) noexcept;

    // A missing file gives an empty document; throws Failure when a file exists but cannot be read.
    static IniFile load(const std::string& path);
    static IniFile parse(std::string_view text, Style style = Style::Profile);

    std::string value(std::string_view section, std::string_view key, std::size_t limit = kShortLimit) const;
    // Everything after the equals sign, unprocessed; empty when there is no such key.
    std::string_view writtenValue(std::string_view section, std::string_view key) const;
    bool has(std::string_view section, std::string_view key) const;
    // False for a name that could not be read back as a key: empty, with "=" in it, or beginning with "[" or
    // ";".
    static bool takesKey(std::string_view key);
    // Names, like values, are cut at the first line break. Throws Failure for an empty section and for a key
    // that takesKey refuses.
    void setValue(std::string_view section, std::string_view key, std::string_view value);
    // Drops every section of that name with all its lines; those around it stay as they are.
    void removeSection(std::string_view section);
    std::vector<std::string> sections() const;                      // in file order, names as written
    std::vector<std::string> keys(std::string_view section) const;  // likewise, each name once

    // A section's header, or a key of it, in the text that was read.
    struct Place final {
        std::size_t line = 0;      // from 1
        std::string_view section;  // empty before the first header
        std::string_view key;      // empty for a header
        bool counts = false;       // false if an earlier one has the same name
    };
    // In file order; for a document that was not changed. The views are valid as long as the document.
    std::vector<Place> places() const;
    // The lines that are neither a header, a key, a comment nor blank, as a header without its "]" is.
    struct StrayLine final {
        std::size_t line = 0;   // from 1
        std::string_view text;  // without the blanks around it
    };
    // In file order, under the same conditions.
    std::vector<StrayLine> strayLines() const;

    std::string text() const;
    void save(const std::string& path, Readable readable = Readable::Everyone) const;

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

// Shortcuts for a single value. A file that cannot be read counts as empty, without an error.
std::string ReadIniValue(const std::string& file, std::string_view section, std::string_view key);
std::string ReadIniValueLong(const std::string& file, std::string_view section, std::string_view key);
// "1" when the value was written, "0" when it could not be. Locks the folder while it reads and writes.
std::string WriteIniValue(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view value);

}  // namespace relay
