// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WebsiteImportCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageWait.h"
#include "cli/Table.h"
#include "cli/WebsiteEditing.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/JsonLine.h"
#include "core/ScreenText.h"
#include "core/Url.h"
#include "projects/SitemapImport.h"
#include "projects/WebFormData.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"
#include "transport/frmHTTP.h"

#include <ostream>

namespace relay {

WebsiteImportFormCommand::WebsiteImportFormCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "import-form",
              "Fill a website file, which is created if missing, from web form data",
              "website import-form shop.kws order.txt") {
    addFileOption(app(), m_file);
    app()
        .add_option("DATAFILE", m_dataFile, "Lines \"name: value\", as an order form on the web sends them")
        ->required()
        ->type_name("");
}

// As in the window: a category that the catalogue does not have is replaced by one that it has.
void WebsiteImportFormCommand::selectCategory(WebsiteFields& fields, std::string_view main,
                                              std::string_view sub) {
    fields.mainCategory = main;
    fields.category = sub;
    Categories& categories = context().home().catalogue.categories;
    if (categories.lstMainCategory.empty() && !categories.loadCategory()) return;
    categories.setSelectedCategory(main, sub);
    fields.mainCategory.clear();
    fields.category.clear();
    categories.getSelectedCategory(fields.mainCategory, fields.category);
}

int WebsiteImportFormCommand::execute() {
    const std::string text = readWebFormData(m_dataFile);
    const FolderLock lock(m_file);
    const bool isNew = !fileExists(m_file);
    IniFile file = IniFile::load(m_file);
    WebsiteFields fields;
    fields.clear();
    if (isNew) writeWebsite(file, fields, {});
    // Only what the file names is written, so all else keeps its bytes.
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) fields.*key.field = file.value(kWebsiteSection, key.name);
    std::vector<std::string> before;
    for (const WebsiteKey& key : kWebsiteKeys)
        before.push_back(key.field ? fields.*key.field : std::string());

    const int applied = applyWebFormData(text, fields, [&](std::string_view main, std::string_view sub) {
        selectCategory(fields, main, sub);
    });
    std::size_t place = 0;
    for (const WebsiteKey& key : kWebsiteKeys) {
        const std::string& old = before[place++];
        if (!key.field || fields.*key.field == old) continue;
        noteLosses(context(), {std::string(key.name), fields.*key.field});
        file.setValue(kWebsiteSection, key.name, fields.*key.field);
    }
    for (int row = 0; row < fields.lsvSiteURLs.count(); ++row)
        noteLongUrl(context(), std::string(fields.lsvSiteURLs.at(row).text));
    if (fields.lsvSiteURLs.count() > kMostUrls)
        throw Failure(m_dataFile + ": a website file has at most " + std::to_string(kMostUrls) + " URLs.");
    writeUrls(file, fields.lsvSiteURLs);
    file.save(m_file, Readable::OwnerOnly);
    context().note(webFormDataNotice(m_dataFile, applied));
    return applied == 0 ? kSomeFailed : kSucceeded;
}

WebsiteImportSitemapCommand::WebsiteImportSitemapCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "import-sitemap", "Add the addresses of a sitemap to a website",
              "website import-sitemap shop.kws http://shop.example/sitemap.xml\n"
              "website import-sitemap shop.kws sitemap.xml.gz --since 2026-10-01 --json") {
    addFileOption(app(), m_file);
    app()
        .add_option("SITEMAP-or-URL", m_sitemap,
                    "XML, or XML packed with gzip. A sitemap on the web begins with http:// or https://, all "
                    "else is a file")
        ->required()
        ->type_name("");
    app()
        .add_option("--since", m_since, "Leave out what last changed before this day (as in 2026-10-01)")
        ->type_name("DATE");
}

int WebsiteImportSitemapCommand::execute() {
    if (app().count("--since") > 0) {
        m_day = QDate::fromString(toScreen(m_since), Qt::ISODate);
        if (!m_day.isValid())
            throw UsageError("--since: \"" + m_since + "\" is no day. Write it as in 2026-10-01.");
    }
    requireFile(m_file);
    const Services& services = context().home().services;
    frmHTTP fetcher(services);
    SitemapImport import(fetcher, services);
    bool found = false;
    std::string problem;
    QObject::connect(&import, &SitemapImport::ended, &import, [&](bool any, const std::string& words) {
        found = any;
        problem = words;
    });
    if (const auto file = localPath(m_sitemap, TypedIn::CommandLine))
        import.startFile(*file);
    else
        import.start(m_sitemap);
    if (!waitForPage(context(), fetcher)) return kStopped;
    if (!problem.empty()) context().warn(problem);
    if (!found) return kCouldNotRun;
    const SitemapChange change = merge(import.entries());
    show(change);
    context().note(import.summary(change));
    return problem.empty() ? kSucceeded : kSomeFailed;
}

// Under one lock, so that two programs lose nothing.
SitemapChange WebsiteImportSitemapCommand::merge(const std::vector<SitemapEntry>& entries) {
    const FolderLock lock(m_file);
    IniFile file = IniFile::load(m_file);
    Rows urls;
    SitemapDates dates;
    readLists(m_file, [&] { readUrls(file, urls); });
    readSitemap(file, dates);
    SitemapChange change = mergeSitemap(entries, m_day, urls, dates);
    writeUrls(file, urls);
    writeSitemap(file, dates);
    file.save(m_file, Readable::OwnerOnly);
    return change;
}

void WebsiteImportSitemapCommand::show(const SitemapChange& change) {
    std::ostream& out = context().out();
    Table table({"State", "Last change", "URL"});
    for (const SitemapChange::Marked& one : change.marked) {
        const char* const state = one.isNew ? "new" : "changed";
        if (context().json)
            JsonLine()
                .add("url", one.entry.url)
                .add("lastmod", one.entry.lastmod)
                .add("state", state)
                .write(out);
        else
            table.add({state, one.entry.lastmod, one.entry.url});
    }
    if (!table.empty()) table.write(out, context().colours());
}

}  // namespace relay
