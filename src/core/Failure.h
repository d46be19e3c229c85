// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace relay {

// A failure with the text the user reads. Logic throws it; the trap at the end of a user-level operation
// shows it. The number follows the system's scheme where there is one (5 unknown key, 6 overflow, 9 no such
// place, 53 file not found, 61 disk full, 70 permission denied, 75 path access, 457 key already there, 35600
// no such row), else it is 0.
class Failure final : public std::runtime_error {
  public:
    explicit Failure(const std::string& text, int number = 0) : std::runtime_error(text), m_number(number) {}
    int number() const noexcept { return m_number; }

  private:
    int m_number;
};

// The text for the user, also for exceptions of the standard library.
inline const char* failureText(const std::exception& failure) noexcept {
    return dynamic_cast<const std::bad_alloc*>(&failure) ? "Out of memory" : failure.what();
}

}  // namespace relay
