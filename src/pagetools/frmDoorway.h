// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/Doorway.h"

#include <QDialog>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace relay {

namespace Ui {
class frmDoorway;
}

// "Doorway Page": the fields of a page, and what a creation would write. It keeps its fields while hidden.
class frmDoorway final : public QDialog {
    Q_OBJECT
  public:
    // The services outlive the form.
    explicit frmDoorway(const Services& services, QWidget* parent = nullptr);
    ~frmDoorway() override;

    Doorway& doorway() noexcept { return m_doorway; }
    // Fills the boxes of the keywords. Asks before others are replaced; false when they are not.
    bool takeKeywords(const std::vector<std::string>& keywords);

    // Asks what becomes of values that are not saved; stores the output folder and the lists.
    void done(int result) override;

  Q_SIGNALS:
    void guideWanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void connectFields();
    void connectButtons();
    void bind(QLineEdit& edit, std::string& field);
    void bind(QPlainTextEdit& edit, std::string& field);
    void bind(QComboBox& box, std::string& field);
    void chooseProfile();
    void create();
    void showAll();
    void showLists();
    void showPreview();
    void explain(const QWidget* focused);
    QWidget& control(Doorway::Field field) const;

    std::unique_ptr<Ui::frmDoorway> m_ui;
    Doorway m_doorway;
    std::vector<std::function<void()>> m_show;  // one for each field
    QTimer m_preview;
};

}  // namespace relay
