// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace relay {

// One place of the list myCustomEngine.
struct EngineCategoryEntry final {
    std::string EngineName;
    std::string Data;  // the path chosen
    std::string SpaceID;
};

// The tables that turn the program's categories into each engine's own values: the text of a catkws.dat.
// Must be loaded before the engines, which look their table up while they are read.
class EngineCategories final {
  public:
    explicit EngineCategories(std::string text = {});

    // Reads the file instead. Throws Failure when it is missing, empty or unreadable; the tables that stood
    // then stay.
    void load(const std::string& path);
    // The table of the first section with the name, without regard to case: label=value entries, each ended
    // by ">". Empty when there is none. The view lives as long as storage(). Throws Failure 9 when the file
    // held no section at all.
    std::string_view getEngineCategoryData(std::string_view name) const;

    // What the views point into, for those who keep them beyond a reload.
    std::shared_ptr<const std::string> storage() const noexcept;

  private:
    struct Tables;

    std::shared_ptr<const Tables> m_tables;
};

}  // namespace relay
