// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineLoader.h"

#include "catalogue/Countries.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineLists.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Text.h"
#include "core/clsPreference.h"

#include <memory>
#include <string>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kUsualRecordBytes = 250;  // a guess to make room by

std::string countText(std::uint16_t count) {
    return std::to_string(static_cast<std::int16_t>(count)) + ")";
}

}  // namespace

EngineLoader::EngineLoader(EngineLists& lists, const EngineCategories& categories, const Countries& countries,
                           const Paths& paths, const clsPreference& preference, Log& log, Prompts& prompts)
    : m_lists(lists),
      m_categories(categories),
      m_countries(countries),
      m_paths(paths),
      m_preference(preference),
      m_log(log),
      m_prompts(prompts) {}

bool EngineLoader::loadEngines() {
    try {
        emptySelection();
        readEngines();
        return true;
    } catch (const std::exception&) {
        if (closeSplash) closeSplash();
        m_prompts.message(
            "Engine data file is corrupted, you need to download the engine submission data file from our "
            "web "
            "site by click on the 'File/Update Engine Data' menu item from the menu bar and following the "
            "instruction on the screen.",
            "Load Engines", Icon::Information);
        return false;
    }
}

// The engines themselves stand until the file proved readable, so they must not stay selected without a row.
void EngineLoader::emptySelection() {
    for (clsEngines& engine : m_lists.engines) engine.Selected = false;
    m_lists.lsvEngines.clear();
    m_lists.lsvSelectedEngines.clear();
    m_lists.lsvSelectedEngines.setColumnTitle(0, "Selected Engines");
}

void EngineLoader::readEngines() {
    const auto text = std::make_shared<const std::string>(readFile(m_paths.inWindows("krveng5.dat")));
    if (text->empty()) throw Failure("The file is empty");
    const auto upperCase = std::make_shared<UpperCaseTexts>();
    Counts counts;
    {
        const RowsBatch batch(m_lists.lsvEngines);
        m_lists.engines.clear();
        m_lists.engines.keep(text);
        m_lists.engines.keep(upperCase);
        m_lists.engines.keep(m_categories.storage());
        const std::size_t expected = text->size() / kUsualRecordBytes;
        m_lists.engines.reserve(expected);
        m_lists.lsvEngines.reserve(static_cast<int>(expected));

        clsEngines engine;
        CatalogueReader reader(*text);
        while (reader.next()) {
            if (reader.key() == EngineKey::Name) {
                addEngineList(engine);
                engine = {};
                m_lists.engines.expect(reader.value());
                m_lists.lsvEngines.expect(reader.value());
                ++counts.engines;
            }
            applyItem(engine, reader.key(), reader.value(), *upperCase, counts);
        }
        addEngineList(engine);
    }
    showCounts(counts);
}

void EngineLoader::applyItem(clsEngines& engine, EngineKey key, std::string_view value,
                             UpperCaseTexts& upperCase, Counts& counts) {
    storeField(engine, key, value, upperCase);
    switch (key) {
        case EngineKey::Country:
            if (!engine.Country.empty() && m_lists.countryFilter.find(engine.Country) == std::string::npos) {
                addCountryFilterList(engine.Country);
            }
            break;
        case EngineKey::EngineType:
            ++counts.types[engineTypeIndex(engine.EngineType)];
            break;
        case EngineKey::Category:
            applyCategory(engine);
            break;
        case EngineKey::Action:
            if (!startsWithNoCase(value, "http://") && !containsNoCase(value, "http://")) {
                m_log.WriteErrorLog("Error_Engine_URL:" + escapeControlCharacters(engine.name) + " - " +
                                    escapeControlCharacters(value));
            }
            break;
        default:
            break;
    }
}

void EngineLoader::applyCategory(clsEngines& engine) {
    resolveCategoryData(engine, m_categories);
    if (equalsNoCase(engine.Category, "C")) {
        m_lists.cboCustomEngines.emplace_back(engine.name);
        m_lists.myCustomEngine.push_back({std::string(engine.name), {}, {}});
    }
    if (missesCategoryData(engine)) {
        m_log.WriteErrorLog("CategoryData missing. Engine: " + escapeControlCharacters(engine.name));
    }
}

void EngineLoader::addEngineList(const clsEngines& engine) {
    if (engine.name.empty()) return;
    if (isAdultOnly(engine) && m_preference.refusesAdultSites()) return;
    if (m_lists.engines.add(engine)) {
        addEngineListView(m_lists.lsvEngines, engine, m_row);
    } else {
        m_log.WriteErrorLog("Duplicate Engine: " + escapeControlCharacters(engine.name));
    }
}

void EngineLoader::addCountryFilterList(std::string_view code) {
    m_lists.countryFilter.append(code).push_back(',');
    Row row;
    row.text.append(m_countries.getCountryName(code)).append("(").append(code).append(")");
    m_lists.lstCountry.add(std::move(row));
}

void EngineLoader::showCounts(const Counts& counts) {
    m_lists.lsvEngines.setColumnTitle(0, "Engines(" + countText(counts.engines));
    for (std::size_t index = 0; index < counts.types.size(); ++index) {
        TypeBox& box = m_lists.chkType[index];
        box.count = static_cast<std::int16_t>(counts.types[index]);
        box.caption = std::string(EngineTypes[index].caption) + countText(counts.types[index]);
    }
}

}  // namespace relay
