// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace relay {

class Log;
class Prompts;
class SettingsStore;
struct Paths;

inline constexpr const char* kApplication = "Korvel Relay";

// Who reads the settings. Only the window shows the notice after an upgrade, so only the window records the
// version.
enum class SettingsReader { Window, CommandLine };

// The settings of the program. Fields have the names used in the files; GetSettings fills them from the
// per-user store and the program's INI file (WindowsPath/korvel.ini), SaveSettings writes the section
// "Preference".
class clsPreference final {
  public:
    clsPreference(const Paths& paths, SettingsStore& store, Log& log, Prompts& prompts);

    // Also starts the log (size check and banner). On failure shows "GetSetting_Error: " and the key that
    // cannot be read, returns false, and keeps a copy of the file before its next write.
    bool GetSettings(SettingsReader reader = SettingsReader::Window);
    // A failure is shown as "Save_Setting_Error: ".
    void SaveSettings();

    std::int16_t TryWebRanking = 0;
    std::int16_t AccessType = 0;  // 1 direct, 2 through a proxy; 0 counts as 1
    std::string Proxy;            // host without scheme
    std::int32_t Port = 0;
    std::int16_t LoadConfigure = 0;  // 0 until the settings dialog has been shown
    std::int16_t TimeOut = 30;       // seconds
    std::int16_t Connections = 9;
    std::int16_t Authentication = 0;
    std::string HTTPUserName;
    std::string HTTPPassword;  // stored in plain text, in a file that only its owner can read
    std::string HTTPLogin;     // Base64 of user and password, or empty; never stored
    std::string name;
    std::string Email;
    std::string Company;
    std::string SiteURL;
    std::string SMTPServer;
    std::string LogoURL;
    std::int16_t LogoPosition = 0;
    std::int16_t BlockSpam = 0;
    std::int16_t DontClearFields = 0;
    std::int16_t PromptConnection = 1;
    std::string Colours = "system";  // of the window: "system", "light" or "dark"
    std::string Version;             // of the last run; the store already holds the current one
    std::string DownEngineData = "1";

    // The full paths of the companion programs; empty: not installed.
    std::string KRWLocation;
    std::string KBKLocation;
    std::string KLBLocation;

    std::string DealerName;
    std::string DealerEmail;
    std::string DealerURL;
    std::string UpdateURL;
    std::string SupportURL;
    std::string TipsURL;
    std::string TutorialPage;
    std::string UpdateServer;     // HOST or HOST:PORT; empty: the installed starter data
    std::string YahooAdd;         // HOST or HOST:PORT of Yahoo's add page; empty: the practice web
    std::string Dmoz;             // in front of dmoz's add links, scheme included; empty: the practice web
    std::string AcceptAdultSite;  // only "No" has an effect

    const std::string& HTTPVersion() const noexcept { return m_HTTPVersion; }
    void setHTTPVersion(std::string version);  // stored at once
    // True when adult sites are refused: AcceptAdultSite equals "No" without regard to case.
    bool refusesAdultSites() const;
    // Recomputes HTTPLogin from user name and password.
    void updateHTTPLogin();

  private:
    void readPreference();
    void readSetting(SettingsReader reader);
    void readServiceLinks();

    const Paths& m_paths;
    SettingsStore& m_store;
    Log& m_log;
    Prompts& m_prompts;
    std::string m_HTTPVersion = "HTTP/1.0";
};

// The support and web addresses of the maker, which reports and messages show.
inline constexpr const char* kSupportAddress = "support@korvel.example";
inline constexpr const char* kWebAddress = "http://www.korvel.example";

}  // namespace relay
