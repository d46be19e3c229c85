// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "pagetools/MetaTagEditor.h"

#include <QDialog>

#include <memory>
#include <string>
#include <vector>

class QPlainTextEdit;

namespace relay {

namespace Ui {
class frmMetaTagChanges;
}

// Draws a diff: removed lines in red, added ones in green, the bytes that the change touches stronger. Line
// ends are shown as \r\n where they are touched. Long lines are cut around them.
void drawDiff(QPlainTextEdit& view, const FilePreview& preview);

// "Changes": what an update would change in each of the files. A file is read when its row is chosen.
class frmMetaTagChanges final : public QDialog {
    Q_OBJECT
  public:
    frmMetaTagChanges(const std::vector<std::string>& files, const MetaTagChange& change,
                      QWidget* parent = nullptr);
    ~frmMetaTagChanges() override;

  private:
    void showFile(int row);

    std::unique_ptr<Ui::frmMetaTagChanges> m_ui;
    Rows m_files;
    MetaTagChange m_change;
};

}  // namespace relay
