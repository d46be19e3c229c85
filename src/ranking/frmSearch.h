// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/WebSearch.h"

#include <QDialog>

#include <memory>

class QListWidgetItem;

namespace relay {

namespace Ui {
class frmSearch;
}

// "Search": opens a query on an engine in the user's browser.
class frmSearch final : public QDialog {
    Q_OBJECT
  public:
    // The services outlive the form.
    explicit frmSearch(const Services& services, QWidget* parent = nullptr);
    ~frmSearch() override;

    // Stores the earlier phrases.
    void done(int result) override;

  private:
    void showEngines();
    void showWebsites();
    void showURLs();
    void showHistory(const QString& text);
    void search();

    std::unique_ptr<Ui::frmSearch> m_ui;
    const Services& m_services;
    WebSearch m_search;
};

}  // namespace relay
