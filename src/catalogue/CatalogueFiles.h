// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// A file of an installed catalogue on its way into a home.
struct CatalogueFile final {
    enum class State { Installed, Unchanged, Replaced };

    std::string target;  // where it goes
    std::string bytes;
    bool ofEngines = false;  // of the engines' own two files, not of the word lists
    State state = State::Installed;
};

// "installed", "unchanged", "replaced".
std::string_view stateName(CatalogueFile::State state) noexcept;

// Reads the word lists and the engines' files that are installed with the program; the latter from the
// sub-folder `engines`, or from beside the others where that is empty. Throws Failure when one is missing.
std::vector<CatalogueFile> readCatalogueFiles(const Paths& paths, std::string_view engines = {});
// Settles each file's state by what the home holds. Gives the paths of files that are there and differ.
std::vector<std::string> compareWithHome(std::vector<CatalogueFile>& files);
// Writes those that are not unchanged. Throws Failure.
void writeCatalogueFiles(const std::vector<CatalogueFile>& files);

}  // namespace relay
