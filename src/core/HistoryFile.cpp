// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/HistoryFile.h"

#include "core/Paths.h"

namespace relay {

namespace {

constexpr int kApplicationId = 0x4b525248;  // "KRRH"
constexpr int kVersion = 1;

// A table that was added later is made in older files too; they stay readable for older programs.
constexpr const char* kTables = R"sql(
CREATE TABLE IF NOT EXISTS reading (
    id INTEGER PRIMARY KEY,
    profile TEXT NOT NULL COLLATE NOCASE,
    keywords TEXT NOT NULL,
    analysed INTEGER NOT NULL,
    catalogue INTEGER NOT NULL
);
CREATE INDEX IF NOT EXISTS reading_of_profile ON reading (profile);
CREATE TABLE IF NOT EXISTS place (
    reading INTEGER NOT NULL REFERENCES reading (id),
    engine TEXT NOT NULL,
    site TEXT NOT NULL,
    state TEXT NOT NULL,
    best INTEGER NOT NULL,
    positions TEXT NOT NULL,
    links INTEGER NOT NULL,
    fetched INTEGER NOT NULL
);
CREATE INDEX IF NOT EXISTS place_of_reading ON place (reading);
CREATE TABLE IF NOT EXISTS pair (
    id INTEGER PRIMARY KEY,
    run TEXT NOT NULL,
    engine TEXT NOT NULL,
    url TEXT NOT NULL,
    code INTEGER NOT NULL,
    result INTEGER NOT NULL,
    ended INTEGER NOT NULL
);
CREATE TABLE IF NOT EXISTS health (
    engine TEXT PRIMARY KEY COLLATE NOCASE,
    success INTEGER NOT NULL,
    failures INTEGER NOT NULL,
    failed_runs INTEGER NOT NULL,
    run TEXT NOT NULL
);
)sql";

// False for a new file; throws Failure for one that is no history of this version.
bool isHistory(Database& database) {
    const auto id = database.number("PRAGMA application_id");
    const auto version = database.number("PRAGMA user_version");
    if (id == 0 && version == 0 && database.number("SELECT count(*) FROM sqlite_master") == 0) return false;
    if (id != kApplicationId)
        throw database.failure("it was not written by this program and was left as it is");
    if (version != kVersion)
        throw database.failure("it was written by a later version of this program (" +
                               std::to_string(version) + ") and was left as it is");
    return true;
}

}  // namespace

std::string historyFile(const Paths& paths) {
    return paths.inApp("ranking.db");
}

History::History(const std::string& file, For purpose, std::string_view title)
    // Writable also for reading, so that what a killed program left half done can be undone.
    : m_database(file, title, purpose == For::Writing ? Database::Open::OrMake : Database::Open::Existing),
      m_transaction(m_database, purpose == For::Writing ? "BEGIN IMMEDIATE" : "BEGIN"),
      m_hasTables(isHistory(m_database)) {
    if (purpose == For::Reading) return;
    m_database.run(kTables);
    if (!m_hasTables) {
        m_database.run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
        m_database.run(("PRAGMA user_version = " + std::to_string(kVersion)).c_str());
    }
    m_hasTables = true;
}

}  // namespace relay
