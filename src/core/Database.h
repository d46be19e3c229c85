// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace relay {

// One connection to an SQLite file. Texts are bound and read as bytes. Every operation throws Failure 75 with
// the file, what it is (`title`: "The history of rank tracking: ") and the reason: locked by another program
// for two seconds, damaged, no database at all.
class Database final {
  public:
    enum class Open { Existing, OrMake };

    Database(const std::string& file, std::string_view title, Open open);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void run(const char* statements);
    // The first number of the first row, 0 without one.
    std::int64_t number(const char* query);
    std::int64_t lastId() const;
    Failure failure(const std::string& reason) const;

  private:
    friend class Statement;
    void check(int code) const;
    Failure failureOfCode(int code) const;

    const std::string m_file;
    const std::string m_title;
    sqlite3* m_handle = nullptr;
};

class Statement final {
  public:
    Statement(Database& database, std::string_view text);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Binds the next parameter.
    Statement& bind(std::string_view text);
    Statement& bind(std::int64_t number);
    // True when there is a row.
    bool step();
    // Runs it to its end; then it can be bound again.
    void run();
    void reset();
    std::string text(int column) const;
    std::int64_t number(int column) const;

  private:
    Database& m_database;
    sqlite3_stmt* m_statement = nullptr;
    int m_bound = 0;
};

// Undone at the end of a block that does not commit.
class Transaction final {
  public:
    Transaction(Database& database, const char* begin) : m_database(database) { database.run(begin); }
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

  private:
    Database& m_database;
    bool m_open = true;
};

}  // namespace relay
