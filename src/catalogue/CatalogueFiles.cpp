// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueFiles.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"

namespace relay {

std::string_view stateName(CatalogueFile::State state) noexcept {
    constexpr std::string_view kNames[] = {"installed", "unchanged", "replaced"};
    return kNames[static_cast<std::size_t>(state)];
}

std::vector<CatalogueFile> readCatalogueFiles(const Paths& paths, std::string_view engines) {
    const std::string& data = paths.installedData;
    if (data.empty())
        throw Failure(
            "The files installed with the program are missing. Set KORVEL_RELAY_DATA to their folder.");
    std::vector<CatalogueFile> files;
    for (const char* name : {"country.kws", "cat.kws", "top.kws"})
        files.push_back({paths.inApp(name), readFile(data + "/" + name)});
    const std::string folder = data + "/" + std::string(engines) + (engines.empty() ? "" : "/");
    for (const char* name : {"krveng5.dat", "catkws.dat"})
        files.push_back({paths.inWindows(name), readFile(folder + name), true});
    return files;
}

std::vector<std::string> compareWithHome(std::vector<CatalogueFile>& files) {
    std::vector<std::string> different;
    for (CatalogueFile& file : files) {
        if (!fileExists(file.target)) continue;
        const bool same = readFile(file.target) == file.bytes;
        file.state = same ? CatalogueFile::State::Unchanged : CatalogueFile::State::Replaced;
        if (!same) different.push_back(file.target);
    }
    return different;
}

void writeCatalogueFiles(const std::vector<CatalogueFile>& files) {
    for (const CatalogueFile& file : files)
        if (file.state != CatalogueFile::State::Unchanged) writeFile(file.target, file.bytes);
}

}  // namespace relay
