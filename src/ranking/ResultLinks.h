// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankEngine.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

// The result links of one page, one after the other. The time grows with the page's length in a straight
// line.
class ResultLinks final {
  public:
    explicit ResultLinks(const RankEngine& engine) : m_engine(engine) {}

    // Takes a page. Line breaks do not count; the engine's markers cut out the result list.
    void read(std::string_view html);
    // The next link that is a result, with its address made whole; links that are none are passed over. Valid
    // until the next call.
    std::optional<std::string_view> next();
    // Whether the page has the beginning of a result list, and a link in it so far.
    bool hasList() const noexcept { return m_hasStart && m_hasLink; }

  private:
    void cutList();
    std::size_t findOpener();
    bool isResult(std::string_view link) const;
    std::string_view repaired(std::string_view link);

    const RankEngine& m_engine;
    std::string m_flat;       // the page without line breaks, if it has any
    std::string_view m_list;  // what is left of the result list
    std::string m_link;       // the last link, if it was changed
    bool m_hasStart = false;
    bool m_hasLink = false;
    bool m_noOpener1 = false;  // there are no more in the list
};

}  // namespace relay
