// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/Sitemap.h"

#include "core/IniFile.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/WebsiteFile.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <unordered_set>
#include <zlib.h>

namespace relay {

namespace {

constexpr std::size_t kLongestUrl = IniFile::kShortLimit;
constexpr std::size_t kLongestDate = 64;
constexpr int kDeepest = 32;  // elements inside one another
// A sitemap's first element stands at its start.
constexpr std::size_t kLongestStart = std::size_t{256} * 1024;
// The parser goes back to the start of an unfinished tag or comment with every piece, and compares every
// attribute and namespace with all the others.
constexpr std::size_t kLongestToken = std::size_t{128} * 1024;
constexpr qsizetype kMostAttributes = 100;
constexpr qsizetype kMostNamespaces = 100;  // of an element and those around it

// Gives bytes in pieces, unpacked if they are a gzip file.
class Pieces final {
  public:
    explicit Pieces(std::string_view bytes) : m_bytes(bytes), m_packed(bytes.starts_with("\x1f\x8b")) {
        constexpr int kGzip = 15 + 16;
        if (m_packed && ::inflateInit2(&m_stream, kGzip) != Z_OK) m_problem = "Out of memory";
    }
    ~Pieces() {
        if (m_packed) ::inflateEnd(&m_stream);
    }
    Pieces(const Pieces&) = delete;
    Pieces& operator=(const Pieces&) = delete;

    // Empty at the end, and after a problem.
    std::string_view next() {
        if (!m_packed) {
            const std::string_view piece = left(m_bytes, m_piece.size());
            m_bytes.remove_prefix(piece.size());
            return piece;
        }
        return m_problem.empty() && !m_bytes.empty() ? unpack() : std::string_view();
    }
    const std::string& problem() const noexcept { return m_problem; }

  private:
    std::string_view unpack() {
        m_stream.next_out = reinterpret_cast<Bytef*>(m_piece.data());
        m_stream.avail_out = static_cast<uInt>(m_piece.size());
        while (m_stream.avail_out > 0 && !m_bytes.empty()) {
            const std::string_view fed = left(m_bytes, kFed);
            m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(fed.data()));
            m_stream.avail_in = static_cast<uInt>(fed.size());
            const int result = ::inflate(&m_stream, Z_NO_FLUSH);
            m_bytes.remove_prefix(fed.size() - m_stream.avail_in);
            if (result == Z_STREAM_END) {
                // A gzip file may have several parts; anything else behind it does not count.
                if (!m_bytes.starts_with("\x1f\x8b")) m_bytes = {};
                ::inflateReset(&m_stream);
            } else if (result != Z_OK && result != Z_BUF_ERROR) {
                m_problem = "It is damaged: it cannot be unpacked.";
                break;
            } else if (m_bytes.empty() && m_stream.avail_out > 0) {
                m_problem = "It breaks off: its end is missing.";
            }
        }
        return {m_piece.data(), m_piece.size() - m_stream.avail_out};
    }

    static constexpr std::size_t kFed = std::size_t{1024} * 1024;
    std::string_view m_bytes;  // not read yet
    bool m_packed;
    z_stream m_stream{};
    std::array<char, std::size_t{64} * 1024> m_piece{};
    std::string m_problem;
};

std::string_view withoutSpace(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
    return text.substr(0, text.find_last_not_of(kSpace) + 1);
}

bool isWebAddress(std::string_view url) {
    if (!startsWithNoCase(url, "http://") && !startsWithNoCase(url, "https://")) return false;
    url.remove_prefix(url.find("//") + 2);
    const std::string_view host = url.substr(0, url.find_first_of("/?#"));
    return !host.empty() && host.find(' ') == npos;
}

// Takes the tokens of one sitemap.
class Collector final {
  public:
    Collector(SitemapFile& file, const SitemapLimits& limits) : m_file(file), m_limits(limits) {}

    // The reason to stop, or nothing.
    std::string_view take(const QXmlStreamReader& xml) {
        switch (xml.tokenType()) {
            case QXmlStreamReader::DTD:
                return "It has a document type, which no sitemap needs.";
            case QXmlStreamReader::StartElement:
                return begin(xml);
            case QXmlStreamReader::EndElement:
                return end();
            case QXmlStreamReader::Characters:
                if (m_field != nullptr && m_field->size() <= kLongestUrl)
                    *m_field += fromScreen(left(xml.text()));
                return {};
            default:
                return {};
        }
    }
    bool hasRoot() const noexcept { return m_depth > 0 || m_done; }

  private:
    // As much of a text as can matter.
    static QStringView left(QStringView text) { return text.left(static_cast<qsizetype>(2 * kLongestUrl)); }

    std::string_view begin(const QXmlStreamReader& xml) {
        if (++m_depth > kDeepest) return "Its elements are nested too deeply.";
        qsizetype& namespaces = m_namespaces.at(static_cast<std::size_t>(m_depth));
        namespaces =
            m_namespaces.at(static_cast<std::size_t>(m_depth - 1)) + xml.namespaceDeclarations().size();
        if (xml.attributes().size() > kMostAttributes || namespaces > kMostNamespaces)
            return "An element has too many attributes.";
        if (m_depth == 1) {
            m_file.isIndex = xml.name() == QLatin1String("sitemapindex");
            m_namespace = xml.namespaceUri().toString();
            if (!m_file.isIndex && xml.name() != QLatin1String("urlset")) return "It is no sitemap.";
        }
        if (m_depth == 2) {
            m_inEntry = isOwn(xml, m_file.isIndex ? "sitemap" : "url");
            m_entry = {};
        }
        m_field = nullptr;
        if (m_depth == 3 && m_inEntry)
            m_field = isOwn(xml, "loc") ? &m_entry.url : isOwn(xml, "lastmod") ? &m_entry.lastmod : nullptr;
        return {};
    }
    std::string_view end() {
        m_field = nullptr;
        m_done = m_done || m_depth == 1;
        if (m_depth-- != 2 || !m_inEntry) return {};
        if (m_file.entries.size() == m_limits.entries) return "It has too many addresses.";
        add();
        return {};
    }
    bool isOwn(const QXmlStreamReader& xml, const char* name) const {
        return xml.name() == QLatin1String(name) && xml.namespaceUri() == m_namespace;
    }
    void add() {
        const std::string_view url = withoutSpace(m_entry.url);
        const std::string_view lastmod = withoutSpace(m_entry.lastmod);
        if (!isWebAddress(url) || url.size() > kLongestUrl || hasControlByte(url)) {
            ++m_file.skipped;
            return;
        }
        const bool isDate = lastmod.size() <= kLongestDate && !hasControlByte(lastmod);
        m_file.entries.push_back({std::string(url), std::string(isDate ? lastmod : std::string_view())});
    }

    SitemapFile& m_file;
    const SitemapLimits& m_limits;
    QString m_namespace;
    SitemapEntry m_entry;
    std::string* m_field = nullptr;
    int m_depth = 0;
    std::array<qsizetype, kDeepest + 1> m_namespaces{};  // known at each depth
    bool m_inEntry = false;
    bool m_done = false;
};

std::string counted(std::size_t number, const char* one, const char* many) {
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

}  // namespace

SitemapFile readSitemap(std::string_view bytes, const SitemapLimits& limits) {
    SitemapFile file;
    Pieces pieces(bytes);
    Collector collector(file, limits);
    QXmlStreamReader xml;
    std::size_t unfinished = 0;  // bytes since the last whole token
    for (std::string_view piece = pieces.next(); !piece.empty(); piece = pieces.next()) {
        file.unpacked += piece.size();
        unfinished += piece.size();
        if (file.unpacked > limits.unpacked) {
            file.problem = "It is larger than " + std::to_string(limits.unpacked / 1024 / 1024) + " MiB.";
            return file;
        }
        xml.addData(QByteArray(piece.data(), static_cast<qsizetype>(piece.size())));
        while (!xml.atEnd() && file.problem.empty()) {
            xml.readNext();
            if (xml.hasError()) break;
            unfinished = 0;
            file.problem = collector.take(xml);
        }
        if (!file.problem.empty()) return file;
        if (xml.hasError() && xml.error() != QXmlStreamReader::PrematureEndOfDocumentError) break;
        if (!collector.hasRoot() && file.unpacked > kLongestStart) {
            file.problem = "It is no sitemap.";
            return file;
        }
        if (unfinished > kLongestToken) {
            file.problem = "One of its parts is too long.";
            return file;
        }
    }
    if (!pieces.problem().empty())
        file.problem = pieces.problem();
    else if (!collector.hasRoot())
        file.problem = "It is no sitemap.";
    else if (xml.hasError())
        file.problem = "Line " + std::to_string(xml.lineNumber()) + ": " + fromScreen(xml.errorString());
    return file;
}

const std::string* SitemapDates::lastmodOf(std::string_view url) const {
    const auto place = m_places.find(url);
    return place == m_places.end() ? nullptr : &m_entries[place->second].lastmod;
}

void SitemapDates::set(const SitemapEntry& entry) {
    const auto [place, isNew] = m_places.try_emplace(entry.url, m_entries.size());
    if (isNew)
        m_entries.push_back(entry);
    else
        m_entries[place->second].lastmod = entry.lastmod;
}

void SitemapDates::clear() {
    m_entries.clear();
    m_places.clear();
}

std::string SitemapChange::counts(std::size_t addresses) const {
    const auto isNew = static_cast<std::size_t>(
        std::count_if(marked.begin(), marked.end(), [](const Marked& one) { return one.isNew; }));
    std::string text = counted(addresses, "address", "addresses") + ", " + std::to_string(isNew) + " new, " +
                       std::to_string(marked.size() - isNew) + " changed";
    if (dropped > 0) text += ", " + std::to_string(dropped) + " older than wanted";
    if (refused > 0) text += ", no room for " + std::to_string(refused);
    return text + ".";
}

SitemapChange mergeSitemap(const std::vector<SitemapEntry>& entries, const QDate& since, Rows& urls,
                           SitemapDates& dates) {
    SitemapChange change;
    const RowsBatch batch(urls);
    urls.clearHighlights();
    std::unordered_set<std::string_view, KeyHash, KeyEqual> met;
    for (const SitemapEntry& entry : entries) {
        if (!met.insert(entry.url).second) continue;
        if (since.isValid() && isOlder(entry.lastmod, since)) {
            ++change.dropped;
            continue;
        }
        const std::string* const known = dates.lastmodOf(entry.url);
        const bool listed = urls.contains(entry.url);
        const bool isNew = known == nullptr || !listed;
        if (!isNew && (entry.lastmod.empty() || *known == entry.lastmod)) continue;
        if (!listed && urls.count() >= kMostUrls) {
            ++change.refused;
            continue;
        }
        if (!listed) change.added += addNewItem(urls, entry.url) ? 1 : 0;
        dates.set(entry);
        change.marked.push_back({entry, isNew});
    }
    for (const SitemapChange::Marked& one : change.marked)
        urls.setHighlighted(urls.indexOf(one.entry.url), true);
    return change;
}

bool isOlder(std::string_view lastmod, const QDate& day) {
    const QString text = toScreen(left(lastmod, 10));
    const QDate exact = QDate::fromString(text, Qt::ISODate);
    if (exact.isValid()) return exact < day;
    const QDate month = QDate::fromString(text.left(7), QStringLiteral("yyyy-MM"));
    if (month.isValid() && text.size() <= 7) return month.addMonths(1) <= day;
    const QDate year = QDate::fromString(text, QStringLiteral("yyyy"));
    return year.isValid() && year.addYears(1) <= day;
}

}  // namespace relay
