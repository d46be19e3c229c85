// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"
#include "core/Rows.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace relay {

class clsPreference;
class Prompts;
struct Paths;

// One main category of the program's own tree.
struct clsCategory final {
    std::string MainCategory;
    std::string SubCategory;  // its sub-categories, joined by "|"
};

// The tree from which a website's category is chosen, from AppPath/cat.kws, and the two lists that show it.
// A list's selected row is its highlighted one.
class Categories final {
  public:
    Categories(const Paths& paths, const clsPreference& preference, Prompts& prompts);

    // Reads the tree and selects its first main category. False when the file is missing, and, with a
    // message, when reading fails.
    bool loadCategory();
    // Throws Failure 457 when the main category is there already. A category without a name is dropped, and
    // so is an adult one where adult sites are refused.
    void addCategoryList(const clsCategory& category);
    // Fills lstCategory; an unknown name is told in a message.
    void loadSubCategory(std::string_view mainName);
    // A click on a row of lstMainCategory.
    void selectMainCategory(int row);
    // Puts both lists on a website's category; a lone sub-category finds its main category, and what is not
    // found falls back to a business category.
    void setSelectedCategory(std::string_view main, std::string_view sub);
    // A list without selection leaves its output as it was.
    void getSelectedCategory(std::string& main, std::string& sub) const;
    // Whether the tree holds the sub-category below the main one, without regard to case. An empty main
    // category stands for any of them, an empty sub-category asks for the main one alone.
    bool has(std::string_view main, std::string_view sub) const;

    Rows lstMainCategory;
    Rows lstCategory;

  private:
    void readCategories(std::string_view text, std::string& strayItems);

    const Paths& m_paths;
    const clsPreference& m_preference;
    Prompts& m_prompts;
    std::deque<clsCategory> m_categories;
    std::unordered_map<std::string_view, const clsCategory*, KeyHash, KeyEqual> m_byName;
};

}  // namespace relay
