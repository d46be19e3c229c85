// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineHealth.h"

#include "core/FileSystem.h"
#include "core/HistoryFile.h"
#include "core/ScreenText.h"

namespace relay {

namespace {

constexpr std::string_view kTitle = "The history of submissions: ";
constexpr std::int64_t kMostPairs = 200'000;

// An engine that succeeds begins anew; one that fails counts the run once.
constexpr std::string_view kSuccess =
    "INSERT INTO health (engine, success, failures, failed_runs, run) VALUES (?1, ?2, 0, 0, ?3) "
    "ON CONFLICT (engine) DO UPDATE SET success = ?2, failures = 0, failed_runs = 0, run = ?3";
constexpr std::string_view kFailure =
    "INSERT INTO health (engine, success, failures, failed_runs, run) VALUES (?1, 0, 1, 1, ?2) "
    "ON CONFLICT (engine) DO UPDATE SET failures = failures + 1, "
    "failed_runs = failed_runs + (run <> ?2), run = ?2";

}  // namespace

HealthStore::HealthStore(const Paths& paths) : m_file(historyFile(paths)) {}

void HealthStore::add(std::string_view run, const std::vector<HealthPair>& pairs) {
    if (pairs.empty()) return;
    History history(m_file, History::For::Writing, kTitle);
    Database& database = history.database();
    {
        Statement insert(
            database, "INSERT INTO pair (run, engine, url, code, result, ended) VALUES (?, ?, ?, ?, ?, ?)");
        Statement success(database, kSuccess);
        Statement failure(database, kFailure);
        for (const HealthPair& pair : pairs) {
            const std::int64_t ended = pair.ended.toSecsSinceEpoch();
            insert.bind(run).bind(pair.engine).bind(pair.url).bind(std::int64_t{pair.code});
            insert.bind(std::int64_t{pair.result}).bind(ended).run();
            if (pair.succeeded)
                success.bind(pair.engine).bind(ended).bind(run).run();
            else
                failure.bind(pair.engine).bind(run).run();
        }
        Statement(database, "DELETE FROM pair WHERE id <= (SELECT max(id) FROM pair) - ?")
            .bind(kMostPairs)
            .run();
    }
    history.commit();
}

std::vector<EngineHealth> HealthStore::engines() const {
    std::vector<EngineHealth> found;
    if (!fileExists(m_file)) return found;
    History history(m_file, History::For::Reading, kTitle);
    if (!history.hasTables() ||
        history.database().number("SELECT count(*) FROM sqlite_master WHERE name = 'health'") == 0)
        return found;
    Statement rows(history.database(),
                   "SELECT engine, success, failures, failed_runs FROM health ORDER BY engine");
    while (rows.step()) {
        EngineHealth engine{
            rows.text(0), {}, static_cast<int>(rows.number(2)), static_cast<int>(rows.number(3))};
        if (rows.number(1) != 0) engine.lastSuccess = QDateTime::fromSecsSinceEpoch(rows.number(1));
        found.push_back(std::move(engine));
    }
    return found;
}

std::string healthTime(const QDateTime& time) {
    return time.isValid() ? fromScreen(time.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss")) : std::string();
}

}  // namespace relay
