// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Database.h"

#include "core/FileStore.h"
#include "core/Trap.h"

#include <sqlite3.h>

namespace relay {

namespace {

constexpr int kPatience = 2000;  // milliseconds to wait for another program

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

}  // namespace

Database::Database(const std::string& file, std::string_view title, Open open)
    : m_file(file), m_title(title) {
    const int flags = SQLITE_OPEN_READWRITE | (open == Open::OrMake ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(file.c_str(), &m_handle, flags, nullptr);
    if (code != SQLITE_OK) {
        const Failure failed = failureOfCode(code);
        sqlite3_close(m_handle);
        throw failed;
    }
    sqlite3_extended_result_codes(m_handle, 1);
    sqlite3_busy_timeout(m_handle, kPatience);
}

Database::~Database() {
    sqlite3_close(m_handle);
}

void Database::check(int code) const {
    if (code != SQLITE_OK) throw failureOfCode(code);
}

void Database::run(const char* statements) {
    check(sqlite3_exec(m_handle, statements, nullptr, nullptr, nullptr));
}

std::int64_t Database::number(const char* query) {
    Statement statement(*this, query);
    return statement.step() ? statement.number(0) : 0;
}

std::int64_t Database::lastId() const {
    return sqlite3_last_insert_rowid(m_handle);
}

Failure Database::failure(const std::string& reason) const {
    return fileFailure(m_file, m_title + reason, 75);
}

Failure Database::failureOfCode(int code) const {
    return failure(reasonFor(code, m_handle == nullptr ? "out of memory" : sqlite3_errmsg(m_handle)));
}

Statement::Statement(Database& database, std::string_view text) : m_database(database) {
    m_database.check(sqlite3_prepare_v2(database.m_handle, text.data(), static_cast<int>(text.size()),
                                        &m_statement, nullptr));
}

Statement::~Statement() {
    sqlite3_finalize(m_statement);
}

Statement& Statement::bind(std::string_view text) {
    m_database.check(
        sqlite3_bind_text64(m_statement, ++m_bound, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind(std::int64_t number) {
    m_database.check(sqlite3_bind_int64(m_statement, ++m_bound, number));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(m_statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE) m_database.check(code);
    return code == SQLITE_ROW;
}

void Statement::run() {
    while (step()) continue;
    reset();
}

void Statement::reset() {
    sqlite3_reset(m_statement);
    m_bound = 0;
}

std::string Statement::text(int column) const {
    const auto* const bytes = sqlite3_column_text(m_statement, column);
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return bytes == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(bytes), length);
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

Transaction::~Transaction() {
    // A file that cannot be rolled back now is rolled back by whoever opens it next.
    if (m_open) failureOf([this] { m_database.run("ROLLBACK"); });
}

void Transaction::commit() {
    m_database.run("COMMIT");
    m_open = false;
}

}  // namespace relay
