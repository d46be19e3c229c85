// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace relay {

class clsPreference;
class Prompts;
class SettingsStore;

// What stands in the settings dialog while the user edits it. Members are named after their controls.
struct PreferenceEntry final {
    int optProxy = 1;  // 1 direct, 2 through a proxy
    std::string txtProxy;
    std::string txtPort;
    std::string txtTimeOut;
    std::string txtConnections;
    bool connectionsEdited = false;  // a key was typed in txtConnections during this visit
    std::string txtUserName;
    std::string txtPassword;
    std::string txtYourName;
    std::string txtEmail;
    std::string txtCompany;
    std::string txtSiteUrl;
    std::string txtSMTPServer;
    std::string txtLogoURL;
    int optLogoPosition = 0;  // 0 top, 1 bottom
    bool chkBlockConfirmEmail = false;
    bool chkDontClearFields = false;
    bool chkPromptConnection = false;
    std::string cboColours;  // "system", "light" or "dark"
};

// The settings as the dialog opens on them. Marks the dialog as shown once, and settles how the internet is
// reached where that is not told yet.
PreferenceEntry openPreference(clsPreference& preference);
// A click on an option of internet access counts at once, even if the dialog is cancelled afterwards.
void selectProxy(clsPreference& preference, PreferenceEntry& entry, int index);
// "&OK": checks, takes the entry over and saves the settings. False when a check failed and the user was
// told; `show` then gets the name of the control to go back to, and nothing is saved.
bool confirmPreference(clsPreference& preference, SettingsStore& store, Prompts& prompts,
                       const PreferenceEntry& entry, const std::function<void(std::string_view)>& show);

}  // namespace relay
