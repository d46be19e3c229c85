// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CatalogueChange.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace relay {

struct Paths;
struct UpdateFile;

// The files of an update in a home. Each is written whole or not at all. What it replaced stays beside it as
// NAME.previous until the next update, so that the last update can be taken back; the file update.previous in
// the data folder lists what that update has stored. Every function throws Failure when a file cannot be read
// or written.
class UpdateStore final {
  public:
    explicit UpdateStore(const Paths& paths) : m_paths(paths) {}

    // A new update begins. The one before can be taken back until the first store(). Without this call a new
    // try continues the update that failed, and undo() takes both back.
    void begin() noexcept { m_begun = false; }
    // Stores the text, followed by one CR LF, as the file with this index in kUpdateFiles.
    void store(std::size_t index, std::string_view text);
    bool hasStored() const noexcept { return m_begun; }  // since begin()
    bool canUndo() const;
    // Takes the last update back, its new files included. Throws Failure when there is none.
    void undo();
    // What distinguishes the engines from those before the last update.
    CatalogueChange change(bool refusesAdultSites) const;
    // The same for the engines as they will be after undo().
    CatalogueChange changeOfUndo(bool refusesAdultSites) const;

  private:
    std::string ledger() const;
    void removePrevious(const UpdateFile* except = nullptr) const;
    EngineDataTexts present() const;
    EngineDataTexts previous() const;

    const Paths& m_paths;
    bool m_begun = false;
};

// True when the texts are equal, apart from the one CR LF that an update adds to a file.
bool sameAsUpdated(std::string_view home, std::string_view published) noexcept;

}  // namespace relay
