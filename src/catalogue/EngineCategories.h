// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace relay {

class Prompts;
struct Paths;

// One place of the list myCustomEngine.
struct EngineCategoryEntry final {
    std::string EngineName;
    std::string Data;  // the path chosen
    std::string SpaceID;
};

// The tables that turn the program's categories into each engine's own values, from WindowsPath/catkws.dat.
// Must be loaded before the engines, which look their table up while they are read.
class EngineCategories final {
  public:
    EngineCategories(const Paths& paths, Prompts& prompts);

    // Reads the file anew. False, with a message, when it is missing, empty or unreadable; the tables that
    // stood then stay.
    bool loadEngineCategory();
    // The table of the first section with the name, without regard to case: label=value entries, each ended
    // by ">". Empty when there is none. The
    // view lives as long as storage(). Throws Failure 9 when the file held no section at all.
    std::string_view getEngineCategoryData(std::string_view name) const;

    // The tables, for those who keep views of them beyond a reload.
    std::shared_ptr<const void> storage() const noexcept;

    // Called before the message of a failed load (the window puts its splash away).
    std::function<void()> closeSplash;

  private:
    struct Tables;

    const Paths& m_paths;
    Prompts& m_prompts;
    std::shared_ptr<const Tables> m_tables;
};

}  // namespace relay
