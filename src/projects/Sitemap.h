// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"
#include "core/Rows.h"

#include <QDate>

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

// An address of a sitemap.
struct SitemapEntry final {
    std::string url;
    std::string lastmod;  // as written, or empty
};

// One sitemap file.
struct SitemapFile final {
    bool isIndex = false;  // the entries are sitemaps
    std::vector<SitemapEntry> entries;
    std::size_t skipped = 0;   // addresses that are no web address, or too long for a website file
    std::size_t unpacked = 0;  // bytes of XML
    std::string problem;       // why it was not read to its end; else empty
};

// What may be read of one file.
struct SitemapLimits final {
    std::size_t unpacked = std::size_t{64} * 1024 * 1024;  // bytes of XML
    std::size_t entries = 50'000;
};
// Reads XML, which may be compressed with gzip, piece by piece. A file with a document type is refused. What
// was read before a problem is kept.
SitemapFile readSitemap(std::string_view bytes, const SitemapLimits& limits = {});

// What a website knows of its sitemap: the addresses of earlier imports and when they had changed last. An
// address counts once, in any case, as in the list of URLs.
class SitemapDates final {
  public:
    const std::vector<SitemapEntry>& entries() const noexcept { return m_entries; }
    // nullptr for an unknown address.
    const std::string* lastmodOf(std::string_view url) const;
    void set(const SitemapEntry& entry);
    void clear();

  private:
    std::vector<SitemapEntry> m_entries;
    std::unordered_map<std::string, std::size_t, KeyHash, KeyEqual> m_places;
};

// What an import found.
struct SitemapChange final {
    struct Marked final {
        SitemapEntry entry;
        bool isNew = false;  // else changed
    };
    std::vector<Marked> marked;
    std::size_t added = 0;    // of the new ones, to the list; the others were in it already
    std::size_t dropped = 0;  // older than wanted
    std::size_t refused = 0;  // for which the list has no room

    // "3 addresses, 1 new, 1 changed."
    std::string counts(std::size_t addresses) const;
};
// Adds the new addresses to the list, highlights the new and changed ones and no others, and notes their
// dates. With a valid `since`, leaves out what last changed before that day.
SitemapChange mergeSitemap(const std::vector<SitemapEntry>& entries, const QDate& since, Rows& urls,
                           SitemapDates& dates);

// True if the date of a lastmod lies before the day; a year or a month counts to its end, and a text that is
// no date does not count as older.
bool isOlder(std::string_view lastmod, const QDate& day);

}  // namespace relay
