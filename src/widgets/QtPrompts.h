// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Prompts.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QUrl;
class QWidget;

namespace relay {

// A dialog filter "Name (*.a)|*.a;*.b|Name|*.c|" as Qt's list "Name (*.a *.b)", "Name (*.c)".
QStringList toQtFilters(std::string_view filter);

// Prompts of the window program: Qt's boxes and dialogs, over the front window. Boxes show plain text that
// can be copied.
class QtPrompts final : public Prompts {
  public:
    // The main window. Boxes belong to it, or to a window over it that was active last.
    void setWindow(QWidget* window);
    // Receives status texts, and after how many milliseconds they disappear; 0 means never.
    using StatusSink = std::function<void(const QString& text, int milliseconds)>;
    void setStatusSink(StatusSink sink) { m_statusSink = std::move(sink); }

    void message(std::string_view text, std::string_view title, Icon icon = Icon::None) override;
    bool ask(std::string_view text, std::string_view title) override;
    std::optional<std::string> input(std::string_view text, std::string_view title,
                                     std::string_view preset = {}) override;
    FileChoice openFile(std::string_view filter, std::string_view folder) override;
    FileChoice saveFile(std::string_view filter, std::string_view folder, std::string_view name,
                        std::string_view title = {}) override;
    std::optional<std::string> chooseFolder(std::string_view title, std::string_view folder) override;
    bool openWithSystem(std::string_view target) override;
    bool viewText(std::string_view file) override;
    bool startProgram(std::string_view file) override;
    void beep() override;
    void busy(bool on) override;
    void status(std::string_view text) override;
    void notice(std::string_view text) override;

  private:
    class PlainPointer;

    QWidget* parent() const;
    // Shows a message if the opener fails.
    void startOpener(const QString& opener, const QUrl& address, const std::string& target);
    void showPointer();

    QObject m_context;  // ends the connections to openers that still run
    QPointer<QWidget> m_window;
    QPointer<QWidget> m_front;  // it, or a window over it: active last
    QMetaObject::Connection m_followed;
    StatusSink m_statusSink;
    QString m_lastFolder;
    int m_busyDepth = 0;
    int m_boxes = 0;           // open boxes, one over another
    bool m_hourglass = false;  // whether the pointer is an hourglass
};

}  // namespace relay
