// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Heading.h"

#include "widgets/Forms.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace relay {

QString Heading::shownText() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

bool Heading::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QLabel::event(event);
    if (shownText() != text())
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text()), this);
    return true;
}

void Heading::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), static_cast<int>(alignment()) | static_cast<int>(Qt::TextSingleLine),
                     shownText());
}

}  // namespace relay
