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
#include "pagetools/HtmlPage.h"

#include <algorithm>
#include <set>

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

std::size_t limitOf(const DoorwayKey& key) {
    return key.isLong ? IniFile::kLongLimit : IniFile::kShortLimit;
}

DoorwayFields readFields(const IniFile& file) {
    DoorwayFields fields;
    for (const DoorwayKey& key : doorwayKeys())
        key.field(fields) = file.value(kSection, key.key, limitOf(key));
    return fields;
}

void writeFields(IniFile& file, DoorwayFields fields) {
    for (const DoorwayKey& key : doorwayKeys())
        file.setValue(kSection, key.key, onOneLine(key.field(fields)));
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
    return readFields(IniFile::parse(readFile(file(name), IniFile::kLargestFile)));
}

void DoorwayProfiles::save(std::string_view name, const DoorwayFields& fields) const {
    const std::string path = file(name);
    makeFolder(m_folder);
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    writeFields(file, fields);
    file.save(path);
}

bool DoorwayProfiles::has(std::string_view name, const DoorwayFields& fields) const {
    if (!exists(name)) return false;
    IniFile file;
    writeFields(file, fields);
    return readFields(IniFile::parse(file.text())) == load(name);
}

Doorway::Doorway(const Services& services) : m_services(services), m_store(services) {
    lsvPages.setColumns({"Keyword", "File", "On disk"});
}

void Doorway::load() {
    trap(m_services.prompts, "Form_Load_Error: ", [&] {
        makeFolder(m_services.paths.inApp("Doorway"));
        m_siteURLs = LoadInputHistory(historyFile(m_services), kUrlHistory, kUrls);
        m_profiles = LoadInputHistory(historyFile(m_services), kProfileHistory, kProfiles);
        if (fields.txtFileLocation.empty())
            fields.txtFileLocation = m_services.settings.value(kApplication, "Doorway", "DefaultDir");
    });
}

void Doorway::unload() {
    trap(m_services.prompts, "Form_Unload_Error: ", [&] {
        m_services.settings.setValue(kApplication, "Doorway", "DefaultDir", fields.txtFileLocation);
        ExtendInputHistory(historyFile(m_services), kUrlHistory, kUrls, m_newSiteURLs);
        ExtendInputHistory(historyFile(m_services), kProfileHistory, kProfiles, m_newProfiles);
        m_newSiteURLs.clear();
        m_newProfiles.clear();
    });
}

void Doorway::NewPage() {
    DoorwayFields page;
    page.cboSiteURL = std::move(fields.cboSiteURL);
    fields = m_settled = std::move(page);
    cboProfile.clear();
    m_status.clear();
}

// The output folder is kept without a profile.
bool Doorway::isTouched() const {
    DoorwayFields settled = m_settled;
    settled.txtFileLocation = fields.txtFileLocation;
    return fields != settled;
}

bool Doorway::settleChanges() {
    if (!isTouched()) return true;
    if (m_services.prompts.ask("What you typed is not saved in a profile.\r\n\r\nDo you want to save it?",
                               kTitle))
        return saveProfile();
    m_settled = fields;
    return true;
}

bool Doorway::takeKeywords(const std::vector<std::string>& keywords) {
    DoorwayFields next = fields;
    setDoorwayKeywords(next, keywords);
    const auto& taken = next.txtKeywords;
    const auto isLost = [&taken](const std::string& keyword) {
        return !keyword.empty() && std::find(taken.begin(), taken.end(), keyword) == taken.end();
    };
    if (std::any_of(fields.txtKeywords.begin(), fields.txtKeywords.end(), isLost) &&
        !m_services.prompts.ask("The page has other keywords.\r\n\r\nDo you want to replace them?", kTitle))
        return false;
    fields = next;
    m_status = keywords.size() <= taken.size()
                   ? std::string()
                   : "Only the first " + std::to_string(taken.size()) + " of " +
                         std::to_string(keywords.size()) + " keywords have room here.";
    return true;
}

void Doorway::chooseFolder() {
    if (const auto folder = m_services.prompts.chooseFolder("File Location", outputFolder()))
        fields.txtFileLocation = *folder;
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

void Doorway::showPages() {
    const RowsBatch batch(lsvPages);
    lsvPages.clear();
    std::set<std::string> taken;
    for (const DoorwayFile& file : plannedFiles()) {
        const char* const fate = !taken.insert(file.path).second ? "Same file as above"
                                 : folderExists(file.path)       ? "Not possible: a folder has this name"
                                 : fileExists(file.path)         ? "Replaces the file"
                                                                 : "New";
        lsvPages.add({{}, file.keyword, {getFileNameFromFile(file.path), fate}, "HTMLFile", file.path});
    }
}

std::string Doorway::folderNote() const {
    const std::string& chosen = fields.txtFileLocation;
    const std::string place = "The pages go into " + outputFolder();
    return chosen.empty() || folderExists(chosen) ? place : "There is no folder " + chosen + ". " + place;
}

std::string Doorway::pageText() const {
    return doorwayPage(fields, kWebAddress);
}

std::string Doorway::readersText() const {
    const HtmlPage page(pageText());
    return page.problem().empty() ? page.visibleText() : page.problem();
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

std::optional<Doorway::Field> Doorway::Command1() {
    m_status.clear();
    bool needed = false;
    const bool readable = trap(
        m_services.prompts,
        "saveProfile_Error: ", [&] { needed = !cboProfile.empty() && !m_store.has(cboProfile, fields); },
        "Save Profile");
    if (readable && needed) saveProfile();
    const auto missing = ValidateFields();
    if (missing) return missing;
    AddInputHistory(m_siteURLs, fields.cboSiteURL);
    m_newSiteURLs.push_back(fields.cboSiteURL);
    CreatePage();
    return std::nullopt;
}

bool Doorway::saveProfile() {
    bool saved = false;
    m_status.clear();
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
            m_newProfiles.push_back(name);
            m_settled = fields;
            saved = true;
            m_status = "The profile '" + name + "' is saved.";
            for (const DoorwayKey& key : doorwayKeys()) {
                DoorwayFields values = fields;
                if (key.field(values).size() <= limitOf(key)) continue;
                m_status = "The profile has all of " + std::string(key.key) + ", but only " +
                           std::to_string(limitOf(key)) + " characters of it are loaded again.";
                m_services.prompts.notice(m_status);
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
            fields = m_settled = m_store.load(name);
            cboProfile = name;
            m_status.clear();
        },
        "Get Profile");
}

}  // namespace relay
