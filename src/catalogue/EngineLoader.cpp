// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineLoader.h"

#include "catalogue/Countries.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineLists.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/clsPreference.h"

#include <limits>
#include <string>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kMostRemarks = 1000;   // of one kind in one load
constexpr std::size_t kRemarkedBytes = 500;  // of a name or a value
constexpr std::size_t kMostCustomEngines = std::numeric_limits<std::int16_t>::max();  // the range of their
                                                                                      // index
constexpr std::array<std::string_view, 3> kRemarks{
    "Error_Engine_URL:", "CategoryData missing. Engine: ", "Duplicate Engine: "};

std::string countText(std::uint16_t count) {
    return std::to_string(static_cast<std::int16_t>(count)) + ")";
}

// Turns a part of the text into upper case in place.
void upperCase(std::string& text, std::string_view part) {
    const auto start = static_cast<std::size_t>(part.data() - text.data());
    for (std::size_t i = 0; i < part.size(); ++i) {
        if (part[i] >= 'a' && part[i] <= 'z') text[start + i] = static_cast<char>(part[i] - 'a' + 'A');
    }
}

}  // namespace

EngineLoader::EngineLoader(const Services& services, EngineLists& lists, const EngineCategories& categories,
                           const Countries& countries)
    : m_services(services), m_lists(lists), m_categories(categories), m_countries(countries) {}

void EngineLoader::load() {
    m_remarks = {};
    try {
        emptySelection();
        readEngines();
    } catch (const std::exception&) {
        logSkippedRemarks();
        throw;
    }
    logSkippedRemarks();
}

// The engines stay until the file has been read, but must not stay selected without a row.
void EngineLoader::emptySelection() {
    for (clsEngines& engine : m_lists.engines) engine.Selected = false;
    m_lists.lsvEngines.clear();
    m_lists.lsvSelectedEngines.clear();
    m_lists.lsvSelectedEngines.setColumnTitle(0, "Selected Engines");
}

void EngineLoader::readEngines() {
    std::string text = readFile(m_services.paths.inWindows("krveng5.dat"));
    if (text.empty()) throw Failure("The file is empty");
    EngineCollection& engines = m_lists.engines;
    engines.start(std::move(text), m_categories.storage());
    Load load{engines.file(), CategoryRule(m_categories)};
    try {
        readRecords(load);
    } catch (const std::exception&) {
        addEngineListView(m_lists.lsvEngines, engines);
        throw;
    }
    addEngineListView(m_lists.lsvEngines, engines);
    showCounts(load);
}

void EngineLoader::readRecords(Load& load) {
    const clsEngines blank(m_lists.engines.texts());
    clsEngines engine = blank;
    CatalogueReader reader(load.text);
    while (reader.next()) {
        if (reader.key() == EngineKey::Name) {
            addEngineList(engine);
            engine = blank;
            m_lists.engines.expect(reader.value());
            ++load.engines;
        }
        applyItem(engine, reader.key(), reader.value(), load);
    }
    addEngineList(engine);
}

void EngineLoader::applyItem(clsEngines& engine, EngineKey key, std::string_view value, Load& load) {
    engine.set(key, value);
    switch (key) {
        case EngineKey::Country:
            upperCase(load.text, value);
            if (value == "NN")
                load.text.replace(static_cast<std::size_t>(value.data() - load.text.data()), 2, "US");
            if (!m_lists.countryFilter.contains(value)) addCountryFilterList(value);
            break;
        case EngineKey::EngineType:
            upperCase(load.text, value);
            ++load.types[engineTypeIndex(value)];
            break;
        case EngineKey::Category:
            applyCategory(engine, load);
            break;
        case EngineKey::Action:
            if (!startsWithNoCase(value, "http://") && !containsNoCase(value, "http://"))
                remark(Remark::UnknownAction, engine);
            break;
        default:
            break;
    }
}

void EngineLoader::applyCategory(clsEngines& engine, Load& load) {
    load.rule.resolve(engine);
    if (equalsNoCase(engine.Category(), "C")) addCustomEngine(engine, load);
    if (missesCategoryData(engine)) remark(Remark::NoCategoryData, engine);
}

// A record that repeats its rule adds its name each time, up to a limit.
void EngineLoader::addCustomEngine(const clsEngines& engine, Load& load) {
    load.customNameBytes += engine.name().size();
    if (load.customNameBytes > load.text.size() || m_lists.myCustomEngine.size() >= kMostCustomEngines)
        return;
    m_lists.cboCustomEngines.emplace_back(engine.name());
    m_lists.myCustomEngine.push_back({std::string(engine.name()), {}, {}});
}

void EngineLoader::addEngineList(const clsEngines& engine) {
    if (engine.name().empty()) return;
    if (isAdultOnly(engine) && m_services.preference.refusesAdultSites()) return;
    if (!m_lists.engines.add(engine)) remark(Remark::Duplicate, engine);
}

void EngineLoader::addCountryFilterList(std::string_view code) {
    m_lists.countryFilter.add(code);
    Row row;
    row.text.append(m_countries.getCountryName(code)).append("(").append(code).append(")");
    m_lists.lstCountry.add(std::move(row));
}

void EngineLoader::remark(Remark kind, const clsEngines& engine) {
    const auto place = static_cast<std::size_t>(kind);
    if (++m_remarks[place] > kMostRemarks) return;
    std::string line(kRemarks[place]);
    line.append(escapeControlCharacters(left(engine.name(), kRemarkedBytes)));
    if (kind == Remark::UnknownAction)
        line.append(" - ").append(escapeControlCharacters(left(engine.Action(), kRemarkedBytes)));
    m_services.log.WriteErrorLog(line);
}

void EngineLoader::logSkippedRemarks() {
    for (std::size_t kind = 0; kind < m_remarks.size(); ++kind) {
        if (m_remarks[kind] <= kMostRemarks) continue;
        m_services.log.WriteErrorLog(std::string(kRemarks[kind]) + "... " +
                                     std::to_string(m_remarks[kind] - kMostRemarks) + " more");
    }
}

void EngineLoader::showCounts(const Load& load) {
    m_lists.lsvEngines.setColumnTitle(0, "Engines(" + countText(load.engines));
    for (std::size_t index = 0; index < load.types.size(); ++index) {
        TypeBox& box = m_lists.chkType[index];
        box.count = static_cast<std::int16_t>(load.types[index]);
        box.caption = std::string(EngineTypes[index].caption) + countText(load.types[index]);
    }
}

}  // namespace relay
