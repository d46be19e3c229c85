// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "widgets/SourceLines.h"

#include <QListView>

namespace relay {

// Shows the source of a page with its line numbers; read only. Pages of many megabytes appear at once. Ctrl+C
// copies the selected lines.
class SourceView final : public QListView {
    Q_OBJECT
    Q_PROPERTY(QString emptyHint READ emptyHint WRITE setEmptyHint)
  public:
    explicit SourceView(QWidget* parent = nullptr);

    QString emptyHint() const { return m_emptyHint; }
    void setEmptyHint(const QString& hint) { m_emptyHint = hint; }
    void setSource(std::string_view source);
    // Selects the line and scrolls to it.
    void showLine(std::size_t line);
    std::size_t currentLine() const;  // 0 without one

    void keyboardSearch(const QString&) override {}  // would read the whole page at each key

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void copy() const;
    void useFixedFont();

    SourceLines m_lines;
    QString m_emptyHint;
};

}  // namespace relay
