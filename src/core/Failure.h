// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace relay {

// A failure with the words the user reads. Logic throws it; the trap at the end of a user-level operation
// shows it. Numbers follow the system's scheme where one is meaningful (5 unknown key, 6 overflow, 9 no such
// place, 53 file not found, 61 disk full, 70 permission denied, 75 path access, 457 key already there, 35600
// no such row), else 0.
class Failure final : public std::runtime_error {
  public:
    explicit Failure(const std::string& text, int number = 0) : std::runtime_error(text), m_number(number) {}
    int number() const noexcept { return m_number; }

  private:
    int m_number;
};

// The words for the user, of the standard library's failures too.
inline const char* failureText(const std::exception& failure) noexcept {
    return dynamic_cast<const std::bad_alloc*>(&failure) ? "Out of memory" : failure.what();
}

}  // namespace relay
