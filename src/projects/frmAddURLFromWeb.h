// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/UrlsFromPage.h"

#include <QDialog>

#include <memory>
#include <string_view>

namespace relay {

namespace Ui {
class frmAddURLFromWeb;
}

// "Add URL from Web": adds the links of a live page to the URL list, without those that contain a filter.
// Escape first cancels a running request, then closes the form.
class frmAddURLFromWeb final : public QDialog {
    Q_OBJECT
  public:
    // URLs go to `urls`; `url` is the page suggested to the user, if any.
    frmAddURLFromWeb(Rows& urls, frmHTTP& fetcher, Prompts& prompts, std::string_view url,
                     QWidget* parent = nullptr);
    ~frmAddURLFromWeb() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addFilter();
    void removeFilters();
    void fetchPage();
    void showStatus(const QString& text);
    void showFetching(bool fetching);

    std::unique_ptr<Ui::frmAddURLFromWeb> m_ui;
    UrlsFromPage m_page;
};

}  // namespace relay
