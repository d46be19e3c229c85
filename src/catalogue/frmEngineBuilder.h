// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineBuilder.h"

#include <QMainWindow>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QCheckBox;
class QLineEdit;

namespace relay {

namespace Ui {
class frmEngineBuilder;
}

// "Engine Builder", a window with a menu and a toolbar of its own. Escape cancels a running request.
class frmEngineBuilder final : public QMainWindow {
    Q_OBJECT
  public:
    // How the form reaches the program's fetcher and the practice web.
    struct Fetching final {
        EngineBuilder::Outside outside;
        std::function<bool()> isRunning;
        std::function<void()> cancel;
    };

    frmEngineBuilder(const Services& services, const Catalogue& catalogue, Fetching fetching,
                     QWidget* parent = nullptr);
    ~frmEngineBuilder() override;

    EngineBuilder& builder() noexcept { return m_builder; }
    // Reads the stored engines and shows the window.
    void open();
    // Call when a request begins or ends.
    void showFetching(bool fetching);

  Q_SIGNALS:
    void closed();

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void connectMenu();
    void connectEngine();
    void connectSource();
    void connectFields();
    void connectCategories();
    void bind(QLineEdit& edit, std::string EngineBuilder::*member, bool checked = true);
    void bind(QCheckBox& box, bool EngineBuilder::*member);
    void showAll();
    void showFields();
    void showSource();
    void showFindings();
    void showTab(EngineBuilder::Tab tab);
    void focus(const std::string& control);
    void unlockFieldName();

    std::unique_ptr<Ui::frmEngineBuilder> m_ui;
    Fetching m_fetching;
    EngineBuilder m_builder;
    std::vector<std::function<void()>> m_show;  // one for each bound control
};

}  // namespace relay
