// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/PreferenceEntry.h"

#include <QDialog>

#include <memory>

class QLineEdit;
class QCheckBox;

namespace relay {

namespace Ui {
class frmPreference;
}

// The settings dialog.
class frmPreference final : public QDialog {
    Q_OBJECT
  public:
    frmPreference(clsPreference& preference, SettingsStore& store, Prompts& prompts,
                  QWidget* parent = nullptr);
    ~frmPreference() override;

    void accept() override;

  private:
    void showEntry();
    void bind(QLineEdit* edit, std::string PreferenceEntry::*member);
    void bind(QCheckBox* box, bool PreferenceEntry::*member);
    void bindFields();
    void enableProxy();
    void goTo(std::string_view control);

    std::unique_ptr<Ui::frmPreference> m_ui;
    clsPreference& m_preference;
    SettingsStore& m_store;
    Prompts& m_prompts;
    PreferenceEntry m_entry;
};

}  // namespace relay
