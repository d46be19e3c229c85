// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/PreferenceEntry.h"

#include <QDialog>

#include <memory>

class QLineEdit;
class QCheckBox;

namespace relay {

struct Services;

namespace Ui {
class frmPreference;
}

// The settings dialog.
class frmPreference final : public QDialog {
    Q_OBJECT
  public:
    enum class Shown { ByCommand, AtTheFirstStart };  // at the first start a heading says why it is there

    explicit frmPreference(const Services& services, Shown shown = Shown::ByCommand,
                           QWidget* parent = nullptr);
    ~frmPreference() override;

    void accept() override;

  private:
    void bind(QLineEdit* edit, std::string PreferenceEntry::*member);
    void bind(QCheckBox* box, bool PreferenceEntry::*member);
    void bindFields();
    void enableProxy();
    void goTo(std::string_view control);

    std::unique_ptr<Ui::frmPreference> m_ui;
    const Services& m_services;
    PreferenceEntry m_entry;
};

}  // namespace relay
