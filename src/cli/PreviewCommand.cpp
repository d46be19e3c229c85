// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PreviewCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/JsonLine.h"
#include "projects/WebsiteKeys.h"
#include "submission/RequestPreview.h"

namespace relay {

PreviewCommand::PreviewCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "preview", "Show what an engine would be sent, without sending it",
              "--home try preview --website shop.kws --engine 'Harbour Search'\n"
              "--home try preview --website shop.kws --engine 'Beacon Finder' --json") {
    app().add_option("--website", m_website, "The website file")->type_name("FILE")->required();
    app().add_option("--engine", m_engine, "An engine of the catalogue")->type_name("NAME")->required();
    app().add_option("--url", m_url, "The URL to submit (default: the website's first)")->type_name("URL");
    app().add_flag("--show-password", m_showPassword, "Show the password on a terminal too");
}

int PreviewCommand::execute() {
    requireWebsite(m_website);
    if (!context().loadEngines()) return kCouldNotRun;
    Session& home = context().home();
    const RequestPreview preview =
        previewRequest(home.services, home.catalogue,
                       {m_engine, m_website, m_url, context().hidesPasswords() && !m_showPassword});
    if (!preview.refusal.empty()) {
        context().warn(preview.refusal);
        return kSomeFailed;
    }
    if (!preview.warning.empty()) context().note(preview.warning);
    if (context().json) {
        JsonLine()
            .add("method", preview.method())
            .add("url", preview.URL)
            .add("body", preview.body)
            .write(context().out());
        return kSucceeded;
    }
    Table table({});
    table.add({"Method", preview.method()});
    table.add({"URL", preview.URL});
    table.add({"Body", preview.body});
    table.write(context().out(), false);
    return kSucceeded;
}

}  // namespace relay
