// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/Sitemap.h"

#include <QObject>

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace relay {

class frmHTTP;
struct FetchReply;
struct Services;
struct WebsiteFields;

// Collects the addresses of a sitemap, and of the sitemaps that an index names, one file after the other.
class SitemapImport final : public QObject {
    Q_OBJECT
  public:
    static constexpr std::size_t kMostFiles = 500;
    static constexpr int kDeepestIndex = 3;  // indexes inside one another
    static constexpr std::size_t kMostUnpacked = std::size_t{256} * 1024 * 1024;

    // Receives the fetcher's replies for its purpose as long as it lives; both arguments outlive it.
    SitemapImport(frmHTTP& fetcher, const Services& services);
    ~SitemapImport() override;  // cancels its request

    // The URL toolbar's "Sitemap": asks for the sitemap, imports it into the website, shows what came of it.
    // Beeps while the fetcher is in use. `fields` outlives the import, or cancel() is called first.
    void askAndImport(WebsiteFields& fields);

    // Reads the sitemap of a web address or a local file; ended() follows, perhaps before this returns.
    // False, with nothing done, while the fetcher is in use. Throws Failure for a file that cannot be read.
    bool start(const std::string& address);
    bool startFile(const std::string& file);
    void cancel();

    // What start() collected.
    const std::vector<SitemapEntry>& entries() const noexcept { return m_entries; }
    // What to say of it and of what came of it.
    std::string summary(const SitemapChange& change) const;

  Q_SIGNALS:
    // `found` if anything was read. `problem` says what was not read and why, or is empty.
    void ended(bool found, const std::string& problem);

  private:
    struct Wanted final {
        std::string address;
        int depth = 0;  // how many indexes led to it
    };

    void begin();
    void take(const std::string& name, std::string_view bytes, int depth);
    void want(const std::string& address, int depth);
    void takeReply(const FetchReply& reply);
    void fetchNext();
    void note(const std::string& problem);
    void finish(bool cancelled);
    void merge(bool found, const std::string& problem);

    frmHTTP& m_fetcher;
    const Services& m_services;
    WebsiteFields* m_fields = nullptr;  // while the window waits
    std::deque<Wanted> m_wanted;
    std::unordered_set<std::string> m_met;  // addresses of files
    std::vector<SitemapEntry> m_entries;
    std::size_t m_skipped = 0;
    std::size_t m_unpacked = 0;
    bool m_found = false;
    std::string m_problem;
    std::size_t m_problems = 0;
};

}  // namespace relay
