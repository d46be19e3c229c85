// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Drives.h"

#include <QComboBox>
#include <QDir>
#include <QStandardPaths>
#include <QStorageInfo>

namespace relay {

void fillDrives(QComboBox& drives) {
    drives.addItem(QComboBox::tr("Home"), QDir::homePath());
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents != QDir::homePath() && QDir(documents).exists())
        drives.addItem(QComboBox::tr("Documents"), documents);
    drives.addItem(QDir::rootPath(), QDir::rootPath());
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        const QString path = volume.rootPath();
        const bool isMedium = path.startsWith(QStringLiteral("/media/")) ||
                              path.startsWith(QStringLiteral("/run/media/")) ||
                              path.startsWith(QStringLiteral("/mnt/"));
        if (isMedium) drives.addItem(path, path);
    }
}

}  // namespace relay
