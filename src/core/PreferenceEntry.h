// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace relay {

class clsPreference;
class Prompts;
class SettingsStore;

// The contents of the settings dialog while the user edits it. Members are named after their controls.
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

// The settings that the dialog opens with. Marks the dialog as shown, and chooses how the internet is reached
// if that is not yet set.
PreferenceEntry openPreference(clsPreference& preference);
// A click on an internet access option takes effect at once, even if the dialog is then cancelled.
void selectProxy(clsPreference& preference, PreferenceEntry& entry, int index);
// "&OK": checks the entry, copies it to the settings and saves them. When a check fails, shows a message,
// calls `show` with the name of the control to go back to, saves nothing and returns false.
bool confirmPreference(clsPreference& preference, SettingsStore& store, Prompts& prompts,
                       const PreferenceEntry& entry, const std::function<void(std::string_view)>& show);

}  // namespace relay
