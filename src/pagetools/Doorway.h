// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "pagetools/DoorwayPage.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Services;

// The files of the profiles: AppPath/Doorway/Profiles/NAME. All throw Failure; a name that is no plain file
// name is one.
class DoorwayProfiles final {
  public:
    explicit DoorwayProfiles(const Services& services);

    bool exists(std::string_view name) const;
    // Values are cut where the file's reader cuts them: long ones at 1,499 characters, others at 559.
    DoorwayFields load(std::string_view name) const;
    // Line breaks become blanks.
    void save(std::string_view name, const DoorwayFields& fields) const;
    // Whether the profile is there and a load would give what a save of the fields would.
    bool has(std::string_view name, const DoorwayFields& fields) const;

  private:
    std::string file(std::string_view name) const;

    std::string m_folder;
};

// A page before it is written.
struct DoorwayFile final {
    std::string keyword;
    std::string path;
};

// The doorway page generator.
class Doorway final {
  public:
    // The field that ValidateFields missed; the focus goes there.
    enum class Field { Title, Keyword1, Keyword2, Keyword3, Description, SiteURL, Summary, Company };

    explicit Doorway(const Services& services);

    DoorwayFields fields;
    std::string cboProfile;
    Rows lsvPages;  // the planned files: keyword, name, and what becomes of the name

    // At load and unload of the screen: the output folder and the lists. An output folder that is typed
    // stays.
    void load();
    void unload();
    const std::vector<std::string>& siteURLs() const noexcept { return m_siteURLs; }
    const std::vector<std::string>& profiles() const noexcept { return m_profiles; }

    // Clears all text boxes, and the profile's name. The URL stays.
    void NewPage();
    // Asks whether to save a profile if something was typed since the last load, save or answer. False when
    // it was to be saved and was not.
    bool settleChanges();
    // Takes the first eight of a list; asks before keywords of the page are replaced by others.
    bool takeKeywords(const std::vector<std::string>& keywords);
    // Asks for the output folder.
    void chooseFolder();
    // The first empty field that a page needs, and what is said of it.
    struct Missing final {
        Field field;
        std::string_view words;
    };
    std::optional<Missing> missingField() const;
    // Nothing, or the first empty field, after a message.
    std::optional<Field> ValidateFields() const;
    // The files that CreatePage would write, and the text of each.
    std::vector<DoorwayFile> plannedFiles() const;
    std::string pageText() const;
    // What a reader sees of a page, or why that is not known.
    std::string readersText() const;
    // Fills lsvPages.
    void showPages();
    // Where the pages go.
    std::string folderNote() const;
    // What was done last.
    const std::string& lblStatusBar() const noexcept { return m_status; }
    // Writes the pages and asks whether to look at the first one. Shows a failure and returns false; what was
    // written before it stays.
    bool CreatePage();
    // The same without the question. Throws Failure.
    std::vector<DoorwayFile> writePages() const;
    // Command1: saves the profile if one is named and does not have these values, checks, and creates. The
    // field that is missing.
    std::optional<Field> Command1();
    // Asks for a name if there is none, and before an existing profile is overwritten. True when it is saved.
    bool saveProfile();
    // Fills the fields from the chosen profile; one without a file changes nothing. False after a failure.
    bool loadProfile(const std::string& name);

  private:
    bool isTouched() const;
    std::string outputFolder() const;

    const Services& m_services;
    DoorwayProfiles m_store;
    std::vector<std::string> m_siteURLs;
    std::vector<std::string> m_profiles;
    std::vector<std::string> m_newSiteURLs;  // since the load
    std::vector<std::string> m_newProfiles;
    DoorwayFields m_settled;  // as loaded, saved or answered for
    std::string m_status;
};

}  // namespace relay
