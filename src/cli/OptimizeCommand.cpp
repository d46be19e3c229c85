// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OptimizeCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageSource.h"
#include "cli/StopSignal.h"
#include "cli/TerminalText.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/JsonLine.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "pagetools/FindingFiles.h"
#include "pagetools/Optimizer.h"
#include "pagetools/OptimizerReport.h"

#include <ostream>

namespace relay {

OptimizeCommand::OptimizeCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "optimize", "Write reports on pages and list what should be better",
              "--home try optimize index.html\n"
              "--home try optimize http://shop.example/ --fail-on error --sarif findings.sarif") {
    app()
        .add_option("FILE-or-URL", m_names,
                    "Pages; on the web they begin with http:// or https://, all else are files")
        ->required()
        ->type_name("");
    app()
        .add_option("--fail-on", m_failOn, "End with 1 when a finding is at least that severe")
        ->type_name("error|warning|notice")
        ->check(CLI::Validator(
            [](std::string& text) {
                const auto severity = severityOf(text);
                return severity && *severity != Severity::Off
                           ? std::string()
                           : "\"" + text + "\" is none of error, warning and notice";
            },
            ""));
    app()
        .add_option("--sarif", m_sarif, "Save the findings of all pages for tools that read SARIF")
        ->type_name("FILE");
}

int OptimizeCommand::execute() {
    if (app().count("--sarif") > 0 && m_sarif.empty()) throw UsageError("--sarif: is empty");
    for (const RuleProblem& problem : loadRules(context().home().services.paths, m_settings))
        context().warn(terminalText(problem.text));
    bool failed = false;
    StopSignal& stop = context().console().stop;
    stop.watch();
    for (const std::string& name : m_names) {
        if (stop.poll()) return kStopped;
        SourcePage page;
        if (const auto failure = failureOf([&] { page = readSourcePage(context(), name, "Optimizer"); }))
            page.problem = *failure;
        if (page.stopped) return kStopped;
        if (page.problem.empty() && page.text.empty())
            page.problem = terminalText(name) +
                           ": No document found from HTML file, please check your HTML file and try again.";
        if (!page.problem.empty()) {
            context().warn(page.problem);
            failed = true;
        }
        if (!page.isPage || page.text.empty()) continue;
        if (const auto failure = failureOf([&] { optimize(name, page.text); })) {
            context().warn(terminalText(name) + ": " + *failure);
            failed = true;
        }
    }
    if (!m_sarif.empty()) writeFile(m_sarif, findingsAsSarif(m_pages));
    if (failed) return kCouldNotRun;
    return m_met ? kSomeFailed : kSucceeded;
}

void OptimizeCommand::optimize(const std::string& name, std::string_view html) {
    const bool local = localPath(name, TypedIn::CommandLine).has_value();
    const std::string address = local ? absolutePath(name) : name;
    const std::string path = writeOptimizerReport(context().home().services, html, address).path;
    const auto [known, added] = m_reports.emplace(path, address);
    if (!added && known->second != address) {
        context().note(terminalText(path) + ": replaces the report on " + terminalText(known->second));
        known->second = address;
    }
    if (context().json)
        JsonLine().add("event", "report").add("address", address).add("path", path).write(context().out());
    else
        context().out() << "report " << terminalText(path) << '\n';
    m_pages.push_back({address, checkPage(html, address, m_settings)});
    for (const PageFinding& finding : m_pages.back().findings) show(address, finding);
}

void OptimizeCommand::show(const std::string& address, const PageFinding& finding) {
    if (!m_failOn.empty() && finding.severity >= *severityOf(m_failOn)) m_met = true;
    if (context().json) {
        JsonLine()
            .add("event", "finding")
            .add("address", address)
            .add("severity", severityName(finding.severity))
            .add("rule", finding.rule)
            .add("line", static_cast<std::int64_t>(finding.line))
            .add("found", finding.found)
            .write(context().out());
        return;
    }
    context().out() << terminalText(address) << ':' << finding.line << ": " << severityName(finding.severity)
                    << ' ' << finding.rule << ": " << terminalText(finding.found) << '\n';
}

}  // namespace relay
