// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CustomEngineRecord.h"
#include "core/Keys.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace relay {

struct Services;

// The engines of the user's own, in krvengc.dat and catcus.dat of the data folder, which no update touches.
// The records in memory are the working copy; saveEngineFile writes both files. Engines that another program
// wrote since they were read are kept. Every function throws Failure.
class CustomEngineStore final {
  public:
    explicit CustomEngineStore(const Services& services);

    const std::vector<CustomEngineRecord>& engines() const noexcept { return m_engines; }
    // The first of the name, without regard to case; nullptr if there is none.
    const CustomEngineRecord* find(std::string_view name) const noexcept;

    // Adds the file's engines to those in memory.
    void loadEngines();
    // Drops the engines in memory, not the files.
    void forget();
    // Replaces the first engine of the name, or adds one; gives its place.
    std::size_t put(CustomEngineRecord record);
    void remove(std::size_t place);
    // Writes both files, or removes them when there are no engines. A file that could not be read is kept as
    // NAME.bad.
    void saveEngineFile();

    // Saves, then copies the files to cengdata.dat and ccatdata.dat in the folder.
    void exportEngineData(const std::string& folder);
    // Puts the two files of the folder in place of the store's own, and adds their engines to those in
    // memory. When one is missing nothing is replaced.
    void importEngineData(const std::string& folder);
    // Saves if there are engines, then writes the custom files into the catalogue: the engines over the end
    // marker, the categories at the end. Copies of both files are made first. Gives the notice for the user.
    std::string mergeEngineFile();
    // Takes the last merge back. Refuses when the catalogue was changed since.
    void undoMerge();
    bool canUndoMerge() const;

  private:
    std::string enginesFile() const;
    std::string categoriesFile() const;
    void write(const std::string& engines, const std::string& categories);
    void takeOverOthers(const std::string& engines);
    std::string header() const;

    const Services& m_services;
    std::vector<CustomEngineRecord> m_engines;
    std::optional<std::string> m_seen;  // krvengc.dat as last read or written
    bool m_unreadable = false;
    std::unordered_set<std::string, KeyHash, KeyEqual> m_touched;  // names put or removed since
};

// What the screen and the command line say.
inline constexpr std::string_view kNameTaken =
    "This engine name is already exsit in the engine database. Please choose a different name.";
inline constexpr std::string_view kMergedNotice =
    "Merge engine data is completed. You need to close the program and re-open again to load the new engine "
    "data.";
inline constexpr std::string_view kNoImportFolder =
    "The file you specified does not exist. Please check file name and path to make sure it is correct.";
std::string exportedNotice(const std::string& folder);

// The engine file with the custom engines in place of its end marker, which ends without one. What stands
// further behind the marker than they reach stays.
std::string mergedEngines(std::string_view catalogue, std::string_view custom);
// The category file with the custom tables at its end.
std::string mergedCategories(std::string_view catalogue, std::string_view custom);

}  // namespace relay
