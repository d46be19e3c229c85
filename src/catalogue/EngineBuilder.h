// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CustomEngineStore.h"
#include "catalogue/DefaultCategoryRows.h"
#include "catalogue/FieldRows.h"
#include "core/Rows.h"

#include <QObject>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

class Catalogue;
struct Services;

// One request of an engine to the practice web, as it arrived there.
struct TrialResult final {
    std::string problem;  // why nothing arrived; empty when it did
    std::string method;
    std::vector<std::pair<std::string, std::string>> fields;  // decoded
};

// The Engine Builder: makes an engine of the user's own from the web form of a page. Members are named after
// their controls.
class EngineBuilder final : public QObject {
    Q_OBJECT
  public:
    // What the hub provides: requests a page for showPage, false while another request runs; and sends one
    // request to the practice web, whose result goes to showTrial; and shows the guide, false where there is
    // none.
    struct Outside final {
        std::function<bool(const std::string& url)> connect;
        std::function<bool(const CustomEngineRecord& record)> tryOut;
        std::function<bool()> showGuide;
    };

    EngineBuilder(const Services& services, const Catalogue& catalogue, Outside outside,
                  QObject* parent = nullptr);

    enum class Tab { Engine, Source, Fields, Categories, Trial };

    Rows lstEngines;  // highlighted: the current one
    std::string lblEngines;

    std::string txtEngineName;
    std::string txtEngineURL;
    std::string txtSubmitURL;
    std::string txtCountry;
    bool chkCountry = false;
    int cboEngineType = 0;  // the combo boxes by row
    int cboCategory = 1;
    int cboSiteLevel = 2;
    std::string cboMethod{kUsualMethod};
    std::string txtAction;
    std::string txtLanguage;
    bool chkAllowAdultSite = false;
    bool chkAdultOnlySite = false;
    std::string txtMaxTitle;
    std::string txtMaxKeywords;
    std::string txtMaxDescription;

    std::string txtSource;
    bool cmdGetFields = false;  // enabled
    Rows lsvDataFields;         // field name, variable or value, why
    std::string txtFieldName;
    bool txtFieldNameLocked = true;
    std::string txtValue;
    Rows lsvCategory;
    std::string txtDefaultCategory;
    std::string txtEngineCategory;

    std::vector<std::string> formChanges;  // of a stored engine's form since it was stored
    std::vector<Finding> findings;         // of the record as it stands
    Rows lsvReceived;                      // what the practice web received
    std::string lblReceived;

    // Opening and closing of the form. False when the user wants to stay.
    void load();
    bool close();

    // The File menu.
    void New();
    bool Save();
    void Delete();
    void Merge();
    void undoMerge();
    bool canUndoMerge() const { return m_store.canUndoMerge(); }
    void exportEngineList();
    void exportEngineData();
    void importEngineData();
    void help();

    // A click in lstEngines; asks what becomes of unsaved changes.
    void getEngineData(int row);
    void chooseEngineType(int row);

    // cmdGetSource.
    void getSource();
    // The end of its request: a page, or none and why.
    void showPage(const std::string& html, const std::string& problem);
    void getDataFromHTML(std::string_view html);
    // The user changed txtSource.
    void editSource(std::string text);
    void getFields();

    void chooseField(int row);
    void updateField();  // cmdUpdate_0
    void deleteField();  // cmdUpdate_1
    // Gives the row its suggested value; false when it has none.
    bool acceptSuggestion(int row);
    int acceptAllSuggestions();
    bool hasSuggestion(int row) const noexcept { return m_fields.hasSuggestion(row); }
    bool hasSuggestions() const noexcept { return m_fields.hasSuggestions(); }

    void chooseCategory(int row);
    void updateCategory();
    void clearCategories();  // of the highlighted rows

    void tryIt();
    void showTrial(const TrialResult& result);

    // Call after a field was typed in.
    void refreshFindings();

  Q_SIGNALS:
    void changed();
    void statusChanged(const std::string& text);
    void tabWanted(relay::EngineBuilder::Tab tab);
    void focusWanted(const std::string& control);

  private:
    bool loadCategory();
    void ClearFields();
    void setQueryData(const std::string& query);
    void setCategoryData(std::string_view data);
    void fill(const CustomEngineRecord& record);
    CustomEngineRecord formRecord() const;
    void noteFilled();
    bool isTouched() const;
    bool settleChanges();
    void listEngines(int current);
    void report(const RecordProblem& problem);
    bool attempt(std::string_view words, const std::function<void()>& operation,
                 std::string_view title = "Engine Builder");

    const Services& m_services;
    const Catalogue& m_catalogue;
    Outside m_outside;
    CustomEngineStore m_store;
    int m_current = -1;           // row of lstEngines
    CustomEngineRecord m_filled;  // the form when it was last filled or saved
    FieldRows m_fields{lsvDataFields};
    DefaultCategoryRows m_categories{lsvCategory};
    std::vector<std::string> m_secretFields;  // of the trial
};

}  // namespace relay
