// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/SubmissionState.h"

namespace relay {

SubmissionState::SubmissionState() {
    lsvSiteSelection.setColumns({"Web Site", "Project", "Number of URLs"});
    lsvSiteSelection.setCheckable(true);
    lsvSiteSubmitting.setColumns({"URL", "Web site", "Status"});
    lsvConnections.setColumns({" ", "Engines", "Status"});
    lsvReport.setColumns({"URL", "Web Site", "Status"});
}

}  // namespace relay
