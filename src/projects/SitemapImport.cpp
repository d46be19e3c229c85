// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/SitemapImport.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "projects/WebsiteFields.h"
#include "projects/WebsiteFile.h"
#include "transport/RequestUrl.h"
#include "transport/frmHTTP.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "Sitemap";
constexpr std::string_view kTitle = "Import Sitemap";
constexpr std::size_t kLargestLocalFile = SitemapLimits().unpacked;

// Where a site usually has its sitemap.
std::string usualPlace(const Rows& urls) {
    if (urls.empty()) return "http://www.";
    const std::string url(urls.at(0).text);
    const bool secure = startsWithNoCase(url, "https://");
    return (secure ? "https://" : "http://") + GetURLHost(url) + "/sitemap.xml";
}

}  // namespace

SitemapImport::SitemapImport(frmHTTP& fetcher, const Services& services)
    : m_fetcher(fetcher), m_services(services) {
    const auto take = [this](const FetchReply& reply) { takeReply(reply); };
    m_fetcher.setConsumer(kPurpose, {take, take, [this] { finish(true); }});
}

SitemapImport::~SitemapImport() {
    m_fetcher.removeConsumer(kPurpose);
    cancel();
}

void SitemapImport::askAndImport(WebsiteFields& fields) {
    if (m_fetcher.isRunning()) {
        m_services.prompts.beep();
        return;
    }
    const auto answer = m_services.prompts.input(
        "Please enter the address of your sitemap, or the path of a sitemap file:", kTitle,
        usualPlace(fields.lsvSiteURLs));
    if (!answer || trim(*answer).empty()) return;
    m_fields = &fields;
    const std::string place(trim(*answer));
    const std::optional<std::string> file = localPath(place, TypedIn::Field);
    const bool started = trap(
        m_services.prompts, {}, [&] { file ? startFile(*file) : start(withScheme(place)); }, kTitle);
    if (!started) m_fields = nullptr;
}

bool SitemapImport::start(const std::string& address) {
    if (m_fetcher.isRunning()) return false;
    begin();
    want(address, 0);
    fetchNext();
    return true;
}

bool SitemapImport::startFile(const std::string& file) {
    if (m_fetcher.isRunning()) return false;
    const std::string bytes = readFile(file, kLargestLocalFile);
    begin();
    take(escapeControlCharacters(file), bytes, 0);
    fetchNext();
    return true;
}

void SitemapImport::cancel() {
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

void SitemapImport::begin() {
    m_wanted.clear();
    m_met.clear();
    m_entries.clear();
    m_skipped = m_unpacked = m_problems = 0;
    m_found = false;
    m_problem.clear();
}

void SitemapImport::take(const std::string& name, std::string_view bytes, int depth) {
    const BusyPointer busy(m_services.prompts);
    SitemapLimits limits;
    limits.unpacked = std::min(limits.unpacked, kMostUnpacked - m_unpacked);
    const SitemapFile file = readSitemap(bytes, limits);
    m_unpacked = std::min(m_unpacked + file.unpacked, kMostUnpacked);
    m_skipped += file.skipped;
    m_found = m_found || file.problem.empty() || !file.entries.empty();
    if (!file.problem.empty()) note(name + ": " + file.problem);
    for (const SitemapEntry& entry : file.entries) {
        if (file.isIndex) {
            want(entry.url, depth + 1);
        } else if (m_entries.size() < kMostUrls) {
            m_entries.push_back(entry);
        } else {
            note(name + ": Only the first " + std::to_string(kMostUrls) + " addresses were read.");
            break;
        }
    }
}

// Each file once, so that an index that names itself ends.
void SitemapImport::want(const std::string& address, int depth) {
    if (m_met.contains(address)) return;
    if (depth > kDeepestIndex)
        note(loggableUrl(address) + ": Too many indexes lead to it.");
    else if (m_met.size() >= kMostFiles)
        note("Only the first " + std::to_string(kMostFiles) + " files were read.");
    else
        m_wanted.push_back({*m_met.insert(address).first, depth});
}

void SitemapImport::fetchNext() {
    const bool enough = m_unpacked >= kMostUnpacked || m_entries.size() >= kMostUrls;
    if (enough && !m_wanted.empty()) {
        note("Its other files were not read, as it is too large.");
        m_wanted.clear();
    }
    if (m_wanted.empty()) {
        finish(false);
        return;
    }
    m_services.prompts.status("Connecting to " + loggableUrl(m_wanted.front().address) + " ...");
    m_fetcher.fetch(kPurpose, m_wanted.front().address);
}

void SitemapImport::takeReply(const FetchReply& reply) {
    const Wanted wanted = m_wanted.front();
    m_wanted.pop_front();
    if (const std::string problem = fetchProblem(reply); !problem.empty()) note(problem);
    if (reply.isPage() && !reply.text.empty()) take(loggableUrl(wanted.address), reply.text, wanted.depth);
    fetchNext();
}

void SitemapImport::note(const std::string& problem) {
    if (m_problems++ == 0) m_problem = problem;
}

void SitemapImport::finish(bool cancelled) {
    m_wanted.clear();
    m_services.prompts.status({});
    if (m_problems > 1) m_problem += "\r\nOther problems: " + std::to_string(m_problems - 1);
    const bool found = m_found && !cancelled;
    if (m_fields != nullptr && !cancelled) merge(found, m_problem);
    m_fields = nullptr;
    Q_EMIT ended(found, cancelled ? std::string() : m_problem);
}

std::string SitemapImport::summary(const SitemapChange& change) const {
    std::string text = "Sitemap: " + change.counts(m_entries.size());
    if (m_skipped > 0) text += " Left out: " + std::to_string(m_skipped) + ", no web address or too long.";
    return text;
}

void SitemapImport::merge(bool found, const std::string& problem) {
    std::string notice;
    if (found) {
        const SitemapChange change = mergeSitemap(m_entries, {}, m_fields->lsvSiteURLs, m_fields->sitemap);
        notice = summary(change);
        m_services.prompts.notice(notice);
    }
    if (problem.empty()) return;
    m_services.prompts.message(notice.empty() ? problem : problem + "\r\n\r\n" + notice, kTitle,
                               Icon::Information);
}

}  // namespace relay
