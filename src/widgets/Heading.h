// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace relay {

// A heading of one line. If it does not fit, it ends in an ellipsis and its tooltip shows the whole text.
class Heading final : public QLabel {
  public:
    using QLabel::QLabel;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString shownText() const;
};

}  // namespace relay
