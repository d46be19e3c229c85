// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/IconTheme.h"

#include "core/ScreenText.h"
#include "widgets/Appearance.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace relay {

namespace {
// The two colours used in the drawings.
constexpr auto kLine = "currentColor";
constexpr auto kAccent = "#2f7dd1";

struct Tint final {
    QColor line;
    QColor accent;
};

Tint tintFor(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled) {
        const QColor grey = palette.color(QPalette::Disabled, QPalette::WindowText);
        return {grey, grey};
    }
    if (mode == QIcon::Selected) {
        const QColor text = palette.color(QPalette::HighlightedText);
        return {text, text};
    }
    QColor line = palette.color(QPalette::WindowText);
    line.setAlphaF(0.82F);
    return {line, isDark(palette) ? QColor(0x6c, 0xb2, 0xf5) : QColor(0x1f, 0x6f, 0xc6)};
}

QByteArray drawing(const QString& key) {
    static QHash<QString, QByteArray> drawings;
    const auto found = drawings.constFind(key);
    if (found != drawings.constEnd()) return *found;
    QFile file(QStringLiteral(":/icons/") + key + QStringLiteral(".svg"));
    const QByteArray svg = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    drawings.insert(key, svg);
    return svg;
}

class TintedSvgEngine final : public QIconEngine {
  public:
    explicit TintedSvgEngine(QString key) : m_key(std::move(key)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal ratio = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1.0);
    }

    // `size` is in device pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal) override {
        const Tint tint = tintFor(mode);
        const QString name = QStringLiteral("relay:%1:%2x%3:%4:%5")
                                 .arg(m_key)
                                 .arg(size.width())
                                 .arg(size.height())
                                 .arg(tint.line.rgba(), 0, 16)
                                 .arg(tint.accent.rgba(), 0, 16);
        QPixmap picture;
        if (QPixmapCache::find(name, &picture)) return picture;
        QByteArray svg = drawing(m_key);
        const QByteArray opacity = QByteArray::number(tint.line.alphaF(), 'f', 2);
        svg.replace(QByteArray("\"") + kLine + "\"",
                    "\"" + tint.line.name().toLatin1() + "\" stroke-opacity=\"" + opacity + "\"");
        svg.replace(kAccent, tint.accent.name().toLatin1());
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        if (QSvgRenderer renderer(svg); renderer.isValid()) {
            QPainter painter(&picture);
            renderer.render(&painter);
        }
        QPixmapCache::insert(name, picture);
        return picture;
    }

    bool isNull() override { return drawing(m_key).isEmpty(); }
    QString key() const override { return QStringLiteral("relay-tinted-svg"); }
    QIconEngine* clone() const override { return new TintedSvgEngine(m_key); }

  private:
    QString m_key;
};
}  // namespace

QIcon themedIcon(std::string_view key) {
    static QHash<QString, QIcon> icons;
    const QString name = toScreen(key);
    const auto found = icons.constFind(name);
    if (found != icons.constEnd()) return *found;
    const QIcon icon(new TintedSvgEngine(name));
    icons.insert(name, icon);
    return icon;
}

QIcon programIcon() {
    return QIcon(QStringLiteral(":/icons/korvel-relay.svg"));
}

}  // namespace relay
