// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextBrowser>

namespace relay {

// Shows roughly what a page reads like, black on white. It loads nothing, neither from the disk nor from the
// web: images are grey boxes, links do not open.
class PageView final : public QTextBrowser {
    Q_OBJECT
  public:
    explicit PageView(QWidget* parent = nullptr);

    QVariant loadResource(int type, const QUrl& name) override;
};

}  // namespace relay
