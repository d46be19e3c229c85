// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/OpenWebsite.h"
#include "projects/Workspace.h"
#include "submission/LedgerReader.h"

#include <optional>
#include <string>
#include <vector>

namespace relay {

class Catalogue;
struct Services;

// The main logic object of the window program: it joins the catalogue with the user's projects. All that is
// handed in must outlive it.
class clsMain final {
  public:
    clsMain(const Services& services, Catalogue& catalogue);

    Catalogue& catalogue;
    OpenWebsite website;
    Workspace workspace;
    bool linksEngines = false;  // reports link to the engines; the switch "/U"

    // Items of cboWebType; adult sites are among them unless they are refused.
    std::vector<std::string> webTypes() const;
    // Items of cboLanguage.
    static std::vector<std::string> languages();
    // What the toolbar's "Submit" checks: saves, refuses an empty selection (the engine screen then shows),
    // and offers to block the mail of free-for-all sites. True when the submission may open.
    bool readyToSubmit();
    // A submission that was cut off and that the user wants to go on with, after asking; nothing when there
    // is none, or the user does not want to. Only on the user's word it is not offered again.
    std::optional<CutOffRun> cutOffRunToGoOnWith();

  private:
    const Services& m_services;
};

}  // namespace relay
