// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WebsiteWebCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageWait.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"
#include "cli/WebsiteEditing.h"
#include "core/Failure.h"
#include "core/JsonLine.h"
#include "core/Url.h"
#include "projects/SiteDetails.h"
#include "projects/UrlList.h"
#include "projects/UrlsFromPage.h"
#include "projects/WebsiteFields.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"
#include "transport/frmHTTP.h"

#include <optional>
#include <ostream>

namespace relay {

namespace {

void requireWebAddress(const std::string& text) {
    if (localPath(text, TypedIn::CommandLine))
        throw UsageError("\"" + text +
                         "\" is not a web address: it begins with neither http:// nor https://.");
}

}  // namespace

WebsiteDetailsCommand::WebsiteDetailsCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "details", "Set title, keywords and description from a live page",
              "website details shop.kws\n"
              "website details shop.kws --url http://shop.example/about.html --print") {
    addFileOption(app(), m_file);
    app().add_option("--url", m_url, "The page (default: the website's first URL)")->type_name("URL");
    app().add_flag("--print", m_print, "Only show what the page has");
}

std::string WebsiteDetailsCommand::firstUrl() const {
    Rows urls;
    loadUrlList(m_file, urls);
    if (urls.empty()) throw Failure(m_file + ": it has no URL. Name a page with --url.");
    return std::string(urls.at(0).text);
}

int WebsiteDetailsCommand::execute() {
    if (app().count("--url") > 0) requireWebAddress(m_url);
    requireFile(m_file);
    const std::string url = app().count("--url") > 0 ? m_url : firstUrl();
    WebsiteFields fields;
    frmHTTP fetcher(context().home().services);
    SiteDetails details(fields, fetcher, context().home().services);
    std::optional<std::string> problem;
    QObject::connect(&details, &SiteDetails::ended, &details, [&](bool filled, const std::string& words) {
        if (filled) problem = words;
    });
    details.fetchPage(url);
    if (!waitForPage(context(), fetcher)) return kStopped;
    if (!problem) return kCouldNotRun;
    if (!problem->empty()) context().warn(*problem);

    std::vector<KeyValue> values;
    for (const char* const key : {"Title", "Keyword", "Description"})
        values.push_back({key, fields.*findWebsiteKey(key)->field});
    if (m_print) {
        show(values);
    } else if (problem->empty()) {
        for (const KeyValue& entry : values) noteLosses(context(), entry);
        setKeys(m_file, values);
    }
    return problem->empty() ? kSucceeded : kCouldNotRun;
}

void WebsiteDetailsCommand::show(const std::vector<KeyValue>& values) {
    Table table({});
    JsonLine line;
    for (const KeyValue& entry : values) {
        table.add({entry.key, entry.value});
        line.add(entry.key, entry.value);
    }
    if (context().json)
        line.write(context().out());
    else
        table.write(context().out(), false);
}

WebsiteUrlsFromWebCommand::WebsiteUrlsFromWebCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "urls-from-web", "Add the links of a live page to a website",
              "website urls-from-web shop.kws http://shop.example/links.html\n"
              "website urls-from-web shop.kws http://shop.example/ --skip .css --skip /private/ --print") {
    addFileOption(app(), m_file);
    app().add_option("PAGE", m_page, "The page's URL; it is requested by http")->required()->type_name("");
    app()
        .add_option("--skip", m_filters, "Leave out URLs that contain this text, in any case")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    app().add_flag("--print", m_print, "Only show the URLs, one per line");
}

int WebsiteUrlsFromWebCommand::execute() {
    requireWebAddress(m_page);
    requireFile(m_file);
    Rows found;
    frmHTTP fetcher(context().home().services);
    UrlsFromPage page(found, fetcher, context().prompts());
    page.lstKeywords = m_filters;
    bool collected = false;
    bool whole = true;
    QObject::connect(&page, &UrlsFromPage::ended, &page, [&](bool got, const std::string& problem) {
        collected = got;
        whole = problem.empty();
    });
    page.fetchPage(m_page);
    if (!waitForPage(context(), fetcher)) return kStopped;
    if (!collected) return kCouldNotRun;

    int added = 0;
    const auto forEach = [&found](const auto& operation) {
        for (int row = 0; row < found.count(); ++row) operation(std::string(found.at(row).text));
    };
    if (m_print) {
        std::ostream& out = context().out();
        forEach([&](const std::string& url) {
            if (context().json)
                JsonLine().add("url", url).write(out);
            else
                out << terminalText(url) << '\n';
        });
    } else {
        forEach([this](const std::string& url) { noteLongUrl(context(), url); });
        changeUrls(m_file, [&](Rows& urls) {
            const RowsBatch batch(urls);
            forEach([&](const std::string& url) { added += addNewItem(urls, url) ? 1 : 0; });
        });
        noteAdded(context(), added);
    }
    return whole ? kSucceeded : kSomeFailed;
}

}  // namespace relay
