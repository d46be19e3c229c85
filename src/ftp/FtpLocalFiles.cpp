// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpLocalFiles.h"

#include "core/Clock.h"
#include "core/FileNames.h"
#include "core/FileSystem.h"
#include "core/LoggedTrap.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "ftp/FtpListing.h"

#include <QLocale>

#include <sys/stat.h>

namespace relay {

namespace {

std::string kilobytes(std::int64_t size) {
    return size < 1024 ? "1KB" : grouped(size / 1024) + "KB";
}

Row localRow(const std::string& folder, const std::string& name, bool isFolder) {
    const std::string path = remotePathOf(folder, name);
    struct stat status {};
    const bool known = ::stat(path.c_str(), &status) == 0;
    const std::string date =
        known ? shortDateTime(QDateTime::fromSecsSinceEpoch(status.st_mtime), QLocale()) : std::string();
    if (isFolder)
        return {
            .text = name, .subItems = {"Folder", "", date}, .icon = std::string(kFolderIcon), .tag = path};
    const bool web = name.find(".htm") != npos;
    return {.text = " " + name,
            .subItems = {web ? "HTML File" : "File", kilobytes(known ? status.st_size : 0), date},
            .icon = std::string(web ? kWebFileIcon : kWinFileIcon),
            .tag = path};
}

}  // namespace

FtpLocalFiles::FtpLocalFiles(const Services& services, QObject* parent)
    : QObject(parent), m_services(services) {
    setUpFileList(lsvDirs);
}

void FtpLocalFiles::notReady(const std::string& folder) {
    m_services.prompts.message(
        escapeControlCharacters(folder) + " is not accessible.\r\nThe device is not ready.", "Error",
        Icon::Critical);
}

void FtpLocalFiles::openFolder(const std::string& folder) {
    trap(m_services.prompts, "addDirs_Error: ", [&] {
        const std::string path = absolutePath(folder);
        std::error_code error;
        const FolderContent content = listFolder(path, error, true);
        if (error) {
            notReady(path);
            return;
        }
        const RowsBatch batch(lsvDirs);
        lsvDirs.clear();
        m_folder = path;
        lsvDirs.add(upRow(GetUpDir(path)));
        for (const std::string& name : content.folders) lsvDirs.add(localRow(path, name, true));
        for (const std::string& name : content.files) lsvDirs.add(localRow(path, name, false));
    });
    Q_EMIT folderChanged();
}

bool FtpLocalFiles::openRow(int row) {
    const RowView chosen = lsvDirs.at(row);
    if (chosen.icon != kFolderIcon) return true;
    openFolder(std::string(chosen.tag));
    return false;
}

std::vector<std::string> FtpLocalFiles::setFileList() {
    std::vector<std::string> files;
    trap(m_services.prompts, "setFileList_Error: ", [&] {
        for (int row = 0; row < lsvDirs.count(); ++row) {
            const RowView entry = lsvDirs.at(row);
            if (entry.highlighted && entry.icon != kFolderIcon) files.emplace_back(entry.tag);
        }
        lsvDirs.clearHighlights();
    });
    return files;
}

}  // namespace relay
