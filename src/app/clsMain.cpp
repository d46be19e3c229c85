// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/clsMain.h"

#include "catalogue/Catalogue.h"
#include "catalogue/PasswordKey.h"
#include "core/Clock.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/clsPreference.h"
#include "practice/PracticeAddress.h"
#include "practice/StarterServer.h"
#include "submission/SubmissionController.h"

#include <algorithm>

namespace relay {

namespace {
constexpr std::string_view kOptimizer = "Optimizer";  // the purpose of its requests

// Their engines may get these twice.
std::string inFlight(const CutOffRun& run) {
    constexpr std::size_t kMostNames = 10;
    if (run.inFlight.empty()) return {};
    std::string names = "\r\n\r\nThese were in flight and will be sent again:";
    for (std::size_t i = 0; i < std::min(kMostNames, run.inFlight.size()); ++i)
        names += "\r\n" + run.nameOf(run.inFlight[i]);
    if (run.inFlight.size() > kMostNames)
        names += "\r\nand " + std::to_string(run.inFlight.size() - kMostNames) + " more";
    return names;
}
}  // namespace

clsMain::clsMain(const Services& services, Catalogue& ownCatalogue)
    : catalogue(ownCatalogue),
      fetcher(services),
      website(catalogue, services),
      siteDetails(website.fields, fetcher, services),
      sitemap(fetcher, services),
      urlMetaTags(website, fetcher, services),
      categoryWalk(website.fields, ownCatalogue.lists, fetcher, services,
                   {[this](std::string_view engine) { return website.storedCategory(engine); },
                    [&services] { return directoryHosts(services.paths, services.preference); }}),
      optimizer(
          services, [this](const std::string& url) { return fetcher.fetch(kOptimizer, url); },
          [this] { fetcher.Disconnect(); }),
      workspace(services, website),
      update(services, ownCatalogue, starterServer(services.paths)),
      addIns(services),
      m_services(services) {
    connectOptimizer();
    QObject::connect(&siteDetails, &SiteDetails::fieldsChanged, &website, &OpenWebsite::fieldsChanged);
    // A page that is still on its way would fill the fields of another website.
    QObject::connect(&workspace, &Workspace::currentChanged, &siteDetails, &SiteDetails::cancel);
    QObject::connect(&workspace, &Workspace::currentChanged, &sitemap, &SitemapImport::cancel);
    QObject::connect(&workspace, &Workspace::currentChanged, &website, [this] { urlMetaTags.cancel(); });
    // The panel shows another website, or this one was read again.
    QObject::connect(&website, &OpenWebsite::fieldsChanged, &categoryWalk, [this] {
        if (website.fields.cboCustomEngines < 0) categoryWalk.leave();
    });
}

void clsMain::connectOptimizer() {
    const auto show = [this](const FetchReply& reply) {
        optimizer.showPage(reply.isPage() ? reply.text : std::string(), fetchProblem(reply));
    };
    fetcher.setConsumer(kOptimizer, {show, show, [this] { optimizer.cancelled(); }});
}

std::vector<std::string> clsMain::webTypes() const {
    std::vector<std::string> types = {"Commercial Site", "Personal Site"};
    if (!m_services.preference.refusesAdultSites()) types.emplace_back("Adult Only Site");
    types.emplace_back("General");
    return types;
}

std::vector<std::string> clsMain::languages() {
    return {"English", "German", "Franch", "Italian", "Spanish", "Japanese", "Chinese", "Others"};
}

std::string clsMain::passwordWarning() const {
    if (!workspace.currentNode()->isWebsite() || !website.fields.txtPassword.empty()) return {};
    return emptyPasswordWarning(catalogue.lists);
}

bool clsMain::readyToSubmit() {
    workspace.autoSave();
    if (catalogue.lists.lsvSelectedEngines.empty()) {
        m_services.prompts.message(
            "There is no engine selected.\r\n\r\nPlease select the engines before start submitting.",
            "Submit", Icon::Critical);
        workspace.showEngines();
        return false;
    }
    if (catalogue.selection.isThereFFASites() && m_services.preference.BlockSpam == 0 &&
        m_services.prompts.ask("Your selected engines contain FFA links, do you want to block auto-response "
                               "confirmation email or spam ads from FFA sites?",
                               "Submit"))
        m_services.preference.BlockSpam = 1;
    return true;
}

bool clsMain::takesRankWatch() {
    std::int16_t& taken = m_services.preference.TryWebRanking;
    if (taken != 0) return false;
    if (m_services.prompts.ask("There is a new version of Korvel Rank Watch 4.0 available now. There are "
                               "hundreds of improvements in the new version and supports more major search "
                               "engines.\r\n\r\nWould you like to upgrade to the new version of Korvel Rank "
                               "Watch 4.0?",
                               "Web Ranking"))
        taken = 1;
    return taken != 0;
}

std::optional<CutOffRun> clsMain::cutOffRunToGoOnWith() {
    SubmissionController runs(m_services, catalogue, {});
    std::optional<CutOffRun> run;
    {
        const BusyPointer busy(m_services.prompts);  // a million requests take seconds
        run = runs.cutOffRun();
    }
    if (!run) return std::nullopt;
    const std::string left = std::to_string(run->left());
    if (m_services.prompts.ask("The submission of " + reportDate(run->head.time) +
                                   " was interrupted. Requests left: " + left + "." + inFlight(*run) +
                                   "\r\n\r\nDo you want to continue it?",
                               "Submit"))
        return run;
    if (!m_services.prompts.ask("Do you want to keep it for later? It is offered again at the next start.",
                                "Submit"))
        runs.forget(*run);
    return std::nullopt;
}

}  // namespace relay
