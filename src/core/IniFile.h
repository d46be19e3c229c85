// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/FileStore.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// A file of sections and keys, held whole and in its order, every byte of unknown lines kept. Names compare
// without regard to case. Rules of reading: blanks around a value go, one pair of surrounding quotes (single
// or double) goes, the value is cut to the limit, trailing blanks go, and it ends at a NUL. Rules of writing:
// an existing key is replaced where it stands, a new key goes to the end of its section (before the blank
// lines that close it), a new section to the end of the file; a value is written as it stands up to its first
// line break; lines end with CR LF. The first of two sections or keys with one name is the one that counts.
// Look-up does not depend on the number of keys. A line ends at CR, LF or both. A section's name runs to the
// last "]" of its line, so a name may hold one; blanks around the names of sections and keys do not count. A
// line whose first character is ";" is no key.
class IniFile final {
  public:
    static constexpr std::size_t kShortLimit = 559;
    static constexpr std::size_t kLongLimit = 1499;
    static constexpr std::size_t kLargestFile = 64u * 1024 * 1024;  // bytes that load() takes

    // Profile: as told above. Settings: lines end with LF, a blank line parts two sections, and a new key or
    // section goes where the order of names puts it.
    enum class Style { Profile, Settings };

    IniFile();
    ~IniFile();
    IniFile(IniFile&&) noexcept;
    IniFile& operator=(IniFile&&) noexcept;

    // An absent file gives an empty document; throws Failure when the file is there but cannot be read.
    static IniFile load(const std::string& path);
    static IniFile parse(std::string_view text, Style style = Style::Profile);

    std::string value(std::string_view section, std::string_view key, std::size_t limit = kShortLimit) const;
    // All that stands behind the equals sign, by no rule of reading; empty for a key that is not there.
    std::string_view writtenValue(std::string_view section, std::string_view key) const;
    bool has(std::string_view section, std::string_view key) const;
    // False for a name that no file could give back as a key: empty, with "=" in it, or beginning with "[" or
    // ";".
    static bool takesKey(std::string_view key);
    // Names are cut at their first line break like values. Throws Failure for an empty section, and for a key
    // that takesKey refuses.
    void setValue(std::string_view section, std::string_view key, std::string_view value);
    std::vector<std::string> sections() const;                      // in file order, names as written
    std::vector<std::string> keys(std::string_view section) const;  // likewise; each name once

    std::string text() const;
    void save(const std::string& path, Readable readable = Readable::Everyone) const;

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

// The one-line faces. A file that cannot be read reads as empty, in silence: that is the rule of the reader.
std::string ReadIniValue(const std::string& file, std::string_view section, std::string_view key);
std::string ReadIniValueLong(const std::string& file, std::string_view section, std::string_view key);
// "1" when the value was written, "0" when it could not be. Holds the folder's lock while it reads and
// writes.
std::string WriteIniValue(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view value);

}  // namespace relay
