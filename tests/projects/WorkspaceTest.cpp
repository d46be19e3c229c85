// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every file under transcripts/ is a case: what a user does with projects and websites, and what comes of it.
// Nodes are named by their path, "Shop/Home"; the root is "/".
#include "projects/OpenWebsite.h"
#include "projects/UrlList.h"
#include "projects/WebsiteKeys.h"
#include "projects/Workspace.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"
#include "support/Transcript.h"

#include <QAbstractItemModelTester>

namespace relay::test {

namespace {

class WorkspaceTest : public testing::TestWithParam<std::string>, protected SessionFixture {
  protected:
    WorkspaceTest() {
        QObject::connect(&workspace, &Workspace::labelEditWanted, [this](const ProjectNode* node) {
            out += "edit the label of " + node->text + "\n";
        });
        QObject::connect(&workspace, &Workspace::fieldMissing, [this](const MissingField& field) {
            out += "missing " + std::string(field.control) + "\n";
        });
        transcript.on("load", [this](auto&) { workspace.loadProject(); });
        transcript.on("click", [this](auto& node) { refusedUnless(workspace.nodeClick(find(node.at(0)))); });
        transcript.on("new-project", [this](auto&) { workspace.newProject(); });
        transcript.on("new-website", [this](auto&) { workspace.newWebsite(); });
        transcript.on("add-website", [this](auto&) { workspace.addWebSite(); });
        transcript.on("import-form", [this](auto&) { workspace.importWebForm(); });
        transcript.on("import-here", [this](auto&) { website.importWebFormData(); });
        transcript.on("rename", [this](auto& in) { workspace.rename(find(in.at(0)), in.at(1)); });
        transcript.on("remove", [this](auto& node) { workspace.removeSelectedNode(find(node.at(0))); });
        transcript.on("describe", [this](auto& text) { workspace.setProjectDescription(text.at(0)); });
        transcript.on("type", [this](auto& in) { fields.*findWebsiteKey(in.at(0))->field = in.at(1); });
        transcript.on("block-mail", [this](auto&) { fields.chkBlockFFA = 1; });
        transcript.on("add-url", [this](auto& url) { addNewItem(fields.lsvSiteURLs, url.at(0)); });
        transcript.on("local-file", [this](auto& file) { fields.lsvSiteURLs.setTag(0, file.at(0)); });
        transcript.on("type-url", [this](auto&) { urls.addTypedURL(); });
        transcript.on("delete-urls", [this](auto&) { urls.DeleteURL(); });
        transcript.on("load-urls", [this](auto&) { refusedUnless(urls.loadURLs()); });
        transcript.on("load-urls-of",
                      [this](auto& file) { refusedUnless(urls.loadURLFromFile(file.at(0))); });
        transcript.on("save-urls", [this](auto&) { refusedUnless(urls.saveURLs()); });
        transcript.on("choose-url", [this](auto& row) { website.chooseURL(std::stoi(row.at(0))); });
        transcript.on("highlight", [this](auto& in) {
            (in.at(0) == "url" ? fields.lsvSiteURLs : fields.lsvReports)
                .setHighlighted(std::stoi(in.at(1)), true);
        });
        transcript.on("open-local-file", [this](auto&) { website.openFileLocation(); });
        transcript.on("view-report", [this](auto&) { website.viewReport(); });
        transcript.on("no-program-opens", [this](auto&) { prompts.systemOpens = false; });
        transcript.on("delete-reports", [this](auto&) { workspace.deleteReports(); });
        transcript.on("lists", [this](auto&) {
            out += "local file " + fields.txtURLFileLocation + "\n";
            for (const Rows* rows : {&fields.lsvSiteURLs, &fields.lsvReports})
                for (int row = 0; row < rows->count(); ++row)
                    out.append(rows->at(row).text).append(" ").append(rows->at(row).tag).append("\n");
        });
        transcript.on("engines", [this](auto&) { workspace.showEngines(); });
        transcript.on("auto-save", [this](auto&) { refusedUnless(workspace.autoSave()); });
        transcript.on("choose-category", [this](auto& names) {
            EXPECT_TRUE(catalogue.categories.loadCategory());
            catalogue.categories.setSelectedCategory(names.at(0), names.at(1));
        });
        transcript.on("save-checked", [this](auto&) { workspace.save(); });
        transcript.on("save",
                      [this](auto&) { refusedUnless(workspace.saveWebSite(workspace.currentNode()->file)); });
        transcript.on("save-as", [this](auto&) { refusedUnless(workspace.saveWebSite("")); });
        transcript.on("keep-fields", [this](auto&) { preference.DontClearFields = 1; });
        transcript.on("elsewhere", [this](auto& in) {
            setKeys(home.path("Projects/" + in.at(0) + ".kws"), {{"Title", in.at(1)}});
        });
        transcript.on("show", [this](auto&) { show(); });
        transcript.on("tree", [this](auto&) { showTree(workspace.tree().root()); });
    }

    ProjectNode& find(const std::string& path) {
        const std::size_t slash = path.find('/');
        std::string key = "Root\\" + path.substr(0, slash);
        if (slash != std::string::npos) key += "\\" + path.substr(slash + 1);
        ProjectNode* const found = workspace.tree().find(path == "/" ? "Root" : key);
        if (found == nullptr) throw std::runtime_error("no node " + path);
        return *found;
    }
    void refusedUnless(bool done) { out += done ? "" : "refused\n"; }
    void show() {
        const char* const panels[] = {"project", "website", "engines"};
        out += "at " + workspace.currentNode()->text + ", panel " +
               panels[static_cast<int>(workspace.panels().panel)] + "\n";
        if (!workspace.currentNode()->isWebsite()) return;
        out += fields.lsvSiteURLs.columnTitle(0) + "\n";
        for (const WebsiteKey& key : kWebsiteKeys)
            if (key.field && !(fields.*key.field).empty())
                out += std::string(key.name) + "=" + fields.*key.field + "\n";
    }
    void showTree(const ProjectNode& node) {
        for (const auto& child : node.children) {
            out += child->isProject() ? std::string(child->image()) : "  " + std::to_string(child->slot);
            out += " " + child->text;
            const std::string& more = child->isProject() ? child->description : child->file;
            out += (more.empty() ? "" : ": " + more) + "\n";
            showTree(*child);
        }
    }

    OpenWebsite website{catalogue, services};
    Workspace workspace{services, website};
    WebsiteFields& fields = website.fields;
    UrlList urls{fields.lsvSiteURLs, prompts};
    QAbstractItemModelTester tester{&workspace.tree(), QAbstractItemModelTester::FailureReportingMode::Fatal};
    Transcript transcript{home, &prompts};
    std::string& out = transcript.out;
};

TEST_P(WorkspaceTest, DoesWhatTheTranscriptSays) {
    transcript.play(TEST_FOLDER "/transcripts/" + GetParam());
}

INSTANTIATE_TEST_SUITE_P(Transcripts, WorkspaceTest,
                         testing::ValuesIn(goldenCases(TEST_FOLDER "/transcripts")), goldenName);

}  // namespace

}  // namespace relay::test
