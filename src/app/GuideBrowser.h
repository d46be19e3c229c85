// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextBrowser>

#include <string>

namespace relay {

// Shows the guide's pages. It reads Markdown files and pictures of its folder and of its sub-folder
// "pictures", and nothing else.
class GuideBrowser final : public QTextBrowser {
    Q_OBJECT
  public:
    using QTextBrowser::QTextBrowser;

    void setFolder(std::string folder) { m_folder = std::move(folder); }
    // Whether the page is there.
    bool hasPage(const QString& name) const;

    QVariant loadResource(int type, const QUrl& name) override;

  private:
    std::string pathOf(const QUrl& name) const;

    std::string m_folder;
};

}  // namespace relay
