// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/Ledger.h"

#include "core/Descriptor.h"
#include "core/FileStore.h"
#include "core/JsonLine.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "submission/LedgerReader.h"
#include "submission/RunEvents.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

constexpr std::chrono::seconds kFlushEvery(1);

// Bytes that are not UTF-8 are written as hex digits, so that every text is read back unchanged.
void appendExactText(std::string& json, std::string_view text) {
    const std::string printable = toPrintableUtf8(text);
    if (printable == text) return appendJsonText(json, text);
    json += "{\"hex\":\"";
    for (const char byte : text) appendHex(json, byte);
    json += "\"}";
}

std::string jsonOf(const std::map<std::string, std::string>& digests) {
    JsonLine object;
    for (const auto& [name, digest] : digests) object.add(name, digest);
    std::string json = object.finish();
    json.pop_back();  // the line end
    return json;
}

// [{"file":...,"name":...,"digest":...,"urls":[{"url":...,"engines":[...]}]}]
std::string jsonOfWebsites(const RunPlan& plan, const std::map<std::string, std::string>& digests) {
    std::string json = "[";
    for (std::size_t i = 0; i < plan.urls.size(); ++i) {
        const PlannedURL& url = plan.urls[i];
        if (i == 0 || plan.urls[i - 1].website != url.website || plan.urls[i - 1].site != url.site) {
            if (i != 0) json += "]},";
            json += "{\"file\":";
            appendExactText(json, url.website);
            json += ",\"name\":";
            appendExactText(json, url.site);
            const auto digest = digests.find(url.website);
            json += ",\"digest\":";
            appendJsonText(json, digest == digests.end() ? std::string() : digest->second);
            json += ",\"urls\":[";
        } else {
            json += ',';
        }
        json += "{\"url\":";
        appendExactText(json, url.URL);
        for (std::size_t engine = 0; engine < url.engines.size(); ++engine) {
            json += engine == 0 ? ",\"engines\":[" : ",";
            json += std::to_string(url.engines[engine]);
        }
        json += url.engines.empty() ? "}" : "]}";
    }
    return json + (plan.urls.empty() ? "]" : "]}]");
}

std::string utc(const QDateTime& time) {
    return time.toUTC().toString(Qt::ISODate).toStdString();
}

std::string headLine(const LedgerHead& head, const RunPlan& plan) {
    std::string engines = "[";
    for (std::size_t i = 0; i < plan.engines.size(); ++i) {
        if (i != 0) engines += ',';
        appendExactText(engines, plan.engines[i]);
    }
    engines += ']';
    JsonLine line;
    line.add("event", "ledger").add("version", 1).add("time", utc(head.time));
    line.addJson("catalogue", jsonOf(head.digests.catalogue)).add("settings", head.digests.settings);
    line.add("block_spam", head.blockSpam ? 1 : 0);
    line.addJson("websites", jsonOfWebsites(plan, head.digests.websites)).addJson("engines", engines);
    return line.finish();
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void flushFolderOf(const std::string& path) {
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened >= 0) ::fsync(opened);
}

// Flushes a file once a second if something was written to it. A slow disk does not delay the run.
class Flusher final {
  public:
    Flusher(int file, std::string path)
        : m_thread([this, file, path = std::move(path)](const std::stop_token& stop) {
              flushFolderOf(path);
              std::unique_lock lock(m_mutex);
              while (!stop.stop_requested()) {
                  if (m_written.exchange(false)) ::fdatasync(file);
                  m_wake.wait_for(lock, stop, kFlushEvery, [] { return false; });
              }
          }) {}

    void written() noexcept { m_written.store(true, std::memory_order_relaxed); }

  private:
    std::atomic<bool> m_written = true;
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::jthread m_thread;
};

int openLedger(const std::string& path, int more) {
    return ::open(path.c_str(), O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | more,
                  0600);
}

// On a file system without locks, nothing is locked.
bool isLocked(int file) {
    return ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

std::int64_t sizeOf(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : -1;
}

std::optional<CutOffRun> oldestCutOffRun(const std::string& home) {
    std::optional<CutOffRun> oldest;
    for (int number = 1; number <= kMostLedgers; ++number) {
        failureOf([&] {
            auto run = readLedger(ledgerPath(home, number));
            if (run && (!oldest || run->head.time < oldest->head.time)) oldest = std::move(run);
        });
    }
    return oldest;
}

}  // namespace

struct Ledger::Data final {
    Descriptor file;
    std::string path;
    std::string problem;
    std::optional<Flusher> flusher;
    qint64 second = -1;  // time of the last line, and its text
    std::string secondText;

    void take(int opened, const std::string& name) {
        file.reset(opened);
        path = name;
        problem.clear();
    }
    const std::string& timeText(const QDateTime& time) {
        const qint64 now = time.toSecsSinceEpoch();
        if (std::exchange(second, now) != now) secondText = utc(time);
        return secondText;
    }
    void write(JsonLine& line) {
        if (!writeAll(file, line.finish())) return giveUp(errno);
        flusher->written();
    }
    void giveUp(int error) {
        problem = fileFailure(path, error).what();
        ::unlink(path.c_str());
        close();
    }
    void close() noexcept {
        flusher.reset();
        file.reset();
    }
    // False if the file belongs to another run.
    bool tryTake(const std::string& name);
};

bool Ledger::Data::tryTake(const std::string& name) {
    for (;;) {
        Descriptor opened(openLedger(name, O_CREAT));
        // A link or a folder of that name belongs to the user.
        if (opened < 0 && (errno == ELOOP || errno == EISDIR || errno == ENXIO)) return false;
        if (opened < 0) throw fileFailure(name, errno);
        const std::int64_t size = sizeOf(opened);
        if (isLocked(opened) || size < 0) return false;
        if (!hasName(opened)) continue;  // another run has just finished with it
        bool over = size == 0;
        if (!over) failureOf([&] { over = isLedgerOver(name); });
        if (!over || ::fchmod(opened, 0600) != 0 || ::ftruncate(opened, 0) != 0) return false;
        take(opened.release(), name);
        return true;
    }
}

Ledger::Ledger() : m_data(std::make_unique<Data>()) {}

Ledger::~Ledger() {
    leave();
}

void Ledger::begin(const std::string& home, const LedgerHead& head, const RunPlan& plan) {
    leave();
    int number = 1;
    while (number <= kMostLedgers && !m_data->tryTake(ledgerPath(home, number))) ++number;
    if (number > kMostLedgers) {
        const std::optional<CutOffRun> oldest = oldestCutOffRun(home);
        if (!oldest) throw fileFailure(ledgerPath(home, 1), "No file is free for the ledger", 75);
        Ledger old;
        old.goOn(oldest->path, oldest->size);
        old.finish();
        if (!m_data->tryTake(oldest->path)) throw fileFailure(oldest->path, "In use by another program", 70);
    }
    if (!writeAll(m_data->file, headLine(head, plan))) {
        const int error = errno;
        m_data->giveUp(error);
        throw fileFailure(m_data->path, error);
    }
    m_data->flusher.emplace(m_data->file, m_data->path);
}

void Ledger::goOn(const std::string& path, std::int64_t size) {
    leave();
    Descriptor opened(openLedger(path, 0));
    if (opened < 0) throw fileFailure(path, errno);
    if (isLocked(opened) || sizeOf(opened) != size || !hasName(opened))
        throw fileFailure(path, "Another program has continued this run", 70);
    // Ends a torn last line.
    char last = '\n';
    if (size > 0 && ::pread(opened, &last, 1, size - 1) == 1 && last != '\n' && !writeAll(opened, "\n"))
        throw fileFailure(path, errno);
    m_data->take(opened.release(), path);
    m_data->flusher.emplace(m_data->file, path);
}

bool Ledger::isOpen() const noexcept {
    return m_data->file >= 0;
}

const std::string& Ledger::problem() const noexcept {
    return m_data->problem;
}

void Ledger::start(const QDateTime& time, std::string_view website, std::string_view URL,
                   std::string_view engine) {
    if (!isOpen()) return;
    JsonLine line;
    line.add("event", "start").add("time", m_data->timeText(time)).add("website", website);
    line.add("url", URL).add("engine", engine);
    m_data->write(line);
}

void Ledger::ended(const QDateTime& time, std::string_view website, const EngineEnded& ended) {
    if (!isOpen()) return;
    JsonLine line;
    line.add("event", "engine").add("time", m_data->timeText(time)).add("website", website);
    addEngineEnded(line, ended);
    m_data->write(line);
}

void Ledger::reporting(const QDateTime& time, std::string_view website, std::string_view URL,
                       std::string_view path) {
    if (!isOpen()) return;
    JsonLine line;
    line.add("event", "reporting").add("time", m_data->timeText(time)).add("website", website);
    std::string exact;  // the website file is searched for it
    appendExactText(exact, path);
    line.add("url", URL).addJson("path", exact);
    m_data->write(line);
}

void Ledger::reported(const QDateTime& time, const UrlReport& report) {
    if (!isOpen()) return;
    JsonLine line;
    line.add("event", "report").add("time", m_data->timeText(time));
    addUrlReport(line, report);
    m_data->write(line);
}

void Ledger::removed(const QDateTime& time, std::string_view website, std::string_view URL) {
    if (!isOpen()) return;
    JsonLine line;
    line.add("event", "removed").add("time", m_data->timeText(time)).add("website", website).add("url", URL);
    m_data->write(line);
}

void Ledger::finish() {
    if (!isOpen()) return;
    if (::unlink(m_data->path.c_str()) != 0) {
        JsonLine line;
        line.add("event", "done");
        m_data->write(line);
    }
    leave();
}

void Ledger::leave() noexcept {
    m_data->close();
}

}  // namespace relay
