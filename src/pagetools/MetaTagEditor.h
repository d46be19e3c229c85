// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "pagetools/MetaTags.h"
#include "pagetools/PageDiff.h"

#include <QObject>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace relay {

struct Services;

// What a change would do to one file.
struct FilePreview final {
    std::string before;
    std::string after;
    std::vector<DiffHunk> hunks;  // of the two texts
    std::string problem;          // why the file cannot be changed; empty when it can
};
FilePreview previewFile(const std::string& file, const MetaTagChange& change);

// The Meta Tag Editor: reads the meta tags of a local file or a live page, and writes new ones into many
// files. Members are named after their controls.
class MetaTagEditor final : public QObject {
    Q_OBJECT
  public:
    // A field with the label that counts its characters.
    struct Field final {
        std::string name;
        std::string text;
        std::string label;

        void set(std::string_view newText);  // the label shows the count
        void clear();                        // the label shows no count
    };
    // Requests a page for getMetaTag; false while another request runs.
    using Connect = std::function<bool(const std::string& url)>;

    MetaTagEditor(const Services& services, Connect connect, QObject* parent = nullptr);

    Rows lsvDirs;  // icon "Up", "Folder", "WebFile" or "WinFile"; sub-item 1 the type, tag the full path
    Field txtTitle{"Title", {}, "Title:"};
    Field txtKeyWord{"Keywords", {}, "Keywords:"};
    Field txtDescription{"Description", {}, "Description:"};
    bool optReplace = false;   // optUpdate
    bool chkTitleTop = false;  // has no effect on an insert

    const std::string& folder() const noexcept { return m_folder; }
    const std::string& Text1() const noexcept { return m_Text1; }  // the head of the page
    const std::string& lblStatusBar() const noexcept { return m_status; }
    // True while updateMetaTag runs; it lets events run between two files.
    bool isUpdating() const noexcept { return m_updating; }

    // Lists the folder; after a message, the old one stays when it cannot be read.
    void openFolder(const std::string& folder);
    void addDirs() { openFolder(m_folder); }
    // A row was chosen: shows the page of a web file.
    void chooseRow(int row);
    // Double click: opens a folder; asks before another file than a web file is shown.
    void openRow(int row);
    // Opens the file of the row in the system's program for text.
    void viewSource(int row);

    // Fills the fields from a page.
    void getMetaTag(std::string_view html);
    // Reads the page of an address: a local file, or through Connect.
    void getMetaTagFromAddress(const std::string& cboAddress);
    // The end of a request: its page, or no page and why.
    void showPage(std::string_view html, const std::string& problem);

    // The web files that are selected.
    std::vector<std::string> selectedFiles() const;
    // What the fields say, or nothing after a message: a field is empty.
    std::optional<MetaTagChange> wantedChange();
    // Asks, then updates the selected files.
    void update();
    void updateMetaTag(bool replacing);
    // Ends a running update after the file it is at.
    void stop() noexcept { m_stopping = true; }

  Q_SIGNALS:
    void folderChanged();
    void fieldsChanged();  // the texts, their labels and Text1
    void statusChanged();
    void updatingChanged(bool updating);

  private:
    void notAccessible(const std::string& folder, const std::error_code& error);
    void showFile(const std::string& file);
    void clearFields();
    void setStatus(std::string text);

    const Services& m_services;
    Connect m_connect;
    std::string m_folder;
    std::string m_Text1;
    std::string m_status;
    bool m_updating = false;
    bool m_stopping = false;
};

}  // namespace relay
