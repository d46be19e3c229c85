// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ProgressLine.h"

#include "cli/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace relay {

ProgressLine::ProgressLine(std::ostream& err, int columns) : m_err(err), m_columns(columns) {}

void ProgressLine::show(std::string_view text) {
    constexpr qint64 kPause = 50;  // milliseconds
    if (!m_on || (m_shown && m_lastDrawn.isValid() && m_lastDrawn.elapsed() < kPause)) return;
    // The last column stays free, as a terminal would wrap to the next line.
    const auto columns = static_cast<std::size_t>(std::max(m_columns - 1, 10));
    const std::string line = terminalText(text);
    m_err << "\r\033[K" << cutToWidth(line, columns) << std::flush;
    m_shown = true;
    m_lastDrawn.start();
}

void ProgressLine::erase() {
    if (!m_shown) return;
    m_err << "\r\033[K" << std::flush;
    m_shown = false;
}

}  // namespace relay
