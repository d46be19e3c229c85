// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>

#include <functional>
#include <string_view>

namespace relay {

// The application object of the window program: what an event handler lets out, lack of memory among it, is
// shown, and the program goes on.
class WindowApplication final : public QApplication {
  public:
    using QApplication::QApplication;

    // Shows a failure to the user. What it throws itself goes to standard error.
    std::function<void(std::string_view words)> failed;

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    void show(const char* reason) noexcept;

    bool m_showing = false;  // a handler that fails at each repaint must not pile up boxes
};

}  // namespace relay
