// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <QObject>

#include <string>
#include <system_error>
#include <vector>

namespace relay {

struct Services;

// The local side of the uploader: a folder's files, and which of them are chosen.
class FtpLocalFiles final : public QObject {
    Q_OBJECT
  public:
    explicit FtpLocalFiles(const Services& services, QObject* parent = nullptr);

    Rows lsvDirs;  // columns "Name", "Type", "Size", "Date"; tag is the full path, icon the kind

    const std::string& folder() const noexcept { return m_folder; }
    // Lists the folder; after a message the old one stays when it cannot be read.
    void openFolder(const std::string& folder);
    void addDirs() { openFolder(m_folder); }
    // Double click: a folder or "Up" is listed. True for a file: the caller then acts as for btnSendFile.
    bool openRow(int row);
    // The paths of the chosen (highlighted) files; clears the choice. Empty when none is chosen.
    std::vector<std::string> setFileList();

  Q_SIGNALS:
    void folderChanged();

  private:
    void notReady(const std::string& folder);

    const Services& m_services;
    std::string m_folder;
};

}  // namespace relay
