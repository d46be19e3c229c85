// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/MetaTagEditor.h"

#include "core/FileNames.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/LoggedTrap.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "pagetools/PageFiles.h"

#include <QCoreApplication>

#include <array>

namespace relay {

namespace {

constexpr std::string_view kTitle = "Meta Tag Editor";
constexpr const char* kUp = "Up";
constexpr const char* kFolder = "Folder";
constexpr const char* kWebFile = "WebFile";
constexpr const char* kWinFile = "WinFile";

bool isWebFile(std::string_view name) {
    constexpr std::array<std::string_view, 4> kMarks = {".htm", ".shtm", ".cfm", ".asp"};
    return std::any_of(kMarks.begin(), kMarks.end(),
                       [name](std::string_view mark) { return containsNoCase(name, mark); });
}

std::string inFolder(std::string_view folder, std::string_view name) {
    return std::string(folder).append(folder.ends_with('/') ? "" : "/").append(name);
}

// A device that has gone, as distinct from a folder that is refused or was deleted.
bool isNotReady(const std::error_code& error) {
    constexpr std::array kErrors = {EIO, ENODEV, ENXIO, ENOMEDIUM, ENOTCONN, ESTALE, EHOSTDOWN, ETIMEDOUT};
    return std::find(kErrors.begin(), kErrors.end(), error.value()) != kErrors.end();
}

}  // namespace

FilePreview previewFile(const std::string& file, const MetaTagChange& change) {
    FilePreview preview;
    preview.problem = failureOf([&] {
                          preview.before = readFile(file);
                          preview.after = changedPage(preview.before, change);
                          preview.hunks = diffTexts(preview.before, preview.after);
                      }).value_or("");
    return preview;
}

void MetaTagEditor::Field::set(std::string_view newText) {
    text = newText;
    label = name + " (" + std::to_string(characterCount(text)) + " characters)";
}

void MetaTagEditor::Field::clear() {
    text.clear();
    label = name + ":";
}

MetaTagEditor::MetaTagEditor(const Services& services, Connect connect, QObject* parent)
    : QObject(parent), m_services(services), m_connect(std::move(connect)) {
    lsvDirs.setColumns({"Name", "Type"});
}

void MetaTagEditor::setStatus(std::string text) {
    m_status = std::move(text);
    Q_EMIT statusChanged();
}

void MetaTagEditor::notAccessible(const std::string& folder, const std::error_code& error) {
    const std::string words = isNotReady(error) ? "The device is not ready."
                                                : escapeControlCharacters(folder) + " is not accessible.";
    m_services.prompts.message(words, kTitle, Icon::Critical);
}

void MetaTagEditor::openFolder(const std::string& folder) {
    trapAndLog(m_services, "addDirs_Error: ", [&] {
        const std::string path = absolutePath(folder);
        std::error_code error;
        const FolderContent content = listFolder(path, error);
        if (error) {
            notAccessible(path, error);
            return;
        }
        const RowsBatch batch(lsvDirs);
        lsvDirs.clear();
        m_folder = path;
        if (path != "/") lsvDirs.add({{}, "..", {""}, kUp, folderOf(withoutEndSlash(path))});
        for (const std::string& name : content.folders)
            lsvDirs.add({{}, name, {"Folder"}, kFolder, inFolder(path, name)});
        for (const std::string& name : content.files) {
            const bool web = isWebFile(name);
            lsvDirs.add(
                {{}, name, {web ? "HTML File" : "File"}, web ? kWebFile : kWinFile, inFolder(path, name)});
        }
    });
    Q_EMIT folderChanged();
}

void MetaTagEditor::chooseRow(int row) {
    if (m_updating) return;
    const RowView chosen = lsvDirs.at(row);
    if (chosen.icon == kWebFile) showFile(std::string(chosen.tag));
}

void MetaTagEditor::openRow(int row) {
    if (m_updating) return;
    const RowView chosen = lsvDirs.at(row);
    const std::string path(chosen.tag);
    if (chosen.icon == kUp || chosen.icon == kFolder)
        openFolder(path);
    else if (chosen.icon == kWebFile ||
             m_services.prompts.ask("This is not a valid web page file, do you want to continue?",
                                    "Meta Tag Generator"))
        showFile(path);
}

void MetaTagEditor::viewSource(int row) {
    const std::string file(lsvDirs.at(row).tag);
    trapAndLog(m_services, "ViewSource_Error: ", [&] {
        if (!m_services.prompts.viewText(file)) throw Failure("There is no program for text files", 53);
    });
}

// The tags are those of the head; a page whose head is not found is read as a whole.
void MetaTagEditor::showFile(const std::string& file) {
    const BusyPointer busy(m_services.prompts);
    std::string html;
    m_Text1.clear();
    if (readPage(m_services, file, html)) cutHead(m_services, html, m_Text1);
    getMetaTag(m_Text1.empty() ? html : m_Text1);
}

void MetaTagEditor::getMetaTag(std::string_view html) {
    trapAndLog(m_services, "Module: getMetaTag\r\n", [&] {
        PageTexts page;
        readMetaTag(m_services, html, page);
        txtTitle.set(page.tags.title);
        txtKeyWord.set(page.tags.keywords);
        txtDescription.set(page.tags.description);
    });
    Q_EMIT fieldsChanged();
}

void MetaTagEditor::clearFields() {
    for (Field* const field : {&txtTitle, &txtKeyWord, &txtDescription}) field->clear();
    m_Text1.clear();
    Q_EMIT fieldsChanged();
}

void MetaTagEditor::getMetaTagFromAddress(const std::string& cboAddress) {
    if (m_updating) return;
    const std::string remark = "\r\nAddress: " + escapeControlCharacters(cboAddress);
    trapAndLog(
        m_services, "getMetaTagFromAddress_Error: ",
        [&] {
            clearFields();
            if (cboAddress.empty()) return;
            if (const auto file = localPath(cboAddress, TypedIn::Field)) {
                if (fileExists(*file))
                    showFile(*file);
                else
                    m_services.prompts.message(
                        "The file you specified does not exist. Please make sure you "
                        "sepcify a correct file name and path then try again.",
                        "Get Meta Tag", Icon::Information);
            } else if (GetURLHost(cboAddress).empty()) {
                m_services.prompts.message("Invalid URL: " + cboAddress, "Get Meta Tag", Icon::Information);
            } else {
                setStatus("Connecting to " + cboAddress);
                if (!m_connect(withScheme(cboAddress)))
                    setStatus("Another page is being retrieved. Please try again.");
            }
        },
        remark);
}

void MetaTagEditor::showPage(std::string_view html, const std::string& problem) {
    setStatus(problem);
    m_Text1.clear();
    // The head is an extra here: a page whose head goes too far has none.
    (void)failureOf([&] { m_Text1 = htmlSection(html, HtmlPart::Head); });
    getMetaTag(html);
}

std::vector<std::string> MetaTagEditor::selectedFiles() const {
    std::vector<std::string> files;
    for (int row = 0; row < lsvDirs.count(); ++row) {
        const RowView entry = lsvDirs.at(row);
        if (entry.highlighted && entry.icon == kWebFile) files.emplace_back(entry.tag);
    }
    return files;
}

std::optional<MetaTagChange> MetaTagEditor::wantedChange() {
    const std::array<std::pair<const Field*, std::string_view>, 3> kNeeded = {
        {{&txtTitle, "Please enter a title for your web site."},
         {&txtKeyWord, "Please enter keywords for your web site."},
         {&txtDescription, "Please enter description for your web site."}}};
    for (const auto& [field, words] : kNeeded) {
        if (!field->text.empty()) continue;
        m_services.prompts.message(words, kTitle, Icon::Information);
        return std::nullopt;
    }
    return MetaTagChange{{txtTitle.text, txtKeyWord.text, txtDescription.text},
                         optReplace ? MetaTagChange::Way::Replace : MetaTagChange::Way::Insert,
                         chkTitleTop};
}

void MetaTagEditor::update() {
    if (m_updating || !wantedChange()) return;
    const std::string_view question =
        optReplace ? "Are you sure you want to replace the existing Meta tag with the new meta tag for all "
                     "selected HTML file(s)?"
                   : "Are you sure you want to insert the new Meta tags into your selected HTML file(s)?";
    if (m_services.prompts.ask(question, "Meta Tag")) updateMetaTag(optReplace);
}

void MetaTagEditor::updateMetaTag(bool replacing) {
    if (m_updating) return;
    m_updating = true;
    m_stopping = false;
    Q_EMIT updatingChanged(true);
    trapAndLog(m_services, "updateMetaTag_Error: ", [&] {
        // Copies, as the user may type and choose between two files.
        const std::vector<std::string> files = selectedFiles();
        const MetaTags tags{txtTitle.text, txtKeyWord.text, txtDescription.text};
        const bool onTop = chkTitleTop;
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (!fileExists(files[i])) continue;
            setStatus("Updating file : " + files[i]);
            QCoreApplication::processEvents();
            if (m_stopping) {
                setStatus("Stopped after " + std::to_string(i) + " of " + std::to_string(files.size()) +
                          " files");
                return;
            }
            const bool done = replacing ? replaceMetaTag(m_services, files[i], tags, onTop)
                                        : insertMetaTag(m_services, files[i], tags);
            if (!done) return;
        }
        setStatus("Done");
    });
    m_updating = false;
    Q_EMIT updatingChanged(false);
}

}  // namespace relay
