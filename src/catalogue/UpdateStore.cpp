// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/UpdateStore.h"

#include "catalogue/UpdateFiles.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/Trap.h"

#include <utility>

namespace relay {

namespace {

constexpr std::string_view kSection = "Previous";
// The values of the ledger's keys, which are the names of the stored files.
constexpr std::string_view kKept = "kept";      // NAME.previous has what the file was
constexpr std::string_view kAbsent = "absent";  // there was no such file

std::string previousOf(const std::string& path) {
    return path + ".previous";
}

std::string textOf(const std::string& path) {
    return fileExists(path) ? readFile(path) : std::string();
}

}  // namespace

std::string UpdateStore::ledger() const {
    return m_paths.inWindows("update.previous");
}

// The order leaves an old file or a new one at every moment, and a ledger that undo() can follow.
void UpdateStore::store(std::size_t index, std::string_view text) {
    const UpdateFile& file = kUpdateFiles.at(index);
    const std::string path = file.path(m_paths);
    const FolderLock lock(ledger());
    IniFile stored = m_begun ? IniFile::load(ledger()) : IniFile();
    // The failed try before this one may have stored the file; then what it was before that is kept.
    const bool listed = !stored.value(kSection, file.name).empty();
    const bool exists = fileExists(path);
    const std::string old = textOf(path);
    if (!listed) {
        // A full disk fails here, while the update before can still be taken back.
        if (exists) writeFile(previousOf(path), old);
        stored.setValue(kSection, file.name, exists ? kKept : kAbsent);
        stored.save(ledger());
    }
    if (!std::exchange(m_begun, true)) removePrevious(exists ? &file : nullptr);
    try {
        writeFile(path, std::string(text).append("\r\n"));
    } catch (const std::exception&) {
        // Only the last step may fail with the new file in place. The failure to show is that of the file.
        failureOf([&] {
            if (listed || fileExists(path) != exists || textOf(path) != old) return;
            stored.setValue(kSection, file.name, {});
            stored.save(ledger());
        });
        throw;
    }
}

void UpdateStore::removePrevious(const UpdateFile* except) const {
    for (const UpdateFile& file : kUpdateFiles)
        if (&file != except) removeFile(previousOf(file.path(m_paths)));
}

bool UpdateStore::canUndo() const {
    bool stored = false;
    failureOf([&] {
        const IniFile ledgerFile = IniFile::load(ledger());
        for (const UpdateFile& file : kUpdateFiles)
            if (!ledgerFile.value(kSection, file.name).empty()) stored = true;
    });
    return stored;
}

void UpdateStore::undo() {
    const FolderLock lock(ledger());
    if (!canUndo()) throw Failure("There is no update to take back.");
    const IniFile stored = IniFile::load(ledger());
    for (const UpdateFile& file : kUpdateFiles) {
        const std::string path = file.path(m_paths);
        const std::string state = stored.value(kSection, file.name);
        if (state == kKept) writeFile(path, readFile(previousOf(path)));
        if (state == kAbsent) removeFile(path);
    }
    removeFile(ledger());
    removePrevious();
}

EngineDataTexts UpdateStore::present() const {
    return {textOf(m_paths.inWindows("krveng5.dat")), textOf(m_paths.inWindows("catkws.dat"))};
}

EngineDataTexts UpdateStore::previous() const {
    const IniFile stored = IniFile::load(ledger());
    const auto text = [&](std::string_view name) {
        const std::string path = m_paths.inWindows(name);
        const std::string state = stored.value(kSection, name);
        if (state == kAbsent) return std::string();
        return textOf(state == kKept ? previousOf(path) : path);
    };
    return {text("krveng5.dat"), text("catkws.dat")};
}

CatalogueChange UpdateStore::change(bool refusesAdultSites) const {
    return compareCatalogues(previous(), present(), refusesAdultSites);
}

CatalogueChange UpdateStore::changeOfUndo(bool refusesAdultSites) const {
    return compareCatalogues(present(), previous(), refusesAdultSites);
}

bool sameAsUpdated(std::string_view home, std::string_view published) noexcept {
    if (home == published) return true;
    return home.size() == published.size() + 2 && home.starts_with(published) && home.ends_with("\r\n");
}

}  // namespace relay
