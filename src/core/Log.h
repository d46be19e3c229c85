// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"
#include "core/Descriptor.h"

#include <string>
#include <string_view>

namespace relay {

// AppPath/Error.log. WriteErrorLog always appends the text and a CR LF; WriteTraceLog works only with the
// switch "/D" and appends the date and time, a CR LF, the text and a CR LF. Each opens its own handle on
// first use and keeps it, unless the file is removed meanwhile. Neither throws: a log that cannot be written
// stops nothing. Callers mask passwords.
class Log final {
  public:
    // `commandLine` is all arguments joined by blanks; "/d" anywhere in it switches the trace on.
    Log(std::string path, const Clock& clock, std::string_view commandLine);

    // Call at the start of a run: deletes a log of 5001 bytes or more unless another program has it open,
    // then writes the banner.
    void startRun();
    void WriteErrorLog(std::string_view text);
    void WriteTraceLog(std::string_view text);
    bool traceOn() const noexcept { return m_trace; }
    const std::string& path() const noexcept { return m_path; }
    void closeAll();

  private:
    void append(Descriptor& file, std::string_view bytes);

    std::string m_path;
    const Clock& m_clock;
    bool m_trace;
    Descriptor m_errorFile;
    Descriptor m_traceFile;
};

}  // namespace relay
