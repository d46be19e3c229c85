// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WebsiteEditing.h"

#include "cli/CommandLineContext.h"
#include "core/Failure.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "projects/WebsiteCheck.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"

namespace relay {

void addFileOption(CLI::App& app, std::string& file, const char* about) {
    app.add_option("FILE", file, about)->required()->type_name("");
}

void requireFile(const std::string& file) {
    requireWebsite(file, " \"website set\" makes one.");
}

void readLists(const std::string& path, const std::function<void()>& read) {
    try {
        read();
    } catch (const Failure& failure) {
        throw Failure(path + ": its number of URLs or reports is wrong (" + failure.what() + ")");
    }
}

void changeUrls(const std::string& path, const std::function<void(Rows& urls)>& change) {
    requireFile(path);
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    Rows urls;
    readLists(path, [&] { readUrls(file, urls); });
    change(urls);
    if (urls.count() > kMostUrls)
        throw Failure(path + ": a website file has at most " + std::to_string(kMostUrls) + " URLs.");
    writeUrls(file, urls);
    file.save(path, Readable::OwnerOnly);
}

void noteLosses(CommandLineContext& context, const KeyValue& entry) {
    const WebsiteKey* const key = findWebsiteKey(entry.key);
    const bool joined = key != nullptr && key->kind == WebsiteKeyKind::OneLine;
    const std::string line = joined ? removeCrLf(entry.value) : entry.value;
    if (firstLine(line).size() < line.size()) context.note(entry.key + ": only the first line is used.");
    if (line.size() > IniFile::kShortLimit)
        context.note(entry.key + ": only the first " + std::to_string(IniFile::kShortLimit) +
                     " bytes are used.");
    if (breaksGet(line)) context.note(entry.key + std::string(kBreaksGet));
}

void noteLongUrl(CommandLineContext& context, const std::string& url) {
    if (url.size() > IniFile::kShortLimit)
        context.warn("Only the first " + std::to_string(IniFile::kShortLimit) +
                     " bytes are used: " + url.substr(0, 60) + " ...");
}

void noteAdded(CommandLineContext& context, int urls) {
    context.note(std::to_string(urls) + (urls == 1 ? " URL added." : " URLs added."));
}

}  // namespace relay
