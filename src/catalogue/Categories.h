// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"
#include "core/Rows.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace relay {

struct Services;

// One main category of the program's own tree.
struct clsCategory final {
    std::string MainCategory;
    std::string SubCategory;  // its sub-categories, joined by "|"
};

// The tree from which a website's category is chosen, from AppPath/cat.kws, and the two lists that show it.
// The highlighted row of a list is its selected one.
class Categories final {
  public:
    explicit Categories(const Services& services);

    // Reads the tree and selects its first main category. False when the file is missing; false, after a
    // message, when it cannot be read.
    bool loadCategory();
    // Throws Failure 457 when the main category already exists. Skips a category without a name, and an adult
    // one when adult sites are refused.
    void addCategoryList(const clsCategory& category);
    // Fills lstCategory; shows a message for an unknown name.
    void loadSubCategory(std::string_view mainName);
    // A click on a row of lstMainCategory.
    void selectMainCategory(int row);
    // Selects a website's category in both lists. A sub-category alone also finds its main category; if
    // nothing is found, a business category is selected.
    void setSelectedCategory(std::string_view main, std::string_view sub);
    // The output of a list without a selection does not change.
    void getSelectedCategory(std::string& main, std::string& sub) const;
    // Whether the tree has the sub-category under the main one, without regard to case. An empty main
    // category means any; with an empty sub-category only the main one is looked for.
    bool has(std::string_view main, std::string_view sub) const;

    Rows lstMainCategory;
    Rows lstCategory;

  private:
    void readCategories(std::string_view text, std::string& strayItems);

    const Services& m_services;
    std::deque<clsCategory> m_categories;
    std::unordered_map<std::string_view, const clsCategory*, KeyHash, KeyEqual> m_byName;
};

}  // namespace relay
