// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace relay {

// Appends the text as a JSON string, quotes included. Texts are bytes; a byte that is no valid UTF-8 appears
// as \xNN. What a terminal would obey appears as \uNNNN.
void appendJsonText(std::string& line, std::string_view text);

// One JSON object on a line of its own, its members in the order they were added. Keys are plain words of the
// program's own.
class JsonLine final {
  public:
    JsonLine() { m_line.reserve(kUsualBytes); }
    JsonLine& add(std::string_view key, std::string_view text);
    JsonLine& add(std::string_view key, std::int64_t number);
    // A value that is JSON already.
    JsonLine& addJson(std::string_view key, std::string_view json);

    // The object and a line end; nothing can be added any more.
    const std::string& finish();
    void write(std::ostream& out);

  private:
    static constexpr std::size_t kUsualBytes = 400;

    void addKey(std::string_view key);

    std::string m_line;  // without its closing brace, until it is finished
};

}  // namespace relay
