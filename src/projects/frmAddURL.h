// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>
#include <string>

class QFileSystemModel;

namespace relay {

namespace Ui {
class frmAddURL;
}
class Prompts;
class Rows;

// "Create URL from Local Folder": makes URLs for the files of a local folder.
class frmAddURL final : public QDialog {
    Q_OBJECT
  public:
    // URLs go to `urls`; the folder list opens at `folder`.
    frmAddURL(Rows& urls, Prompts& prompts, const std::string& folder, QWidget* parent = nullptr);
    ~frmAddURL() override;

    void accept() override;

  private:
    void showFolders(const QString& folder);

    std::unique_ptr<Ui::frmAddURL> m_ui;
    QFileSystemModel* m_folders;
    Rows& m_urls;
    Prompts& m_prompts;
};

}  // namespace relay
