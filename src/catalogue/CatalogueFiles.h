// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// A file of the installed catalogue that is to be copied into a home.
struct CatalogueFile final {
    enum class State { Installed, Unchanged, Replaced };

    std::string target;  // its path in the home
    std::string bytes;
    bool ofEngines = false;  // krveng5.dat or catkws.dat, not a word list
    State state = State::Installed;
};

// "installed", "unchanged", "replaced".
std::string_view stateName(CatalogueFile::State state) noexcept;

// Reads the word lists and the engines' files that are installed with the program; the engines' files come
// from the sub-folder `engines` if that is given. Throws Failure when a file is missing.
std::vector<CatalogueFile> readCatalogueFiles(const Paths& paths, std::string_view engines = {});
// Sets each file's state from what the home contains. Returns the paths of existing files that differ.
std::vector<std::string> compareWithHome(std::vector<CatalogueFile>& files);
// Writes the files that are not unchanged. Throws Failure.
void writeCatalogueFiles(const std::vector<CatalogueFile>& files);

}  // namespace relay
