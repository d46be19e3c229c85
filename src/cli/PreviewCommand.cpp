// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PreviewCommand.h"

#include "catalogue/PasswordKey.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/JsonLine.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"
#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"
#include "transport/RequestUrl.h"

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

std::string PreviewCommand::chosenUrl() const {
    if (!m_url.empty()) return m_url;
    Rows urls;
    loadUrlList(m_website, urls);
    if (urls.empty()) throw Failure(std::string(kNoURL));
    return std::string(urls.at(0).text);
}

int PreviewCommand::execute() {
    requireWebsite(m_website);
    if (!context().loadEngines()) return kCouldNotRun;
    Catalogue& catalogue = context().home().catalogue;
    const clsEngines& engine = catalogue.engine(m_engine);
    const IniFile website = IniFile::load(m_website);
    WebDetails details = readWebDetails(chosenUrl(), website);
    const bool blockSpam = context().home().preference.BlockSpam != 0;
    const auto build = [&] {
        return submissionRequest(engine.Method(), engine.Action(),
                                 expandQuery({engine, details, website, catalogue.countries, blockSpam}));
    };
    std::optional<SubmissionRequest> request = build();
    if (!request) {
        context().warn("Nothing would be sent: the engine \"" + std::string(engine.name()) +
                       "\" has no action, or its template contains no macro. It would count as failed.");
        return kSomeFailed;
    }
    std::string url;
    try {
        url = wireUrl(request->URL);
    } catch (const Failure& refused) {
        context().warn(std::string("Nothing would be sent: ") + refused.what() + ".");
        return kSomeFailed;
    }
    if (const std::string warning = emptyPasswordWarning(engine);
        details.Password.empty() && !warning.empty())
        context().note(warning);
    if (context().hidesPasswords() && !m_showPassword && !details.Password.empty()) {
        details.Password = kHiddenPassword;
        request = build();
        url = wireUrl(request->URL);
    }
    const char* method = request->isPost() ? "POST" : "GET";
    const std::string body = request->isPost() ? request->data : std::string();
    if (context().json) {
        JsonLine().add("method", method).add("url", url).add("body", body).write(context().out());
        return kSucceeded;
    }
    Table table({});
    table.add({"Method", method});
    table.add({"URL", url});
    table.add({"Body", body});
    table.write(context().out(), false);
    return kSucceeded;
}

}  // namespace relay
