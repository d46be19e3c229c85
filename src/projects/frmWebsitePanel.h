// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/WebsiteCheck.h"

#include <QKeySequence>
#include <QTabWidget>

#include <functional>
#include <memory>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace relay {

namespace Ui {
class frmWebsitePanel;
}
class Categories;
class CategoryWalk;
struct EngineLists;

// The website panel, SSTab1: the fields of one website. What is typed goes into the fields at once;
// showFields updates the controls after the program changed the fields. Its commands are QActions of the
// form, which the window connects.
class frmWebsitePanel final : public QTabWidget {
    Q_OBJECT
  public:
    explicit frmWebsitePanel(QWidget* parent = nullptr);
    ~frmWebsitePanel() override;

    // Both must outlive the panel.
    void connectTo(WebsiteFields& fields, Categories& categories);
    void setChoices(const std::vector<std::string>& webTypes, const std::vector<std::string>& languages,
                    const std::vector<std::string>& countries);
    // The tab of the custom engines; both must outlive the panel.
    void connectWalk(CategoryWalk& walk, const EngineLists& lists);
    // Fills cboCustomEngines after a load of the catalogue.
    void showCustomEngines();
    void showFields();
    // Brings the field of a failed check to the front and focuses it.
    void showMissing(const MissingField& missing);
    // Alt and the page's number. The window handles them, because they work in other panels too.
    static QKeySequence pageKeys(int tab);

  Q_SIGNALS:
    void edited();  // something that is saved may have changed
    void urlSelected(bool any);
    void urlChosen(int row);  // the row of lsvSiteURLs the user moved to
    void getSiteInfo();
    void importWebFormData();
    void browseForLocalFile();
    void viewReport();
    void deleteReport();

  private:
    using TextMember = std::string WebsiteFields::*;

    void makeToolbarReachable();
    void drawIcons();
    void bind(QLineEdit* edit, TextMember member);
    void bind(QPlainTextEdit* edit, TextMember member);
    void bind(QComboBox* box, TextMember member);
    void bindLabel(QLabel* label, TextMember member);
    void bindFields();
    void connectLists(Categories& categories);
    void followLists();
    void take(TextMember member, const QString& text);

    std::unique_ptr<Ui::frmWebsitePanel> m_ui;
    void showWalk();

    WebsiteFields* m_fields = nullptr;
    CategoryWalk* m_walk = nullptr;
    const EngineLists* m_lists = nullptr;
    std::vector<std::function<void()>> m_show;  // one for each bound control
};

}  // namespace relay
