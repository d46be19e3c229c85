// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/HistoryStore.h"

#include "core/CsvCell.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "core/Text.h"

#include <algorithm>
#include <map>
#include <memory>
#include <sqlite3.h>
#include <utility>

namespace relay {

namespace {

constexpr int kApplicationId = 0x4b525248;  // "KRRH"
constexpr int kVersion = 1;
constexpr int kPatience = 2000;  // milliseconds to wait for another program

constexpr const char* kTables = R"sql(
CREATE TABLE reading (
    id INTEGER PRIMARY KEY,
    profile TEXT NOT NULL COLLATE NOCASE,
    keywords TEXT NOT NULL,
    analysed INTEGER NOT NULL,
    catalogue INTEGER NOT NULL
);
CREATE INDEX reading_of_profile ON reading (profile);
CREATE TABLE place (
    reading INTEGER NOT NULL REFERENCES reading (id),
    engine TEXT NOT NULL,
    site TEXT NOT NULL,
    state TEXT NOT NULL,
    best INTEGER NOT NULL,
    positions TEXT NOT NULL,
    links INTEGER NOT NULL,
    fetched INTEGER NOT NULL
);
CREATE INDEX place_of_reading ON place (reading);
)sql";

// The words for the user, who wants to know what to do.
std::string reasonFor(int code, const char* words) {
    switch (code & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return "another program is using it; please try again";
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return "it is damaged and was left as it is; rename it to begin a new history";
        case SQLITE_READONLY:
        case SQLITE_PERM:
        case SQLITE_CANTOPEN:
            return "it cannot be opened or written";
        case SQLITE_FULL:
            return "the disk is full";
        default:
            return words;
    }
}

// One connection to the file. Texts are bound and read as bytes.
class Database final {
  public:
    class Statement final {
      public:
        Statement(Database& database, std::string_view text) : m_database(database) {
            m_database.check(sqlite3_prepare_v2(database.m_handle, text.data(), static_cast<int>(text.size()),
                                                &m_statement, nullptr));
        }
        ~Statement() { sqlite3_finalize(m_statement); }
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        Statement& bind(std::string_view text) {
            m_database.check(sqlite3_bind_text64(m_statement, ++m_bound, text.data(), text.size(),
                                                 SQLITE_TRANSIENT, SQLITE_UTF8));
            return *this;
        }
        Statement& bind(std::int64_t number) {
            m_database.check(sqlite3_bind_int64(m_statement, ++m_bound, number));
            return *this;
        }
        // True when there is a row.
        bool step() {
            const int code = sqlite3_step(m_statement);
            if (code != SQLITE_ROW && code != SQLITE_DONE) m_database.check(code);
            return code == SQLITE_ROW;
        }
        // Runs it to its end; then it can be bound again.
        void run() {
            while (step()) continue;
            reset();
        }
        void reset() {
            sqlite3_reset(m_statement);
            m_bound = 0;
        }
        std::string text(int column) const {
            const auto* const bytes = sqlite3_column_text(m_statement, column);
            const auto length = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
            return bytes == nullptr ? std::string()
                                    : std::string(reinterpret_cast<const char*>(bytes), length);
        }
        std::int64_t number(int column) const { return sqlite3_column_int64(m_statement, column); }

      private:
        Database& m_database;
        sqlite3_stmt* m_statement = nullptr;
        int m_bound = 0;
    };

    Database(const std::string& file, int flags) : m_file(file) {
        const int code = sqlite3_open_v2(file.c_str(), &m_handle, flags, nullptr);
        if (code != SQLITE_OK) {
            const Failure failure = failureOfCode(code);
            sqlite3_close(m_handle);
            throw failure;
        }
        sqlite3_extended_result_codes(m_handle, 1);
        sqlite3_busy_timeout(m_handle, kPatience);
    }
    ~Database() { sqlite3_close(m_handle); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void check(int code) const {
        if (code != SQLITE_OK) throw failureOfCode(code);
    }
    void run(const char* statements) { check(sqlite3_exec(m_handle, statements, nullptr, nullptr, nullptr)); }
    std::int64_t pragma(const char* statement) {
        Statement query(*this, statement);
        return query.step() ? query.number(0) : 0;
    }
    std::int64_t lastId() const { return sqlite3_last_insert_rowid(m_handle); }

    Failure failure(const std::string& reason) const {
        return fileFailure(m_file, "The history of rank tracking: " + reason, 75);
    }

  private:
    Failure failureOfCode(int code) const {
        return failure(reasonFor(code, m_handle == nullptr ? "out of memory" : sqlite3_errmsg(m_handle)));
    }

    const std::string m_file;
    sqlite3* m_handle = nullptr;
};

// Undone at the end of a block that does not commit.
class Transaction final {
  public:
    Transaction(Database& database, const char* begin) : m_database(database) { database.run(begin); }
    ~Transaction() {
        if (m_open) failureless("ROLLBACK");
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit() {
        m_database.run("COMMIT");
        m_open = false;
    }

  private:
    void failureless(const char* statement) noexcept {
        try {
            m_database.run(statement);
        } catch (const std::exception&) {
            // The file is rolled back by whoever opens it next.
        }
    }

    Database& m_database;
    bool m_open = true;
};

// False for a new file; throws Failure for one that is no history of this version.
bool isHistory(Database& database) {
    const auto id = database.pragma("PRAGMA application_id");
    const auto version = database.pragma("PRAGMA user_version");
    if (id == 0 && version == 0 && database.pragma("SELECT count(*) FROM sqlite_master") == 0) return false;
    if (id != kApplicationId)
        throw database.failure("it was not written by this program and was left as it is");
    if (version != kVersion)
        throw database.failure("it was written by a later version of this program (" +
                               std::to_string(version) + ") and was left as it is");
    return true;
}

void makeTables(Database& database) {
    database.run(kTables);
    database.run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
    database.run(("PRAGMA user_version = " + std::to_string(kVersion)).c_str());
}

QDateTime timeOf(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds);
}

RankState stateOf(std::string_view name) {
    for (const RankState state : {RankState::Found, RankState::NotFound, RankState::NothingFound,
                                  RankState::NoResultList, RankState::NoResultPage})
        if (name == rankStateName(state)) return state;
    return RankState::NoResultPage;
}

HistoryPlace placeOf(const Database::Statement& row) {
    return {row.text(0),          row.text(1),
            stateOf(row.text(2)), static_cast<int>(row.number(3)),
            row.text(4),          static_cast<int>(row.number(5)),
            timeOf(row.number(6))};
}

}  // namespace

HistoryStore::HistoryStore(const Paths& paths) : m_file(paths.inApp("ranking.db")) {}

void HistoryStore::add(const HistoryReading& reading) {
    if (reading.places.empty()) return;
    Database database(m_file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    Transaction transaction(database, "BEGIN IMMEDIATE");
    if (!isHistory(database)) makeTables(database);
    Database::Statement(database,
                        "INSERT INTO reading (profile, keywords, analysed, catalogue) VALUES (?, ?, ?, ?)")
        .bind(reading.profile)
        .bind(reading.keywords)
        .bind(reading.analysed.toSecsSinceEpoch())
        .bind(reading.catalogue.toSecsSinceEpoch())
        .run();
    const std::int64_t id = database.lastId();
    Database::Statement insert(database, "INSERT INTO place VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    for (const HistoryPlace& place : reading.places)
        insert.bind(id)
            .bind(place.engine)
            .bind(place.site)
            .bind(rankStateName(place.state))
            .bind(place.best)
            .bind(place.positions)
            .bind(place.links)
            .bind(place.fetched.toSecsSinceEpoch())
            .run();
    transaction.commit();
}

std::vector<HistoryReading> HistoryStore::readings(std::string_view profile) const {
    std::vector<HistoryReading> found;
    if (!fileExists(m_file)) return found;
    // Writable, so that what a killed program left half done can be undone.
    Database database(m_file, SQLITE_OPEN_READWRITE);
    const Transaction transaction(database, "BEGIN");
    if (!isHistory(database)) return found;
    Database::Statement readings(database,
                                 "SELECT id, profile, keywords, analysed, catalogue FROM reading "
                                 "WHERE profile = ? ORDER BY id");
    readings.bind(trim(profile));
    Database::Statement places(database,
                               "SELECT engine, site, state, best, positions, links, fetched FROM place "
                               "WHERE reading = ? ORDER BY rowid");
    while (readings.step()) {
        HistoryReading reading{
            readings.text(1), readings.text(2), timeOf(readings.number(3)), timeOf(readings.number(4)), {}};
        places.bind(readings.number(0));
        while (places.step()) reading.places.push_back(placeOf(places));
        places.reset();
        found.push_back(std::move(reading));
    }
    return found;
}

std::vector<HistoryLine> historyLines(const std::vector<HistoryReading>& readings) {
    std::vector<HistoryLine> lines;
    std::map<std::pair<std::string, std::string>, std::size_t> placeOfLine;
    for (const HistoryReading& reading : readings)
        for (const HistoryPlace& place : reading.places) {
            const auto [line, isNew] = placeOfLine.try_emplace({place.site, place.engine}, lines.size());
            if (isNew) lines.push_back({place.site, place.engine, {}});
            // Readings come in order, so a later one of the same pages takes the place of the one before.
            lines[line->second].points.push_back({place.fetched, place.state, place.best});
        }
    for (HistoryLine& line : lines) {
        std::stable_sort(line.points.begin(), line.points.end(),
                         [](const auto& a, const auto& b) { return a.fetched < b.fetched; });
        std::vector<HistoryPoint> newest;
        for (const HistoryPoint& point : line.points) {
            if (!newest.empty() && newest.back().fetched == point.fetched) newest.pop_back();
            newest.push_back(point);
        }
        line.points = std::move(newest);
    }
    return lines;
}

std::string historyTime(const QDateTime& time) {
    return fromScreen(time.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"));
}

std::string historyCSV(const std::vector<HistoryReading>& readings) {
    std::string table = "fetched,analysed,catalogue,keywords,engine,site,state,best,positions,links\r\n";
    for (const HistoryReading& reading : readings)
        for (const HistoryPlace& place : reading.places) {
            const std::string cells[] = {historyTime(place.fetched),
                                         historyTime(reading.analysed),
                                         historyTime(reading.catalogue),
                                         reading.keywords,
                                         place.engine,
                                         place.site,
                                         std::string(rankStateName(place.state)),
                                         place.best == 0 ? std::string() : std::to_string(place.best),
                                         place.positions,
                                         std::to_string(place.links)};
            const char* separator = "";
            for (const std::string& cell : cells) {
                table += separator;
                appendCsvCell(table, cell);
                separator = ",";
            }
            table += "\r\n";
        }
    return table;
}

}  // namespace relay
