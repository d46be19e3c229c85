// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/WebsiteFile.h"

#include <string>

namespace relay {

class Catalogue;
class Prompts;

// The website in the panel: its fields together with what the catalogue holds for it, the two category lists
// and the custom engines' table.
class OpenWebsite final {
  public:
    OpenWebsite(Catalogue& catalogue, Prompts& prompts);

    WebsiteFields fields;

    // As WebsiteFile::save; throws Failure.
    bool save(const std::string& path, SaveOver over);
    // False when it failed and the user was told. What was not reached is then empty, not of another website.
    bool loadWebsiteFile(const std::string& path);
    // Resets the panel, the category lists and the selection of engines.
    void clearWebsiteFields();
    bool DeleteReportFile(const std::string& path);
    // Two numbers of this differ when something that a save writes was changed between them.
    std::size_t fingerprint();

    // The selected rows of the category lists into the fields, from where the file is written and the check
    // before saving reads them.
    void takeSelectedCategory();

  private:
    void emptyFields();

    Catalogue& m_catalogue;
    WebsiteFile m_file;
};

}  // namespace relay
