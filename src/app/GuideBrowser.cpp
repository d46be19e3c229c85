// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/GuideBrowser.h"

#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"

#include <QImage>
#include <QUrl>

namespace relay {

namespace {

constexpr std::string_view kPictures = "pictures/";

// The page without the comment of its first line.
QString shownText(std::string_view page) {
    if (page.starts_with("<!--")) page.remove_prefix(std::min(page.find("-->") + 3, page.size()));
    return toScreen(page);
}

}  // namespace

// Empty for names that lead elsewhere.
std::string GuideBrowser::pathOf(const QUrl& name) const {
    std::string text = fromScreen(name.path());
    std::string_view file = text;
    if (!name.scheme().isEmpty() || !name.host().isEmpty()) return {};
    if (file.starts_with(kPictures)) file.remove_prefix(kPictures.size());
    const bool plain =
        !file.empty() && file.front() != '.' && file.find('/') == npos && !hasControlByte(file);
    return plain ? m_folder + "/" + text : std::string();
}

bool GuideBrowser::hasPage(const QString& name) const {
    const std::string path = pathOf(QUrl(name));
    return path.ends_with(".md") && fileExists(path);
}

QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
    const std::string path = pathOf(name);
    if (path.empty()) return {};
    std::string bytes;
    if (failureOf([&] { bytes = readFile(path); })) return {};
    if (type == QTextDocument::ImageResource)
        return QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()));
    return path.ends_with(".md") ? shownText(bytes) : QString();
}

}  // namespace relay
