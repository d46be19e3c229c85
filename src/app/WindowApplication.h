// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>

#include <functional>
#include <string_view>

namespace relay {

// The application object of the window program: shows exceptions that leave an event handler, lack of memory
// included, and continues.
class WindowApplication final : public QApplication {
  public:
    using QApplication::QApplication;

    // Shows a failure to the user. If it throws, the failure goes to standard error.
    std::function<void(std::string_view words)> failed;

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    void show(const char* reason) noexcept;

    bool m_showing = false;  // a handler that fails on each repaint must not stack up boxes
};

}  // namespace relay
