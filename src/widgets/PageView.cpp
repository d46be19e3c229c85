// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/PageView.h"

#include <QPixmap>

namespace relay {

namespace {
constexpr int kImageSize = 24;
}

PageView::PageView(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    // A page that sets its background alone, as many do, must stay legible in a dark theme.
    QPalette paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    paper.setColor(QPalette::Link, QColor(0x0000cc));
    setPalette(paper);
}

// An empty answer would make the document read the file itself.
QVariant PageView::loadResource(int type, const QUrl&) {
    if (type != QTextDocument::ImageResource) return QString(QLatin1String(""));
    QPixmap box(kImageSize, kImageSize);
    box.fill(QColor(0xd0d0d0));
    return box;
}

}  // namespace relay
