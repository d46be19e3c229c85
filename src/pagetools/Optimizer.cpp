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

#include <algorithm>
#include <array>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kTitle = "Optimizer";
constexpr std::string_view kSection = "Optimizer";
constexpr int kHistory = 30;

std::string historyFile(const Services& services) {
    return services.paths.inWindows("apikrv.dmc");
}

}  // namespace

OptimizerReportFile writeOptimizerReport(const Services& services, std::string_view html,
                                         std::string_view address) {
    PageTexts page;
    readMetaTag(services, html, page);
    const std::string whole = optimizerAddress(address);
    const OptimizerInput input{
        html, page, whole, services.preference, services.clock.now(), QLocale::system()};
    const std::string folder = services.paths.inApp("Optimizer");
    makeFolder(folder);
    std::string name = "opimtizer.html";
    (void)failureOf([&] { name = optimizerReportName(whole); });
    OptimizerReportFile report{folder + "/" + name, reportForWindow(input)};
    writeFile(report.path, buildOptimizerReport(input) + "\r\n");
    return report;
}

Optimizer::Optimizer(const Services& services, Connect connect, Disconnect disconnect, QObject* parent)
    : QObject(parent),
      m_services(services),
      m_connect(std::move(connect)),
      m_disconnect(std::move(disconnect)) {
    lsvFindings.setColumns({"Severity", "Line", "Rule", "Found"});
    lsvFindings.setNumberColumns({1});
    RowOrder order;
    order.number = [](const RowView& row, int column) -> std::optional<double> {
        if (column != 0) return std::nullopt;
        return -static_cast<double>(severityOf(row.text).value_or(Severity::Off));
    };
    lsvFindings.setOrder(std::move(order));
}

void Optimizer::loadHistory() {
    m_history = LoadInputHistory(historyFile(m_services), kSection, kHistory);
}

void Optimizer::saveHistory() {
    trap(m_services.prompts, "SaveInputHistory_Error: ", [&] {
        ExtendInputHistory(historyFile(m_services), kSection, kHistory, m_newAddresses);
        m_newAddresses.clear();
    });
}

void Optimizer::setStatus(std::string text) {
    m_status = std::move(text);
    Q_EMIT stateChanged();
}

void Optimizer::setFetching(bool fetching) {
    m_fetching = fetching;
    Q_EMIT stateChanged();
}

// False when another request is running. A request may fail before this returns.
bool Optimizer::request() {
    setFetching(true);
    if (m_connect(optimizerAddress(cboSiteURL))) return true;
    setFetching(false);
    return false;
}

void Optimizer::cmdRenovator() {
    if (m_fetching) {
        cancel();
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
    m_newAddresses.push_back(cboSiteURL);
    m_fromList = false;
    const auto file = localPath(cboSiteURL, TypedIn::Field);
    setStatus(file ? std::string() : "Connecting to : " + cboSiteURL + " ....");
    if (!file) {
        if (!request()) setStatus("Another page is being retrieved. Please try again.");
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

void Optimizer::optimizeURL(const std::string& url) {
    if (url.find('.') == npos) {
        m_services.prompts.message("Please select a web site URL.", kTitle);
        return;
    }
    if (m_fetching || m_busy) {
        m_services.prompts.beep();
        return;
    }
    const std::string before = std::exchange(cboSiteURL, url);
    m_fromList = true;
    m_services.prompts.status("Connecting to " + url + " ...");
    setStatus("Connecting to : " + url + " ....");
    if (request()) return;
    cboSiteURL = before;
    m_services.prompts.status({});
    m_services.prompts.beep();
    setStatus({});
}

void Optimizer::cancel() {
    if (!m_fetching) return;
    m_fetching = false;
    m_cancelling = true;
    if (m_fromList) m_services.prompts.status({});
    setStatus({});
    m_disconnect();
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
    const bool fromList = std::exchange(m_fromList, false);
    Renovator(html);
    if (!fromList) return;
    // The screen may not be open, so the main window says how it went.
    m_services.prompts.status({});
    m_services.prompts.notice(
        !problem.empty() ? problem : summary() + ": see the Web Site Optimizer in the Tools menu");
}

void Optimizer::cancelled() {
    // The next request may have begun meanwhile.
    if (std::exchange(m_cancelling, false)) return;
    m_fetching = false;
    if (m_fromList) m_services.prompts.status({});
    setStatus({});
}

void Optimizer::Renovator(std::string_view html) {
    m_report = {};
    m_source = html;
    m_address = optimizerAddress(cboSiteURL);
    if (html.empty()) {
        m_findings.clear();
        showFindings();
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
        openReport();
    }
    m_busy = false;
    // What is wrong with the page itself is still worth knowing.
    setStatus(!written ? std::string() : problem.empty() ? "Done" : problem);
    Q_EMIT finished();
}

void Optimizer::openReport() const {
    openOrTell(m_services.prompts, m_report.path, kTitle);
}

// What is wrong with the file of rules is told; the rest of it holds.
void Optimizer::readRules(RuleSettings& settings) const {
    constexpr std::size_t kMostTold = 10;
    std::vector<RuleProblem> problems;
    trap(m_services.prompts, "Module: Findings\r\n",
         [&] { problems = loadRules(m_services.paths, settings); });
    if (problems.empty()) return;
    std::string text;
    for (std::size_t i = 0; i < std::min(problems.size(), kMostTold); ++i) text += problems[i].text + "\r\n";
    if (problems.size() > kMostTold) text += "and more";
    m_services.prompts.message(text, "optimizer.rules", Icon::Information);
}

void Optimizer::check(std::string_view html) {
    m_findings.clear();
    RuleSettings settings;
    readRules(settings);
    trap(m_services.prompts, "Module: Findings\r\n", [&] {
        const BusyPointer busy(m_services.prompts);
        m_findings = checkPage(html, m_address, settings);
    });
    showFindings();
}

void Optimizer::showFindings() {
    constexpr std::array<std::string_view, 4> kIcons = {"", "About", "Failed", "Stop"};
    {
        const RowsBatch batch(lsvFindings);
        lsvFindings.clear();
        for (const PageFinding& finding : m_findings) {
            std::string severity(severityName(finding.severity));
            severity.front() = toUpper(severity.substr(0, 1)).front();
            lsvFindings.add({{},
                             severity,
                             {std::to_string(finding.line), std::string(finding.rule), finding.found},
                             std::string(kIcons[static_cast<std::size_t>(finding.severity)])});
        }
    }
    Q_EMIT findingsChanged();
}

std::string Optimizer::summary() const {
    if (m_address.empty()) return {};
    const auto count = [this](Severity severity, std::string word) {
        const auto number =
            std::count_if(m_findings.begin(), m_findings.end(),
                          [severity](const PageFinding& f) { return f.severity == severity; });
        return std::to_string(number) + " " + word + (number == 1 ? "" : "s");
    };
    return count(Severity::Error, "error") + ", " + count(Severity::Warning, "warning") + " and " +
           count(Severity::Notice, "notice");
}

std::size_t Optimizer::lineOf(int row) const {
    return static_cast<std::size_t>(leadingNumber(lsvFindings.at(row).subItems[0]));
}

std::string Optimizer::explanation(int row) const {
    const FindingRule* const rule = findRule(lsvFindings.at(row).subItems[1]);
    if (rule == nullptr) return {};
    return "Why it matters: " + std::string(rule->about().why) +
           "\nWhat to do: " + std::string(rule->about().what);
}

void Optimizer::saveFindings() {
    trap(m_services.prompts, "Module: SaveFindings\r\n", [&] {
        const std::string file = askWhereToSave(
            m_services.prompts, {"CSV files (*.csv)|*.csv|SARIF files (*.sarif)|*.sarif", "The file ",
                                 " already exists, do you want to replace it?", "Save Findings"});
        if (file.empty()) return;
        setStatus({});
        const std::vector<FindingsOfPage> pages = {{m_address, m_findings}};
        writeFile(file, endsWithNoCase(file, ".sarif") ? findingsAsSarif(pages) : findingsAsCsv(pages));
        m_services.prompts.notice("Saved " + file);
        setStatus("Saved " + file);
    });
}

}  // namespace relay
