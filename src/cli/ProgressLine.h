// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>

#include <iosfwd>
#include <string_view>

namespace relay {

// A line on the terminal that tells how far a command has come; it is drawn over and leaves nothing behind.
class ProgressLine final {
  public:
    ProgressLine(std::ostream& err, int columns);

    // Off until switched on: only a terminal takes it.
    void setOn(bool on) noexcept { m_on = on; }
    bool isOn() const noexcept { return m_on; }
    // Drawn at most some twenty times a second; a text that comes sooner is passed over.
    void show(std::string_view text);
    // Before anything else is written to the same terminal.
    void erase();

  private:
    std::ostream& m_err;
    int m_columns;
    bool m_on = false;
    bool m_shown = false;
    QElapsedTimer m_lastDrawn;
};

}  // namespace relay
