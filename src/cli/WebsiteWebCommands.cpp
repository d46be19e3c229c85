// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WebsiteWebCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/JsonLine.h"
#include "cli/PageWait.h"
#include "cli/TerminalText.h"
#include "cli/WebsiteEditing.h"
#include "core/Url.h"
#include "projects/UrlList.h"
#include "projects/UrlsFromPage.h"
#include "transport/frmHTTP.h"

#include <ostream>

namespace relay {

namespace {

void requireWebAddress(const std::string& text) {
    if (localPath(text, TypedIn::CommandLine))
        throw UsageError("\"" + text +
                         "\" is not a web address: it begins with neither http:// nor https://.");
}

}  // namespace

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
