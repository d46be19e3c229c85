// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SettingsStore.h"

#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/SettingsText.h"

#include <map>
#include <optional>
#include <sys/stat.h>
#include <unordered_map>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Section and key of one value, as written in the file.
using Place = std::pair<std::string, std::string>;

Place placeFor(std::string_view application, std::string_view section, std::string_view key) {
    return {settingsName(application), settingsName(std::string(section) + "/" + std::string(key))};
}

// The file holds passwords. The target of a link is left alone: it does not belong to this program.
void makePrivate(const std::string& file) {
    struct stat status {};
    if (::lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & 077) != 0)
        ::chmod(file.c_str(), status.st_mode & 0700);
}

// Finds names by their meaning: a person may have escaped fewer characters than the program does.
class WrittenNames final {
  public:
    WrittenNames() = default;
    explicit WrittenNames(const std::vector<std::string>& names) {
        for (const std::string& name : names) m_names.try_emplace(nameFromSettings(name), name);
    }
    std::string of(const std::string& written) const {
        const auto known = m_names.find(nameFromSettings(written));
        return known == m_names.end() ? written : known->second;
    }

  private:
    std::unordered_map<std::string, std::string> m_names;
};

class Document final {
  public:
    Document() : Document(std::string_view()) {}
    explicit Document(std::string_view text)
        : m_mark(text.starts_with(kByteOrderMark)),
          m_ini(IniFile::parse(text.substr(m_mark ? kByteOrderMark.size() : 0), IniFile::Style::Settings)),
          m_sections(m_ini.sections()) {}

    std::optional<std::string> value(const Place& wanted) const {
        const Place place = placeOf(wanted);
        if (!m_ini.has(place.first, place.second)) return std::nullopt;
        return valueFromSettings(m_ini.writtenValue(place.first, place.second));
    }
    void setValue(const Place& wanted, std::string_view value) {
        const Place place = placeOf(wanted);
        m_ini.setValue(place.first, place.second, settingsValue(value));
    }
    std::string text() const { return std::string(m_mark ? kByteOrderMark : "") + m_ini.text(); }

  private:
    Place placeOf(const Place& wanted) const {
        if (m_ini.has(wanted.first, wanted.second)) return wanted;
        const std::string section = m_sections.of(wanted.first);
        const auto [keys, isNew] = m_keys.try_emplace(section);
        if (isNew) keys->second = WrittenNames(m_ini.keys(section));
        return {section, keys->second.of(wanted.second)};
    }

    bool m_mark;
    IniFile m_ini;
    WrittenNames m_sections;
    mutable std::unordered_map<std::string, WrittenNames> m_keys;  // by section, filled on first use
};

}  // namespace

struct SettingsStore::Data {
    std::string file;
    Document known;                        // the file as last read or written
    std::map<Place, std::string> seen;     // what this program last read or set
    std::map<Place, std::string> changes;  // not yet in the file
    bool keepFile = false;
};

SettingsStore::SettingsStore(const std::string& file) : m_data(std::make_unique<Data>()) {
    m_data->file = file;
    try {
        makePrivate(file);
        m_data->known = Document(readFile(file, IniFile::kLargestFile));
    } catch (const Failure&) {
        // A file that cannot be read gives an empty store; save() reports it.
    }
}

SettingsStore::~SettingsStore() {
    trySave();
}

std::string SettingsStore::value(std::string_view application, std::string_view section, std::string_view key,
                                 std::string_view fallback) const {
    const Place place = placeFor(application, section, key);
    const auto changed = m_data->changes.find(place);
    if (changed != m_data->changes.end()) return changed->second;
    const std::optional<std::string> stored = m_data->known.value(place);
    if (!stored) return std::string(fallback);
    m_data->seen[place] = *stored;
    return *stored;
}

void SettingsStore::setValue(std::string_view application, std::string_view section, std::string_view key,
                             std::string_view value) {
    const Place place = placeFor(application, section, key);
    const auto seen = m_data->seen.find(place);
    const bool same =
        seen != m_data->seen.end() ? seen->second == value : m_data->known.value(place) == std::string(value);
    m_data->seen[place] = value;
    if (!same) m_data->changes[place] = value;
}

void SettingsStore::save() {
    Data& data = *m_data;
    const std::string& file = data.file;
    std::optional<FolderLock> lock;
    if (!data.changes.empty()) {
        makeFolder(folderOf(file), 0700);
        lock.emplace(file);
    }
    try {
        const std::string present = readFile(file, IniFile::kLargestFile);
        if (data.keepFile && !data.changes.empty()) writeFile(file + ".bad", present, Readable::OwnerOnly);
        data.known = Document(present);
    } catch (const Failure& failure) {
        // A file that has disappeared is written again as last known.
        if (failure.number() != 53 || fileExists(file)) throw;
    }
    if (data.changes.empty()) return;
    Document changed(data.known.text());
    for (const auto& [place, value] : data.changes) changed.setValue(place, value);
    writeFile(file, changed.text(), Readable::OwnerOnly);
    data.known = std::move(changed);
    data.changes.clear();
    data.keepFile = false;
}

bool SettingsStore::trySave() noexcept {
    try {
        save();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void SettingsStore::keepFileBeforeSave() {
    m_data->keepFile = true;
}

}  // namespace relay
