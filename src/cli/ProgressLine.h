// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>

#include <iosfwd>
#include <string_view>

namespace relay {

// A line on the terminal that shows a command's progress; it is overwritten and leaves nothing behind.
class ProgressLine final {
  public:
    ProgressLine(std::ostream& err, int columns);

    // Off by default; switch on for a terminal only.
    void setOn(bool on) noexcept { m_on = on; }
    bool isOn() const noexcept { return m_on; }
    // Draws about twenty times a second at most; skips texts that come sooner.
    void show(std::string_view text);
    // Call before writing anything else to the same terminal.
    void erase();

  private:
    std::ostream& m_err;
    int m_columns;
    bool m_on = false;
    bool m_shown = false;
    QElapsedTimer m_lastDrawn;
};

}  // namespace relay
