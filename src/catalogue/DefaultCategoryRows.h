// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The program's own categories in a list, each with what an engine calls it and a tick where it has a value.
class DefaultCategoryRows final {
  public:
    // Fills `list`, which outlives it.
    explicit DefaultCategoryRows(Rows& list);

    // The categories of a cat.kws, without values. Items in front of the first main category go to
    // `strayItems`, a line each. Throws Failure 457 at the second category of a name; those before it stay.
    void read(std::string_view text, std::string& strayItems);

    // Shows label=value entries with ">" between. Those without a row are kept; gives the first of them.
    std::string show(std::string_view data);
    // The entries of the rows with a value, and those kept.
    std::string data() const;
    void setValue(int row, const std::string& value);
    // What the engine is likely to call the row's category: its value, or else its name.
    std::string suggestion(int row) const;

  private:
    Rows& m_list;
    std::vector<std::string> m_others;  // entries without a row
};

}  // namespace relay
