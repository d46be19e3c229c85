// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/WebsiteFile.h"

#include <QObject>

#include <string>
#include <string_view>

namespace relay {

class Catalogue;
class Prompts;
struct Services;

// The website in the panel: its fields, its part of the catalogue (the two category lists and the custom
// engines' table), and the user's operations on them. A file that another program changed since it was read,
// or that could not be read completely, is overwritten only with the user's consent; if nothing was typed, a
// changed file is read again instead.
class OpenWebsite final : public QObject {
    Q_OBJECT
  public:
    OpenWebsite(Catalogue& catalogue, const Services& services);

    WebsiteFields fields;

    // Reads the file into the panel, as far as possible; shows a message if it is not complete.
    void open(const std::string& path);
    // The panel starts a website that has no file yet.
    void openNew();
    // The panel starts a website from the bytes of a web form data file, which is its file from then on.
    void openFormData(std::string bytes);
    // Says how much of it was a form; call when the panel shows the website.
    void tellFormData(const std::string& file) const;
    // Asks for a web form data file and fills the panel from it; the website keeps its own file.
    void importWebFormData();
    // True if something to be saved has changed since the panel was filled or saved.
    bool isTouched();

    enum class SaveWish { Leaving, Command };
    // False when the user neither overwrites the file nor, on leaving, discards the changes. Throws Failure.
    bool save(const std::string& path, SaveWish wish);
    // Saves without asking. Throws Failure.
    void saveOver(const std::string& path);

    // Resets the panel, the category lists and the selection of engines.
    void clearWebsiteFields();
    // Copies the selection in the category lists to the fields, which the check before saving and the file
    // use.
    void takeSelectedCategory();

    // The path chosen for a custom engine, as the file has it.
    std::string storedCategory(std::string_view engine) const { return m_file.storedCategory(engine); }

    // A click on a row of lsvSiteURLs: shows its local file in the work area beside the list, and the meta
    // tags of that file's head, or nothing if there are none.
    void chooseURL(int row);
    // Fills the work area with the meta tags of a page and counts their characters; an empty page changes
    // nothing.
    void getMetaTag(std::string_view html);
    // cmdFileLocation: asks for an HTML file; if it exists, it becomes the local file of the selected URL.
    void openFileLocation();
    // cmdViewReport: opens the selected report in the system's handler.
    void viewReport();
    // As that of WebsiteFile.
    bool DeleteReportFile(const std::string& path, const std::string& reportFolder);

  Q_SIGNALS:
    // The program changed the fields.
    void fieldsChanged();

  private:
    void showMetaTag(std::string_view html);
    void getWebFormData(std::string_view text);
    bool load(const std::string& path);
    bool write(const std::string& path, SaveOver over);
    void emptyFields();
    std::size_t fingerprint();
    void noteFilled(bool whole);
    bool askToSaveOver(const std::string& path) const;
    bool giveUpTyped(const std::string& path);

    const Services& m_services;
    Catalogue& m_catalogue;
    Prompts& m_prompts;
    WebsiteFile m_file;
    std::size_t m_filled = 0;  // fingerprint of the panel when last filled or saved
    bool m_whole = true;       // the file was read completely
    int m_formLines = 0;       // that the last web form data file had
};

}  // namespace relay
