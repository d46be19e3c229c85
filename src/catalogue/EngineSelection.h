// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace relay {

struct EngineLists;
struct Services;
struct clsEngines;

// All the ways into and out of the selection. It is held twice, by each engine's Selected and by the rows of
// lsvSelectedEngines; every operation here keeps the two together and renews the count in the list's title.
// Operations that return nothing and say nothing else tell their failures in a message titled "Error".
class EngineSelection final {
  public:
    EngineSelection(const Services& services, EngineLists& lists);

    // A user's click on a type's box; held back while the program ticks the boxes.
    void clickType(std::size_t index, bool ticked);
    // Hot sites go along with every type, both ways.
    void EngineSelectByType(std::string_view type, bool on);
    // The code is the two characters behind the row's first "(", or the whole row; "ALL" takes every engine.
    // Only ever adds.
    void EngineSelectByCountry(std::string_view rowText);
    // Replaces the selection by "MajorSite", "CustomEngine" or "AdultOnlySite"; by nothing for another mode.
    void SelectByMode(std::string_view mode);
    // Drops the engines that refuse adult sites or take nothing else.
    void EngineSelectNoAdultSites();
    // The highlighted rows of lsvEngines, or all of them; all of them tick every type's box as well.
    void EngineSelect(bool all);
    // The highlighted rows of lsvSelectedEngines, or all of them, which clears every type's box as well.
    void EngineRemove(bool all);
    // False, and nothing happens, for a name that is not loaded. An engine that has a row already stays.
    bool EngineSingleSelect(std::string_view name);
    // Highlights and selects every row of lsvEngines whose text contains the text; says so when none does.
    void findEnginesByKeyword(std::string_view text);
    // The Delete key in lsvEngines: the highlighted rows go, their engines stay in the collection. Rows of
    // lsvSelectedEngines are not touched.
    void deleteListedEngines();

    // One name a line, over an existing file. Throws Failure when it cannot be written.
    void saveSelectedEngine(const std::string& path) const;
    // Adds the engines named in the file; names that are not loaded are passed over, and a missing file is no
    // failure. False, with a message, when reading stopped (a name has a row already, an unreadable file).
    bool loadSelectedEngine(const std::string& path) { return readSelection(path, Repeated::Ends); }
    // Writes AppPath/englist.htm and opens it in the system's handler. Throws Failure when it cannot be
    // written.
    void exportEngineList() const;

    // The entries of the Engines menu: save, load, top engines, customised engines, the failed engines of
    // earlier runs, export.
    void saveSelection();
    void loadSelection();
    void selectTopEngines();
    void selectCustomEngines();
    void selectFailedEngines();
    // The same, but a name that is chosen already is passed over instead of ending the reading.
    void selectFailedEnginesOnce();
    void offerEngineList();

    // A selected engine shows the FFA icon.
    bool isThereFFASites() const;
    // The codes of the ticked boxes; each but ENG has a comma in front of it.
    std::string getEngineType() const;

  private:
    // What a name that has a row already does to the reading of a file of engines.
    enum class Repeated { Ends, Passes };
    bool readSelection(const std::string& path, Repeated repeated);
    void selectFailed(Repeated repeated);
    void bulk(std::string_view words, const std::function<void()>& operation);
    void select(clsEngines& engine);
    void selectWhere(const std::function<bool(const clsEngines&)>& qualifies);
    void unselectWhere(const std::function<bool(const clsEngines&)>& qualifies);
    clsEngines& engineOf(std::string_view rowKey) const;
    void tickAllTypes(bool on);
    void renewTitle();
    void inEnginesFolder(const std::function<void(const std::string& folder)>& operation);

    const Services& m_services;
    EngineLists& m_lists;
};

}  // namespace relay
