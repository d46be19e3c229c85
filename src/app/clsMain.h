// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineUpdate.h"
#include "extras/AddIns.h"
#include "pagetools/Optimizer.h"
#include "projects/CategoryWalk.h"
#include "projects/OpenWebsite.h"
#include "projects/SiteDetails.h"
#include "projects/SitemapImport.h"
#include "projects/UrlMetaTags.h"
#include "projects/Workspace.h"
#include "submission/LedgerReader.h"
#include "transport/frmHTTP.h"

#include <optional>
#include <string>
#include <vector>

namespace relay {

class Catalogue;
struct Services;

// The main logic object of the window program: joins the catalogue and the user's projects. All arguments
// must outlive it.
class clsMain final {
  public:
    clsMain(const Services& services, Catalogue& catalogue);

    Catalogue& catalogue;
    frmHTTP fetcher;
    OpenWebsite website;
    SiteDetails siteDetails;
    SitemapImport sitemap;
    UrlMetaTags urlMetaTags;
    CategoryWalk categoryWalk;
    Optimizer optimizer;
    Workspace workspace;
    EngineUpdate update;
    AddIns addIns;
    bool linksEngines = false;  // reports link to the engines; the switch "/U"

    // Items of cboWebType; includes adult sites unless they are refused.
    std::vector<std::string> webTypes() const;
    // Items of cboLanguage.
    static std::vector<std::string> languages();
    // The checks of the toolbar's "Submit": saves, refuses an empty selection (and shows the engine screen),
    // and offers to block mail from free-for-all sites. True when the submission may open.
    bool readyToSubmit();
    // Asks, until the answer was Yes once, whether to upgrade to the separate program for rankings.
    bool takesRankWatch();
    // Asks whether to continue an interrupted submission, if there is one, and returns it on Yes. On No, asks
    // whether to keep it for later.
    std::optional<CutOffRun> cutOffRunToGoOnWith();
    // The warning for an open website without a password if a selected engine would be sent it; else empty.
    std::string passwordWarning() const;

  private:
    void connectOptimizer();

    const Services& m_services;
};

}  // namespace relay
