// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EnginesCustomCommands.h"

#include "catalogue/Catalogue.h"
#include "catalogue/CustomEngineStore.h"
#include "catalogue/EngineFields.h"
#include "catalogue/EngineTypes.h"
#include "catalogue/FormScraper.h"
#include "cli/CommandLineContext.h"
#include "cli/EnginesScrapeCommand.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/JsonLine.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/Url.h"

#include <algorithm>

namespace relay {

namespace {

std::string valueOf(const CustomEngineRecord& record, const CustomEngineKey& key) {
    return key.text != nullptr ? record.*key.text : std::to_string(numberOf(record, key));
}

void writeJson(const CustomEngineRecord& record, std::ostream& out) {
    JsonLine line;
    for (const CustomEngineKey& key : kCustomEngineKeys) {
        if (key.text != nullptr)
            line.add(key.name, record.*key.text);
        else
            line.add(key.name, std::int64_t{numberOf(record, key)});
    }
    line.write(out);
}

const CustomEngineRecord& requireEngine(const CustomEngineStore& store, const std::string& name) {
    const CustomEngineRecord* const record = store.find(name);
    if (record == nullptr) throw Failure("There is no custom engine \"" + name + "\".");
    return *record;
}

CustomEngineStore openStore(CommandLineContext& context) {
    CustomEngineStore store(context.home().services);
    store.loadEngines();
    return store;
}

std::string settableKeys() {
    std::string names;
    for (const CustomEngineKey& key : kCustomEngineKeys) {
        if (key.key == EngineKey::Name || key.key == EngineKey::Unknown) continue;
        names.append(names.empty() ? "" : ", ").append(key.name);
    }
    return names;
}

// In any spelling that the catalogue's file takes.
const CustomEngineKey& settableKey(const std::string& text) {
    const EngineKey wanted = equalsNoCase(text, "CategoryData") ? EngineKey::CategoryData : engineKey(text);
    const auto known = std::find_if(std::begin(kCustomEngineKeys), std::end(kCustomEngineKeys),
                                    [wanted](const CustomEngineKey& key) { return key.key == wanted; });
    if (known == std::end(kCustomEngineKeys) || wanted == EngineKey::Unknown)
        throw UsageError("A custom engine has no key \"" + text + "\". The keys are: " + settableKeys());
    if (wanted == EngineKey::Name) throw UsageError("The name is the argument before the options.");
    return *known;
}

bool isYesOrNo(const std::string& value) {
    return equalsNoCase(value, "Yes") || equalsNoCase(value, "No") || equalsNoCase(value, "Y") ||
           equalsNoCase(value, "N");
}

// Refuses what the screen does not offer.
std::string allowedValue(EngineKey key, const std::string& value) {
    switch (key) {
        case EngineKey::EngineType: {
            const std::string type = toUpper(value);
            std::string codes;
            for (const EngineTypeRow& row : EngineTypes) {
                if (type == row.code) return type;
                codes.append(codes.empty() ? "" : ", ").append(row.code);
            }
            throw UsageError("Type is one of " + codes + ".");
        }
        case EngineKey::Country:
            return toUpper(value);
        case EngineKey::CountryOnly:
        case EngineKey::Adults:
        case EngineKey::AdultOnlySites:
            if (!isYesOrNo(value)) throw UsageError("This key takes Yes or No: " + value);
            return startsWithNoCase(value, "Y") ? "Yes" : "No";
        case EngineKey::Category:
            if (!isYesOrNo(value) && !equalsNoCase(value, "F"))
                throw UsageError(
                    "Category takes Y or N; the type FFA makes it F, and CategoryData makes it Y.");
            return toUpper(left(value, 1));
        case EngineKey::Method:
            if (!equalsNoCase(value, "GET") && !equalsNoCase(value, "POST"))
                throw UsageError("Method is GET or POST.");
            return value;
        default:
            return value;
    }
}

void assign(CustomEngineRecord& record, const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) throw UsageError("\"" + assignment + "\" is not KEY=VALUE.");
    const CustomEngineKey& key = settableKey(assignment.substr(0, equals));
    const std::string value = allowedValue(key.key, std::string(trim(assignment.substr(equals + 1))));
    if (key.text != nullptr) {
        record.*key.text = value;
        if (key.key == EngineKey::EngineType) record.SiteLevel = usualSiteLevel(value);
        return;
    }
    const int number = leadingInteger(value);
    if (std::to_string(number) != value) throw UsageError(std::string(key.name) + " takes a whole number.");
    if (key.number != nullptr) {
        record.*key.number = number;
        return;
    }
    if (number < 1 || number > 5) throw UsageError("SiteLevel is 1 to 5.");
    record.SiteLevel = static_cast<std::int16_t>(number);
}

void addNameOption(CLI::App& app, std::string& name) {
    app.add_option("NAME", name, "The engine's name, in any case")->required()->type_name("");
}

}  // namespace

CustomListCommand::CustomListCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "list", "List the engines of your own",
              "--home try engines custom list\n--home try engines custom list --json") {}

int CustomListCommand::execute() {
    const CustomEngineStore store = openStore(context());
    Table table({"Name", "Type", "Country", "Category", "Method", "Level"});
    for (const CustomEngineRecord& record : store.engines()) {
        if (context().json)
            writeJson(record, context().out());
        else
            table.add({record.Name, record.EngineType, record.Country, record.Category, record.Method,
                       std::to_string(record.SiteLevel)});
    }
    if (!table.empty()) table.write(context().out(), context().colours());
    if (store.engines().empty()) context().note("No engines.");
    return kSucceeded;
}

CustomShowCommand::CustomShowCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "show", "Show one engine of your own",
              "--home try engines custom show Harbour") {
    addNameOption(app(), m_name);
}

int CustomShowCommand::execute() {
    const CustomEngineStore store = openStore(context());
    const CustomEngineRecord& record = requireEngine(store, m_name);
    if (context().json) {
        writeJson(record, context().out());
        return kSucceeded;
    }
    Table table({});
    for (const CustomEngineKey& key : kCustomEngineKeys) table.add({key.name, valueOf(record, key)});
    table.write(context().out(), false);
    return kSucceeded;
}

CustomAddCommand::CustomAddCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "add", "Add an engine of your own, or change it",
              "--home try engines custom add Harbour --from http://harbour.example/add --set "
              "Country=DE\n"
              "--home try engines custom add Harbour --set Type=DIR --set MaxTitle=60") {
    addNameOption(app(), m_name);
    app()
        .add_option("--from", m_page,
                    "Read the web form of this page; all but name and addresses is set anew")
        ->type_name("FILE-or-URL");
    app()
        .add_option("--set", m_assignments, "Set a key; repeat it for more. Keys: " + settableKeys())
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
}

int CustomAddCommand::execute() {
    CustomEngineStore store = openStore(context());
    CustomEngineRecord record;
    record.Name = trim(m_name);
    if (const CustomEngineRecord* const known = store.find(record.Name)) {
        record = *known;
    } else if (context().home().catalogue.engineDataPresent()) {
        if (!context().loadEngines()) return kCouldNotRun;
        if (context().home().catalogue.lists.engines.find(record.Name) != nullptr)
            throw Failure(std::string(kNameTaken));
    }
    for (CustomEngineRecord tried = record; const std::string& assignment : m_assignments)
        assign(tried, assignment);
    if (!m_page.empty()) {
        PageArgument page(context(), m_page);
        if (!page.read()) return kStopped;
        const ScrapedForm form = readForm(extractFormSource(page.html()));
        if (!form.found) context().warn("The page has no form.");
        if (record.AddURL.empty() && !localPath(m_page, TypedIn::CommandLine)) record.AddURL = m_page;
        takeForm(record, form);
    }
    for (const std::string& assignment : m_assignments) assign(record, assignment);
    if (const RecordProblem problem = completeRecord(record); !problem.words.empty())
        throw Failure(problem.words);
    for (const Finding& finding : checkRecord(record, context().home().catalogue.engineCategories,
                                              context().home().preference.refusesAdultSites()))
        context().note(std::string(findingName(finding.kind)) + ": " + finding.text);
    store.put(std::move(record));
    store.saveEngineFile();
    return kSucceeded;
}

CustomRemoveCommand::CustomRemoveCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "remove", "Remove an engine of your own",
              "--home try engines custom remove Harbour") {
    addNameOption(app(), m_name);
}

int CustomRemoveCommand::execute() {
    CustomEngineStore store = openStore(context());
    const CustomEngineRecord& record = requireEngine(store, m_name);
    store.remove(static_cast<std::size_t>(&record - store.engines().data()));
    store.saveEngineFile();
    return kSucceeded;
}

CustomMergeCommand::CustomMergeCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "merge", "Put your own engines into the catalogue",
              "--home try engines custom merge\n--home try engines custom merge --undo") {
    app().add_flag("--undo", m_undo, "Take the last merge back");
}

int CustomMergeCommand::execute() {
    CustomEngineStore store = openStore(context());
    if (m_undo) {
        store.undoMerge();
        context().note("The last merge was taken back.");
        return kSucceeded;
    }
    context().note(store.mergeEngineFile());
    return kSucceeded;
}

CustomExportCommand::CustomExportCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "export", "Copy your own engines to two files of a folder",
              "--home try engines custom export\n--home try engines custom export ~/backup") {
    app().add_option("DIR", m_folder, "The folder (default: the program's)")->type_name("");
}

int CustomExportCommand::execute() {
    CustomEngineStore store = openStore(context());
    const std::string folder = m_folder.empty() ? context().home().paths.AppPath : m_folder;
    store.exportEngineData(folder);
    context().note(exportedNotice(folder));
    return kSucceeded;
}

CustomImportCommand::CustomImportCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "import", "Take over exported engines from a folder",
              "--home try engines custom import ~/backup") {
    app()
        .add_option("DIR", m_folder, "The folder with cengdata.dat and ccatdata.dat")
        ->required()
        ->type_name("");
}

int CustomImportCommand::execute() {
    CustomEngineStore store = openStore(context());
    if (!folderExists(m_folder)) throw Failure(std::string(kNoImportFolder));
    store.importEngineData(m_folder);
    store.saveEngineFile();
    return kSucceeded;
}

}  // namespace relay
