// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "projects/ProjectStore.h"
#include "support/CaseTable.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

// "name=description{slot:website>file,...}" for each project.
std::string textOf(const std::vector<ProjectRecord>& projects) {
    std::string text;
    for (const ProjectRecord& project : projects) {
        text += project.name + "=" + project.description + "{";
        for (const WebsiteSlot& site : project.websites)
            text += std::to_string(site.slot) + ":" + site.name + ">" + site.file + ",";
        text += "}";
    }
    return text;
}

class ProjectStoreTest : public ::testing::Test {
  protected:
    TestHome home;
    ProjectStore store{home.paths().ProjectFilePath};

    void given(std::string_view text) const { home.write("project.kwj", text); }
    std::string file() const { return home.read("project.kwj"); }
};

}  // namespace

TEST_F(ProjectStoreTest, FollowsItsTable) {
    using Inputs = std::vector<std::string>;
    playCases(TEST_FOLDER "/cases/project-index.txt",
              {{"load",
                [this](const Inputs& in) {
                    given(in[0]);
                    return textOf(store.loadProject());
                }},
               {"add website",
                [this](const Inputs& in) {
                    given(in[0]);
                    return std::to_string(store.addNewProject("A", "b", ""));
                }},
               {"rename Shop to New",
                [this](const Inputs& in) {
                    given(in[0]);
                    store.editProject("Shop", "New");
                    return file();
                }},
               {"remove Shop", [this](const Inputs& in) {
                    given(in[0]);
                    store.removeProject("Shop");
                    return file();
                }}});
    given(std::string("\0\xfe[bin\0ary]\r\n", 13));
    EXPECT_NO_THROW(store.loadProject());
    removeFile(store.file());
    EXPECT_EQ(textOf(store.loadProject()), "");
}

TEST_F(ProjectStoreTest, SlotsAreReused) {
    EXPECT_EQ(store.addNewProject("Shop", "", ""), 0);
    EXPECT_EQ(store.addNewProject("Shop", "Home", "/p/Home.kws"), 1);
    EXPECT_EQ(store.addNewProject("Shop", "Sale", ""), 2);
    store.clearSlot("Shop", 1);
    EXPECT_EQ(file(), "[Shop]\r\nDescription=\r\nLast=2\r\n1=\r\n2=Sale|\r\n");
    EXPECT_EQ(store.addNewProject("Shop", "News", "/n"), 1);
    store.setSlot("Shop", {2, "Big sale\r\n[Evil]", "/s\n3=x|"});
    store.setDescription("Shop", "one\r\nLast=9\rand\ntwo\r\n\r\nthree");
    EXPECT_EQ(file(),
              "[Shop]\r\nDescription=one Last=9 and two  three\r\nLast=2\r\n1=News|/n\r\n2=Big sale\r\n");
}

}  // namespace relay::test
