// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/clsPreference.h"

#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace relay {

namespace {

constexpr const char* kPreference = "Preference";
constexpr const char* kSetting = "Setting";
constexpr const char* kWindow = "Window";
constexpr const char* kPresentVersion = "6.0";

// The whole text, apart from blanks around it, must be a number.
double numberOf(std::string_view text) {
    text = trim(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) throw Failure("Overflow", 6);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        throw Failure("Type mismatch", 13);
    return value;
}

std::int32_t toInt32(double value) {
    const double rounded = std::nearbyint(value);
    if (rounded < std::numeric_limits<std::int32_t>::min() ||
        rounded > std::numeric_limits<std::int32_t>::max())
        throw Failure("Overflow", 6);
    return static_cast<std::int32_t>(rounded);
}

// Reads one section of the store.
class Section final {
  public:
    Section(const SettingsStore& store, std::string_view section) : m_store(store), m_section(section) {}

    std::string text(std::string_view key, std::string_view fallback = {}) const {
        return m_store.value(kApplication, m_section, key, fallback);
    }
    // Throws Failure with the name of the key when the text cannot be converted.
    template <typename Conversion>
    auto converted(std::string_view key, std::string_view fallback, Conversion conversion) const {
        try {
            return conversion(text(key, fallback));
        } catch (const Failure& failure) {
            throw Failure(std::string(key) + ": " + failure.what(), failure.number());
        }
    }
    std::int16_t number(std::string_view key, std::string_view fallback = "0") const {
        return converted(key, fallback, [](std::string_view value) { return toInt16(numberOf(value)); });
    }

  private:
    const SettingsStore& m_store;
    std::string_view m_section;
};

// The full path of a companion program, or empty when it is not installed.
std::string siblingTool(const SettingsStore& store, std::string_view application, std::string_view section,
                        std::string_view file) {
    const std::string folder = store.value(application, section, "Location");
    return folder.empty() ? folder : folder + "/" + std::string(file);
}

}  // namespace

clsPreference::clsPreference(const Paths& paths, SettingsStore& store, Log& log, Prompts& prompts)
    : m_paths(paths), m_store(store), m_log(log), m_prompts(prompts) {}

bool clsPreference::GetSettings(SettingsReader reader) {
    const bool read = trap(m_prompts, "GetSetting_Error: ", [this, reader] {
        m_log.startRun();
        readPreference();
        KRWLocation = siblingTool(m_store, "Korvel Rank Watch V4", "Preference", "krw.exe");
        KBKLocation = siblingTool(m_store, "Korvel Bid Keeper", "Version", "kbk20.exe");
        KLBLocation = siblingTool(m_store, "Korvel Link Builder", "Version", "klink.exe");
        readSetting(reader);
        readServiceLinks();
    });
    // The next save replaces what could not be read with defaults.
    if (!read) m_store.keepFileBeforeSave();
    return read;
}

void clsPreference::readPreference() {
    const Section from(m_store, kPreference);
    TryWebRanking = from.number("TryWebRanking");
    AccessType = from.number("AccessType");
    Proxy = from.text("Proxy");
    Port = from.converted("Port", "0", [](std::string_view value) { return toInt32(numberOf(value)); });
    LoadConfigure = from.number("LoadConfig");
    TimeOut = from.number("TimeOut", "30");
    Connections = from.number("Connections", "9");
    Authentication = from.number("Authentication");
    HTTPUserName = from.text("Auth_Username");
    HTTPPassword = from.text("Auth_Password");
    updateHTTPLogin();
    m_HTTPVersion = from.text("HTTPVersion", "HTTP/1.0");
    name = from.text("Name");
    Email = from.text("Email");
    Company = from.text("Company");
    SiteURL = from.text("SiteURL");
    SMTPServer = from.text("SMTP Server");
    LogoURL = from.text("LogoURL");
    LogoPosition = from.converted("LogoPosition", "0",
                                  [](std::string_view value) { return toInt16(leadingNumber(value)); });
    BlockSpam = from.number("BlockSpam");
    DontClearFields = from.number("DontClearFields");
    PromptConnection = from.number("PromptConnection", "1");
    Colours = Section(m_store, kWindow).text("Colours", "system");
}

void clsPreference::readSetting(SettingsReader reader) {
    const Section from(m_store, kSetting);
    Version = from.text("Version");
    if (reader == SettingsReader::Window && Version != kPresentVersion) {
        m_store.setValue(kApplication, kSetting, "Version", kPresentVersion);
        m_store.setValue(kApplication, kSetting, "Download", "1");
        m_store.trySave();  // a home that cannot be written can still be read
    }
    DownEngineData = from.text("Download", "1");
}

void clsPreference::readServiceLinks() {
    const std::string file = m_paths.inWindows("korvel.ini");
    const auto link = [&](std::string_view key, std::string_view fallback) {
        std::string value = ReadIniValue(file, "Dealer", key);
        return value.empty() ? std::string(fallback) : value;
    };
    const auto page = [](std::string_view path) { return "https://www.korvel.example" + std::string(path); };
    DealerName = link("Name", "Brenmoor Pty Ltd");
    DealerEmail = link("Email", kSupportAddress);
    DealerURL = link("Home", kWebAddress);
    UpdateURL = link("UpdateURL", page("/upgrade.html"));
    SupportURL = link("SupportURL", page("/support.html"));
    TipsURL = link("TipsURL", page("/tips.html"));
    TutorialPage = link("TutorialPage", "https://tutorial.korvel.example");
    UpdateServer = link("UpdateServer", "");
    YahooAdd = link("YahooAdd", "");
    Dmoz = link("Dmoz", "");
    AcceptAdultSite = link("AcceptAdultSite", "");
}

void clsPreference::SaveSettings() {
    const auto write = [this](std::string_view key, std::string_view value) {
        m_store.setValue(kApplication, kPreference, key, value);
    };
    const auto writeNumber = [&](std::string_view key, int value) { write(key, std::to_string(value)); };
    trap(m_prompts, "Save_Setting_Error: ", [&] {
        m_store.setValue(kApplication, kSetting, "Location", m_paths.AppPath);
        writeNumber("TryWebRanking", TryWebRanking);
        writeNumber("AccessType", AccessType);
        write("Proxy", Proxy);
        writeNumber("Port", Port);
        writeNumber("LoadConfig", LoadConfigure);
        writeNumber("TimeOut", TimeOut);
        writeNumber("Connections", Connections);
        writeNumber("Authentication", Authentication);
        write("Auth_Username", HTTPUserName);
        write("Auth_Password", HTTPPassword);
        write("Name", name);
        write("Email", Email);
        write("Company", Company);
        write("SiteURL", SiteURL);
        write("SMTP Server", SMTPServer);
        write("LogoURL", LogoURL);
        writeNumber("LogoPosition", LogoPosition);
        writeNumber("BlockSpam", BlockSpam);
        writeNumber("DontClearFields", DontClearFields);
        writeNumber("PromptConnection", PromptConnection);
        m_store.setValue(kApplication, kWindow, "Colours", Colours);
        m_store.save();
    });
}

void clsPreference::setHTTPVersion(std::string version) {
    m_HTTPVersion = std::move(version);
    trap(m_prompts, "Save_Setting_Error: ", [this] {
        m_store.setValue(kApplication, kPreference, "HTTPVersion", m_HTTPVersion);
        m_store.save();
    });
}

bool clsPreference::refusesAdultSites() const {
    return equalsNoCase(AcceptAdultSite, "No");
}

void clsPreference::updateHTTPLogin() {
    const bool complete = !HTTPUserName.empty() && !HTTPPassword.empty();
    HTTPLogin = complete ? Base64Encode(HTTPUserName + ":" + HTTPPassword) : std::string();
}

}  // namespace relay
