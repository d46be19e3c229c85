// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/MetaTagEditor.h"

#include <QDialog>

#include <functional>
#include <memory>

class QPlainTextEdit;

namespace relay {

namespace Ui {
class frmMetaTag;
}

// "Meta Tag Editor". Escape first cancels a running request or stops a running update, then closes the form.
class frmMetaTag final : public QDialog {
    Q_OBJECT
  public:
    // How the form reaches the program's fetcher.
    struct Fetching final {
        MetaTagEditor::Connect connect;
        std::function<bool()> isRunning;
        std::function<void()> cancel;
    };

    frmMetaTag(const Services& services, Fetching fetching, QWidget* parent = nullptr);
    ~frmMetaTag() override;

    MetaTagEditor& editor() noexcept { return m_editor; }
    // Call when a request begins or ends.
    void showFetching(bool fetching);

    void reject() override;

  private:
    void connectFields();
    void connectFiles();
    void bind(QPlainTextEdit& edit, MetaTagEditor::Field& field);
    void getAddress();
    void showChanges();
    void update();
    void focusEmptyField();
    void selectPages();
    int currentRow() const;
    void showFields();
    void showFolder();
    void showStatus();
    void showUpdating(bool updating);

    std::unique_ptr<Ui::frmMetaTag> m_ui;
    Fetching m_fetching;
    const Services& m_services;
    MetaTagEditor m_editor;
};

}  // namespace relay
