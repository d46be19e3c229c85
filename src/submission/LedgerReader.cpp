// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/LedgerReader.h"

#include "core/Descriptor.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "projects/WebsiteFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <utility>

namespace relay {

namespace {

using nlohmann::json;

constexpr std::size_t kLongestHead = 64u * 1024 * 1024;
constexpr int kDeepestHead = 16;
constexpr std::size_t kLongestLine = 1024u * 1024;
// Bytes per request, in all its lines. Reading a larger file would only delay the start of the program.
constexpr std::int64_t kMostOfRequest = 16 * 1024;

// Thrown for a head that is not one of a ledger.
struct NoLedger final {};

const json& member(const json& object, const char* key) {
    static const json none;
    if (!object.is_object()) return none;
    const auto found = object.find(key);
    return found == object.end() ? none : *found;
}

std::string textOf(const json& value) {
    return value.is_string() ? value.get<std::string>() : std::string();
}

std::int64_t numberOf(const json& value) {
    return value.is_number_integer() ? value.get<std::int64_t>() : 0;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    throw NoLedger();
}

// A text of the head: a string, or hex digits if it is not UTF-8.
std::string exactText(const json& value) {
    if (value.is_string()) return value.get<std::string>();
    const std::string hex = textOf(member(value, "hex"));
    if (hex.empty() || hex.size() % 2 != 0) throw NoLedger();
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(hexDigit(hex[i]) * 16 + hexDigit(hex[i + 1]));
    return bytes;
}

void readEngines(const json& head, RunPlan& plan) {
    const json& engines = member(head, "engines");
    if (!engines.is_array() || engines.size() > std::size_t{kMostOfWork}) throw NoLedger();
    for (const json& name : engines) plan.engines.push_back(exactText(name));
}

void readUrls(const json& website, CutOffRun& run) {
    const std::string file = exactText(member(website, "file"));
    const std::string name = exactText(member(website, "name"));
    run.head.digests.websites[file] = textOf(member(website, "digest"));
    for (const json& entry : member(website, "urls")) {
        if (run.plan.urls.size() == std::size_t{kMostOfWork}) throw NoLedger();
        PlannedURL url{file, name, exactText(member(entry, "url")), {}};
        for (const json& place : member(entry, "engines")) {
            const std::int64_t engine = numberOf(place);
            const std::int64_t last = url.engines.empty() ? 0 : url.engines.back();
            if (engine <= last || engine > std::ssize(run.plan.engines)) throw NoLedger();
            url.engines.push_back(static_cast<std::int16_t>(engine));
        }
        run.plan.urls.push_back(std::move(url));
    }
}

void readHead(const json& head, CutOffRun& run) {
    if (textOf(member(head, "event")) != "ledger" || numberOf(member(head, "version")) != 1) throw NoLedger();
    run.head.time = QDateTime::fromString(toScreen(textOf(member(head, "time"))), Qt::ISODate).toLocalTime();
    const json& files = member(head, "catalogue");
    if (!files.is_object()) throw NoLedger();
    for (const auto& [name, digest] : files.items()) run.head.digests.catalogue[name] = textOf(digest);
    run.head.digests.settings = textOf(member(head, "settings"));
    run.head.blockSpam = numberOf(member(head, "block_spam")) != 0;
    readEngines(head, run.plan);
    for (const json& website : member(head, "websites")) readUrls(website, run);
    if (run.plan.engines.empty() || run.plan.urls.empty()) throw NoLedger();
    run.finished.assign(run.plan.urls.size(), false);
}

// True if the website file lists the report: the program may have been killed before the ledger noted it.
bool isNoted(const std::string& website, std::string_view URL, std::string_view path) {
    bool noted = false;
    failureOf([&] {
        const IniFile file = IniFile::load(website);
        const int last = leadingInteger(file.value(kWebsiteSection, "LastReport"));
        for (int number = last; !noted && number > 0 && number > last - 100; --number) {
            noted = file.value(kReportSection, "ReportFile" + std::to_string(number)) == path &&
                    file.value(kReportSection, "URL" + std::to_string(number)) == URL;
        }
    });
    return noted;
}

// Restores a run from the lines after the head.
class LineReader final {
  public:
    explicit LineReader(CutOffRun& run)
        : m_run(run), m_ended(run.plan.urls.size()), m_paths(run.plan.urls.size()) {
        for (std::size_t i = 0; i < run.plan.urls.size(); ++i)
            m_urls.emplace(
                keyOf(toPrintableUtf8(run.plan.urls[i].website), toPrintableUtf8(run.plan.urls[i].URL)), i);
        for (std::size_t i = 0; i < run.plan.engines.size(); ++i)
            m_engines.emplace(toPrintableUtf8(run.plan.engines[i]), i);
    }

    void read(const json& line) {
        const std::string event = textOf(member(line, "event"));
        if (event == "done") m_over = true;
        const auto url = m_urls.find(keyOf(textOf(member(line, "website")), textOf(member(line, "url"))));
        if (url == m_urls.end()) return;
        if (event == "start" || event == "engine") return readPair(line, event == "start", url->second);
        if (event == "removed") m_run.finished[url->second] = true;
        if (event == "reporting") failureOf([&] { m_paths[url->second] = exactPath(line); });
        if (event == "report") readReport(line, url->second);
    }
    bool isOver() const noexcept { return m_over; }
    void end() {
        for (std::size_t url = 0; url < m_paths.size(); ++url) {
            const PlannedURL& planned = m_run.plan.urls[url];
            if (m_run.finished[url] || m_paths[url].empty()) continue;
            if (isNoted(planned.website, planned.URL, m_paths[url])) addReport(url, m_paths[url], -1, -1);
        }
        for (const auto& [url, engine] : m_inFlight)
            if (!m_run.finished[url]) m_run.inFlight.push_back({url, engine, 0, 0, 0});
    }

  private:
    static std::string keyOf(const std::string& website, const std::string& URL) {
        return website + "\n" + URL;
    }
    static std::string exactPath(const json& line) {
        try {
            return exactText(member(line, "path"));
        } catch (const NoLedger&) {
            return {};
        }
    }
    void readPair(const json& line, bool isStart, std::size_t url) {
        const auto found = m_engines.find(textOf(member(line, "engine")));
        if (found == m_engines.end()) return;
        const PairEnd pair{static_cast<std::uint16_t>(url), static_cast<std::uint16_t>(found->second),
                           static_cast<std::int16_t>(numberOf(member(line, "result"))),
                           static_cast<std::int32_t>(numberOf(member(line, "code"))),
                           static_cast<std::uint32_t>(numberOf(member(line, "ms")))};
        std::vector<bool>& ended = m_ended[url];
        if (ended.empty()) ended.resize(m_run.plan.engines.size());
        if (ended[pair.engine]) return;
        if (isStart) {
            m_inFlight.insert({pair.url, pair.engine});
            return;
        }
        ended[pair.engine] = true;
        m_inFlight.erase({pair.url, pair.engine});
        m_run.ended.push_back(pair);
    }
    void readReport(const json& line, std::size_t url) {
        if (m_run.finished[url]) return;
        // Only the line "reporting" contains the exact path.
        const bool written = !textOf(member(line, "path")).empty();
        addReport(url, written ? m_paths[url] : std::string(),
                  static_cast<int>(numberOf(member(line, "success"))),
                  static_cast<int>(numberOf(member(line, "failed"))));
    }
    // Counts of -1 are taken from the results.
    void addReport(std::size_t url, const std::string& path, int success, int failed) {
        m_run.finished[url] = true;
        if (success < 0) {
            success = static_cast<int>(
                std::count_if(m_run.ended.begin(), m_run.ended.end(),
                              [&](const PairEnd& end) { return end.url == url && end.result == Success; }));
            failed = static_cast<int>(m_run.plan.enginesOf(url)) - success;
        }
        const PlannedURL& planned = m_run.plan.urls[url];
        m_run.reports.push_back({planned.URL, planned.website, path, {}, success, failed});
    }

    CutOffRun& m_run;
    std::unordered_map<std::string, std::size_t> m_urls;
    std::unordered_map<std::string, std::size_t> m_engines;
    std::vector<std::vector<bool>> m_ended;  // by URL and engine
    std::vector<std::string> m_paths;        // of the reports that were about to be written, by URL
    std::set<std::pair<std::uint16_t, std::uint16_t>> m_inFlight;
    bool m_over = false;
};

class ReadFile final {
  public:
    explicit ReadFile(const std::string& path)
        : m_file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
        struct stat status {};
        if (m_file < 0 || ::fstat(m_file, &status) != 0) throw fileFailure(path, errno);
        m_regular = S_ISREG(status.st_mode);
        m_size = status.st_size;
    }

    bool isRegular() const noexcept { return m_regular; }
    std::int64_t size() const noexcept { return m_size; }
    // Calls `line` with each line, without its end, and whether it had one, until it returns false. Skips
    // lines after the first that are too long.
    void forEachLine(const std::function<bool(std::string_view, bool whole)>& line) const {
        std::string text;
        std::string chunk(256 * 1024, '\0');
        std::int64_t left = m_size;
        bool isHead = true;
        bool isSkipping = false;
        while (left > 0 && text.size() < kLongestHead) {
            const ssize_t got = ::read(m_file, chunk.data(), chunk.size());
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) break;
            text.append(chunk, 0, static_cast<std::size_t>(std::min<std::int64_t>(got, left)));
            left -= got;
            std::size_t begin = 0;
            for (std::size_t end = text.find('\n'); end != npos; end = text.find('\n', begin)) {
                if (!std::exchange(isSkipping, false) &&
                    !line(std::string_view(text).substr(begin, end - begin), true))
                    return;
                begin = end + 1;
                isHead = false;
            }
            text.erase(0, begin);
            if (!isHead && text.size() > kLongestLine) {
                text.clear();
                isSkipping = true;
            }
        }
        if (!text.empty() && !isSkipping) line(text, false);
    }
    bool endsWith(std::string_view end) const {
        std::string bytes(end.size(), '\0');
        const auto size = static_cast<std::int64_t>(bytes.size());
        return m_size >= size && ::pread(m_file, bytes.data(), bytes.size(), m_size - size) == size &&
               bytes == end;
    }
    bool isLocked() const { return ::flock(m_file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK; }

  private:
    Descriptor m_file;
    bool m_regular = false;
    std::int64_t m_size = 0;
};

// Also true for a part of the beginning, as a crash may leave it.
bool beginsAsLedger(std::string_view line) {
    constexpr std::string_view kBeginning = "{\"event\":\"ledger\",";
    return line.substr(0, kBeginning.size()) == kBeginning.substr(0, line.size());
}

// False for a torn line: nothing had been sent yet.
bool readFirstLine(std::string_view line, bool whole, CutOffRun& run) {
    // Without a limit, deep nesting takes a hundred times the memory of the line.
    const auto isShallow = [](int depth, json::parse_event_t, const json&) { return depth < kDeepestHead; };
    const json head = json::parse(line, isShallow, false);
    if (head.is_discarded() && !whole && beginsAsLedger(line)) return false;
    if (head.is_discarded()) throw NoLedger();
    readHead(head, run);
    return true;
}

std::optional<CutOffRun> readRun(const ReadFile& file, const std::string& path) {
    if (!file.isRegular()) throw NoLedger();
    CutOffRun run;
    run.path = path;
    run.size = file.size();
    std::optional<LineReader> lines;
    file.forEachLine([&](std::string_view line, bool whole) {
        if (!lines) {
            if (!readFirstLine(line, whole, run)) return false;
            if (file.size() > static_cast<std::int64_t>(kLongestHead) + run.left() * kMostOfRequest)
                throw NoLedger();
            lines.emplace(run);
            return true;
        }
        const json parsed = json::parse(line, nullptr, false);
        if (!parsed.is_discarded()) lines->read(parsed);
        return !lines->isOver();
    });
    if (!lines || lines->isOver()) return std::nullopt;
    lines->end();
    if (std::all_of(run.finished.begin(), run.finished.end(), [](bool done) { return done; }))
        return std::nullopt;
    return run;
}

// When the run began; nothing for a torn head.
std::optional<QDateTime> timeOf(const ReadFile& file) {
    if (!file.isRegular()) throw NoLedger();
    CutOffRun run;
    bool begun = false;
    file.forEachLine([&](std::string_view line, bool whole) {
        begun = readFirstLine(line, whole, run);
        return false;
    });
    return begun ? std::optional(run.head.time) : std::nullopt;
}

template <typename Read>
auto refusing(const std::string& path, Read&& read) {
    try {
        return read();
    } catch (const NoLedger&) {
        throw fileFailure(path, "This is no ledger of a run that this program can continue", 75);
    }
}

}  // namespace

std::int64_t CutOffRun::left() const {
    std::int64_t all = 0;
    for (std::size_t url = 0; url < plan.urls.size(); ++url)
        if (!finished[url]) all += static_cast<std::int64_t>(plan.enginesOf(url));
    for (const PairEnd& end : ended)
        if (!finished[end.url]) --all;
    return all;
}

std::string CutOffRun::nameOf(const PairEnd& pair) const {
    return escapeControlCharacters(plan.engines.at(pair.engine) + " for " + plan.urls.at(pair.url).URL);
}

std::optional<CutOffRun> readLedger(const std::string& path) {
    return refusing(path, [&] { return readRun(ReadFile(path), path); });
}

bool isLedgerOver(const std::string& path) {
    const ReadFile file(path);
    bool torn = true;
    file.forEachLine([&](std::string_view line, bool whole) {
        torn = !whole && beginsAsLedger(line);
        return false;
    });
    return torn || file.endsWith("\n{\"event\":\"done\"}\n");
}

std::optional<CutOffRun> findCutOffRun(const std::string& home) {
    std::vector<std::pair<QDateTime, std::string>> runs;
    std::optional<Failure> stranger;
    const auto tryFile = [&](const std::string& path, const auto& work) {
        try {
            work(path);
        } catch (const Failure& failure) {
            if (failure.number() != 53 && !stranger) stranger = failure;
        }
    };
    for (int number = 1; number <= kMostLedgers; ++number) {
        tryFile(ledgerPath(home, number), [&](const std::string& path) {
            const ReadFile file(path);
            if (file.isLocked()) return;
            if (const auto begun = refusing(path, [&] { return timeOf(file); }))
                runs.emplace_back(*begun, path);
        });
    }
    // Only the newest is read completely.
    std::sort(runs.begin(), runs.end(), std::greater<>());
    std::optional<CutOffRun> newest;
    for (const auto& [begun, name] : runs) {
        if (!newest) tryFile(name, [&](const std::string& path) { newest = readLedger(path); });
    }
    if (!newest && stranger) throw Failure(*stranger);
    return newest;
}

}  // namespace relay
