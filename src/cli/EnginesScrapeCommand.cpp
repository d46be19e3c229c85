// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EnginesScrapeCommand.h"

#include "catalogue/FormScraper.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageWait.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/JsonLine.h"
#include "core/Url.h"
#include "transport/frmHTTP.h"

#include <ostream>

namespace relay {

bool PageArgument::read() {
    if (localPath(m_name, TypedIn::CommandLine)) {
        m_html = readFile(m_name);
        return true;
    }
    frmHTTP fetcher(m_context.home().services);
    FetchReply page;
    const auto keep = [&page](const FetchReply& reply) { page = reply; };
    fetcher.setConsumer("EngineBuilder", {keep, keep, {}});
    fetcher.fetch("EngineBuilder", m_name);
    if (!waitForPage(m_context, fetcher)) return false;
    const std::string problem = fetchProblem(page);
    if (!page.isPage()) throw Failure(problem);
    if (!problem.empty()) m_context.warn(problem);
    m_whole = problem.empty();
    m_html = std::move(page.text);
    return true;
}

EnginesScrapeCommand::EnginesScrapeCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "scrape", "Show what the engine builder makes of a web form",
              "engines scrape add.html\nengines scrape http://harbour.example/add --json\n"
              "engines scrape add.html --source") {
    app()
        .add_option("FILE-or-URL", m_page,
                    "A page on the web begins with http:// or https://, all else is a file")
        ->required()
        ->type_name("");
    app().add_flag("--source", m_source, "Show the form source that was taken from the page");
}

int EnginesScrapeCommand::execute() {
    PageArgument page(context(), m_page);
    if (!page.read()) return kStopped;
    const std::string source = extractFormSource(page.html());
    if (m_source)
        showSource(source);
    else
        showForm(source);
    return page.isWhole() ? kSucceeded : kCouldNotRun;
}

void EnginesScrapeCommand::showSource(const std::string& source) {
    std::ostream& out = context().out();
    if (context().json)
        JsonLine().add("source", source).write(out);
    else if (context().console().outIsTerminal)
        out << terminalLines(source);
    else
        out << source;
}

void EnginesScrapeCommand::showForm(const std::string& source) {
    ScrapedForm form = readForm(source);
    if (!form.found) form.method = kUsualMethod;
    const std::string query = buildQuery(form.fields);
    std::ostream& out = context().out();
    if (context().json) {
        JsonLine().add("action", form.action).add("method", form.method).add("query", query).write(out);
        for (const FormField& field : form.fields)
            JsonLine()
                .add("field", field.name)
                .add("value", field.value)
                .add("why", reasonName(field.why))
                .write(out);
        return;
    }
    Table head({});
    head.add({"Action", form.action});
    head.add({"Method", form.method});
    head.add({"Query", query});
    head.write(out, false);
    if (form.fields.empty()) {
        context().note(form.found ? "The form has no named field." : "The page has no form.");
        return;
    }
    out << '\n';
    Table table({"Field Name", "Variable/Value", "Why"});
    for (const FormField& field : form.fields) table.add({field.name, field.value, reasonName(field.why)});
    table.write(out, context().colours());
}

}  // namespace relay
