// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RunDigests.h"

#include "catalogue/EngineCollection.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/WebsiteFile.h"

#include <QCryptographicHash>

#include <utility>

namespace relay {

namespace {

std::string sha256(std::string_view bytes) {
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())),
                                 QCryptographicHash::Sha256);
    return hash.toHex().toStdString();
}

// Of the keys that a request uses. Each value is preceded by its length, so that different values never give
// the same text.
std::string websiteDigest(const std::string& path) {
    std::string text;
    const auto failure = failureOf([&] {
        if (!fileExists(path)) throw Failure("File not found", 53);
        const IniFile file = IniFile::load(path);
        const auto put = [&](std::string_view section, const std::string& key) {
            const std::string value = file.value(section, key);
            text.append(key).append("=").append(std::to_string(value.size())).append(":").append(value);
            text += '\n';
        };
        for (const WebsiteKey& key : kWebsiteKeys)
            if (key.kind != WebsiteKeyKind::Kept) put(kWebsiteSection, std::string(key.name));
        const int last = leadingInteger(file.value(kWebsiteSection, "LastURL"));
        for (int number = 1; number <= last && number <= 32767; ++number)
            put(kUrlSection, "URL" + std::to_string(number));
        for (const std::string& key : file.keys(kCustomCategorySection)) put(kCustomCategorySection, key);
    });
    return failure ? std::string() : sha256(text);
}

}  // namespace

std::string RunDigests::ofSettings(bool blockSpam) {
    return sha256(blockSpam ? "BlockSpam=1\n" : "BlockSpam=0\n");
}

void CatalogueDigests::begin(const EngineCollection& engines) {
    if (m_texts && m_texts.get() == &engines.texts()) return;
    m_texts = engines.keptTexts();
    m_digests = std::async(std::launch::async, [texts = m_texts] {
        return std::map<std::string, std::string>{{"krveng5.dat", sha256(texts->file)},
                                                  {"catkws.dat", sha256(texts->tables)}};
    });
}

std::map<std::string, std::string> CatalogueDigests::of(const EngineCollection& engines) {
    begin(engines);
    return m_digests.get();
}

RunDigests RunDigests::of(const Services& services, std::map<std::string, std::string> catalogue,
                          const RunPlan& plan) {
    RunDigests digests{std::move(catalogue), {}, {}};
    std::string countries;
    failureOf([&] { countries = readFile(services.paths.inApp("country.kws")); });
    digests.catalogue["country.kws"] = sha256(countries);
    digests.settings =
        ofSettings(leadingInteger(services.settings.value(kApplication, "Preference", "BlockSpam")) != 0);
    for (const PlannedURL& url : plan.urls) {
        const auto [place, isNew] = digests.websites.try_emplace(url.website);
        if (isNew) place->second = websiteDigest(url.website);
    }
    return digests;
}

std::vector<std::string> changedSince(const RunDigests& then, bool blockSpam, const RunDigests& now) {
    std::vector<std::string> changed;
    const auto compare = [&](const auto& before, const auto& present, const std::string& words) {
        for (const auto& [name, digest] : before) {
            const auto found = present.find(name);
            if (digest.empty() || found == present.end() || found->second != digest)
                changed.push_back(words + escapeControlCharacters(name));
        }
    };
    compare(then.catalogue, now.catalogue, "the engine file ");
    // The answer given for the run may have been stored since.
    if (now.settings != then.settings && now.settings != RunDigests::ofSettings(blockSpam))
        changed.emplace_back("the setting BlockSpam");
    compare(then.websites, now.websites, "the website file ");
    return changed;
}

}  // namespace relay
