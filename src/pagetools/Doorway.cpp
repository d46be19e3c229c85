// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/Doorway.h"

#include "core/FileNames.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/InputHistory.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kTitle = "Doorway Page";
constexpr std::string_view kSection = "Doorway Page";
constexpr std::string_view kUrlHistory = "Doorway";
constexpr std::string_view kProfileHistory = "DoorwayProfile";
constexpr int kUrls = 30;
constexpr int kProfiles = 100;

std::string onOneLine(std::string_view text) {
    return replaceAll(replaceAll(replaceAll(text, "\r\n", " "), "\r", " "), "\n", " ");
}

std::string historyFile(const Services& services) {
    return services.paths.inWindows("apikrv.dmc");
}

}  // namespace

DoorwayProfiles::DoorwayProfiles(const Services& services)
    : m_folder(services.paths.inApp("Doorway/Profiles")) {}

std::string DoorwayProfiles::file(std::string_view name) const {
    return m_folder + "/" + safeFileName(name);
}

bool DoorwayProfiles::exists(std::string_view name) const {
    return fileExists(file(name));
}

DoorwayFields DoorwayProfiles::load(std::string_view name) const {
    DoorwayFields fields;
    const IniFile file = IniFile::parse(readFile(this->file(name), IniFile::kLargestFile));
    for (const DoorwayKey& key : doorwayKeys())
        key.field(fields) =
            file.value(kSection, key.key, key.isLong ? IniFile::kLongLimit : IniFile::kShortLimit);
    return fields;
}

void DoorwayProfiles::save(std::string_view name, const DoorwayFields& fields) const {
    const std::string path = file(name);
    makeFolder(m_folder);
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    DoorwayFields values = fields;
    for (const DoorwayKey& key : doorwayKeys())
        file.setValue(kSection, key.key, onOneLine(key.field(values)));
    file.save(path);
}

Doorway::Doorway(const Services& services) : m_services(services), m_store(services) {}

void Doorway::load() {
    trap(m_services.prompts, "Form_Load_Error: ", [&] {
        makeFolder(m_services.paths.inApp("Doorway"));
        m_siteURLs = LoadInputHistory(historyFile(m_services), kUrlHistory, kUrls);
        m_profiles = LoadInputHistory(historyFile(m_services), kProfileHistory, kProfiles);
        fields.txtFileLocation = m_services.settings.value(kApplication, "Doorway", "DefaultDir");
    });
}

void Doorway::unload() {
    trap(m_services.prompts, "Form_Unload_Error: ", [&] {
        m_services.settings.setValue(kApplication, "Doorway", "DefaultDir", fields.txtFileLocation);
        SaveInputHistory(historyFile(m_services), kUrlHistory, m_siteURLs);
        SaveInputHistory(historyFile(m_services), kProfileHistory, m_profiles);
    });
}

void Doorway::NewPage() {
    fields = {};
}

std::optional<Doorway::Missing> Doorway::missingField() const {
    constexpr std::string_view kKeywords = "Please enter at least 3 specific keywords for your web site.";
    const struct {
        const std::string& text;
        Field field;
        std::string_view words;
    } needed[] = {
        {fields.txtTitle, Field::Title, "Please enter a title of your web site."},
        {fields.txtKeywords[0], Field::Keyword1, kKeywords},
        {fields.txtKeywords[1], Field::Keyword2, kKeywords},
        {fields.txtKeywords[2], Field::Keyword3, kKeywords},
        {fields.txtDescription, Field::Description, "Please enter a description of your web site."},
        {fields.cboSiteURL, Field::SiteURL, "Please enter a Website URL."},
        {fields.txtSummary, Field::Summary, "Please enter a summary of your web site."},
        {fields.txtCompany, Field::Company, "Please enter your company name or the name of your web site."}};
    for (const auto& one : needed)
        if (one.text.empty()) return Missing{one.field, one.words};
    return std::nullopt;
}

std::optional<Doorway::Field> Doorway::ValidateFields() const {
    const auto missing = missingField();
    if (!missing) return std::nullopt;
    m_services.prompts.message(missing->words, kTitle);
    return missing->field;
}

std::string Doorway::outputFolder() const {
    const std::string& chosen = fields.txtFileLocation;
    if (chosen.empty() || !folderExists(chosen)) return m_services.paths.inApp("Doorway Pages/");
    return chosen + (chosen.ends_with('/') ? "" : "/");
}

std::vector<DoorwayFile> Doorway::plannedFiles() const {
    std::vector<DoorwayFile> files;
    const std::string folder = outputFolder();
    for (const std::string& keyword : fields.txtKeywords)
        if (!keyword.empty()) files.push_back({keyword, folder + doorwayFileName(keyword)});
    return files;
}

std::string Doorway::pageText() const {
    return doorwayPage(fields, kWebAddress);
}

std::vector<DoorwayFile> Doorway::writePages() const {
    const BusyPointer busy(m_services.prompts);
    makeFolder(outputFolder());
    std::vector<DoorwayFile> files = plannedFiles();
    const std::string text = pageText() + "\r\n";
    for (const DoorwayFile& file : files) writeFile(file.path, text);
    return files;
}

bool Doorway::CreatePage() {
    return trap(
        m_services.prompts, "CreateDoorway_Error: ",
        [&] {
            const std::vector<DoorwayFile> files = writePages();
            std::string list;
            for (const DoorwayFile& file : files) list.append(file.path).append("\r\n");
            const bool preview = m_services.prompts.ask(
                std::to_string(files.size()) +
                    " Dooryway pages have been created and saved into the following files: \r\n\r\n" + list +
                    "\r\nDo you want to preview your doorway page?",
                kTitle);
            if (preview && !files.empty()) openOrTell(m_services.prompts, files.front().path, kTitle);
        },
        "Create Doorway Page");
}

std::optional<Doorway::Field> Doorway::Command1(bool withProfile) {
    if (withProfile) saveProfile();
    const auto missing = ValidateFields();
    if (missing) return missing;
    AddInputHistory(m_siteURLs, fields.cboSiteURL);
    CreatePage();
    return std::nullopt;
}

bool Doorway::saveProfile() {
    bool saved = false;
    trap(
        m_services.prompts, "saveProfile_Error: ",
        [&] {
            std::string name = cboProfile;
            if (name.empty())
                name = m_services.prompts
                           .input("Please specify a new Doorway Page profile name:", "New Doorway Page")
                           .value_or("");
            if (name.empty()) return;
            const auto same = [&name](const std::string& known) { return equalsNoCase(known, name); };
            const bool known = std::any_of(m_profiles.begin(), m_profiles.end(), same);
            if ((known || m_store.exists(name)) &&
                !m_services.prompts.ask(
                    "The profile name '" + name + "' already exist, do you want to overwrite ?", kTitle))
                return;
            m_store.save(name, fields);
            cboProfile = name;
            AddInputHistory(m_profiles, name);
            saved = true;
            for (const DoorwayKey& key : doorwayKeys()) {
                DoorwayFields values = fields;
                const std::size_t limit = key.isLong ? IniFile::kLongLimit : IniFile::kShortLimit;
                if (key.field(values).size() > limit)
                    m_services.prompts.notice("The profile has all of " + std::string(key.key) +
                                              ", but only " + std::to_string(limit) +
                                              " characters of it are loaded again.");
            }
        },
        "Save Profile");
    return saved;
}

bool Doorway::loadProfile(const std::string& name) {
    return trap(
        m_services.prompts, "getProfile_Error: ",
        [&] {
            if (!m_store.exists(name)) return;
            fields = m_store.load(name);
            cboProfile = name;
        },
        "Get Profile");
}

}  // namespace relay
