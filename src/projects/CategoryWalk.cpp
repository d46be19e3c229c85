// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/CategoryWalk.h"

#include "catalogue/EngineLists.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "core/clsPreference.h"
#include "projects/WebsiteFields.h"
#include "transport/frmHTTP.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "GetCustomCategory";
constexpr std::string_view kUp = "<< ...";

std::string withSlash(std::string text) {
    if (!text.ends_with('/')) text += '/';
    return text;
}

void addRow(Rows& rows, std::string_view text, std::string tag) {
    Row row;
    row.text = text;
    row.tag = std::move(tag);
    rows.add(row);
}

}  // namespace

CategoryWalk::CategoryWalk(WebsiteFields& fields, EngineLists& lists, frmHTTP& fetcher,
                           const Services& services, Source source)
    : m_fields(fields),
      m_lists(lists),
      m_fetcher(fetcher),
      m_services(services),
      m_source(std::move(source)) {
    m_fetcher.setConsumer(kPurpose, {[this](const FetchReply& reply) { takeReply(reply); },
                                     [this](const FetchReply& reply) { fail(fetchProblem(reply)); },
                                     [this] { fail("Cancelled"); }});
}

CategoryWalk::~CategoryWalk() {
    m_fetcher.removeConsumer(kPurpose);
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

std::string CategoryWalk::engineName() const {
    const auto row = static_cast<std::size_t>(m_fields.cboCustomEngines);
    return m_fields.cboCustomEngines >= 0 && row < m_lists.cboCustomEngines.size()
               ? m_lists.cboCustomEngines[row]
               : std::string();
}

std::string CategoryWalk::spaceID() const {
    const auto place = static_cast<std::size_t>(m_index);
    return m_index >= 0 && place < m_lists.myCustomEngine.size() ? m_lists.myCustomEngine[place].SpaceID
                                                                 : std::string();
}

void CategoryWalk::setReady(std::string words, bool standsOut) {
    m_ready = std::move(words);
    m_readyStandsOut = standsOut;
}

void CategoryWalk::chooseEngine(int row) {
    if (row < 0 || static_cast<std::size_t>(row) >= m_lists.cboCustomEngines.size()) return;
    leave();
    m_fields.cboCustomEngines = row;
    m_fields.lsvCustomSubCategory.clear();
    const std::string name = engineName();
    setCustomEngCategory(name);
    m_index = static_cast<std::int16_t>(row);
    // What was chosen since the file was read comes before what it holds.
    const std::string& chosen = m_lists.myCustomEngine.at(static_cast<std::size_t>(row)).Data;
    m_fields.txtCustomCategory = chosen.empty() ? m_source.storedPath(name) : chosen;
    Q_EMIT changed();
}

void CategoryWalk::leave() {
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
    m_index = -1;
    m_address.clear();
    m_fetchedPath.clear();
    m_currentPath.clear();
    m_addPageNext = false;
    setReady({}, false);
}

void CategoryWalk::setCustomEngCategory(std::string_view name) {
    trap(m_services.prompts, "setCustomEngCategory_Error: ", [&] {
        const clsEngines* const engine = m_lists.engines.find(name);
        const CategoryMenu menu = readCategoryMenu(engine == nullptr ? "" : engine->CategoryData(),
                                                   m_services.preference.refusesAdultSites());
        const RowsBatch batch(m_fields.lsvCustomMainCategory);
        m_fields.lsvCustomMainCategory.clear();
        for (const CategoryLink& entry : menu.rows)
            addRow(m_fields.lsvCustomMainCategory, entry.label, entry.target);
        m_address = menu.url;
    });
}

void CategoryWalk::chooseMainCategory(int row) {
    if (row < 0 || row >= m_fields.lsvCustomMainCategory.count()) return;
    const RowView category = m_fields.lsvCustomMainCategory.at(row);
    m_currentPath = category.tag;
    m_fields.txtCustomCategory = category.text;
    Q_EMIT changed();
}

// A request that runs is not disturbed.
bool CategoryWalk::isBusy() {
    if (m_fetcher.isRunning()) m_services.prompts.beep();
    return m_fetcher.isRunning();
}

void CategoryWalk::openMainCategory(int row) {
    Rows& rows = m_fields.lsvCustomMainCategory;
    if (row < 0 || row >= rows.count() || isBusy()) return;
    // The keyboard opens a row without a click.
    chooseMainCategory(row);
    m_addPageNext = false;
    if (!m_currentPath.ends_with('/')) rows.setTag(row, std::string(rows.at(row).tag) + '/');
    retrieveSubCategory(std::string(rows.at(row).tag));
}

void CategoryWalk::retrieveSubCategory(std::string link) {
    const std::string base = withSlash(m_address);
    m_fields.lsvCustomSubCategory.clear();
    addRow(m_fields.lsvCustomSubCategory, kUp, getString(base, UrlPart::Last) + '/');
    if (link.starts_with('/')) {
        m_address = "http://" + GetURLHost(base) + link;
        if (equalsNoCase(engineName(), "Yahoo")) {
            // The links of this directory are its paths.
            std::replace(link.begin(), link.end(), '_', ' ');
            m_fields.txtCustomCategory = link.substr(1);
        }
    } else {
        m_address = base + link;
    }
    m_fetchedPath = m_fields.txtCustomCategory;
    fetchPage("Connecting to : " + m_address + " ....");
}

void CategoryWalk::fetchPage(const std::string& words) {
    m_services.prompts.status(words);
    setReady({}, false);
    Q_EMIT changed();
    m_fetcher.fetch(kPurpose, m_address);
}

void CategoryWalk::openSubCategory(int row) {
    const Rows& rows = m_fields.lsvCustomSubCategory;
    if (row < 0 || row >= rows.count() || isBusy()) return;
    m_addPageNext = false;
    const std::string text(rows.at(row).text);
    std::string link(rows.at(row).tag);
    m_services.prompts.status(link);
    if (text.find("<<") != npos) {
        m_fetchedPath = getString(m_fetchedPath, UrlPart::Up);
        m_fields.txtCustomCategory = m_fetchedPath;
        m_address = getString(m_address, UrlPart::Up) + '/';
        m_fields.lsvCustomSubCategory.clear();
        addRow(m_fields.lsvCustomSubCategory, kUp, getString(m_address, UrlPart::Last) + '/');
        fetchPage("Connecting to : " + m_address + " ....");
        return;
    }
    // The directory marks cross-links with "@".
    const std::string path = replaceAll(m_fetchedPath, "@", "");
    m_fields.txtCustomCategory = (m_fetchedPath.ends_with('/') ? path : path + '/') + text;
    saveCustomCategory(m_fields.txtCustomCategory);
    retrieveSubCategory(std::move(link));
}

void CategoryWalk::saveCustomCategory(const std::string& path) {
    const std::string places = "\r\nCustomEngineIndex: " + std::to_string(m_index) +
                               "\r\nUBound(myCustomEngine):" + std::to_string(m_lists.myCustomEngine.size());
    const auto failure = failureOf([&] {
        const auto place = static_cast<std::size_t>(m_index);
        if (m_index >= 0 && place < m_lists.myCustomEngine.size()) m_lists.myCustomEngine[place].Data = path;
    });
    if (failure)
        m_services.prompts.message("saveCustomCategory_Error: " + *failure + places, "saveCustomCategory",
                                   Icon::Critical);
}

void CategoryWalk::takeReply(const FetchReply& reply) {
    const std::string problem = fetchProblem(reply);
    if (!reply.isPage()) {
        fail(problem);
        return;
    }
    getCustomCateogry(reply.text);
    if (m_fetcher.isRunning(kPurpose)) return;
    m_services.prompts.status(problem);
    Q_EMIT ended(problem);
}

void CategoryWalk::fail(const std::string& problem) {
    m_services.prompts.status(problem);
    Q_EMIT changed();
    Q_EMIT ended(problem);
}

void CategoryWalk::getCustomCateogry(std::string_view html) {
    if (m_addPageNext) {
        const std::optional<std::string> id = getDmozID(html);
        const auto place = static_cast<std::size_t>(m_index);
        if (id && m_index >= 0 && place < m_lists.myCustomEngine.size())
            m_lists.myCustomEngine[place].SpaceID = *id;
        if (id && !id->empty())
            setReady("Ready to submit", false);
        else
            setReady("No ready to submit, please continue to select", true);
        Q_EMIT changed();
        return;
    }
    std::string nextUrl;
    setCustomEngineSubCategory(html, nextUrl);
    Q_EMIT changed();
    if (!containsNoCase(nextUrl, "dmoz")) return;
    m_addPageNext = true;
    m_services.prompts.status("Connecting to : " + nextUrl + " ...");
    m_fetcher.fetch(kPurpose, nextUrl);
}

bool CategoryWalk::setCustomEngineSubCategory(std::string_view html, std::string& nextUrl) {
    return trap(m_services.prompts, "setCustomEngineSubCategory_Error: ", [&] {
        setReady("Please continue to select", true);
        const std::string engine = engineName();
        const DirectoryHosts hosts = m_source.hosts();
        CategoryPage page =
            readCategoryPage(html, {engine, m_currentPath, hosts, m_services.preference.refusesAdultSites()});
        const auto place = static_cast<std::size_t>(m_index);
        if (page.spaceID && m_index >= 0 && place < m_lists.myCustomEngine.size())
            m_lists.myCustomEngine[place].SpaceID = *page.spaceID;
        const RowsBatch batch(m_fields.lsvCustomSubCategory);
        for (CategoryLink& link : page.rows)
            addRow(m_fields.lsvCustomSubCategory, link.label, std::move(link.target));
        nextUrl = std::move(page.nextUrl);
    });
}

}  // namespace relay
