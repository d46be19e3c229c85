// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsitePanel.h"

#include <algorithm>

namespace relay {

namespace {

// The key as the file spells it.
std::string_view knownKey(std::string_view key) {
    for (const std::string_view known : websiteKeys())
        if (equalsNoCase(known, key)) return known;
    throw Failure("A website file has no key \"" + std::string(key) + "\".", 5);
}

KeyValue checked(const KeyValue& wanted) {
    const std::string_view key = knownKey(wanted.key);
    if (key == "Version" || key == "LastURL" || key == "LastReport")
        throw Failure("The key \"" + std::string(key) + "\" is kept by the program itself.");
    if (key == "BlockFFA" && wanted.value != "0" && wanted.value != "1")
        throw Failure("The key \"BlockFFA\" takes 0 or 1.");
    const bool onOneLine = key == "Keyword" || key == "Description";
    return {std::string(key), onOneLine ? removeCrLf(wanted.value) : wanted.value};
}

}  // namespace

const std::vector<std::string_view>& websiteKeys() {
    static const std::vector<std::string_view> keys = [] {
        std::vector<std::string_view> list = {"Version",  "Title",   "Keyword",      "Description", "WebType",
                                              "Language", "LastURL", "MainCategory", "Category"};
        for (const ContactField& contact : kContactFields) list.emplace_back(contact.key);
        list.emplace_back("BlockFFA");
        list.emplace_back("LastReport");
        return list;
    }();
    return keys;
}

void requireWebsite(const std::string& path, std::string_view hint) {
    if (fileExists(path)) return;
    try {
        readFile(path, 0);
    } catch (const Failure& failure) {
        if (failure.number() == 70) throw;
    }
    throw Failure(path + ": there is no such website file." + std::string(hint));
}

std::string getKey(const std::string& path, std::string_view key) {
    return IniFile::load(path).value(kWebsiteSection, knownKey(key));
}

void setKeys(const std::string& path, const std::vector<KeyValue>& values) {
    std::vector<KeyValue> accepted;
    std::transform(values.begin(), values.end(), std::back_inserter(accepted), checked);
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    if (!fileExists(path)) {
        WebsiteFields fields;
        clearWebsiteFields(fields);
        writeWebsite(file, fields, {});
    }
    for (const KeyValue& accept : accepted) file.setValue(kWebsiteSection, accept.key, accept.value);
    file.save(path, Readable::OwnerOnly);
}

}  // namespace relay
