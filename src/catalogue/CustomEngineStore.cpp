// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CustomEngineStore.h"

#include "catalogue/EngineCategories.h"
#include "core/Clock.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/ItemReader.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kSection = "Merge";
constexpr std::string_view kAbsent = "absent";  // there was no such file
constexpr std::string_view kBefore = ".before";
constexpr std::array<std::string_view, 2> kMergedFiles = {"krveng5.dat", "catkws.dat"};

std::string textOf(const std::string& path) {
    return fileExists(path) ? readFile(path) : std::string();
}

std::string copyOf(const std::string& path) {
    return path + ".unmerged";
}

// Tells whether a file was changed.
std::string fingerprint(std::string_view text) {
    return std::to_string(text.size()) + " " + std::to_string(crc32(text));
}

std::string stateOf(const std::string& path) {
    return fileExists(path) ? fingerprint(readFile(path)) : std::string(kAbsent);
}

// Text that is appended begins on a line of its own.
std::string lineEnded(std::string_view text) {
    std::string ended(text);
    if (!ended.empty() && ended.back() != '\n' && ended.back() != '\r') ended += kLineEnd;
    return ended;
}

// Whether reading the tables ends at an END line.
bool hasEnd(std::string_view tables) {
    ItemReader items(tables);
    std::string_view item;
    while (items.nextEntry(item))
        if (equalsNoCase(item, "END")) return true;
    return false;
}

// Writes both files; when the second fails the first is put back as it was.
void writeBoth(const std::string& first, std::string_view firstText, const std::string& second,
               std::string_view secondText) {
    const bool existed = fileExists(first);
    const std::string old = textOf(first);
    writeFile(first, firstText);
    try {
        writeFile(second, secondText);
    } catch (const std::exception&) {
        // The failure to show is that of the second file.
        failureOf([&] {
            if (existed)
                writeFile(first, old);
            else
                removeFile(first);
        });
        throw;
    }
}

}  // namespace

CustomEngineStore::CustomEngineStore(const Services& services) : m_services(services) {}

std::string CustomEngineStore::enginesFile() const {
    return m_services.paths.inWindows("krvengc.dat");
}

std::string CustomEngineStore::categoriesFile() const {
    return m_services.paths.inWindows("catcus.dat");
}

const CustomEngineRecord* CustomEngineStore::find(std::string_view name) const noexcept {
    const auto place = std::find_if(m_engines.begin(), m_engines.end(),
                                    [name](const auto& record) { return equalsNoCase(record.Name, name); });
    return place == m_engines.end() ? nullptr : &*place;
}

void CustomEngineStore::loadEngines() {
    m_unreadable = true;
    std::string text = textOf(enginesFile());
    std::vector<CustomEngineRecord> read;
    if (const auto failure =
            failureOf([&] { read = readCustomEngines(text, EngineCategories(textOf(categoriesFile()))); }))
        throw Failure(enginesFile() + ": " + *failure, 9);
    m_engines.insert(m_engines.end(), std::make_move_iterator(read.begin()),
                     std::make_move_iterator(read.end()));
    m_seen = std::move(text);
    m_unreadable = false;
}

void CustomEngineStore::forget() {
    m_engines.clear();
    m_touched.clear();
    m_seen.reset();
    m_unreadable = false;
}

std::size_t CustomEngineStore::put(CustomEngineRecord record) {
    m_touched.insert(record.Name);
    const CustomEngineRecord* const known = find(record.Name);
    const std::size_t place =
        known == nullptr ? m_engines.size() : static_cast<std::size_t>(known - m_engines.data());
    if (known == nullptr)
        m_engines.push_back(std::move(record));
    else
        m_engines[place] = std::move(record);
    return place;
}

void CustomEngineStore::remove(std::size_t place) {
    m_touched.insert(m_engines.at(place).Name);
    m_engines.erase(m_engines.begin() + static_cast<std::ptrdiff_t>(place));
}

std::string CustomEngineStore::header() const {
    constexpr std::string_view kRule = "# ----------------------------------\r\n";
    const QString date = QLocale().toString(m_services.clock.now().date(), QLocale::ShortFormat);
    return std::string(kRule) + "# Customized Engine Data File of Korvel Relay Manager.\r\n" +
           "# Made with Korvel Relay. The engines in it are the user's own.\r\n# Date Update: " +
           fromScreen(date) + "\r\n# Number of Engines: " + std::to_string(m_engines.size()) + "\r\n" +
           std::string(kRule) + "\r\n";
}

// What another program put there stays, except where this one has changed the same engine.
void CustomEngineStore::takeOverOthers(const std::string& engines) {
    std::vector<CustomEngineRecord> own = std::move(m_engines);
    m_engines = readCustomEngines(engines, EngineCategories(textOf(categoriesFile())));
    std::erase_if(m_engines, [this](const auto& record) { return m_touched.contains(record.Name); });
    for (CustomEngineRecord& record : own)
        if (m_touched.contains(record.Name)) m_engines.push_back(std::move(record));
}

void CustomEngineStore::saveEngineFile() {
    const FolderLock lock(enginesFile());
    const std::string found = textOf(enginesFile());
    if (m_unreadable && !found.empty())
        writeFile(enginesFile() + ".bad", found);
    else if (found != m_seen.value_or(""))
        takeOverOthers(found);
    if (m_engines.empty()) {
        removeFile(enginesFile());
        removeFile(categoriesFile());
        m_seen.reset();
    } else {
        std::string engines = header();
        std::string categories = engines;
        for (const CustomEngineRecord& record : m_engines) {
            engines += recordText(record) + "\r\n\r\n";
            categories += recordTable(record);
        }
        writeBoth(categoriesFile(), categories, enginesFile(), engines);
        m_seen = std::move(engines);
    }
    m_touched.clear();
    m_unreadable = false;
}

void CustomEngineStore::exportEngineData(const std::string& folder) {
    if (!m_touched.empty()) saveEngineFile();
    const FolderLock lock(enginesFile());
    const std::string engines = readFile(enginesFile());
    const std::string categories = readFile(categoriesFile());
    writeBoth(folder + "/cengdata.dat", engines, folder + "/ccatdata.dat", categories);
}

void CustomEngineStore::importEngineData(const std::string& folder) {
    const std::string engines = readFile(folder + "/cengdata.dat");
    const std::string categories = readFile(folder + "/ccatdata.dat");
    // A file that cannot be read replaces none.
    readCustomEngines(engines, EngineCategories(categories));
    const FolderLock lock(enginesFile());
    writeBoth(categoriesFile(), categories, enginesFile(), engines);
    for (const CustomEngineRecord& record : m_engines) m_touched.insert(record.Name);
    loadEngines();
}

std::string CustomEngineStore::mergeEngineFile() {
    if (!m_engines.empty()) saveEngineFile();
    const FolderLock lock(enginesFile());
    const std::array<std::string, 2> custom = {textOf(enginesFile()), textOf(categoriesFile())};
    if (custom[0].empty() && custom[1].empty()) return std::string(kMergedNotice);
    std::array<std::string, 2> paths;
    std::array<std::string, 2> merged;
    IniFile ledger;
    for (std::size_t i = 0; i < kMergedFiles.size(); ++i) {
        paths[i] = m_services.paths.inWindows(kMergedFiles[i]);
        const std::string text = textOf(paths[i]);
        merged[i] = custom[i].empty() ? text
                    : i == 0          ? mergedEngines(text, custom[i])
                                      : mergedCategories(text, custom[i]);
        if (fileExists(paths[i])) writeFile(copyOf(paths[i]), text);
        ledger.setValue(kSection, kMergedFiles[i], fingerprint(merged[i]));
        ledger.setValue(kSection, std::string(kMergedFiles[i]).append(kBefore), stateOf(paths[i]));
    }
    ledger.save(m_services.paths.inWindows("merge.previous"));
    // The tables first: a table without its engine does no harm.
    writeBoth(paths[1], merged[1], paths[0], merged[0]);
    std::string notice(kMergedNotice);
    if (hasEnd(merged[1]) && containsNoCase(custom[1], "\r\n["))
        notice += "\r\n\r\n" + paths[1] +
                  " has an END line. The category tables of your engines stand behind it, where they are not "
                  "read.";
    return notice;
}

bool CustomEngineStore::canUndoMerge() const {
    return fileExists(m_services.paths.inWindows("merge.previous"));
}

void CustomEngineStore::undoMerge() {
    const FolderLock lock(enginesFile());
    if (!canUndoMerge()) throw Failure("There is no merge to take back.");
    const std::string ledgerFile = m_services.paths.inWindows("merge.previous");
    const IniFile ledger = IniFile::load(ledgerFile);
    std::array<std::string, 2> paths;
    std::array<std::string, 2> before;  // the state of each file then
    std::array<std::string, 2> old;
    for (std::size_t i = 0; i < kMergedFiles.size(); ++i) {
        paths[i] = m_services.paths.inWindows(kMergedFiles[i]);
        before[i] = ledger.value(kSection, std::string(kMergedFiles[i]).append(kBefore));
        // After a merge that was cut short a file may be as it was before.
        const std::string now = stateOf(paths[i]);
        if (now != ledger.value(kSection, kMergedFiles[i]) && now != before[i])
            throw Failure(paths[i] +
                          " was changed since the merge, by an update for instance. Nothing was "
                          "taken back.");
        if (before[i] == kAbsent) continue;
        if (stateOf(copyOf(paths[i])) != before[i])
            throw Failure(copyOf(paths[i]) +
                          " is not the copy made before the merge. Nothing was taken back.");
        old[i] = readFile(copyOf(paths[i]));
    }
    writeBoth(paths[0], old[0], paths[1], old[1]);
    for (std::size_t i = 0; i < kMergedFiles.size(); ++i)
        if (before[i] == kAbsent) removeFile(paths[i]);
    removeFile(ledgerFile);
    for (const std::string& path : paths) removeFile(copyOf(path));
}

std::string exportedNotice(const std::string& folder) {
    return "Your customized engine data has been exported to: \r\n" + folder + "/cengdata.dat\r\n" + folder +
           "/ccatdata.dat";
}

std::string mergedEngines(std::string_view catalogue, std::string_view custom) {
    const std::size_t marker = findNoCase(catalogue, kEndMarker);
    std::string merged = marker == npos ? lineEnded(catalogue) : std::string(catalogue.substr(0, marker));
    merged.append(custom).append(kLineEnd);
    if (merged.size() < catalogue.size() && marker != npos) merged.append(catalogue.substr(merged.size()));
    return merged;
}

std::string mergedCategories(std::string_view catalogue, std::string_view custom) {
    return lineEnded(catalogue).append(custom).append(kLineEnd);
}

}  // namespace relay
