// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "pagetools/MetaTagEditor.h"
#include "pagetools/PageFiles.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace relay::test {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr const char* kPage = "<html>\n<head><title>Old</title></head>\n<body>x</body></html>\n";

class EditorTest : public SessionFixture, public testing::Test {
  protected:
    std::vector<std::string> requested;
    MetaTagEditor editor{services, [this](const std::string& url) {
                             requested.push_back(url);
                             return true;
                         }};

    void fill() {
        editor.txtTitle.set("New");
        editor.txtKeyWord.set("k");
        editor.txtDescription.set("d");
    }
    void select(const std::vector<std::string>& names) {
        for (int row = 0; row < editor.lsvDirs.count(); ++row) {
            const auto name = std::string(editor.lsvDirs.at(row).text);
            editor.lsvDirs.setHighlighted(row, std::count(names.begin(), names.end(), name) > 0);
        }
    }
    int rowOf(std::string_view name) const {
        for (int row = 0; row < editor.lsvDirs.count(); ++row)
            if (editor.lsvDirs.at(row).text == name) return row;
        return -1;
    }
    std::string rows() const {
        std::string all;
        for (int row = 0; row < editor.lsvDirs.count(); ++row) {
            const RowView shown = editor.lsvDirs.at(row);
            all.append(shown.icon)
                .append(" ")
                .append(shown.text)
                .append("|")
                .append(shown.subItems[0])
                .append("\n");
        }
        return all;
    }
};

}  // namespace

TEST_F(EditorTest, ListsFoldersFirstAndShowsTheKindsOfFiles) {
    for (const char* name : {"site/b.HTM", "site/a.shtml", "site/c.cfm", "site/d.asp.bak", "site/e.txt",
                             "site/.hidden.html", "site/sub/x.html"})
        home.write(name, kPage);
    editor.openFolder(home.path("site/"));
    EXPECT_EQ(
        rows(),
        "Up ..|\nFolder sub|Folder\nWebFile a.shtml|HTML File\nWebFile b.HTM|HTML File\nWebFile c.cfm|HTML "
        "File\nWebFile d.asp.bak|HTML File\nWinFile e.txt|File\n");
    editor.openRow(rowOf("sub"));
    EXPECT_EQ(editor.folder(), home.path("site/sub"));
    std::filesystem::remove_all(home.path("site/sub"));
    editor.addDirs();
    EXPECT_EQ(prompts.last().text, home.path("site/sub") + " is not accessible.");
    editor.openRow(0);
    EXPECT_EQ(editor.folder(), home.path("site"));

    editor.openRow(rowOf("e.txt"));
    EXPECT_EQ(prompts.last().text, "This is not a valid web page file, do you want to continue?");
    EXPECT_EQ(editor.txtTitle.label, "Title:");
    prompts.answers = {true};
    editor.openRow(rowOf("e.txt"));
    EXPECT_EQ(editor.txtTitle.label, "Title (3 characters)");
    editor.viewSource(rowOf("b.HTM"));
    EXPECT_EQ(prompts.last().kind, "view");
    prompts.systemOpens = false;
    editor.viewSource(rowOf("b.HTM"));
    EXPECT_EQ(prompts.last().text, "ViewSource_Error: 53 - There is no program for text files");
    editor.openFolder("/");
    EXPECT_EQ(rowOf(".."), -1);
}

TEST_F(EditorTest, ReadsFilesAndAddresses) {
    home.write("a.html", kPage);
    home.write("attributes.html", "<head x><title>Caf\xC3\xA9</title><meta name=keywords content=k><p>");
    std::string far = "<head><title>Far</title>";
    for (int i = 0; i < 5000; ++i) far += "<link>\r\n";
    home.write("far.html", far + "</head>");
    editor.openFolder(home.path(""));
    editor.chooseRow(rowOf("a.html"));
    EXPECT_EQ(editor.Text1(), "<head><title>Old</title></head>");
    EXPECT_EQ(editor.txtKeyWord.label, "Keywords (0 characters)");
    editor.chooseRow(rowOf("attributes.html"));
    EXPECT_EQ(editor.txtTitle.label, "Title (4 characters)");
    EXPECT_EQ(editor.txtKeyWord.text, "k");
    editor.chooseRow(rowOf("far.html"));
    EXPECT_EQ(
        prompts.last().text,
        "Module: getHTMLSection\r\n6 - Overflow\r\nPlease report this error to 'support@korvel.example'");
    EXPECT_EQ(editor.txtTitle.text + editor.Text1(), "Far");
    std::filesystem::remove(home.path("a.html"));
    editor.chooseRow(rowOf("a.html"));
    EXPECT_THAT(prompts.last().text, StartsWith("Open HTML file error."));

    editor.txtTitle.set("typed");
    editor.getMetaTagFromAddress("");
    EXPECT_EQ(editor.txtTitle.label, "Title:");
    editor.getMetaTagFromAddress(home.path("attributes.html"));
    EXPECT_EQ(editor.txtKeyWord.text, "k");
    editor.getMetaTagFromAddress(home.path("a.html"));
    EXPECT_THAT(prompts.last().text, EndsWith("sepcify a correct file name and path then try again."));
    editor.getMetaTagFromAddress("http:///x");
    EXPECT_EQ(prompts.last().text, "Invalid URL: http:///x");
    EXPECT_TRUE(requested.empty());
    editor.getMetaTagFromAddress("www.a.test/x");
    EXPECT_EQ(editor.lblStatusBar(), "Connecting to www.a.test/x");
    EXPECT_THAT(requested, ElementsAre("http://www.a.test/x"));
    editor.showPage(kPage, {});
    EXPECT_EQ(editor.txtTitle.text, "Old");
    editor.showPage(far, {});
    EXPECT_EQ(editor.txtTitle.text + editor.Text1(), "Far");
    editor.showPage({}, "no reply");
    EXPECT_EQ(editor.txtTitle.text + editor.Text1() + editor.lblStatusBar(), "no reply");
    editor.getMetaTag("<meta name=keywords content=found>" + std::string(40000, 'x') + "<p>");
    EXPECT_EQ(prompts.last().text, "Module: retrieveMetaTag\r\n6 - Overflow");
    EXPECT_EQ(editor.txtKeyWord.text, "found");
    EXPECT_THAT(logText(), EndsWith("Module: retrieveMetaTag\r\n6 - Overflow\r\n"));
}

TEST_F(EditorTest, UpdatesTheSelectedPagesOnly) {
    for (const char* name : {"s/a.html", "s/b.html", "s/c.txt", "s/gone.html", "s/left.html", "s/sub/x.html"})
        home.write(name, kPage);
    home.write("target.html", kPage);
    std::filesystem::create_symlink("../target.html", home.path("s/link.html"));
    home.write("s/empty.html", "");
    ::chmod(home.path("s/b.html").c_str(), 0640);
    editor.openFolder(home.path("s"));
    select({"..", "sub", "a.html", "b.html", "c.txt", "gone.html", "link.html", "empty.html"});

    const char* const needed[] = {"Please enter a title for your web site.",
                                  "Please enter keywords for your web site.",
                                  "Please enter description for your web site."};
    MetaTagEditor::Field* const fields[] = {&editor.txtTitle, &editor.txtKeyWord, &editor.txtDescription};
    for (int i = 0; i < 3; ++i) {
        editor.update();
        EXPECT_EQ(prompts.last().text, needed[i]);
        fields[i]->set("new");
    }
    editor.update();
    EXPECT_EQ(prompts.last().title, "Meta Tag");
    EXPECT_EQ(home.read("s/a.html"), kPage) << "answered No";

    std::filesystem::remove(home.path("s/gone.html"));
    std::vector<std::string> statuses;
    QObject::connect(&editor, &MetaTagEditor::statusChanged, &editor,
                     [&] { statuses.push_back(editor.lblStatusBar()); });
    editor.optReplace = true;
    editor.chkTitleTop = true;
    prompts.answers = {true};
    const std::size_t boxes = prompts.shown.size();
    editor.update();
    EXPECT_EQ(prompts.shown.size(), boxes + 1) << "the question only";
    const std::string changed =
        changedPage(kPage, {{"new", "new", "new"}, MetaTagChange::Way::Replace, true});
    for (const char* name : {"s/a.html", "s/b.html", "s/link.html"})
        EXPECT_EQ(home.read(name), changed) << name;
    for (const char* name : {"s/c.txt", "s/left.html", "s/sub/x.html", "target.html"})
        EXPECT_EQ(home.read(name), kPage) << name;
    EXPECT_NE(home.read("s/empty.html"), "");
    EXPECT_FALSE(fileExists(home.path("s/gone.html")));
    EXPECT_EQ(modeOf(home.path("s/b.html")), 0640u);
    const auto updating = [this](const char* name) { return "Updating file : " + home.path(name); };
    EXPECT_THAT(statuses, ElementsAre(updating("s/a.html"), updating("s/b.html"), updating("s/empty.html"),
                                      updating("s/link.html"), "Done"));
}

TEST_F(EditorTest, StopsAtAPageThatFailsAndLosesNothing) {
    home.write("s/a.html", kPage);
    home.write("s/b.html", std::string(40000, 'x') + "<head>");
    home.write("s/c.html", kPage);
    editor.openFolder(home.path("s"));
    select({"a.html", "b.html", "c.html"});
    fill();
    editor.updateMetaTag(false);
    EXPECT_EQ(prompts.last().text, "Module: insertMetaTag\r\n6 - Overflow");
    EXPECT_EQ(editor.lblStatusBar(), "Updating file : " + home.path("s/b.html"));
    EXPECT_NE(home.read("s/a.html"), kPage);
    EXPECT_EQ(home.read("s/b.html").size(), 40006u);
    EXPECT_EQ(home.read("s/c.html"), kPage);

    select({"c.html"});
    for (const SaveStep step : {SaveStep::Create, SaveStep::Write, SaveStep::Flush, SaveStep::Rename}) {
        setSaveFault([step](SaveStep at) { return at == step ? ENOSPC : 0; });
        editor.updateMetaTag(true);
        setSaveFault({});
        EXPECT_EQ(prompts.last().text,
                  "Module: replaceMetaTag\r\n61 - " + home.path("s/c.html") + ": No space left on device");
        EXPECT_EQ(home.read("s/c.html"), kPage);
    }
    // A request to stop between two files.
    QObject::connect(&editor, &MetaTagEditor::statusChanged, &editor, [this] { editor.stop(); });
    select({"a.html", "c.html"});
    editor.updateMetaTag(true);
    EXPECT_EQ(editor.lblStatusBar(), "Stopped after 0 of 2 files");
    EXPECT_EQ(home.read("s/c.html"), kPage);
    EXPECT_FALSE(editor.isUpdating());
}

TEST_F(EditorTest, PreviewsWithoutWriting) {
    const std::string file = home.write("a.html", kPage);
    const MetaTagChange change{{"New", "k", "d"}, MetaTagChange::Way::Replace};
    const FilePreview preview = previewFile(file, change);
    EXPECT_EQ(preview.after, changedPage(kPage, change));
    EXPECT_FALSE(preview.hunks.empty());
    EXPECT_EQ(home.read("a.html"), kPage);
    EXPECT_THAT(previewFile(home.path("none.html"), change).problem, EndsWith("No such file or directory"));
    EXPECT_TRUE(insertMetaTag(services, "", change.tags));
    EXPECT_TRUE(replaceMetaTag(services, home.path("none.html"), change.tags, false));
    EXPECT_TRUE(prompts.shown.empty());
}

}  // namespace relay::test
