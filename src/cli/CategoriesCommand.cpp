// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CategoriesCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageWait.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/JsonLine.h"
#include "core/Text.h"
#include "practice/PracticeAddress.h"
#include "projects/CategoryWalk.h"
#include "projects/WebsiteFields.h"
#include "transport/frmHTTP.h"

#include <algorithm>

namespace relay {

namespace {

// The first row with the label; "<<" is the way up.
int requireRow(const Rows& rows, const std::string& label, std::string_view where) {
    for (int row = 0; row < rows.count(); ++row) {
        const std::string_view text = rows.at(row).text;
        if (equalsNoCase(text, label) || (label == "<<" && text.find("<<") != npos)) return row;
    }
    throw Failure("There is no category \"" + label + "\" " + std::string(where) + ".");
}

}  // namespace

CategoriesWalkCommand::CategoriesWalkCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "walk", "Walk through the live categories of a directory",
              "--home try categories walk Yahoo\n--home try categories walk dmoz Arts \"Visual Arts\"\n"
              "--home try categories walk dmoz Arts \"Visual Arts\" '<<' --json") {
    app().add_option("ENGINE", m_engine, "An engine of the category rule C")->required()->type_name("");
    app()
        .add_option(
            "LABEL", m_labels,
            "The rows to take, one after the other: the first in the main list, the others in the page "
            "then shown; '<<' is the way up")
        ->type_name("");
}

int CategoriesWalkCommand::execute() {
    if (!context().loadEngines()) return kCouldNotRun;
    Session& home = context().home();
    EngineLists& lists = home.catalogue.lists;
    const auto engine =
        std::find_if(lists.cboCustomEngines.begin(), lists.cboCustomEngines.end(),
                     [this](const std::string& name) { return equalsNoCase(name, m_engine); });
    if (engine == lists.cboCustomEngines.end())
        throw Failure("There is no engine \"" + m_engine + "\" with the category rule C.");

    WebsiteFields fields;
    frmHTTP fetcher(home.services);
    CategoryWalk walk(fields, lists, fetcher, home.services,
                      {[](std::string_view) { return std::string(); },
                       [&home] { return directoryHosts(home.paths, home.preference); }});
    std::string problem;
    bool isPage = true;
    QObject::connect(&walk, &CategoryWalk::ended, &walk, [&](const std::string& words) { problem = words; });
    walk.chooseEngine(static_cast<int>(engine - lists.cboCustomEngines.begin()));
    for (std::size_t i = 0; i < m_labels.size(); ++i) {
        if (i == 0) {
            const int row = requireRow(fields.lsvCustomMainCategory, m_labels[i], "in the main list");
            walk.chooseMainCategory(row);
            walk.openMainCategory(row);
        } else {
            walk.openSubCategory(requireRow(fields.lsvCustomSubCategory, m_labels[i], "on the page"));
        }
        if (!waitForPage(context(), fetcher)) return kStopped;
        if (!problem.empty()) context().warn(problem);
        isPage = isPage && problem.empty();
        problem.clear();
    }
    show(walk, fields);
    return isPage ? kSucceeded : kCouldNotRun;
}

void CategoriesWalkCommand::show(const CategoryWalk& walk, const WebsiteFields& fields) {
    const Rows& rows = m_labels.empty() ? fields.lsvCustomMainCategory : fields.lsvCustomSubCategory;
    std::ostream& out = context().out();
    Table table({"Category", "Leads to"});
    for (int row = 0; row < rows.count(); ++row) {
        const RowView category = rows.at(row);
        if (context().json)
            JsonLine().add("label", category.text).add("target", category.tag).write(out);
        else
            table.add({category.text, category.tag});
    }
    if (context().json) {
        JsonLine()
            .add("path", fields.txtCustomCategory)
            .add("spaceid", walk.spaceID())
            .add("state", walk.lblReadyToSubmit())
            .write(out);
        return;
    }
    if (!table.empty()) {
        table.write(out, context().colours());
        out << '\n';
    }
    Table state({});
    state.add({"Path", fields.txtCustomCategory});
    state.add({"SpaceID", walk.spaceID()});
    state.add({"State", walk.lblReadyToSubmit()});
    state.write(out, false);
}

}  // namespace relay
