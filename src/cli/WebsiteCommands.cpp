// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WebsiteCommands.h"

#include "catalogue/Categories.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PasswordFile.h"
#include "cli/Table.h"
#include "cli/WebsiteEditing.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "core/JsonLine.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>

namespace relay {

namespace {

std::string settableKeys() {
    std::string names;
    for (const WebsiteKey& key : kWebsiteKeys) {
        if (key.kind == WebsiteKeyKind::Kept) continue;
        if (!names.empty()) names += ", ";
        names += key.name;
    }
    return names;
}

const WebsiteKey& settableKey(const std::string& text) {
    const WebsiteKey* const key = findWebsiteKey(text);
    if (!key) throw UsageError("A website file has no key \"" + text + "\". The keys are: " + settableKeys());
    if (key->kind == WebsiteKeyKind::Kept)
        throw UsageError("The key \"" + text + "\" is maintained by the program.");
    return *key;
}

std::string numbered(std::string_view name, int number) {
    return std::string(name) + std::to_string(number);
}

struct ReportEntry final {
    std::string url;
    std::string date;
    std::string reportFile;
};

std::vector<ReportEntry> readReports(const IniFile& file) {
    std::vector<ReportEntry> reports;
    const int count = toInt16(leadingNumber(file.value(kWebsiteSection, "LastReport")));
    for (int i = 1; i <= count; ++i) {
        ReportEntry entry{file.value(kReportSection, numbered("URL", i)),
                          file.value(kReportSection, numbered("Date", i)),
                          file.value(kReportSection, numbered("ReportFile", i))};
        if (!entry.url.empty() && !entry.reportFile.empty()) reports.push_back(std::move(entry));
    }
    return reports;
}

void checkUrl(const std::string& url) {
    if (trim(url).empty()) throw UsageError("A URL is empty.");
    if (hasControlByte(url))
        throw UsageError("A URL contains a line break or another control character: " + url);
}

}  // namespace

WebsiteShowCommand::WebsiteShowCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "show", "Show a website's fields, URLs and reports",
              "website show shop.kws\nwebsite show shop.kws --json") {
    addFileOption(app(), m_file);
    app().add_flag("--show-password", m_showPassword, "Show the password on a terminal too");
}

std::string WebsiteShowCommand::shownValue(const std::string& key, const std::string& value) {
    const bool hide = key == "Password" && context().hidesPasswords() && !m_showPassword;
    return hide && !value.empty() ? std::string(kHiddenPassword) : value;
}

int WebsiteShowCommand::execute() {
    requireFile(m_file);
    const IniFile file = IniFile::load(m_file);
    Rows urls;
    std::vector<ReportEntry> reports;
    readLists(m_file, [&] {
        readUrls(file, urls);
        reports = readReports(file);
    });

    Table fields({});
    JsonLine line;
    for (const WebsiteKey& known : kWebsiteKeys) {
        const std::string key(known.name);
        const std::string value = shownValue(key, file.value(kWebsiteSection, key));
        fields.add({key, value});
        line.add(key, value);
    }
    std::ostream& out = context().out();
    if (context().json) {
        line.write(out);
        for (int i = 0; i < urls.count(); ++i)
            JsonLine().add("URL", urls.at(i).text).add("LocalFile", urls.at(i).tag).write(out);
        for (const ReportEntry& report : reports) {
            JsonLine object;
            object.add("URL", report.url).add("Date", report.date).add("ReportFile", report.reportFile);
            object.write(out);
        }
        return kSucceeded;
    }
    fields.write(out, false);
    Table urlTable({"URL", "Local file"});
    for (int i = 0; i < urls.count(); ++i) urlTable.add({urls.at(i).text, urls.at(i).tag});
    Table reportTable({"Report of", "Date", "File"});
    for (const ReportEntry& report : reports) reportTable.add({report.url, report.date, report.reportFile});
    for (const Table* table : {&urlTable, &reportTable}) {
        if (table->empty()) continue;
        out << '\n';
        table->write(out, context().colours());
    }
    return kSucceeded;
}

WebsiteSetCommand::WebsiteSetCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "set", "Set fields of a website file, which is created if missing",
              "website set shop.kws Title='Paper Shop' Keyword='paper, pens' BlockFFA=1\n"
              "website set shop.kws MainCategory='Business and Finance' Category=Accounting\n"
              "website set shop.kws --password-file secret.txt") {
    addFileOption(app(), m_file);
    app().add_option("KEY=VALUE", m_assignments, "Keys: " + settableKeys())->type_name("");
    app()
        .add_option(
            "--password-file", m_passwordFile,
            "Take the password from the first line of this file (\"-\": standard input), which hides it from "
            "process lists")
        ->type_name("FILE");
}

std::vector<KeyValue> WebsiteSetCommand::wantedValues() {
    std::vector<KeyValue> values;
    for (const std::string& assignment : m_assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string::npos) throw UsageError("\"" + assignment + "\" is not KEY=VALUE.");
        const WebsiteKey& key = settableKey(assignment.substr(0, equals));
        KeyValue entry{std::string(key.name), assignment.substr(equals + 1)};
        if (key.kind == WebsiteKeyKind::Flag && entry.value != "0" && entry.value != "1")
            throw UsageError(entry.key + " takes 0 or 1.");
        if (entry.key == "Password" && !m_passwordFile.empty())
            throw UsageError("The password is given twice.");
        values.push_back(std::move(entry));
    }
    if (!m_passwordFile.empty()) values.push_back({"Password", passwordFromFile(context(), m_passwordFile)});
    if (values.empty()) throw UsageError("KEY=VALUE is required");
    return values;
}

int WebsiteSetCommand::execute() {
    const std::vector<KeyValue> values = wantedValues();
    for (const KeyValue& entry : values) noteLosses(context(), entry);
    setKeys(m_file, values);
    const bool filed = std::any_of(values.begin(), values.end(), [](const KeyValue& entry) {
        return entry.key == "MainCategory" || entry.key == "Category";
    });
    if (filed) noteStrangeCategory();
    return kSucceeded;
}

// A category that the catalogue does not have is saved, but engines get another one instead.
void WebsiteSetCommand::noteStrangeCategory() {
    const IniFile file = IniFile::load(m_file);
    const std::string main = file.value(kWebsiteSection, "MainCategory");
    const std::string sub = file.value(kWebsiteSection, "Category");
    Categories& categories = context().home().catalogue.categories;
    if (!categories.loadCategory() || categories.has(main, sub)) return;
    if (!main.empty() && !categories.has(main, {}))
        context().note("MainCategory: the catalogue has no \"" + main + "\".");
    else
        context().note("Category: the catalogue has no \"" + sub + "\"" +
                       (main.empty() ? "." : " in \"" + main + "\"."));
}

WebsiteAddUrlCommand::WebsiteAddUrlCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "add-url", "Add URLs to a website",
              "website add-url shop.kws http://shop.example/ http://shop.example/pens.html") {
    addFileOption(app(), m_file);
    app().add_option("URL", m_urls, "Added unchanged, except those already there")->required()->type_name("");
}

int WebsiteAddUrlCommand::execute() {
    std::for_each(m_urls.begin(), m_urls.end(), checkUrl);
    for (const std::string& url : m_urls) noteLongUrl(context(), url);
    changeUrls(m_file, [&](Rows& urls) {
        for (const std::string& url : m_urls) {
            if (!addNewItem(urls, url)) context().note("Already there: " + url);
        }
    });
    return kSucceeded;
}

WebsiteImportUrlsCommand::WebsiteImportUrlsCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "import-urls", "Add the URLs of a text file to a website",
              "website import-urls shop.kws urls.txt") {
    addFileOption(app(), m_file);
    app()
        .add_option("TEXTFILE", m_textFile,
                    "Fields that begin with \"http\" and contain a dot, separated by lines or commas")
        ->required()
        ->type_name("");
}

int WebsiteImportUrlsCommand::execute() {
    bool loaded = false;
    int added = 0;
    changeUrls(m_file, [&](Rows& urls) {
        const int before = urls.count();
        loaded = UrlList(urls, context().prompts()).loadURLFromFile(m_textFile);
        added = urls.count() - before;
    });
    if (!loaded) return kCouldNotRun;
    noteAdded(context(), added);
    return kSucceeded;
}

WebsiteExportUrlsCommand::WebsiteExportUrlsCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "export-urls", "Write a website's URLs to a text file, one per line",
              "website export-urls shop.kws urls.txt") {
    addFileOption(app(), m_file);
    app().add_option("TEXTFILE", m_textFile, "Replaced if it exists")->required();
}

int WebsiteExportUrlsCommand::execute() {
    requireFile(m_file);
    Rows urls;
    loadUrlList(m_file, urls);
    return UrlList(urls, context().prompts()).saveURLToFile(m_textFile) ? kSucceeded : kCouldNotRun;
}

}  // namespace relay
