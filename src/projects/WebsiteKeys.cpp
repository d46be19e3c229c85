// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/WebsiteKeys.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "projects/WebsiteFile.h"

#include <algorithm>

namespace relay {

namespace {

const WebsiteKey& knownKey(std::string_view name) {
    if (const WebsiteKey* const key = findWebsiteKey(name)) return *key;
    throw Failure("A website file has no key \"" + std::string(name) + "\".", 5);
}

KeyValue checked(const KeyValue& wanted) {
    const WebsiteKey& key = knownKey(wanted.key);
    const std::string name(key.name);
    if (key.kind == WebsiteKeyKind::Kept)
        throw Failure("The key \"" + name + "\" is maintained by the program.");
    if (key.kind == WebsiteKeyKind::Flag && wanted.value != "0" && wanted.value != "1")
        throw Failure("The key \"" + name + "\" takes 0 or 1.");
    return {name, key.kind == WebsiteKeyKind::OneLine ? removeCrLf(wanted.value) : wanted.value};
}

}  // namespace

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
    return IniFile::load(path).value(kWebsiteSection, knownKey(key).name);
}

void setKeys(const std::string& path, const std::vector<KeyValue>& values) {
    std::vector<KeyValue> accepted;
    std::transform(values.begin(), values.end(), std::back_inserter(accepted), checked);
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    if (!fileExists(path)) {
        WebsiteFields fields;
        fields.clear();
        writeWebsite(file, fields, {});
    }
    for (const KeyValue& accept : accepted) file.setValue(kWebsiteSection, accept.key, accept.value);
    file.save(path, Readable::OwnerOnly);
}

}  // namespace relay
