// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/MetaCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageSource.h"
#include "cli/StopSignal.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"
#include "core/FileStore.h"
#include "core/JsonLine.h"
#include "core/Trap.h"
#include "pagetools/PageDiff.h"
#include "pagetools/PageFiles.h"

#include <ostream>

namespace relay {

namespace {

// What "Overflow" means to someone who did not write the program.
constexpr std::string_view kOverflow =
    "Overflow: a tag, or the text between two tags, goes beyond character 32,767";

std::string explained(const std::string& failure) {
    return failure == "Overflow" ? std::string(kOverflow) : failure;
}

// The diff for people: colours, the touched bytes in reverse, nothing that a terminal obeys.
void writeColoured(std::ostream& out, const std::string& name, const std::vector<DiffHunk>& hunks) {
    out << "--- " << terminalText(name) << "\n+++ " << terminalText(name) << '\n';
    for (const DiffHunk& hunk : hunks) {
        out << "\x1b[36m" << hunk.title() << "\x1b[0m\n";
        for (const DiffLine& line : hunk.lines) {
            const bool changed = line.sign != ' ';
            if (changed) out << (line.sign == '-' ? "\x1b[31m" : "\x1b[32m");
            out << line.sign << terminalText(line.untouchedStart());
            if (!line.touched().empty()) out << "\x1b[7m" << terminalText(line.touched()) << "\x1b[27m";
            out << terminalText(line.untouchedEnd()) << (changed ? "\x1b[0m\n" : "\n");
        }
    }
}

}  // namespace

MetaShowCommand::MetaShowCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "show", "Show the title, keywords, description and text of a page",
              "meta show index.html\nmeta show http://shop.example/ --json") {
    app()
        .add_option("FILE-or-URL", m_page,
                    "A page on the web begins with http:// or https://, all else is a file")
        ->required()
        ->type_name("");
}

int MetaShowCommand::execute() {
    const SourcePage page = readSourcePage(context(), m_page, "MetaTagEdit");
    if (page.stopped) return kStopped;
    if (!page.problem.empty()) context().warn(page.problem);
    if (page.isPage) show(page.text);
    return page.problem.empty() ? kSucceeded : kCouldNotRun;
}

void MetaShowCommand::show(std::string_view html) {
    PageTexts page;
    if (const auto failure = failureOf([&] { retrieveMetaTag(html, page); }))
        throw Failure(m_page + ": " + explained(*failure));
    const std::pair<const char*, const std::string*> texts[] = {{"title", &page.tags.title},
                                                                {"keywords", &page.tags.keywords},
                                                                {"description", &page.tags.description},
                                                                {"body", &page.body}};
    if (context().json) {
        JsonLine line;
        for (const auto& [name, text] : texts) line.add(name, *text);
        line.write(context().out());
        return;
    }
    Table table({});
    for (const auto& [name, text] : texts) table.add({name, *text});
    table.write(context().out(), false);
}

MetaChangeCommand::MetaChangeCommand(CLI::App& parent, CommandLineContext& context, MetaTagChange::Way way,
                                     const std::string& name, const std::string& description,
                                     const std::string& examples)
    : Command(parent, context, name, description, examples) {
    m_change.way = way;
    app()
        .add_option("FILE", m_files, "HTML files; each is replaced whole or not at all")
        ->required()
        ->type_name("");
    app().add_option("--title", m_change.tags.title, "The new title")->required();
    app().add_option("--keywords", m_change.tags.keywords, "The new keywords")->required();
    app().add_option("--description", m_change.tags.description, "The new description")->required();
    app().add_flag("--dry-run", m_dryRun, "Write nothing; show what would change as a unified diff");
}

void MetaChangeCommand::checkTexts() const {
    if (m_change.tags.title.empty()) throw UsageError("Please enter a title for your web site.");
    if (m_change.tags.keywords.empty()) throw UsageError("Please enter keywords for your web site.");
    if (m_change.tags.description.empty()) throw UsageError("Please enter description for your web site.");
}

int MetaChangeCommand::execute() {
    checkTexts();
    StopSignal& stop = context().console().stop;
    stop.watch();
    bool failed = false;
    for (const std::string& file : m_files) {
        if (stop.poll()) return kStopped;
        if (!changeOne(file)) failed = true;
    }
    return failed ? kSomeFailed : kSucceeded;
}

bool MetaChangeCommand::changeOne(const std::string& file) {
    std::string diff;
    const auto failure = failureOf([&] {
        if (!m_dryRun) {
            changeFile(file, m_change);
            return;
        }
        const std::string before = readFile(file);
        const std::string after = changedPage(before, m_change);
        const std::vector<DiffHunk> hunks = diffTexts(before, after);
        if (!context().json && context().colours())
            writeColoured(context().out(), file, hunks);
        else
            diff = unifiedDiff(file, hunks);
    });
    if (failure)
        report(file, "failed", explained(*failure));
    else if (context().json || !m_dryRun)
        report(file, m_dryRun ? "unchanged" : "written", diff);
    else
        context().out() << diff;
    return !failure;
}

void MetaChangeCommand::report(const std::string& file, std::string_view state, std::string_view message) {
    if (context().json) {
        JsonLine().add("file", file).add("state", state).add("message", message).write(context().out());
    } else if (state == "failed") {
        // A failure of the file system names the file itself.
        const std::string name = terminalText(file);
        context().warn(message.starts_with(name) ? std::string(message) : name + ": " + std::string(message));
    } else {
        Table table({});
        table.add({state, file});
        if (!context().quiet) table.write(context().console().err, false);
    }
}

MetaInsertCommand::MetaInsertCommand(CLI::App& parent, CommandLineContext& context)
    : MetaChangeCommand(parent, context, MetaTagChange::Way::Insert, "insert",
                        "Add title, keywords and description to HTML files, in front of the old ones",
                        "meta insert index.html --title 'Paper Shop' --keywords 'paper, pens' "
                        "--description 'Paper and pens' --dry-run") {}

MetaReplaceCommand::MetaReplaceCommand(CLI::App& parent, CommandLineContext& context)
    : MetaChangeCommand(parent, context, MetaTagChange::Way::Replace, "replace",
                        "Overwrite title, keywords and description of HTML files",
                        "meta replace *.html --title 'Paper Shop' --keywords 'paper, pens' "
                        "--description 'Paper and pens'") {
    app().add_flag("--title-on-top", m_change.titleOnTop, "Make the title the first line of the head");
}

}  // namespace relay
