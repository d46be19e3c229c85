// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingReport.h"

#include "core/Clock.h"
#include "core/FileStore.h"
#include "core/Log.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/ReportFiles.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/clsPreference.h"
#include "ranking/RankingProfiles.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kTitle = "Web Ranking Report";
constexpr std::string_view kDark = "#CCD8EA";
constexpr std::string_view kLight = "#E8E8E8";

// Appends pieces of text. Widths, blanks and closing tags differ between rows and tables; they are part of
// the report.
class ReportText final {
  public:
    explicit ReportText(const ReportInput& input) : m_input(input) {}

    std::string build() {
        addHead();
        addFacts();
        addSummary();
        addDetails();
        addFoot();
        return std::move(m_text);
    }

  private:
    template <typename... Pieces>
    void add(const Pieces&... pieces) {
        (m_text.append(pieces), ...);
    }
    template <typename... Pieces>
    void line(const Pieces&... pieces) {
        add(pieces..., kLineEnd);
    }

    void addHead();
    void addFacts();
    void addFact(std::string_view colour, std::string_view label, std::string_view value,
                 std::string_view closing = "</font></td></tr>");
    void addSummary();
    void addSummaryRow(std::size_t engine, std::size_t site);
    void addDetails();
    void addFoot();
    bool isShown(std::size_t engine) const {
        return engine < m_input.rows.size() && m_input.rows[engine].checked;
    }

    const ReportInput& m_input;
    std::string m_text;
    std::string_view m_colour;  // of the summary's last row
};

void ReportText::addHead() {
    const clsPreference& preference = m_input.preference;
    line("<html><title>", kTitle, " for ", m_input.setup.profile, "</title>");
    line("<body bgcolor = #FFFFFF>");
    line("<table width=650 border=0><tr><td>");
    if (!preference.LogoURL.empty() && preference.LogoPosition == 0)
        add("<br><img src=http://", preference.LogoURL, "><br>");
    line("<table border=0 width=100%><tr bgcolor=#000000><td align=center><font face=arial color=#FFFFFF><b>",
         kTitle, "</b></font></td></tr></table>");
    line("<br>");
    line(
        "<center><font size=2 face=arial color=#FF0000><b>(Click here to upgrade to a NEW version of <a "
        "href=",
        preference.UpdateURL,
        ">Korvel Rank Watch 4.0</a><br> with hundreds of improvements and supports more search "
        "engines.)</b></font></center>");
    line("<br>");
}

void ReportText::addFact(std::string_view colour, std::string_view label, std::string_view value,
                         std::string_view closing) {
    line("<tr bgcolor=", colour, "><td width= 40%><b><font face=arial size=2>", label,
         "</font></b></td><td><font face=arial size=2>", value, closing);
}

void ReportText::addFacts() {
    const RankingSetup& setup = m_input.setup;
    const clsPreference& preference = m_input.preference;
    line("<table border =0 width = 100% cellspacing=1 cellpadding=1>");
    addFact(kDark, "Date Created: ", longDate(m_input.time, m_input.locale));
    addFact(kLight, "Rank URL:", setup.profile);
    addFact(kDark, "Search Keywords:", setup.keywords);
    addFact(kLight,
            setup.limit == RankLimit::Pages ? "Number of pages to be searched:"
                                            : "Number of links to be searched:",
            setup.pageLinks);
    if (preference.Company.empty()) {
    } else if (preference.SiteURL.empty()) {
        addFact(kDark, "Provided By:", preference.Company, "</font></td><tr>");
    } else {
        addFact(kDark, "Provided By:", "<a href=http://" + preference.SiteURL + ">" + preference.Company,
                "</a></font></td><tr>");
    }
    line("</table><br>");
}

void ReportText::addSummary() {
    add("<center><b><font color=#0060C0 face=arial size=2>Ranking Summary</font></b></center><br>");
    const std::vector<std::string>& sites = m_input.setup.sites;
    for (std::size_t site = 0; site < sites.size(); ++site) {
        add("<font face=arial size=2>URL: <a href=http://", sites[site], "><b>", sites[site],
            "</b></a></font><br>");
        line("<table  border =0 width = 100% cellspacing=1 cellpadding=1>");
        line("<tr bgcolor=#0080C0 align = center>");
        line();
        line("<th  width= 25%><font face=arial size=2 color=#FFFFFF>Engine</font></th>");
        line("<th><font face=arial size=2 color=#FFFFFF>Pages</font></th>");
        line("<th><font face=arial size=2 color=#FFFFFF>Position</font></th>");
        line("<th><font face=arial size=2 color=#FFFFFF>Status</font></th></tr>");
        for (std::size_t engine = 0; engine < m_input.engines.size(); ++engine)
            if (isShown(engine)) addSummaryRow(engine, site);
        line("</table><br>");
    }
}

void ReportText::addSummaryRow(std::size_t engine, std::size_t site) {
    const RankEngine& record = m_input.engines[engine];
    const RankRow& row = m_input.rows[engine];
    std::string positions =
        engine < m_input.analysis.size() ? m_input.analysis[engine].sDomainHits(site) : std::string();
    if (positions.empty()) positions = "Not Found";
    m_colour = m_colour == kLight ? kDark : kLight;
    line("<tr bgcolor=", m_colour, ">");
    line("<td width= 25%><font face=arial size=2><a href=\"", record.EngineURL, "\">", record.EngineName,
         "</a></font></td>");
    line("<td><font face=arial size=2>", row.pages, " - <a href=\"#", record.EngineName,
         "\">Details</a></font></td>");
    line("<td><font face=arial size=2>", positions, "</font></td>");
    // The dot has the colour of its row: it cannot be seen, and keeps the cell from being empty.
    line("<td width= 20%><font face=arial size=2>", row.status, "<font color=", m_colour,
         ">.</font></font></td>");
    add("</tr>");
}

void ReportText::addDetails() {
    line("</table><br>");  // although every table is closed
    line("<center><font color = #c12457 face=arial size=2><b>Ranking Details</b></font></center><br>");
    add("<table  border =0 width =650 cellspacing=0 cellpadding=0>");
    for (std::size_t engine = 0; engine < m_input.engines.size(); ++engine) {
        if (!isShown(engine)) continue;
        const std::string& name = m_input.engines[engine].EngineName;
        line("<tr bgcolor=#c12457>");
        line("<td><b><font color=#FFFFFF  face=arial size=2><a name=\"", name, "\">", name,
             "</a></font></b></td></tr>");
        add("<tr><td><font face=arial size=2>");
        if (engine < m_input.analysis.size() && !m_input.analysis[engine].sResultList.empty())
            line("<ol>", m_input.analysis[engine].sResultList, "</ol><br>");
        else
            line("<ul>(Please select this engine and try again)", "</ul><br>");
        add("</font></td></tr>");
    }
    line("</table><br><hr size=1>");
}

void ReportText::addFoot() {
    const clsPreference& preference = m_input.preference;
    if (preference.LogoPosition != 0 && !preference.LogoURL.empty())
        add("<img src=http://", preference.LogoURL, "><br>");
    std::string_view site = preference.SiteURL;
    // Always removes seven characters, so an "https" address keeps a slash.
    if (startsWithNoCase(site, "http")) site.remove_prefix(std::min<std::size_t>(7, site.size()));
    line("<center><font face=arial size =2>This report is generated by : <a href=http://", site, ">",
         preference.Company, "</a>");
    line("<br>");
    line("Email: <a href=mailto:", preference.Email, ">", preference.name, "</a> ");
    line("Web: <a href=http://", site, ">", site, "</a>");
    line("</font></center>");
    add("</td></tr></table></body></html>");
}

std::string writeReport(Prompts& prompts, const ReportInput& input, const std::string& folder) {
    const BusyPointer busy(prompts);
    std::string path = folder + "/" + reportFileName(input.setup.profile, input.time);
    writeFile(path, buildRankingReport(input).append(kLineEnd));
    return path;
}

bool wantsResultsSaved(Prompts& prompts, SaveResults save) {
    return save == SaveResults::Always ||
           (save == SaveResults::Ask &&
            prompts.ask("Do you want to save your ranking results to the site profile?",
                        "Save Ranking Results"));
}

}  // namespace

std::string buildRankingReport(const ReportInput& input) {
    return ReportText(input).build();
}

std::string getLocalHTML(std::string_view path) {
    const std::size_t drive = path.find(":\\");
    if (drive == npos) return std::string(path);
    return "file:///" + std::string(path.substr(0, drive)) + "|/" +
           replaceAll(path.substr(drive + 2), "\\", "/");
}

RankingReport Report(const Services& services, const ReportInput& input, const std::string& folder,
                     const ReportChoices& choices) {
    RankingReport report;
    try {
        report.path = writeReport(services.prompts, input, folder);
        report.date = shortDateWithTime(input.time, input.locale);
        const RankingProfiles profiles(services.paths);
        profiles.noteReport(input.setup.profile, report.date, report.path);
        if (wantsResultsSaved(services.prompts, choices.save))
            profiles.saveRankingResults(input.setup.profile, input.rows, shortDate(input.time, input.locale));
        if (choices.open && !services.prompts.openWithSystem(report.path))
            services.prompts.message(kNoBrowserNotice, "Web Ranking", Icon::Information);
    } catch (const std::exception& failure) {
        report.problem = failureText(failure);
        services.log.WriteErrorLog("Module: CreateReport: " + numberedText(failure));
    }
    return report;
}

}  // namespace relay
