// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineBuilder.h"

#include "catalogue/Catalogue.h"
#include "catalogue/EngineTypes.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "core/clsPreference.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kTitle = "Engine Builder";
constexpr int kLevels = 5;

std::string numberText(std::int32_t number) {
    return number == 0 ? std::string() : std::to_string(number);
}

std::string yesNo(bool on) {
    return on ? "Yes" : "No";
}

bool isYes(std::string_view text) noexcept {
    return startsWithNoCase(text, "Y");
}

}  // namespace

EngineBuilder::EngineBuilder(const Services& services, const Catalogue& catalogue, Outside outside,
                             QObject* parent)
    : QObject(parent),
      m_services(services),
      m_catalogue(catalogue),
      m_outside(std::move(outside)),
      m_store(services) {
    lstEngines.setColumns({"Engine"});
    lsvReceived.setColumns({"Field Name", "What arrived"});
}

bool EngineBuilder::attempt(std::string_view words, const std::function<void()>& operation,
                            std::string_view title) {
    const BusyPointer busy(m_services.prompts);
    return trap(m_services.prompts, words, operation, title);
}

void EngineBuilder::load() {
    loadCategory();
    m_store.forget();
    attempt("loadCustomEngineError: ", [this] { m_store.loadEngines(); });
    for (std::string* const field : {&txtEngineName, &txtEngineURL, &txtSubmitURL, &txtSource})
        field->clear();
    cmdGetFields = false;
    ClearFields();
    listEngines(-1);
    noteFilled();
    Q_EMIT tabWanted(Tab::Engine);
    Q_EMIT changed();
}

bool EngineBuilder::close() {
    if (!settleChanges()) return false;
    attempt("saveEngineFile_Error: ", [this] { m_store.saveEngineFile(); });
    return true;
}

bool EngineBuilder::loadCategory() {
    lsvCategory.clear();
    const std::string path = m_services.paths.inApp("cat.kws");
    if (!fileExists(path)) return false;
    std::string strayItems;
    const auto failure = failureOf([&] { m_categories.read(readFile(path), strayItems); });
    if (failure)
        m_services.prompts.message(
            *failure +
                "\r\nModule: loadCategory()\r\n------Load Category Fail ------\r\nBuffer=" + strayItems,
            "Load Category", Icon::Critical);
    return !failure;
}

void EngineBuilder::listEngines(int current) {
    const RowsBatch batch(lstEngines);
    lstEngines.clear();
    for (const CustomEngineRecord& record : m_store.engines()) {
        Row row;
        row.text = record.Name;
        lstEngines.add(row);
    }
    m_current = current < lstEngines.count() ? current : -1;
    if (m_current >= 0) lstEngines.setHighlighted(m_current, true);
    lblEngines = "Engines: " + std::to_string(lstEngines.count());
}

// ---- the form's fields and the record

void EngineBuilder::ClearFields() {
    m_fields.show({});
    setCategoryData({});
    const CustomEngineRecord cleared;
    fill(cleared);
    txtFieldName.clear();
    txtFieldNameLocked = true;
    txtValue.clear();
    txtDefaultCategory.clear();
    txtEngineCategory.clear();
    formChanges.clear();
    cboCategory = 1;
}

// Everything but name, addresses and the two lists.
void EngineBuilder::fill(const CustomEngineRecord& record) {
    txtCountry = record.Country;
    chkCountry = isYes(record.CountryOnly);
    cboEngineType = static_cast<int>(engineTypeIndex(record.EngineType));
    cboCategory = isYes(record.Category) ? 1 : 0;
    cboSiteLevel = std::clamp<int>(record.SiteLevel, 1, kLevels) - 1;
    cboMethod = record.Method;
    txtAction = record.Action;
    txtLanguage = record.Language;
    chkAllowAdultSite = isYes(record.Adults);
    chkAdultOnlySite = isYes(record.AdultOnlySites);
    txtMaxTitle = numberText(record.MaxTitle);
    txtMaxKeywords = numberText(record.MaxKeywords);
    txtMaxDescription = numberText(record.MaxDescription);
}

CustomEngineRecord EngineBuilder::formRecord() const {
    CustomEngineRecord record;
    record.Name = trim(txtEngineName);
    record.Home = txtEngineURL;
    record.AddURL = txtSubmitURL;
    record.Country = txtCountry;
    record.CountryOnly = yesNo(chkCountry);
    record.EngineType =
        EngineTypes.at(static_cast<std::size_t>(std::clamp(cboEngineType, 0, int{EngineTypes.size()} - 1)))
            .code;
    record.Category = cboCategory == 1 ? "Y" : "N";
    record.CategoryData = m_categories.data();
    record.Method = cboMethod;
    record.Action = txtAction;
    record.Query = buildQuery(m_fields.fields());
    record.Adults = yesNo(chkAllowAdultSite);
    record.AdultOnlySites = yesNo(chkAdultOnlySite);
    record.Language = txtLanguage;
    record.MaxTitle = leadingInteger(txtMaxTitle);
    record.MaxKeywords = leadingInteger(txtMaxKeywords);
    record.MaxDescription = leadingInteger(txtMaxDescription);
    record.SiteLevel = static_cast<std::int16_t>(cboSiteLevel + 1);
    return record;
}

void EngineBuilder::noteFilled() {
    m_filled = formRecord();
    refreshFindings();
}

bool EngineBuilder::isTouched() const {
    return formRecord() != m_filled;
}

bool EngineBuilder::settleChanges() {
    if (!isTouched()) return true;
    const std::string name = txtEngineName.empty() ? "the new engine" : "\"" + txtEngineName + "\"";
    return !m_services.prompts.ask(
               "What you changed in " + name + " is not saved.\r\n\r\nDo you want to save it?", kTitle) ||
           Save();
}

void EngineBuilder::refreshFindings() {
    findings.clear();
    CustomEngineRecord record = formRecord();
    if (record == CustomEngineRecord()) return;
    completeRecord(record);
    findings = checkRecord(record, m_catalogue.engineCategories, m_services.preference.refusesAdultSites());
    Q_EMIT changed();
}

void EngineBuilder::setQueryData(const std::string& query) {
    attempt("setQueryData_Error: ", [&] { m_fields.show(splitQuery(query)); });
}

void EngineBuilder::setCategoryData(std::string_view data) {
    const std::string unknown = m_categories.show(data);
    if (unknown.empty()) return;
    const std::size_t equals = unknown.find('=');
    m_services.prompts.message("setCategoryData_Error: Element not found\r\nField: " +
                                   unknown.substr(0, equals) + "\r\nValue: " + unknown.substr(equals + 1),
                               kTitle, Icon::Critical);
}

// ---- the engines

void EngineBuilder::getEngineData(int row) {
    if (row < 0 || row >= lstEngines.count()) return;
    if (!settleChanges()) {
        listEngines(m_current);
        Q_EMIT changed();
        return;
    }
    attempt("getEngineData_Error: ", [&] {
        const CustomEngineRecord record = m_store.engines().at(static_cast<std::size_t>(row));
        m_fields.setHints({});
        ClearFields();
        txtSource.clear();
        cmdGetFields = false;
        txtEngineName = record.Name;
        txtEngineURL = record.Home;
        txtSubmitURL = record.AddURL;
        fill(record);
        setQueryData(record.Query);
        setCategoryData(record.CategoryData);
        listEngines(row);
    });
    noteFilled();
    Q_EMIT changed();
}

void EngineBuilder::chooseEngineType(int row) {
    cboEngineType = row;
    cboSiteLevel = usualSiteLevel(EngineTypes.at(static_cast<std::size_t>(row)).code) - 1;
    refreshFindings();
}

void EngineBuilder::New() {
    const auto name = m_services.prompts.input("Please enter the name of the new engine you want to create: ",
                                               "Create a new engine");
    if (!name || trim(*name).empty()) return;
    bool taken = false;
    attempt(
        "isEngineExist_Error: ", [&] { taken = m_catalogue.lists.lsvEngines.contains(trim(*name)); },
        "New Engine");
    if (taken) {
        m_services.prompts.message(kNameTaken, "New Engine", Icon::Information);
        return;
    }
    if (!settleChanges()) return;
    m_fields.setHints({});
    txtEngineName = trim(*name);
    txtEngineURL.clear();
    txtSubmitURL.clear();
    txtSource.clear();
    cmdGetFields = false;
    ClearFields();
    listEngines(-1);
    noteFilled();
    Q_EMIT tabWanted(Tab::Engine);
    Q_EMIT changed();
    Q_EMIT focusWanted("txtEngineURL");
}

void EngineBuilder::report(const RecordProblem& problem) {
    m_services.prompts.message(problem.words, kTitle, Icon::Information);
    Q_EMIT tabWanted(problem.control == "lsvDataFields" ? Tab::Fields
                     : problem.control == "lsvCategory" ? Tab::Categories
                                                        : Tab::Engine);
    Q_EMIT focusWanted(std::string(problem.control));
}

bool EngineBuilder::Save() {
    CustomEngineRecord record = formRecord();
    const RecordProblem problem = completeRecord(record);
    if (!problem.words.empty()) {
        report(problem);
        return false;
    }
    const bool saved = attempt("saveEngineData_Error: ", [&] {
        txtEngineName = record.Name;
        txtEngineURL = record.Home;
        txtSubmitURL = record.AddURL;
        const std::size_t place = m_store.put(std::move(record));
        listEngines(static_cast<int>(place));
    });
    if (saved) formChanges.clear();
    noteFilled();
    Q_EMIT changed();
    if (saved) Q_EMIT statusChanged("\"" + txtEngineName + "\" is saved. It takes effect with a merge.");
    return saved;
}

void EngineBuilder::Delete() {
    const int row = m_current;
    if (row < 0) {
        if (!lstEngines.empty())
            m_services.prompts.message("Please select an engine in the list.", kTitle, Icon::Information);
        return;
    }
    const std::string name(lstEngines.at(row).text);
    if (!m_services.prompts.ask(
            "You can not re-store the engine data once the engine has been deleted.\r\n\r\n"
            "Are you sure you want delete this engine : " +
                name + " ?",
            kTitle))
        return;
    m_store.remove(static_cast<std::size_t>(row));
    txtEngineName.clear();
    txtEngineURL.clear();
    txtSubmitURL.clear();
    txtSource.clear();
    m_fields.setHints({});
    ClearFields();
    listEngines(-1);
    noteFilled();
    if (!lstEngines.empty()) getEngineData(0);
    Q_EMIT changed();
}

void EngineBuilder::Merge() {
    if (!m_services.prompts.ask(
            "This will merge your own customized engine data file with the default engine data file.\r\n\r\n"
            "Do you want to continue?",
            kTitle))
        return;
    if (!settleChanges()) return;
    if (!lstEngines.empty()) Q_EMIT statusChanged("Please wait while update custom engine data ...");
    std::string notice;
    const bool merged = attempt("mergeEngineFile_Error: ", [&] {
        Q_EMIT statusChanged("Merging engine data file ...");
        notice = m_store.mergeEngineFile();
    });
    Q_EMIT statusChanged({});
    if (merged) m_services.prompts.message(notice, kTitle, Icon::Information);
    Q_EMIT changed();
}

void EngineBuilder::undoMerge() {
    if (!m_services.prompts.ask("This puts the engine data back as it was before the last merge.\r\n\r\n"
                                "Do you want to continue?",
                                kTitle))
        return;
    const bool undone = attempt("mergeEngineFile_Error: ", [this] { m_store.undoMerge(); });
    if (undone)
        m_services.prompts.message(
            "The last merge was taken back. You need to close the program and re-open "
            "again to load the engine data.",
            kTitle, Icon::Information);
    Q_EMIT changed();
}

void EngineBuilder::exportEngineList() {
    attempt(
        "exportEngineList_Error: ",
        [this] {
            std::string names;
            for (const CustomEngineRecord& record : m_store.engines()) names += record.Name + "\r\n";
            const std::string file = m_services.paths.inApp("nenglist.txt");
            writeFile(file, names);
            openOrTell(m_services.prompts, file, "Engine List");
        },
        "Engine List");
}

void EngineBuilder::exportEngineData() {
    const std::string& folder = m_services.paths.AppPath;
    if (attempt(
            "exportEngineData_Error: ", [&] { m_store.exportEngineData(folder); }, "Engine List"))
        m_services.prompts.message(exportedNotice(folder), "Export Engine Data", Icon::Information);
}

void EngineBuilder::importEngineData() {
    constexpr std::string_view kImport = "Import Engine Data File";
    const auto folder = m_services.prompts.input(
        "Please specify the path of your engine data files('cengdata.dat' and 'ccatdata.dat'):", kImport,
        m_services.paths.AppPath);
    if (!folder || folder->empty()) return;
    if (!folderExists(*folder)) {
        m_services.prompts.message(kNoImportFolder, kImport, Icon::Information);
        return;
    }
    attempt(
        "exportEngineData_Error: ", [&] { m_store.importEngineData(*folder); }, kImport);
    listEngines(m_current);
    Q_EMIT changed();
}

void EngineBuilder::help() {
    const std::string file = m_services.paths.inApp("krvengb.hlp");
    if (fileExists(file))
        openOrTell(m_services.prompts, file, kTitle);
    else if (!m_outside.showGuide || !m_outside.showGuide())
        m_services.prompts.message("Help file is missing or could not be found.", kTitle, Icon::Information);
}

// ---- from the page to the rows

void EngineBuilder::getSource() {
    if (txtSubmitURL.empty()) {
        m_services.prompts.message("Please enter engine submit URL.", kTitle, Icon::Information);
        Q_EMIT tabWanted(Tab::Engine);
        Q_EMIT focusWanted("txtSubmitURL");
        return;
    }
    const std::string url = withScheme(txtSubmitURL);
    if (!m_outside.connect(url)) {
        m_services.prompts.beep();
        return;
    }
    txtSource.clear();
    cmdGetFields = false;
    Q_EMIT statusChanged("Retrieving data from " + url + " ....");
    Q_EMIT changed();
}

void EngineBuilder::showPage(const std::string& html, const std::string& problem) {
    Q_EMIT statusChanged(problem);
    if (html.empty()) {
        Q_EMIT changed();
        return;
    }
    getDataFromHTML(html);
    if (!problem.empty()) Q_EMIT statusChanged(problem);
}

void EngineBuilder::getDataFromHTML(std::string_view html) {
    Q_EMIT statusChanged("Parse data ....");
    const bool read = attempt("GetDataFromHTML_Error: ", [&] {
        txtSource = extractFormSource(html);
        m_fields.setHints(readFieldHints(html));
        cmdGetFields = true;
    });
    Q_EMIT statusChanged({});
    if (read) Q_EMIT tabWanted(Tab::Source);
    Q_EMIT changed();
    if (read) Q_EMIT focusWanted("cmdGetFields");
}

void EngineBuilder::editSource(std::string text) {
    txtSource = std::move(text);
    m_fields.setHints({});
    cmdGetFields = true;
    Q_EMIT changed();
}

void EngineBuilder::getFields() {
    attempt("getFields_Error: ", [this] {
        ClearFields();
        const ScrapedForm form = readForm(txtSource);
        if (!m_fields.hasHints()) m_fields.setHints(readFieldHints(txtSource));
        if (form.found) {
            cboMethod = form.method;
            txtAction = form.action;
        }
        cboCategory = 0;
        const CustomEngineRecord* const stored = m_store.find(trim(txtEngineName));
        m_fields.show(form.fields);
        if (stored == nullptr) return;
        formChanges = compareWithStored({stored->Method, stored->Action, stored->Query}, form);
        // What was filled in by hand before is the best suggestion.
        m_fields.suggestStored(splitQuery(stored->Query));
        if (formChanges.empty()) formChanges.emplace_back("The form is as it was when it was stored");
    });
    cmdGetFields = false;
    refreshFindings();
    Q_EMIT tabWanted(Tab::Fields);
    Q_EMIT changed();
    Q_EMIT focusWanted("lsvDataFields");
}

// ---- the rows

void EngineBuilder::chooseField(int row) {
    if (row < 0 || row >= lsvDataFields.count()) return;
    const FormField& field = m_fields.fields()[static_cast<std::size_t>(row)];
    txtFieldName = field.name;
    txtFieldNameLocked = true;
    txtValue = field.value;
    Q_EMIT changed();
}

void EngineBuilder::updateField() {
    if (txtFieldName.empty()) {
        m_services.prompts.message("Please select a item for update.", "Update", Icon::Information);
        return;
    }
    const int row = lsvDataFields.firstHighlighted();
    m_fields.setValue(row, txtValue);
    if (!m_fields.rename(row, txtFieldName))
        m_services.prompts.message("There is a field of this name already.", "Update", Icon::Information);
    txtFieldNameLocked = true;
    refreshFindings();
    Q_EMIT changed();
}

void EngineBuilder::deleteField() {
    const int row = lsvDataFields.firstHighlighted();
    if (row < 0) return;
    m_fields.remove(row);
    txtFieldName.clear();
    txtValue.clear();
    refreshFindings();
    Q_EMIT changed();
}

bool EngineBuilder::acceptSuggestion(int row) {
    if (!m_fields.accept(row)) return false;
    const FormField& field = m_fields.fields()[static_cast<std::size_t>(row)];
    if (equalsNoCase(txtFieldName, field.name)) txtValue = field.value;
    refreshFindings();
    Q_EMIT changed();
    return true;
}

int EngineBuilder::acceptAllSuggestions() {
    const int accepted = m_fields.acceptAll();
    refreshFindings();
    Q_EMIT statusChanged(accepted == 0 ? "There are no suggestions."
                                       : std::to_string(accepted) + " suggestions accepted.");
    Q_EMIT changed();
    return accepted;
}

// ---- the categories

void EngineBuilder::chooseCategory(int row) {
    if (row < 0 || row >= lsvCategory.count()) return;
    txtDefaultCategory = lsvCategory.at(row).text;
    txtEngineCategory = m_categories.suggestion(row);
    Q_EMIT changed();
}

void EngineBuilder::updateCategory() {
    const int row = lsvCategory.firstHighlighted();
    if (row < 0) return;
    m_categories.setValue(row, txtEngineCategory);
    refreshFindings();
    Q_EMIT changed();
}

void EngineBuilder::clearCategories() {
    for (int row = 0; row < lsvCategory.count(); ++row)
        if (lsvCategory.at(row).highlighted) m_categories.setValue(row, {});
    refreshFindings();
    Q_EMIT changed();
}

// ---- the trial

void EngineBuilder::tryIt() {
    CustomEngineRecord record = formRecord();
    if (const RecordProblem problem = completeRecord(record); !problem.words.empty()) {
        report(problem);
        return;
    }
    lsvReceived.clear();
    lblReceived.clear();
    m_secretFields.clear();
    for (const FormField& field : m_fields.fields())
        if (equalsNoCase(field.value, "<PASSWORD>")) m_secretFields.push_back(field.name);
    if (!m_outside.tryOut(record))
        m_services.prompts.beep();
    else
        Q_EMIT statusChanged("Sending one request to the practice web ....");
    Q_EMIT changed();
}

void EngineBuilder::showTrial(const TrialResult& result) {
    Q_EMIT statusChanged({});
    const RowsBatch batch(lsvReceived);
    lsvReceived.clear();
    lblReceived = !result.problem.empty() ? result.problem
                                          : "The practice web received this by " + result.method + ", " +
                                                std::to_string(result.fields.size()) +
                                                (result.fields.size() == 1 ? " field:" : " fields:");
    for (const auto& [name, value] : result.fields) {
        Row row;
        const bool secret =
            std::find(m_secretFields.begin(), m_secretFields.end(), name) != m_secretFields.end();
        row.text = name;
        row.subItems = {secret && !value.empty() ? "********" : value};
        lsvReceived.add(row);
    }
    Q_EMIT tabWanted(Tab::Trial);
    Q_EMIT changed();
}

}  // namespace relay
