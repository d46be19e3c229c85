// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueFiles.h"

#include "catalogue/UpdateStore.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"

namespace relay {

std::string_view stateName(CatalogueFile::State state) noexcept {
    constexpr std::string_view kNames[] = {"installed", "unchanged", "replaced"};
    return kNames[static_cast<std::size_t>(state)];
}

std::string readInstalledFile(const Paths& paths, std::string_view name, std::string_view folder) {
    if (paths.installedData.empty())
        throw Failure(
            "The files installed with the program are missing. Set KORVEL_RELAY_DATA to their folder.");
    std::string path = paths.installedData + "/";
    if (!folder.empty()) path.append(folder) += '/';
    return readFile(path.append(name));
}

std::vector<CatalogueFile> readCatalogueFiles(const Paths& paths, std::string_view engines) {
    std::vector<CatalogueFile> files;
    for (const char* name : {"country.kws", "cat.kws", "top.kws"})
        files.push_back({paths.inApp(name), readInstalledFile(paths, name)});
    for (const char* name : {"krveng5.dat", "catkws.dat", "kwreng.dat"})
        files.push_back({paths.inWindows(name), readInstalledFile(paths, name, engines), true});
    return files;
}

std::vector<std::string> compareWithHome(std::vector<CatalogueFile>& files) {
    std::vector<std::string> different;
    for (CatalogueFile& file : files) {
        if (!fileExists(file.target)) continue;
        const bool same = sameAsUpdated(readFile(file.target), file.bytes);
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
