// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/EngineForms.h"

#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "practice/PracticePages.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kEnginesFolder = "/engines/";
constexpr std::string_view kUsualFields =
    "title=<TITLE>&url=<URL>&description=<DESCRIPTION>&keywords=<KEYWORD>&category=<CATEGORY>&name=<NAME>"
    "&email=<EMAIL>&company=<COMPANY>&city=<CITY>&country=<COUNTRY>";

// Reads "name=template" parts separated by `delimiter`; skips parts without "=".
NamedValues splitPairs(std::string_view text, char delimiter) {
    NamedValues pairs;
    while (!text.empty()) {
        const std::string_view part = text.substr(0, text.find(delimiter));
        if (const std::size_t equals = part.find('='); equals != npos)
            pairs.emplace_back(part.substr(0, equals), trim(part.substr(equals + 1)));
        text.remove_prefix(std::min(part.size() + 1, text.size()));
    }
    return pairs;
}

}  // namespace

void EngineForms::read(std::string_view engines, std::string_view categories) {
    const EngineCategories tables{std::string(categories)};
    const auto storage = tables.storage();
    const EngineTexts texts{engines, *storage};
    CategoryRule rule(tables);
    clsEngines engine(texts);
    const auto close = [&] {
        const std::string_view action = engine.Action();
        const std::string_view target = action.substr(std::min(action.find(kEnginesFolder), action.size()));
        const std::string slug(engineOf(target));
        if (slug.empty()) return;
        // A file without tables has none for this record either.
        if (!equalsNoCase(engine.Category(), "N")) failureOf([&] { rule.resolve(engine); });
        m_forms.insert_or_assign(
            slug, EngineForm{std::string(engine.name()), toUpper(engine.Method()), std::string(target),
                             splitPairs(engine.Query(), '&'), splitPairs(engine.CategoryData(), '>')});
    };
    CatalogueReader reader(engines);
    while (reader.next()) {
        if (reader.key() == EngineKey::Name) {
            close();
            engine = clsEngines(texts);
        }
        engine.set(reader.key(), reader.value());
    }
    close();
}

EngineForm EngineForms::form(std::string_view slug) const {
    if (const auto known = m_forms.find(std::string(slug)); known != m_forms.end()) return known->second;
    EngineForm form;
    form.name = slug;
    form.target = std::string(kEnginesFolder) + std::string(slug) + "/submit";
    form.fields = splitPairs(kUsualFields, '&');
    return form;
}

}  // namespace relay
