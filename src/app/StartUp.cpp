// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include "app/clsMain.h"
#include "catalogue/Catalogue.h"
#include "core/FileSystem.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"

#include <array>
#include <charconv>

namespace relay {

namespace {

constexpr std::string_view kDownloadPrompt =
    "Engine Data file was not found or missing. If this is the first time you run the program, you need to "
    "download the engine data file from our web site before you can use it. \r\n\r\nPlease ensure you are "
    "connected to the Internet and then press the 'Start' button. This will take a few minutes depending on "
    "Internet connection.";
constexpr std::string_view kUpgradeNotice =
    "If this is the first time you upgrade from version 5.0 or older to version 6.0, please make sure to "
    "update the new engine data file from our web site by clicking the 'File/Update Engine Data File' menu "
    "item from the menu bar.";

}  // namespace

StartUp::StartUp(const Services& services, clsMain& main, StartUpScreens screens)
    : m_services(services), m_main(main), m_screens(std::move(screens)) {}

bool StartUp::run() {
    m_main.addIns.LoadAddIns(m_main.addIns.GetAddIns());
    bool done = makeFolders();
    for (const auto step :
         {&StartUp::loadCountries, &StartUp::loadCategories, &StartUp::firstRunSettings,
          &StartUp::checkEngineData, &StartUp::loadEngines, &StartUp::loadProjects, &StartUp::selectFirst})
        if (!attempt([this, step] { (this->*step)(); })) done = false;
    return done;
}

bool StartUp::attempt(const std::function<void()>& step) {
    const auto failure = failureOf(step);
    if (!failure) return true;
    const std::string words = "Formload_Error: " + std::string(m_step) + " " + *failure +
                              "\r\nYour program may not work properly. Please report this error to '" +
                              kSupportAddress + "'";
    closeSplash();
    m_services.prompts.message(words, "Error", Icon::Critical);
    m_services.log.WriteErrorLog(words);
    return false;
}

bool StartUp::makeFolders() {
    struct Step final {
        std::string_view name;
        std::string_view folder;
    };
    constexpr Step kSteps[] = {{"create report folder", "Reports"},
                               {"create report folder1", "Reports/Submition"},
                               {"create report folder1", "Reports/Ranking"},
                               {"create project folder", "Projects"},
                               {"create engines folder", "Engines"}};
    bool made = true;
    for (const Step& step : kSteps) {
        m_step = step.name;
        if (!attempt([&] { makeFolder(m_services.paths.inApp(step.folder)); })) made = false;
    }
    return made;
}

void StartUp::closeSplash() {
    if (m_screens.closeSplash) m_screens.closeSplash();
}

void StartUp::showUnless(bool succeeded, std::string_view words, std::string_view title) {
    if (succeeded) return;
    closeSplash();
    m_services.prompts.message(words, title, Icon::Critical);
}

void StartUp::loadCountries() {
    m_step = "load country file";
    showUnless(
        m_main.catalogue.countries.loadCountry(),
        "The country file is missing ! You need to re-install the full installation program and try again.",
        "Load Country File");
}

void StartUp::loadCategories() {
    m_step = "load category file";
    showUnless(
        m_main.catalogue.categories.loadCategory(),
        "The category file is missing ! You need to re-install the full installation program and try again.",
        "Load Category File");
}

void StartUp::firstRunSettings() {
    m_step = "check engine data file";
    if (m_services.preference.LoadConfigure != 0) return;
    m_services.settings.setValue(kApplication, "Preference", "LoadConfig", "1");
    m_services.settings.trySave();
    closeSplash();
    if (m_screens.showPreference) m_screens.showPreference();
}

void StartUp::checkEngineData() {
    if (!m_main.catalogue.engineDataPresent()) {
        m_step = "engine data file not found";
        closeSplash();
        if (m_screens.showUpdateEngines) m_screens.showUpdateEngines(kDownloadPrompt);
    } else if (m_services.preference.DownEngineData == "1" && m_services.preference.Version != "6.0") {
        m_step = "set first time update";
        m_services.settings.setValue(kApplication, "Setting", "Download", "0");
        m_services.settings.trySave();
        m_services.prompts.message(kUpgradeNotice, kApplication, Icon::Information);
        m_step = "after first time update setting";
    }
}

void StartUp::loadEngines() {
    m_step = "load engine data file";
    const bool present = m_main.catalogue.engineDataPresent();
    if (present) m_main.catalogue.loadEngineData();
    closeSplash();
    if (!present) m_services.prompts.message(kMissingDataNotice, kApplication, Icon::Information);
}

void StartUp::loadProjects() {
    m_step = "load default project";
    if (fileExists(m_services.paths.ProjectFilePath)) m_main.workspace.loadProject();
}

void StartUp::selectFirst() {
    m_step = "set first select item";
    ProjectNode& root = m_main.workspace.tree().root();
    m_main.workspace.nodeClick(root.children.empty() ? root : *root.children.front());
}

bool StartUp::confirmExit() {
    return m_services.prompts.ask("Are you sure you want to exit?", "Exit");
}

void StartUp::finish(std::string_view mainFormPos) {
    m_services.log.closeAll();
    m_main.fetcher.Unload();
    m_services.settings.setValue(kApplication, "Preference", "MainFormPos", mainFormPos);
    m_services.preference.SaveSettings();
}

std::optional<WindowPosition> parseWindowPosition(std::string_view text) {
    std::array<double, 4> numbers{};
    std::size_t count = 0;
    for (std::size_t start = 0; start != npos; ++count) {
        if (count == numbers.size() || text.empty()) return std::nullopt;
        const std::size_t comma = text.find(',', start);
        numbers[count] = leadingNumber(text.substr(start, comma == npos ? npos : comma - start));
        start = comma == npos ? npos : comma + 1;
    }
    if (count != numbers.size()) return std::nullopt;
    return WindowPosition{std::max(numbers[0], 0.0), std::max(numbers[1], 0.0), numbers[2], numbers[3]};
}

std::string windowPositionText(const WindowPosition& position) {
    std::string text;
    for (const double number : {position.left, position.top, position.width, position.height}) {
        std::array<char, 64> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                       static_cast<float>(number), std::chars_format::fixed)
                             .ptr;
        if (!text.empty()) text += ',';
        text.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
    }
    return text;
}

}  // namespace relay
