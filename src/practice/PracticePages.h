// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/EngineForms.h"
#include "practice/PracticeReply.h"
#include "practice/PracticeUpdate.h"
#include "practice/ReceivedLog.h"

#include <optional>
#include <string>
#include <string_view>

namespace relay {

// The data of the pages.
struct PracticeSite final {
    std::string address;  // "http://127.0.0.1:PORT"
    ReceivedLog received;
    EngineForms forms;
    PracticeUpdate update;
};

// One kind of page: the reply to its own requests, nullopt for any other.
using PracticePage = std::optional<PracticeReply> (*)(const PracticeRequest& request, PracticeSite& site);

// "/" and "/received.json": what was received. Refused unless the Host is this machine, so that a web site
// whose name points to 127.0.0.1 cannot read it.
std::optional<PracticeReply> receivedPage(const PracticeRequest& request, PracticeSite& site);
// "/engines/SLUG/" and "/engines/SLUG/add": an engine's home page and its form.
std::optional<PracticeReply> enginePage(const PracticeRequest& request, PracticeSite& site);
// Paths whose last word names an outcome; submissions to them are stored.
std::optional<PracticeReply> outcomePage(const PracticeRequest& request, PracticeSite& site);
// "/enginedata/FILE" and "/news/news.dat": the files of the update, or the faults set for them on the page
// "/enginedata/".
std::optional<PracticeReply> updatePage(const PracticeRequest& request, PracticeSite& site);
// "/site/": a small web site, with a page of links of every shape.
std::optional<PracticeReply> sitePage(const PracticeRequest& request, PracticeSite& site);

// "/site/sitemap.xml" and the other sitemaps of the site: an index, one packed with gzip, and bombs.
std::optional<PracticeReply> sitemapPage(const PracticeRequest& request, PracticeSite& site);
// The hosts "yahoo.localhost" and "dmoz.localhost": outside directories, with a tree of categories three
// levels deep and their links for adding a site.
std::optional<PracticeReply> directoryPage(const PracticeRequest& request, PracticeSite& site);
// "/engines/SLUG/tree/...": the categories of an engine that is a directory.
std::optional<PracticeReply> treePage(const PracticeRequest& request, PracticeSite& site);
// "/search/": the search engines; "/search/WORD?q=PHRASE" is a page of results.
std::optional<PracticeReply> searchPage(const PracticeRequest& request, PracticeSite& site);
// "/words/find" and "/words/NAME.html": the search engine of the keyword builder, and the pages it finds.
std::optional<PracticeReply> wordPage(const PracticeRequest& request, PracticeSite& site);

// "/pages/": pages for the optimizer, each with something else to find.
std::optional<PracticeReply> optimizerPage(const PracticeRequest& request, PracticeSite& site);

// The reply to a path whose last word, after `folder`, names an outcome; nullopt for any other word.
std::optional<PracticeReply> outcome(std::string_view word, std::string_view folder, std::string_view path);
// True for a Host of this machine, so that a web site whose name points to 127.0.0.1 gets nothing.
bool isOwnHost(std::string_view host) noexcept;

// Tries every kind of page in turn; 404 if none matches.
PracticeReply answer(const PracticeRequest& request, PracticeSite& site);

// "meta/NAME.html" of the site: pages with meta tags of every shape; nullopt for any other name.
std::optional<PracticeReply> metaTagPage(std::string_view name);

std::string escapeHtml(std::string_view text);  // the five characters; bytes that are not UTF-8 as \xNN
// A whole page of the practice web around its content, which must be HTML.
std::string htmlPage(std::string_view title, std::string_view content);
// The word between "/engines/" and the next slash; empty on any other path.
std::string_view engineOf(std::string_view path) noexcept;

}  // namespace relay
