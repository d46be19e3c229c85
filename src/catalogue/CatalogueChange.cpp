// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueChange.h"

#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineCollection.h"
#include "core/Text.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

// The engines of the texts, as the loader reads them.
class EngineReading final {
  public:
    EngineReading(EngineDataTexts texts, bool refusesAdultSites)
        : m_categories(std::move(texts.categories)), m_refusesAdultSites(refusesAdultSites) {
        m_engines.start(std::move(texts.engines), m_categories.storage());
        m_hasTables = !m_categories.storage()->empty();
        const clsEngines blank(m_engines.texts());
        clsEngines engine = blank;
        CatalogueReader reader(m_engines.file());
        CategoryRule rule(m_categories);
        while (reader.next()) {
            if (reader.key() == EngineKey::Name) add(std::exchange(engine, blank));
            engine.set(reader.key(), reader.value());
            if (reader.key() == EngineKey::Category && m_hasTables) rule.resolve(engine);
        }
        add(engine);
    }

    const EngineCollection& engines() const noexcept { return m_engines; }

  private:
    void add(const clsEngines& engine) {
        const bool refused = isAdultOnly(engine) && m_refusesAdultSites;
        if (!engine.name().empty() && !refused) m_engines.add(engine);
    }

    EngineCategories m_categories;
    EngineCollection m_engines;
    bool m_refusesAdultSites;
    bool m_hasTables = false;
};

std::string_view countryOf(const clsEngines& engine) noexcept {
    return equalsNoCase(engine.Country(), "NN") ? "US" : engine.Country();
}

bool sameField(EngineKey key, const clsEngines& a, const clsEngines& b) noexcept {
    if (clsEngines::isNumber(key)) return a.number(key) == b.number(key);
    // The loader turns these two into upper case.
    if (key == EngineKey::Country) return equalsNoCase(countryOf(a), countryOf(b));
    if (key == EngineKey::EngineType) return equalsNoCase(a.EngineType(), b.EngineType());
    return a.text(key) == b.text(key);
}

bool sameRecord(const clsEngines& a, const clsEngines& b) noexcept {
    return std::all_of(std::begin(EngineFields), std::end(EngineFields), [&](const EngineField& field) {
        return field.key == EngineKey::Name || sameField(field.key, a, b);
    });
}

void list(std::string& report, std::string_view title, const std::vector<std::string>& names,
          std::size_t most) {
    if (names.empty()) return;
    report.append("\r\n\r\n").append(title);
    for (std::size_t i = 0; i < std::min(most, names.size()); ++i)
        report.append("\r\n  ").append(escapeControlCharacters(names[i]));
    if (names.size() > most) report += "\r\n  ... and " + std::to_string(names.size() - most) + " more";
}

}  // namespace

std::string CatalogueChange::counts() const {
    return "Engines added: " + std::to_string(added.size()) + ", removed: " + std::to_string(removed.size()) +
           ", changed: " + std::to_string(changed.size()) + ".";
}

std::string CatalogueChange::report(std::size_t mostNames) const {
    std::string text = counts();
    list(text, "Added:", added, mostNames);
    list(text, "Removed:", removed, mostNames);
    list(text, "Changed:", changed, mostNames);
    return text;
}

CatalogueChange compareCatalogues(EngineDataTexts before, EngineDataTexts after, bool refusesAdultSites) {
    const EngineReading old(std::move(before), refusesAdultSites);
    const EngineReading now(std::move(after), refusesAdultSites);
    CatalogueChange change;
    for (const clsEngines& engine : now.engines()) {
        const clsEngines* const earlier = old.engines().find(engine.name());
        if (earlier == nullptr)
            change.added.emplace_back(engine.name());
        else if (!sameRecord(*earlier, engine))
            change.changed.emplace_back(engine.name());
    }
    for (const clsEngines& engine : old.engines())
        if (now.engines().find(engine.name()) == nullptr) change.removed.emplace_back(engine.name());
    return change;
}

}  // namespace relay
