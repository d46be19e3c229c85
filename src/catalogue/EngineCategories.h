// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace relay {

// An entry of the list myCustomEngine.
struct EngineCategoryEntry final {
    std::string EngineName;
    std::string Data;  // the chosen path
    std::string SpaceID;
};

// The tables that map the program's categories to each engine's own values: the text of a catkws.dat. Load
// them before the engines, which look their table up while they are read.
class EngineCategories final {
  public:
    explicit EngineCategories(std::string text = {});

    // Reads the file. Throws Failure and keeps the old tables when it is missing, empty or unreadable.
    void load(const std::string& path);
    // The table of the first section with the name, without regard to case: label=value entries, each ended
    // by ">". Empty when there is none. The view lives as long as storage(). Throws Failure 9 when the file
    // had no sections.
    std::string_view getEngineCategoryData(std::string_view name) const;

    // Owns what the views point into; keep it to use them after a reload.
    std::shared_ptr<const std::string> storage() const noexcept;

  private:
    struct Tables;

    std::shared_ptr<const Tables> m_tables;
};

}  // namespace relay
