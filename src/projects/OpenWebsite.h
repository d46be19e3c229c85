// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/WebsiteFile.h"

#include <QObject>

#include <string>

namespace relay {

class Catalogue;
class Prompts;

// The website in the panel: its fields together with what the catalogue holds for it, the two category lists
// and the custom engines' table, and the operations that a user drives on them. A file that another program
// changed since it was read, or that could not be read to its end, is written over only when the user says
// so; where nothing was typed, the changed file is read again instead.
class OpenWebsite final : public QObject {
    Q_OBJECT
  public:
    OpenWebsite(Catalogue& catalogue, Prompts& prompts);

    WebsiteFields fields;

    // Reads the file into the panel, as far as it can be read; says so when that is not to its end.
    void open(const std::string& path);
    // The panel is the beginning of a website that has no file yet.
    void openNew();
    // Something that a save writes was changed since the panel was filled or saved.
    bool isTouched();

    enum class SaveWish { Leaving, Command };
    // False when the user would neither save over the file nor, on leaving, give up what was typed. Throws
    // Failure.
    bool save(const std::string& path, SaveWish wish);
    // Whatever the file holds. Throws Failure.
    void saveOver(const std::string& path);

    // Resets the panel, the category lists and the selection of engines.
    void clearWebsiteFields();
    // The selected rows of the category lists into the fields, from where the file is written and the check
    // before saving reads them.
    void takeSelectedCategory();

    // A click on a row of lsvSiteURLs: its local file goes to the work area beside the list, whose other
    // fields are emptied.
    void chooseURL(int row);
    // cmdFileLocation: asks for an HTML file; one that exists becomes the local file of the selected URL.
    void openFileLocation();
    // cmdViewReport: hands the selected report to the system.
    void viewReport();
    // As that of WebsiteFile.
    bool DeleteReportFile(const std::string& path, const std::string& reportFolder);

  Q_SIGNALS:
    // The fields were changed by the program.
    void fieldsChanged();

  private:
    bool load(const std::string& path);
    bool write(const std::string& path, SaveOver over);
    void emptyFields();
    std::size_t fingerprint();
    void noteFilled(bool whole);
    bool askToSaveOver(const std::string& path) const;
    bool giveUpTyped(const std::string& path);

    Catalogue& m_catalogue;
    Prompts& m_prompts;
    WebsiteFile m_file;
    std::size_t m_filled = 0;  // fingerprint of the panel as it was filled or saved last
    bool m_whole = true;       // the panel holds all of its file
};

}  // namespace relay
