// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"
#include "core/Text.h"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

inline constexpr std::size_t kLastPosition = std::numeric_limits<std::int16_t>::max();

// The position of a marker; throws Failure 6 "Overflow" beyond 32,767.
inline int pagePosition(std::size_t position) {
    if (position > kLastPosition) throw Failure("Overflow", 6);
    return static_cast<int>(position);
}

// A page that is being changed. Positions count from 1, and 0 stands for "not found". Every change happens
// near the front, as no position is over 32,767; so only the front is kept as a text of its own, and the rest
// of a large page is never moved.
class PageText final {
  public:
    // `html` must outlive this object.
    explicit PageText(std::string_view html);

    // The first marker at or after `from`, without regard to case. Throws Failure 6 when it is beyond 32,767.
    int find(std::string_view marker, int from = 1) const;
    // The text from `first` to before `end`; both must be at most a few bytes behind a found marker.
    std::string_view between(int first, int end) const;
    // Puts `text` in the place of what is there from `first` to before `end`.
    void replace(int first, int end, std::string_view text);
    void insert(int position, std::string_view text) { replace(position, position, text); }

    // The whole page and a line break.
    std::string asLine() const;

  private:
    // Where a marker is known to be in m_html: its first place at or after `from`.
    struct Known final {
        std::string_view marker;
        std::size_t from;
        std::size_t at;
    };

    void refill();
    bool isInRest(std::string_view marker) const;

    std::string_view m_html;
    std::size_t m_taken = 0;  // bytes of m_html that m_front was made from
    std::string m_front;
    mutable std::vector<Known> m_known;
};

}  // namespace relay
