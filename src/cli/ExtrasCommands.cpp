// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ExtrasCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageWait.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/JsonLine.h"
#include "extras/AddIns.h"
#include "extras/News.h"
#include "practice/StarterServer.h"
#include "transport/frmHTTP.h"

#include <ostream>

namespace relay {

namespace {
const char* word(bool on) {
    return on ? "true" : "false";
}
}  // namespace

NewsCommand::NewsCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "news", "Show the stored message of the maker, or look for a new one",
              "--home try news --check\n--home try news") {
    CLI::Option* const wanted = app().add_flag("--check", m_check, "Ask the update server for a new message");
    app()
        .add_option("--server", m_server,
                    "The server (default: that of korvel.ini, else the installed starter data)")
        ->type_name("HOST[:PORT]")
        ->needs(wanted);
}

int NewsCommand::check(bool& isNew) {
    Session& home = context().home();
    frmHTTP fetcher(home.services);
    News news(home.services, fetcher, starterServer(home.paths));
    if (app().count("--server") > 0) {
        try {
            news.setServer(m_server);
        } catch (const Failure& failure) {
            throw UsageError(std::string("--server: ") + failure.what());
        }
    }
    NewsCheck how = NewsCheck::Cancelled;
    QObject::connect(&news, &News::ended, &news, [&how](NewsCheck ended) { how = ended; });
    news.checkNewMessage();
    waitForPage(context(), fetcher);
    if (!news.state().problem.empty()) context().warn(news.state().problem);
    isNew = how == NewsCheck::New;
    if (how == NewsCheck::Cancelled) return kStopped;
    const bool failed = how == NewsCheck::NotReceived || how == NewsCheck::NotStored;
    return failed ? kCouldNotRun : kSucceeded;
}

int NewsCommand::execute() {
    bool isNew = false;
    const int code = m_check ? check(isNew) : static_cast<int>(kSucceeded);
    const std::string file = context().home().paths.inApp("news.dat");
    if (code == kStopped || (m_check && !fileExists(file))) return code;
    if (!fileExists(file)) throw Failure(file + ": no news is stored. \"news --check\" fetches it.");
    const NewsMessage news = readNews(file);
    std::ostream& out = context().out();
    if (context().json) {
        JsonLine()
            .add("date", news.date)
            .add("title", news.title)
            .add("message", news.message)
            .addJson("new", word(isNew))
            .write(out);
    } else {
        if (!news.date.empty()) out << terminalText(news.date) << "  ";
        out << terminalText(news.title) << "\n\n" << terminalLines(news.message) << '\n';
    }
    return code;
}

AddInsListCommand::AddInsListCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "list", "List the tools of the menu Add-Ins", "--home try addins list") {}

int AddInsListCommand::execute() {
    AddIns addIns(context().home().services);
    addIns.LoadAddIns(addIns.GetAddIns());
    std::ostream& out = context().out();
    Table table({"Code", "Name", "Installed", "Shown", "Program"});
    for (std::size_t i = 0; i < kAddIns.size(); ++i) {
        const AddIn& addIn = kAddIns[i];
        const std::string& path = addIns.pathOf(i);
        const bool installed = !path.empty() && fileExists(path);
        const bool shown = addIns.shown().at(i);
        if (context().json)
            JsonLine()
                .add("code", addIn.code)
                .add("name", addIn.name)
                .add("path", path)
                .addJson("installed", word(installed))
                .addJson("shown", word(shown))
                .write(out);
        else
            table.add({addIn.code, addIn.name, installed ? "yes" : "no", shown ? "yes" : "no", path});
    }
    if (!table.empty()) table.write(out, context().colours());
    return kSucceeded;
}

}  // namespace relay
