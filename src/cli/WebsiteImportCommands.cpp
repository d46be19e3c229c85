// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WebsiteImportCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/WebsiteEditing.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "projects/WebFormData.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"

#include <vector>

namespace relay {

WebsiteImportFormCommand::WebsiteImportFormCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "import-form",
              "Fill a website file, which is created if missing, from web form data",
              "website import-form shop.kws order.txt") {
    addFileOption(app(), m_file);
    app()
        .add_option("DATAFILE", m_dataFile, "Lines \"name: value\", as an order form on the web sends them")
        ->required()
        ->type_name("");
}

// As in the window: a category that the catalogue does not have is replaced by one that it has.
void WebsiteImportFormCommand::selectCategory(WebsiteFields& fields, std::string_view main,
                                              std::string_view sub) {
    fields.mainCategory = main;
    fields.category = sub;
    Categories& categories = context().home().catalogue.categories;
    if (categories.lstMainCategory.empty() && !categories.loadCategory()) return;
    categories.setSelectedCategory(main, sub);
    fields.mainCategory.clear();
    fields.category.clear();
    categories.getSelectedCategory(fields.mainCategory, fields.category);
}

int WebsiteImportFormCommand::execute() {
    const std::string text = readWebFormData(m_dataFile);
    const FolderLock lock(m_file);
    const bool isNew = !fileExists(m_file);
    IniFile file = IniFile::load(m_file);
    WebsiteFields fields;
    fields.clear();
    if (isNew) writeWebsite(file, fields, {});
    // Only what the file names is written, so all else keeps its bytes.
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) fields.*key.field = file.value(kWebsiteSection, key.name);
    std::vector<std::string> before;
    for (const WebsiteKey& key : kWebsiteKeys)
        before.push_back(key.field ? fields.*key.field : std::string());

    const int applied = applyWebFormData(text, fields, [&](std::string_view main, std::string_view sub) {
        selectCategory(fields, main, sub);
    });
    std::size_t place = 0;
    for (const WebsiteKey& key : kWebsiteKeys) {
        const std::string& old = before[place++];
        if (!key.field || fields.*key.field == old) continue;
        noteLosses(context(), {std::string(key.name), fields.*key.field});
        file.setValue(kWebsiteSection, key.name, fields.*key.field);
    }
    for (int row = 0; row < fields.lsvSiteURLs.count(); ++row)
        noteLongUrl(context(), std::string(fields.lsvSiteURLs.at(row).text));
    readLists(m_file, [&] { writeUrls(file, fields.lsvSiteURLs); });
    file.save(m_file, Readable::OwnerOnly);
    context().note(webFormDataNotice(m_dataFile, applied));
    return applied == 0 ? kSomeFailed : kSucceeded;
}

}  // namespace relay
