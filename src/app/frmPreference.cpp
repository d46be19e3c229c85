// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmPreference.h"

#include "app/ui_frmPreference.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/clsPreference.h"
#include "widgets/Appearance.h"
#include "widgets/Forms.h"

namespace relay {

frmPreference::frmPreference(const Services& services, Shown shown, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmPreference>()),
      m_services(services),
      m_entry(openPreference(services.preference)) {
    m_ui->setupUi(this);
    m_ui->lblFirstStart->setVisible(shown == Shown::AtTheFirstStart);
    bindFields();
    enableProxy();
    connect(m_ui->cmdPreference_0, &QPushButton::clicked, this, &frmPreference::accept);
    connect(m_ui->cmdPreference_1, &QPushButton::clicked, this, &frmPreference::reject);
    m_ui->SSTab1->setCurrentIndex(0);
    CenterForm(*this);
}

frmPreference::~frmPreference() = default;

void frmPreference::bind(QLineEdit* edit, std::string PreferenceEntry::*member) {
    edit->setText(toScreen(m_entry.*member));
    connect(edit, &QLineEdit::textEdited, this,
            [this, member](const QString& text) { m_entry.*member = fromScreen(text); });
}

void frmPreference::bind(QCheckBox* box, bool PreferenceEntry::*member) {
    box->setChecked(m_entry.*member);
    connect(box, &QCheckBox::clicked, this, [this, member](bool on) { m_entry.*member = on; });
}

void frmPreference::bindFields() {
    bind(m_ui->txtProxy, &PreferenceEntry::txtProxy);
    bind(m_ui->txtPort, &PreferenceEntry::txtPort);
    bind(m_ui->txtTimeOut, &PreferenceEntry::txtTimeOut);
    bind(m_ui->txtConnections, &PreferenceEntry::txtConnections);
    connect(m_ui->txtConnections, &QLineEdit::textEdited, this, [this] { m_entry.connectionsEdited = true; });
    bind(m_ui->txtUserName, &PreferenceEntry::txtUserName);
    bind(m_ui->txtPassword, &PreferenceEntry::txtPassword);
    bind(m_ui->txtYourName, &PreferenceEntry::txtYourName);
    bind(m_ui->txtEmail, &PreferenceEntry::txtEmail);
    bind(m_ui->txtCompany, &PreferenceEntry::txtCompany);
    bind(m_ui->txtSiteUrl, &PreferenceEntry::txtSiteUrl);
    bind(m_ui->txtSMTPServer, &PreferenceEntry::txtSMTPServer);
    bind(m_ui->txtLogoURL, &PreferenceEntry::txtLogoURL);
    bind(m_ui->chkBlockConfirmEmail, &PreferenceEntry::chkBlockConfirmEmail);
    bind(m_ui->chkDontClearFields, &PreferenceEntry::chkDontClearFields);
    bind(m_ui->chkPromptConnection, &PreferenceEntry::chkPromptConnection);

    // In the order of the items.
    static constexpr std::string_view kColours[] = {"system", "light", "dark"};
    const auto* const chosen = std::find(std::begin(kColours), std::end(kColours), m_entry.cboColours);
    m_ui->cboColours->setCurrentIndex(
        chosen == std::end(kColours) ? 0 : static_cast<int>(chosen - std::begin(kColours)));
    connect(m_ui->cboColours, &QComboBox::activated, this,
            [this](int index) { m_entry.cboColours = kColours[static_cast<std::size_t>(index)]; });

    (m_entry.optLogoPosition == 0 ? m_ui->optLogoPosition_0 : m_ui->optLogoPosition_1)->setChecked(true);
    connect(m_ui->optLogoPosition_0, &QRadioButton::clicked, this, [this] { m_entry.optLogoPosition = 0; });
    connect(m_ui->optLogoPosition_1, &QRadioButton::clicked, this, [this] { m_entry.optLogoPosition = 1; });

    (m_entry.optProxy == 2 ? m_ui->optProxy_2 : m_ui->optProxy_1)->setChecked(true);
    const auto chooseProxy = [this](int index) {
        selectProxy(m_services.preference, m_entry, index);
        enableProxy();
    };
    connect(m_ui->optProxy_1, &QRadioButton::clicked, this, [chooseProxy] { chooseProxy(1); });
    connect(m_ui->optProxy_2, &QRadioButton::clicked, this, [chooseProxy] { chooseProxy(2); });
}

void frmPreference::enableProxy() {
    m_ui->txtProxy->setEnabled(m_entry.optProxy == 2);
    m_ui->txtPort->setEnabled(m_entry.optProxy == 2);
}

void frmPreference::goTo(std::string_view control) {
    if (auto* field = findChild<QWidget*>(toScreen(control)); field != nullptr) showInTabs(*field);
}

void frmPreference::accept() {
    if (!confirmPreference(m_services.preference, m_services.settings, m_services.prompts, m_entry,
                           [this](std::string_view control) { goTo(control); }))
        return;
    chooseColours(toScreen(m_services.preference.Colours));
    QDialog::accept();
}

}  // namespace relay
