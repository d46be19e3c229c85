// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowApplication.h"

#include <cstdio>
#include <exception>
#include <new>
#include <string>

namespace relay {

bool WindowApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc&) {
        tell("Out of memory");
    } catch (const std::exception& failure) {
        tell(failure.what());
    } catch (...) {
        tell("Unknown failure");
    }
    return false;
}

void WindowApplication::tell(const char* reason) noexcept {
    if (!m_telling && failed) {
        m_telling = true;
        try {
            failed(std::string("Main_Error: ") + reason);
            m_telling = false;
            return;
        } catch (...) {
            m_telling = false;
        }
    }
    std::fprintf(stderr, "Main_Error: %s\n", reason);
}

}  // namespace relay
