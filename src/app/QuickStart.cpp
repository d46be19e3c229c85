// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/QuickStart.h"

namespace relay {

const std::vector<QuickStartLine>& quickStartLines() {
    static const std::vector<QuickStartLine> lines{
        {"Quick Start:"},
        {""},
        {"1. Click on the 'New Project' button from the menu bar to create a new project and specify a name "
         "for "
         "your new project.",
         "'New Project'", "NewProject"},
        {"2. Click on the 'New Web' button from the menu bar to create a new web site and specify a name for "
         "your web site.",
         "'New Web'", "NewWeb"},
        {"3. Enter ALL the details of Web Site info, URLs, Contact Info etc."},
        {"4. Select category you want to submit to."},
        {"5. Click on the 'Save' button to save your web site details.", "'Save'", "Save"},
        {"7. Select the engines you want to submit to by clicking the 'Engine' button.", "'Engine'",
         "Engines"},
        {"8. Click on the 'Submit' button from the menu bar to start submitting.", "'Submit'", "Submit"},
        {"9. Then follow the instructions on the 'Submit' screen to submit your web site."},
        {"Need More Help:"},
        {"Please click the 'Help/Contents' menu item from the menu bar for more help information.",
         "'Help/Contents'", "mnuHelpItems_0"},
    };
    return lines;
}

}  // namespace relay
