// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace relay {

class News;

namespace Ui {
class frmNews;
}

// The window of the news.
class frmNews final : public QDialog {
    Q_OBJECT
  public:
    // `news` outlives the form. The form looks for a new message once it is shown, if the setting says so.
    explicit frmNews(News& news, QWidget* parent = nullptr);
    ~frmNews() override;

    // Cancels a running request.
    void done(int result) override;

  private:
    void showState();

    std::unique_ptr<Ui::frmNews> m_ui;
    News& m_news;
};

}  // namespace relay
