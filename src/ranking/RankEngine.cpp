// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankEngine.h"

#include "core/IniFile.h"
#include "core/Text.h"
#include "ranking/RankFields.h"

#include <functional>
#include <utility>

namespace relay {

namespace {

std::string_view orElse(const std::string& value, std::string_view fallback) {
    return value.empty() ? fallback : std::string_view(value);
}

void readTexts(const IniFile& file, RankEngine& engine, unsigned reader) {
    for (const RankTextField& field : kRankTextFields) {
        if ((field.readers & reader) != 0) engine.*field.text = file.value(engine.EngineName, field.key);
    }
}

// The names under 1, 2, ... of a section, up to the first empty one.
void forEachListed(const IniFile& file, std::string_view section,
                   const std::function<void(std::string name)>& add) {
    for (std::size_t number = 1;; ++number) {
        std::string name = file.value(section, std::to_string(number));
        if (name.empty()) return;
        add(std::move(name));
    }
}

}  // namespace

bool RankEngine::isButton() const {
    return equalsNoCase(LinkType, "Button");
}

std::string_view RankEngine::nextPageAttribute() const {
    return orElse(NextPage4, "href=");
}

std::string_view RankEngine::linkOpener1() const {
    return orElse(HREF_KEYWORD1, "<a href=http://");
}

std::string_view RankEngine::linkOpener2() const {
    return orElse(HREF_KEYWORD2, "<a href=\"http://");
}

void readRankEngines(const IniFile& file, std::vector<RankEngine>& engines) {
    forEachListed(file, kEnginesSection, [&](std::string name) {
        RankEngine& engine = engines.emplace_back();
        engine.EngineName = std::move(name);
        readTexts(file, engine, RankUse::Ranking);
        for (const RankNumberField& field : kRankNumberFields)
            engine.*field.number = toInt16(leadingNumber(file.value(engine.EngineName, field.key)));
    });
}

void readSearchEngines(const IniFile& file, std::vector<RankEngine>& engines) {
    forEachListed(file, kEnginesSection, [&](std::string name) {
        RankEngine& engine = engines.emplace_back();
        engine.EngineName = std::move(name);
        readTexts(file, engine, RankUse::Search);
    });
}

KeywordEngines readKeywordEngines(const IniFile& file) {
    KeywordEngines engines;
    forEachListed(file, kKeywordSection, [&](std::string name) { engines.names.push_back(std::move(name)); });
    engines.Engine = file.value(kKeywordSection, kFirstEngineKey);
    return engines;
}

KeywordEngine readKeywordEngine(const IniFile& file, std::string_view name) {
    KeywordEngine engine;
    engine.engine.EngineName = name;
    readTexts(file, engine.engine, RankUse::Keywords);
    engine.URLStartString = file.value(name, kURLStartKey);
    engine.URLEndString = file.value(name, kURLEndKey);
    return engine;
}

std::int16_t readNumOfURLs(const IniFile& file) {
    return toInt16(leadingNumber(file.value(kKeywordSection, kNumOfURLsKey)));
}

}  // namespace relay
