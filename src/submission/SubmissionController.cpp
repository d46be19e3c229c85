// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/SubmissionController.h"

#include "catalogue/PasswordKey.h"
#include "core/Clock.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "core/clsPreference.h"
#include "projects/ProjectStore.h"
#include "projects/WebsiteFile.h"

#include <cmath>
#include <set>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kConfirmSettings =
    "Please confirm your setting above and click the 'Start' button:";

constexpr SaveQuestion kSaveQuestion = {"Comma Separated Values (*.csv)|*.csv|All Files (*.*)|*.*",
                                        "The file '", "' already exists.\r\nDo you want to replace it?",
                                        "Save Results"};

constexpr int kMostNames = 3;  // in a warning

// "##,##0"
std::string grouped(double number) {
    std::string digits = std::to_string(std::llround(number));
    for (std::size_t end = digits.size(); end > 3; end -= 3) digits.insert(end - 3, ",");
    return digits;
}

// The URLs of a website file, with the empty ones.
std::vector<std::string> siteURLs(const std::string& websiteFile) {
    const IniFile file = loadWebsiteQuietly(websiteFile);
    const int last = toInt16(leadingNumber(file.value(kWebsiteSection, "LastURL")));
    std::vector<std::string> urls;
    for (int number = 1; number <= last; ++number)
        urls.push_back(file.value(kUrlSection, "URL" + std::to_string(number)));
    return urls;
}

// Fills lsvSiteSubmitting with the URLs of the checked rows of lsvSiteSelection, in order; the same URL once
// per website. Calls `listed` for every URL in the files.
void listSiteURLs(const Rows& lsvSiteSelection, const std::vector<std::string>& onlyURLs,
                  Rows& lsvSiteSubmitting, const std::function<void()>& listed) {
    const RowsBatch batch(lsvSiteSubmitting);
    lsvSiteSubmitting.clear();
    for (int site = 0; site < lsvSiteSelection.count(); ++site) {
        const Row row(lsvSiteSelection.at(site));
        if (!row.checked) continue;
        for (const std::string& url : onlyURLs.empty() ? siteURLs(row.tag) : onlyURLs) {
            if (!url.empty())
                lsvSiteSubmitting.tryAdd({urlKey(row.tag, url), url, {row.text, ""}, "URL", row.tag});
            if (lsvSiteSubmitting.count() > kMostOfWork) throw Failure("Overflow", 6);
            listed();
        }
    }
}

}  // namespace

SubmissionController::SubmissionController(const Services& services, const Catalogue& catalogue,
                                           SubmissionOptions options)
    : m_services(services),
      m_catalogue(catalogue),
      m_run(services, catalogue, m_state, std::move(options)),
      m_health(services) {
    connect(&m_run, &SubmissionRun::engineEnded, &m_health, &HealthRecorder::note);
    connect(&m_run, &SubmissionRun::runDone, &m_health, &HealthRecorder::endRun);
    connect(&m_run, &SubmissionRun::engineEnded, this, &SubmissionController::engineEnded);
    connect(&m_run, &SubmissionRun::reportWritten, this, &SubmissionController::reportWritten);
    connect(&m_run, &SubmissionRun::runDone, this, &SubmissionController::runDone);
    connect(&m_run.record(), &RunRecord::ledgerFailed, this, &SubmissionController::ledgerFailed);
    connect(&m_run, &SubmissionRun::stateChanged, this, &SubmissionController::stateChanged);
    connect(&m_state.lsvSiteSelection, &Rows::checkToggled, this, &SubmissionController::siteChecked);
}

void SubmissionController::loadProject() {
    constexpr std::string_view kLoadTrap = "FormLoad_Submit_Error: ";
    trap(m_services.prompts, kLoadTrap, [&] {
        const RowsBatch batch(m_state.lsvSiteSelection);
        for (const ProjectRecord& project : ProjectStore(m_services.paths.ProjectFilePath).loadProject()) {
            for (const WebsiteSlot& site : project.websites) {
                if (site.file.empty()) continue;
                trap(m_services.prompts, kLoadTrap, [&] { addSite(site.file, site.name, project.name); });
            }
        }
    });
}

bool SubmissionController::addSite(const std::string& websiteFile, std::string_view name,
                                   std::string_view project) {
    const std::string lastURL = IniFile::load(websiteFile).value(kWebsiteSection, "LastURL");
    if (lastURL.empty()) return false;
    Row row{siteKey(websiteFile), std::string(name), {std::string(project), lastURL}, "WebFile", websiteFile};
    row.checked = leadingNumber(lastURL) > 0;
    return m_state.lsvSiteSelection.tryAdd(std::move(row));
}

void SubmissionController::submitOnly(std::vector<std::string> urls) {
    m_state.onlyURLs = std::move(urls);
    std::set<std::string> wanted;
    std::set<std::string> hosts;
    for (const std::string& url : m_state.onlyURLs) {
        wanted.insert(toLower(url));
        hosts.insert(toLower(GetURLHost(url)));
    }
    int listing = -1;
    int ofHost = -1;
    Rows& sites = m_state.lsvSiteSelection;
    const RowsBatch batch(sites);
    for (int row = 0; row < sites.count(); ++row) {
        sites.setSubItem(row, 2, std::to_string(m_state.onlyURLs.size()));
        sites.setChecked(row, false);
        for (const std::string& url : siteURLs(std::string(sites.at(row).tag))) {
            if (listing < 0 && wanted.contains(toLower(url))) listing = row;
            if (ofHost < 0 && hosts.contains(toLower(GetURLHost(url)))) ofHost = row;
        }
    }
    const int ticked = listing < 0 ? ofHost : listing;
    if (ticked >= 0) sites.setChecked(ticked, true);
    m_state.lblHint = "Select the web site whose details go with the changed pages. Only these pages (" +
                      std::to_string(m_state.onlyURLs.size()) + ") are submitted.";
    Q_EMIT stateChanged();
}

bool SubmissionController::hasSite(std::string_view websiteFile) const {
    return m_state.lsvSiteSelection.contains(siteKey(websiteFile));
}

void SubmissionController::siteChecked(int row, bool on) {
    if (!on) return;
    const RowView site = m_state.lsvSiteSelection.at(row);
    const std::string_view count = site.subItems.at(1);
    if (site.key.empty()) {
        m_services.prompts.message("Web site file is empty, please save the web site details before submit.",
                                   "Select Website\"", Icon::Critical);
    } else if (count.empty() || count == "0") {
        m_services.prompts.message(kNoURL, "Submit", Icon::Critical);
    } else {
        return;
    }
    m_state.lsvSiteSelection.setChecked(row, false);
}

void SubmissionController::selectAllSites(bool on) {
    const RowsBatch batch(m_state.lsvSiteSelection);
    for (int row = 0; row < m_state.lsvSiteSelection.count(); ++row) {
        const RowView site = m_state.lsvSiteSelection.at(row);
        const bool hasURLs = !site.key.empty() && leadingNumber(site.subItems.at(1)) > 0;
        m_state.lsvSiteSelection.setChecked(row, on && hasURLs);
    }
}

bool SubmissionController::cmdNext() {
    if (!getSubmitSummary()) return false;
    m_run.record().beginDigests();
    m_state.lblStart = kConfirmSettings;
    m_state.progressValue = 0;
    m_state.page = 1;
    Q_EMIT stateChanged();
    return true;
}

void SubmissionController::getNumOfSelectedSites(int& Sites, int& URLs) const {
    Sites = URLs = 0;
    for (int row = 0; row < m_state.lsvSiteSelection.count(); ++row) {
        const RowView site = m_state.lsvSiteSelection.at(row);
        if (!site.checked) continue;
        ++Sites;
        URLs += toInt16(leadingNumber(site.subItems.at(1)));
    }
}

bool SubmissionController::getSubmitSummary() {
    bool complete = false;
    trap(m_services.prompts, "getSubmitSummary_Error: ", [&] {
        int sites = 0;
        int urls = 0;
        getNumOfSelectedSites(sites, urls);
        m_state.EngineCount = toInt16(m_catalogue.lists.lsvSelectedEngines.count());
        if (m_state.EngineCount == 0) {
            m_services.prompts.message(
                "There is no engine selected, please select the engines you want to submit and try again.",
                "Submit", Icon::Critical);
            return;
        }
        if (sites == 0) {
            m_services.prompts.message(
                "There is no web site selected, please select the web site you want to submit and press the "
                "'Next' button.",
                "Submit", Icon::Critical);
            return;
        }
        const int connections = m_services.preference.Connections;
        if (connections == 0) throw Failure("Division by zero", 11);
        m_state.lblNumOfEngines = std::to_string(m_state.EngineCount);
        m_state.lblNumOfWebsites = std::to_string(sites);
        m_state.lblNumOfURLs = std::to_string(urls);
        m_state.lblNumOfConnections = std::to_string(connections);
        // The label says minutes.
        m_state.lblEstimatedTime = grouped(200.0 * urls * m_state.EngineCount / (connections * 1000.0));
        m_state.passwordWarning = passwordWarning();
        complete = true;
    });
    return complete;
}

std::string SubmissionController::passwordWarning() const {
    const std::string warning = emptyPasswordWarning(m_catalogue.lists);
    if (warning.empty()) return {};
    std::string names;
    int count = 0;
    const Rows& sites = m_state.lsvSiteSelection;
    for (int row = 0; row < sites.count(); ++row) {
        const RowView site = sites.at(row);
        if (!site.checked ||
            !loadWebsiteQuietly(std::string(site.tag)).value(kWebsiteSection, "Password").empty())
            continue;
        if (++count <= kMostNames) names.append(names.empty() ? "" : ", ").append(site.text);
    }
    if (count == 0) return {};
    if (count > kMostNames) names += " and " + std::to_string(count - kMostNames) + " more";
    return names + ": " + warning;
}

bool SubmissionController::ConfirmSubmit() {
    std::string_view refusal;
    if (m_state.lblNumOfWebsites.empty())
        refusal =
            "There is no web site to be submitted. Please make sure to select the web site you want to "
            "submit and try again.";
    else if (m_state.lblNumOfEngines.empty())
        refusal =
            "There is no engine has been submitted. Please select the engines you want to submit and "
            "try again.";
    if (refusal.empty()) return true;
    m_services.prompts.message(refusal, "Confirm Submit", Icon::Critical);
    return false;
}

bool SubmissionController::cmdStart() {
    if (!ConfirmSubmit()) return false;
    m_run.forgetPrepared();
    m_state.lblStart = "Please wait for creating the submission data ......";
    m_state.lblSubmit = kConfirmURLs;
    m_state.progressMaximum = leadingInteger(m_state.lblNumOfWebsites) +
                              leadingInteger(m_state.lblNumOfURLs) + leadingInteger(m_state.lblNumOfEngines);
    m_state.lsvConnections.clear();
    Q_EMIT stateChanged();
    const bool made = createSubmissionData();
    m_state.offerSubmit();
    m_state.page = 2;
    Q_EMIT stateChanged();
    return made;
}

bool SubmissionController::createSubmissionData() {
    const bool made = trap(m_services.prompts, "createSubmissionData_Error:\r\n", [&] {
        int progress = 0;
        const auto advance = [&] {
            if (++progress <= m_state.progressMaximum) m_state.progressValue = progress;
        };
        listSiteURLs(m_state.lsvSiteSelection, m_state.onlyURLs, m_state.lsvSiteSubmitting, advance);
        submit().listEngines(m_catalogue.lists.lsvSelectedEngines);
        for (int engine = 0; engine < submit().NumOfEngines(); ++engine) advance();
    });
    if (!made) {
        m_state.lsvSiteSubmitting.clear();
        submit().forgetEngines();
    }
    return made;
}

void SubmissionController::cmdRemove() {
    // A run counts rows, so those it has started must stay in place.
    const int kept = isRunning() ? m_state.URLIndex : 0;
    int place = 0;
    m_state.lsvSiteSubmitting.removeIf([&](const RowView& row) {
        if (++place <= kept || !row.highlighted) return false;
        m_run.record().removed(row.tag, row.text);
        return true;
    });
    if (isRunning()) m_run.countWork();
    Q_EMIT stateChanged();
}

bool SubmissionController::cmdSubmit() {
    if (m_state.offersSubmit()) {
        if (m_run.isUnderWay()) return false;
        m_state.lblSubmit = "Please wait while submitting ..... ";
        m_state.cmdSubmit = "&Stop";
        m_state.cmdCancelEnabled = false;
        const bool started = m_run.StartSubmit();
        if (!started) m_state.offerSubmit();
        Q_EMIT stateChanged();
        return started;
    }
    m_state.offerSubmit();
    m_run.stop();
    Q_EMIT stateChanged();
    return true;
}

void SubmissionController::viewReport() {
    trap(m_services.prompts, "viewReport_Error: ", [&] {
        const Rows& reports = m_state.lsvReport;
        int found = 0;
        while (found < reports.count() && !reports.at(found).highlighted && !reports.at(found).checked)
            ++found;
        if (found == reports.count()) {
            m_services.prompts.message(
                "Please select the web site you want to view and then press the 'Report' button.",
                "View Report", Icon::Information);
            return;
        }
        const std::string path(reports.at(found).tag);
        if (path.empty() || !fileExists(path)) {
            m_services.log.WriteErrorLog("ReportFile: " + path);
            m_services.prompts.message(
                "Report file is corrupted or missing, please re-run the submission again.", "View Report",
                Icon::Critical);
            return;
        }
        const BusyPointer busy(m_services.prompts);
        openOrTell(m_services.prompts, path, "View Report");
    });
}

void SubmissionController::preparePlan(const RunPlan& plan, const std::vector<bool>& finished) {
    {
        const RowsBatch batch(m_state.lsvSiteSubmitting);
        m_state.lsvSiteSubmitting.clear();
        for (std::size_t i = 0; i < plan.urls.size(); ++i) {
            const PlannedURL& url = plan.urls[i];
            if (i < finished.size() && finished[i]) continue;
            m_state.lsvSiteSubmitting.tryAdd(
                {urlKey(url.website, url.URL), url.URL, {url.site, ""}, "URL", url.website});
        }
    }
    submit().listEngines(plan.engines);
    m_state.lsvConnections.clear();
    m_state.lblSubmit = kConfirmURLs;
    m_state.progressValue = 0;
    m_state.page = 2;
    m_state.offerSubmit();
    Q_EMIT stateChanged();
}

bool SubmissionController::runFailedAgain() {
    if (m_run.isUnderWay()) return false;
    const RunPlan plan = planFailedAgain(m_state.results);
    if (plan.urls.empty()) return false;
    return trap(m_services.prompts, "runFailedAgain_Error: ", [&] {
        m_run.record().beginDigests();
        m_run.prepare(RunParts::of(plan));
        preparePlan(plan, {});
    });
}

std::optional<CutOffRun> SubmissionController::cutOffRun() const {
    std::optional<CutOffRun> run;
    const auto failure = failureOf([&] { run = findCutOffRun(m_services.paths.AppPath); });
    if (failure) m_services.log.WriteErrorLog("Ledger: " + *failure);
    return run;
}

bool SubmissionController::maySendTheSame(const CutOffRun& run) {
    const std::vector<std::string> changed =
        changedSince(run.head.digests, run.head.blockSpam, m_run.record().digests(run.plan));
    if (changed.empty()) return true;
    const std::string begun = run.head.time.isValid() ? " of " + reportDate(run.head.time) : std::string();
    std::string words =
        "The run" + begun + " cannot be continued: it would send something else. Changed since it began:";
    for (const std::string& what : changed) words += "\r\n" + what;
    m_services.prompts.message(words, "Submit", Icon::Critical);
    return false;
}

bool SubmissionController::resume(CutOffRun run) {
    if (m_run.isUnderWay()) return false;
    bool resumed = false;
    trap(m_services.prompts, "resume_Error: ", [&] {
        if (!maySendTheSame(run)) return;
        m_run.prepare(run);
        // In memory only, like the answer to the question about link pages.
        m_services.preference.BlockSpam = run.head.blockSpam ? 1 : 0;
        for (const PairEnd& pair : run.inFlight)
            m_services.log.WriteErrorLog("To be sent again: " + run.nameOf(pair));
        preparePlan(run.plan, run.finished);
        resumed = true;
    });
    return resumed;
}

void SubmissionController::forget(const CutOffRun& run) {
    trap(m_services.prompts, "forget_Error: ", [&] {
        Ledger ledger;
        ledger.goOn(run.path, run.size);
        ledger.finish();
    });
}

void SubmissionController::saveResultsAs() {
    trap(m_services.prompts, "saveResults_Error: ", [&] {
        const std::string path = askWhereToSave(m_services.prompts, kSaveQuestion);
        if (!path.empty()) saveResults(m_state.results, path);
    });
}

bool SubmissionController::mayShow(int page) const {
    if (page == m_state.page) return true;
    if (isRunning()) return false;
    switch (page) {
        case 0:
            return true;
        case 1:
            return m_state.page > 1 && !m_state.lblNumOfWebsites.empty();  // not after resume()
        case 3:
            return !m_state.lsvReport.empty();
        default:
            return false;  // only "Start" makes the list of URLs
    }
}

void SubmissionController::showPage(int page) {
    if (!mayShow(page)) return;
    m_state.page = page;
    if (page == 1) m_state.lblStart = kConfirmSettings;
    Q_EMIT stateChanged();
}

bool SubmissionController::closing() {
    if (m_state.Running != 0) {
        if (!m_services.prompts.ask("Are you sure you want to exit?", "Exit Submit")) return false;
        m_services.log.WriteErrorLog("Cancel submit by user.");
    }
    m_run.abandon();
    return true;
}

}  // namespace relay
