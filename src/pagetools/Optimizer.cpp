// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/Optimizer.h"

#include "core/Clock.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/InputHistory.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "pagetools/FindingFiles.h"
#include "pagetools/FindingRules.h"
#include "pagetools/OptimizerReport.h"
#include "pagetools/PageFiles.h"

namespace relay {

namespace {

constexpr std::string_view kTitle = "Optimizer";
constexpr std::string_view kSection = "Optimizer";
constexpr int kHistory = 30;

std::string historyFile(const Services& services) {
    return services.paths.inWindows("apikrv.dmc");
}

}  // namespace

std::string writeOptimizerReport(const Services& services, std::string_view html, std::string_view address) {
    PageTexts page;
    readMetaTag(services, html, page);
    const std::string whole = optimizerAddress(address);
    const std::string text = buildOptimizerReport(
        {html, page, whole, services.preference, services.clock.now(), QLocale::system()});
    const std::string folder = services.paths.inApp("Optimizer");
    makeFolder(folder);
    std::string name = "opimtizer.html";
    (void)failureOf([&] { name = optimizerReportName(whole); });
    std::string path = folder + "/" + name;
    writeFile(path, text + "\r\n");
    return path;
}

Optimizer::Optimizer(const Services& services, Connect connect, Disconnect disconnect, QObject* parent)
    : QObject(parent),
      m_services(services),
      m_connect(std::move(connect)),
      m_disconnect(std::move(disconnect)) {}

void Optimizer::loadHistory() {
    m_history = LoadInputHistory(historyFile(m_services), kSection, kHistory);
}

void Optimizer::saveHistory() const {
    trap(m_services.prompts,
         "SaveInputHistory_Error: ", [&] { SaveInputHistory(historyFile(m_services), kSection, m_history); });
}

void Optimizer::setStatus(std::string text) {
    m_status = std::move(text);
    Q_EMIT stateChanged();
}

void Optimizer::setFetching(bool fetching) {
    m_fetching = fetching;
    Q_EMIT stateChanged();
}

void Optimizer::cmdRenovator() {
    if (m_fetching) {
        setFetching(false);
        m_disconnect();
        return;
    }
    if (m_busy) return;
    if (cboSiteURL.empty()) {
        m_services.prompts.message(
            "Please enter your web site URL or a valid local HTML file you want to process and try again.",
            kTitle);
        return;
    }
    AddInputHistory(m_history, cboSiteURL);
    const auto file = localPath(cboSiteURL, TypedIn::Field);
    if (!file) {
        setStatus("Connecting to : " + cboSiteURL + " ....");
        // Before the request, which may fail at once.
        setFetching(true);
        if (m_connect(optimizerAddress(cboSiteURL))) return;
        m_fetching = false;
        setStatus("Another page is being retrieved. Please try again.");
    } else if (!fileExists(*file)) {
        m_services.prompts.message(
            "Invalid path or file name for your local HTML file, please open a valid HTML file and try "
            "again.",
            kTitle);
    } else {
        m_busy = true;
        Q_EMIT stateChanged();
        const auto html = getFileData(*file);
        m_busy = false;
        Q_EMIT stateChanged();
        if (html) Renovator(*html);
    }
}

void Optimizer::cmdFileLocation() {
    int filter = 1;
    const std::string file =
        ShowFileDialog(m_services.prompts, false,
                       "HTML Files (*.html;*.htm)|*.htm;*.html|Text Files (*.txt)|*.txt|All Files (*.*)|*.*",
                       {}, {}, filter);
    if (file.empty()) return;
    cboSiteURL = file;
    Q_EMIT stateChanged();
}

std::optional<std::string> Optimizer::getFileData(const std::string& path) const {
    std::string html;
    if (!trap(m_services.prompts, "getFileData_Error: ", [&] { html = readFile(path); })) return std::nullopt;
    return html;
}

void Optimizer::showPage(std::string_view html, const std::string& problem) {
    m_fetching = false;
    setStatus(problem);
    Renovator(html);
}

void Optimizer::cancelled() {
    m_fetching = false;
    setStatus({});
}

void Optimizer::Renovator(std::string_view html) {
    m_report.clear();
    m_source = html;
    m_address = optimizerAddress(cboSiteURL);
    if (html.empty()) {
        m_findings.clear();
        Q_EMIT findingsChanged();
        m_services.prompts.message(
            "No document found from HTML file, please check your HTML file and try again.", kTitle);
        Q_EMIT finished();
        return;
    }
    m_busy = true;
    const std::string problem = m_status;
    setStatus("Opening file : " + cboSiteURL);
    const bool written = trapAndLog(
        m_services, "Module: Optimizer\r\n",
        [&] {
            const BusyPointer busy(m_services.prompts);
            m_report = writeOptimizerReport(m_services, html, cboSiteURL);
        },
        "\r\nFile: " + m_address, "Optimizer Error");
    check(html);
    if (written) {
        m_services.prompts.beep();
        openOrTell(m_services.prompts, m_report, kTitle);
    }
    m_busy = false;
    // What is wrong with the page itself is still worth knowing.
    setStatus(!written ? std::string() : problem.empty() ? "Done" : problem);
    Q_EMIT finished();
}

void Optimizer::check(std::string_view html) {
    m_findings.clear();
    trap(m_services.prompts, "Module: Findings\r\n", [&] {
        const BusyPointer busy(m_services.prompts);
        RuleSettings settings;
        for (const RuleProblem& problem : loadRules(m_services.paths, settings))
            m_services.prompts.message(problem.text, "optimizer.rules", Icon::Information);
        m_findings = checkPage(html, m_address, settings);
    });
    Q_EMIT findingsChanged();
}

void Optimizer::saveFindings() {
    trap(m_services.prompts, "Module: SaveFindings\r\n", [&] {
        const std::string file = askWhereToSave(
            m_services.prompts, {"CSV files (*.csv)|*.csv|SARIF files (*.sarif)|*.sarif", "The file ",
                                 " already exists, do you want to replace it?", "Save Findings"});
        if (file.empty()) return;
        const std::vector<FindingsOfPage> pages = {{m_address, m_findings}};
        writeFile(file, endsWithNoCase(file, ".sarif") ? findingsAsSarif(pages) : findingsAsCsv(pages));
        m_services.prompts.notice("Saved " + file);
    });
}

}  // namespace relay
