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
        show("Out of memory");
    } catch (const std::exception& failure) {
        show(failure.what());
    } catch (...) {
        show("Unknown failure");
    }
    return false;
}

void WindowApplication::show(const char* reason) noexcept {
    if (!m_showing && failed) {
        m_showing = true;
        try {
            failed(std::string("Main_Error: ") + reason);
            m_showing = false;
            return;
        } catch (...) {
            m_showing = false;
        }
    }
    std::fprintf(stderr, "Main_Error: %s\n", reason);
}

}  // namespace relay
