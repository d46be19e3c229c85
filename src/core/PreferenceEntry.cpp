// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/PreferenceEntry.h"

#include "core/Prompts.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"

namespace relay {

namespace {
constexpr std::string_view kTitle = "Preference";
constexpr std::string_view kScheme = "http://";
constexpr double kMaximumTimeOut = 200;
constexpr double kManyConnections = 50;

constexpr std::string_view kTimeOutText = "Time out setting must be between 1 to 200 seconds !";
constexpr std::string_view kConnectionsText =
    "Invalid value for connection setting. The value for this setting must greater than 1 !";
constexpr std::string_view kManyConnectionsText =
    "Note: You have tried to setup more than 50 connections, please do this ONLY if you are sure there is "
    "sufficient memory in your PC and you have a super faster internet connection!\r\n\r\n"
    "Are you sure you want to keep this setting?";

std::string withoutScheme(const std::string& text) {
    const std::size_t scheme = text.find("://");
    return scheme == npos ? text : text.substr(scheme + 3);
}

// The name of the first control with an invalid text, after a message; empty when all are valid.
std::string_view refusedControl(Prompts& prompts, const PreferenceEntry& entry) {
    const double timeOut = leadingNumber(entry.txtTimeOut);
    if (timeOut <= 0 || timeOut > kMaximumTimeOut) {
        prompts.message(kTimeOutText, kTitle, Icon::Information);
        return "txtTimeOut";
    }
    const double connections = leadingNumber(entry.txtConnections);
    if (connections < 1) {
        prompts.message(kConnectionsText, kTitle, Icon::Information);
        return "txtConnections";
    }
    if (connections > kManyConnections && entry.connectionsEdited &&
        !prompts.ask(kManyConnectionsText, kTitle))
        return "txtConnections";
    if (entry.optProxy != 2) return {};
    if (entry.txtProxy.empty()) {
        prompts.message("Invalid Proxy Server address.", kTitle, Icon::Critical);
        return "txtProxy";
    }
    if (entry.txtPort.empty()) {
        prompts.message("Invalid Proxy Port Number.", kTitle, Icon::Critical);
        return "txtPort";
    }
    return {};
}

void takeOver(clsPreference& preference, SettingsStore& store, const PreferenceEntry& entry) {
    const std::int16_t timeOut = toInt16(leadingNumber(entry.txtTimeOut));
    const std::int16_t connections = toInt16(leadingNumber(entry.txtConnections));
    if (entry.optProxy == 2) {
        const bool hasScheme = entry.txtProxy.find(kScheme) != npos;
        preference.Proxy = hasScheme ? entry.txtProxy.substr(kScheme.size()) : entry.txtProxy;
        preference.Port = leadingInteger(entry.txtPort);
        store.setValue(kApplication, "Preference", "Proxy", preference.Proxy);
        store.setValue(kApplication, "Preference", "Port", std::to_string(preference.Port));
    }
    preference.TimeOut = timeOut;
    preference.Connections = connections;
    preference.HTTPUserName = entry.txtUserName;
    preference.HTTPPassword = entry.txtPassword;
    preference.updateHTTPLogin();
    preference.name = entry.txtYourName;
    preference.Email = entry.txtEmail;
    preference.Company = entry.txtCompany;
    preference.SiteURL = withoutScheme(entry.txtSiteUrl);
    preference.LogoURL = withoutScheme(entry.txtLogoURL);
    preference.SMTPServer = entry.txtSMTPServer;
    preference.LogoPosition = entry.optLogoPosition == 0 ? 0 : 1;
    preference.BlockSpam = entry.chkBlockConfirmEmail ? 1 : 0;
    preference.DontClearFields = entry.chkDontClearFields ? 1 : 0;
    preference.PromptConnection = entry.chkPromptConnection ? 1 : 0;
    preference.Colours = entry.cboColours;
}
}  // namespace

PreferenceEntry openPreference(clsPreference& preference) {
    preference.LoadConfigure = 1;
    if (preference.AccessType == 0) preference.AccessType = 1;
    PreferenceEntry entry;
    entry.optProxy = preference.AccessType;
    entry.txtProxy = preference.Proxy;
    entry.txtPort = std::to_string(preference.Port);
    entry.txtTimeOut = std::to_string(preference.TimeOut);
    entry.txtConnections = std::to_string(preference.Connections);
    entry.txtUserName = preference.HTTPUserName;
    entry.txtPassword = preference.HTTPPassword;
    entry.txtYourName = preference.name;
    entry.txtEmail = preference.Email;
    entry.txtCompany = preference.Company;
    entry.txtSiteUrl = preference.SiteURL;
    entry.txtSMTPServer = preference.SMTPServer;
    entry.txtLogoURL = preference.LogoURL;
    entry.optLogoPosition = preference.LogoPosition == 0 ? 0 : 1;
    entry.chkBlockConfirmEmail = preference.BlockSpam != 0;
    entry.chkDontClearFields = preference.DontClearFields != 0;
    entry.chkPromptConnection = preference.PromptConnection != 0;
    entry.cboColours = preference.Colours;
    return entry;
}

void selectProxy(clsPreference& preference, PreferenceEntry& entry, int index) {
    entry.optProxy = index;
    preference.AccessType = static_cast<std::int16_t>(index);
}

bool confirmPreference(clsPreference& preference, SettingsStore& store, Prompts& prompts,
                       const PreferenceEntry& entry, const std::function<void(std::string_view)>& show) {
    const std::string_view refused = refusedControl(prompts, entry);
    if (!refused.empty()) {
        show(refused);
        return false;
    }
    const bool taken = trap(prompts, "Save_Setting_Error: ", [&] { takeOver(preference, store, entry); });
    if (taken) preference.SaveSettings();
    return taken;
}

}  // namespace relay
