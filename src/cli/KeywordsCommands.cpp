// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/KeywordsCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PageSource.h"
#include "cli/StopSignal.h"
#include "cli/TerminalText.h"
#include "core/FileStore.h"
#include "core/JsonLine.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "pagetools/KeywordLists.h"
#include "ranking/KeywordBuilder.h"
#include "transport/frmHTTP.h"

#include <QEventLoop>

#include <algorithm>
#include <ostream>

namespace relay {

namespace {

void write(CommandLineContext& context, const std::vector<std::string>& keywords) {
    for (const std::string& keyword : keywords) {
        if (context.json)
            JsonLine().add("keyword", keyword).write(context.out());
        else
            context.out() << terminalText(keyword) << '\n';
    }
}

// "2" or "1-3", from 1 to 3.
std::pair<std::size_t, std::size_t> rangeOf(const std::string& text) {
    const auto digit = [&text](std::size_t at) {
        return static_cast<std::size_t>(text[at] >= '1' && text[at] <= '3' ? text[at] - '0' : 0);
    };
    if (text.size() == 1 && digit(0) > 0) return {digit(0), digit(0)};
    if (text.size() == 3 && text[1] == '-' && digit(0) > 0 && digit(0) <= digit(2))
        return {digit(0), digit(2)};
    throw UsageError("--words: \"" + text + "\" is no range from 1 to 3");
}

}  // namespace

KeywordsFindCommand::KeywordsFindCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "find", "Gather the keywords of the pages that an engine finds for a phrase",
              "--home try keywords find 'writing paper'\n"
              "--home try keywords find pens --engine 'Word Market' --one-per-line") {
    app().add_option("PHRASE", m_phrase, "What to look for")->required()->type_name("");
    app()
        .add_option("--engine", m_engine, "One of the keyword builder's engines (default: its first choice)")
        ->type_name("NAME");
    app().add_flag("--one-per-line", m_onePerLine, "One keyword per line instead of commas");
}

int KeywordsFindCommand::execute() {
    if (trim(m_phrase).empty()) throw UsageError("PHRASE: is empty");
    const Services& services = context().home().services;
    frmHTTP fetcher(services);
    KeywordBuilder builder(fetcher, services);
    if (!builder.catalogue.loadEngine()) return kCouldNotRun;
    const KeywordEngines& offered = builder.catalogue.offered();
    const std::string wanted = m_engine.empty() ? offered.Engine : m_engine;
    const auto same = [&wanted](const std::string& name) { return equalsNoCase(name, wanted); };
    if (std::none_of(offered.names.begin(), offered.names.end(), same))
        throw Failure("The keyword builder has no engine \"" + wanted + "\".");
    if (!builder.catalogue.loadEngineData(wanted)) return kCouldNotRun;
    builder.onePerLine = m_onePerLine;

    StopSignal& stop = context().console().stop;
    stop.watch();
    QEventLoop loop;
    QObject::connect(&builder, &KeywordBuilder::done, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QObject::connect(&stop, &StopSignal::requested, &builder, [&builder] { builder.cancel(); });
    builder.gather(m_phrase);
    if (stop.poll()) builder.cancel();
    if (builder.isRunning()) loop.exec();
    for (const std::string& problem : builder.problems()) context().warn(problem);
    if (context().json)
        write(context(), keywordsOf(builder.txtKeywordList));
    else
        context().out() << terminalLines(builder.txtKeywordList);
    if (stop.poll()) return kStopped;
    return builder.problems().empty() ? kSucceeded : kSomeFailed;
}

KeywordsCombineCommand::KeywordsCombineCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "combine", "Join every keyword of one list with every one of the next",
              "--home try keywords combine colours.txt products.txt") {
    app()
        .add_option("FILE", m_files, "Lists, one keyword a line or separated by commas")
        ->required()
        ->type_name("");
}

int KeywordsCombineCommand::execute() {
    if (m_files.size() < 2) throw UsageError("At least two lists are needed");
    std::vector<std::vector<std::string>> lists;
    lists.reserve(m_files.size());
    for (const std::string& file : m_files) lists.push_back(keywordsOf(readFile(file)));
    write(context(), combineKeywords(lists));
    return kSucceeded;
}

KeywordsCountCommand::KeywordsCountCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "count", "Count the words of pages, and the sequences of two and three",
              "--home try keywords count index.html\n"
              "--home try keywords count http://shop.example/ --words 2-3") {
    app()
        .add_option("FILE-or-URL", m_names,
                    "Pages; on the web they begin with http:// or https://, all else are files")
        ->required()
        ->type_name("");
    app().add_option("--words", m_words, "How many words a sequence has")->type_name("1-3");
}

int KeywordsCountCommand::execute() {
    const auto [fewest, most] = rangeOf(m_words);
    std::string text;
    bool failed = false;
    for (const std::string& name : m_names) {
        SourcePage page;
        if (const auto failure = failureOf([&] { page = readSourcePage(context(), name, "KeywordBuilder"); }))
            page.problem = *failure;
        if (page.stopped) return kStopped;
        if (page.isPage) {
            const CountedText counted = countedText(page.text);
            text.append(counted.text).append("\n");
            if (!counted.problem.empty()) page.problem = terminalText(name) + ": " + counted.problem;
        }
        if (!page.problem.empty()) {
            context().warn(page.problem);
            failed = true;
        }
    }
    for (const CountedWords& counted : countWords(text, fewest, most)) {
        if (context().json)
            JsonLine().add("words", counted.words).add("count", counted.count).write(context().out());
        else
            context().out() << counted.count << '\t' << terminalText(counted.words) << '\n';
    }
    return failed ? kCouldNotRun : kSucceeded;
}

}  // namespace relay
