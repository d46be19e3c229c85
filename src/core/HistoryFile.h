// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Database.h"

#include <string>
#include <string_view>

namespace relay {

struct Paths;

// The home's history: one SQLite file with what rank tracking found, and how the engines of submissions did.
// It is opened for each operation, so that two programs may use it. A file of another program, or of a later
// version, is left as it is, and opening it throws Failure; otherwise see Database.
std::string historyFile(const Paths& paths);

// Reads or changes the history within one transaction.
class History final {
  public:
    enum class For { Reading, Writing };

    // For writing, makes the file and the tables that it does not have. For reading it must exist. `title`
    // begins the text of a failure: "The history of rank tracking: ".
    History(const std::string& file, For purpose, std::string_view title);

    // False for an empty file, which has no tables.
    bool hasTables() const noexcept { return m_hasTables; }
    Database& database() noexcept { return m_database; }
    void commit() { m_transaction.commit(); }

  private:
    Database m_database;
    Transaction m_transaction;
    bool m_hasTables = false;
};

}  // namespace relay
