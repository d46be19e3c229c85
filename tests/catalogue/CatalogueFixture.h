// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Countries.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineLists.h"
#include "catalogue/EngineLoader.h"
#include "catalogue/EngineSelection.h"
#include "support/PreferenceFixture.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

// The catalogue's classes on a home of their own.
struct CatalogueFixture : PreferenceFixture {
    EngineCategories categories{home.paths(), prompts};
    Countries countries{home.paths()};
    EngineLists lists;
    EngineLoader loader{lists, categories, countries, home.paths(), preference, log, prompts};
    EngineSelection selection{lists, home.paths(), prompts};

    bool load(std::string_view engines, std::string_view tables = "[Free For All Links]\n") {
        home.write("data/catkws.dat", tables);
        home.write("data/krveng5.dat", engines);
        return categories.loadEngineCategory() && loader.loadEngines();
    }
};

inline std::vector<std::string> texts(const Rows& rows) {
    std::vector<std::string> all;
    for (int row = 0; row < rows.count(); ++row) all.push_back(rows.at(row).text);
    return all;
}

}  // namespace relay::test
