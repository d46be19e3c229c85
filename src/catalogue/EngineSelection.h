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

// Selects and unselects engines. The selection is stored in each engine's Selected and in the rows of
// lsvSelectedEngines; every operation here updates both and the count in the list's title. Unless noted
// otherwise, operations that return nothing show failures in a message titled "Error".
class EngineSelection final {
  public:
    EngineSelection(const Services& services, EngineLists& lists);

    // A user's click on the box of a type; ignored while the program ticks the boxes.
    void clickType(std::size_t index, bool ticked);
    // Hot sites are selected and unselected with every type.
    void EngineSelectByType(std::string_view type, bool on);
    // The code is the two characters after the first "(" of the row, or the whole row; "ALL" takes every
    // engine. Only adds.
    void EngineSelectByCountry(std::string_view rowText);
    // Replaces the selection by the engines of "MajorSite", "CustomEngine" or "AdultOnlySite"; any other mode
    // selects nothing.
    void SelectByMode(std::string_view mode);
    // Unselects the engines that refuse adult sites and those that take nothing else.
    void EngineSelectNoAdultSites();
    // Unselects the engines that `isFailing` names.
    void EngineRemoveFailing(const std::function<bool(std::string_view name)>& isFailing);
    // Selects the highlighted rows of lsvEngines, or all, which also ticks every type box.
    void EngineSelect(bool all);
    // Unselects the highlighted rows of lsvSelectedEngines, or all, which also clears every type box.
    void EngineRemove(bool all);
    // Returns false and does nothing for a name that is not loaded. An engine that already has a row keeps
    // it.
    bool EngineSingleSelect(std::string_view name);
    // Highlights and selects every row of lsvEngines whose text contains `text`; shows a message when none
    // does.
    void findEnginesByKeyword(std::string_view text);
    // The Delete key in lsvEngines: removes the highlighted rows; their engines stay in the collection, and
    // lsvSelectedEngines does not change.
    void deleteListedEngines();

    // One name per line; replaces an existing file. Throws Failure when it cannot be written.
    void saveSelectedEngine(const std::string& path) const;
    // Adds the engines named in the file; ignores names that are not loaded and a missing file. Shows a
    // message and returns false when reading stops (a name already has a row, an unreadable file).
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
    // The same, but a name that is chosen already is skipped instead of ending the reading.
    void selectFailedEnginesOnce();
    void offerEngineList();

    // True if a selected engine shows the FFA icon.
    bool isThereFFASites() const;
    // The codes of the ticked boxes; each except ENG has a comma before it.
    std::string getEngineType() const;

  private:
    // What a name that has a row already does to the reading of a file of engines.
    enum class Repeated { Ends, Skipped };
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
