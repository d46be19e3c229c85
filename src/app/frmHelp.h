// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>
#include <string>
#include <string_view>

class QUrl;

namespace relay {

class Prompts;

namespace Ui {
class frmHelp;
}

// The viewer of the guide: its pages are Markdown files in one folder. It does not block the window that it
// belongs to.
class frmHelp final : public QDialog {
    Q_OBJECT
  public:
    // `prompts` outlives the viewer.
    frmHelp(const std::string& folder, Prompts& prompts, QWidget* parent = nullptr);
    ~frmHelp() override;

    // A file of the folder, with "#" and a heading's name if it is to begin there.
    void showPage(std::string_view page);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void followLink(const QUrl& link);
    // After a page was loaded: its title, tables and pictures, and its heading.
    void dressPage(const QUrl& source);
    void lookUp(bool backwards);
    void fitPictures();
    void scrollToHeading(const QString& name);

    std::unique_ptr<Ui::frmHelp> m_ui;
    Prompts& m_prompts;
};

}  // namespace relay
