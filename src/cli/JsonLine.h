// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace relay {

// One JSON object on a line of its own, with members in the order added. Texts are bytes; a byte that is not
// valid UTF-8 appears as \xNN, a character that terminals obey as \uNNNN.
class JsonLine final {
  public:
    JsonLine& add(std::string_view key, std::string_view text);
    JsonLine& add(std::string_view key, std::int64_t number);
    // Writes the object and a line end.
    void write(std::ostream& out) const;

  private:
    void addKey(std::string_view key);

    std::string m_line;  // without its closing brace
};

}  // namespace relay
