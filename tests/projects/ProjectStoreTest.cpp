// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "projects/ProjectStore.h"
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

TEST_F(ProjectStoreTest, LoadsAndSurvivesAnyFile) {
    struct Case {
        std::string text;
        const char* projects;
    };
    const Case cases[] = {
        {"", ""},
        {"[Shop]\r\nDescription=Spring pages\r\nLast=2\r\n1=Home|/p/Home.kws\r\n2=\r\n[Blog]\r\nLast=0\r\n",
         "Shop=Spring pages{1:Home>/p/Home.kws,}Blog={}"},
        {"[A]\nLast=3\n3=c\n1=a|\n", "A={1:a>,3:c>,}"},
        {"[A]\r\nLast=1\r\n1=shown|\r\n2=beyond|\r\n01=odd|\r\n-1=odd|\r\n", "A={1:shown>,}"},
        {"[A]\r\nLast=abc\r\n1=a|\r\n", "A={}"},
        {"[A]\r\nLast=2000000000\r\n1999999999=far|\r\n1=a|\r\n", "A={1:a>,1999999999:far>,}"},
        {"[A]\r\nLast=99999999999999999999\r\n1=a|\r\n", "A={1:a>,}"},
        {"[A]\r\nDescription=see [1] here\r\n", "A=see [1] here{}escription=see [1] her={}"},
        {"[\r\n[]\r\n\x01\xff\x00[x\r\n", ""},
        {std::string("\0\xfe[bin\0ary]\r\n", 13), nullptr},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        given(test.text);
        const std::string projects = textOf(store.loadProject());
        if (test.projects) {
            EXPECT_EQ(projects, test.projects);
        }
    }
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

TEST_F(ProjectStoreTest, AWildLastNeitherHangsNorGrowsTheFile) {
    given("[A]\r\nLast=2000000000\r\n1=a|\r\n");
    EXPECT_EQ(store.addNewProject("A", "b", ""), 2);
    given("[A]\r\nLast=abc\r\n1=a|\r\n");
    EXPECT_EQ(store.addNewProject("A", "b", ""), 1);  // "abc" counts as 0, so slot 1 is written again
}

TEST_F(ProjectStoreTest, RenamesTheFirstOccurrenceOfTheName) {
    struct Case {
        const char* before;
        const char* oldName;
        const char* after;
    };
    const Case cases[] = {
        {"[Shop]\r\nLast=0\r\n", "Shop", "[New]\r\nLast=0\r\n"},
        {"[Other]\r\nDescription=my shops\r\n[Shop]\r\n", "Shop",
         "[Other]\r\nDescription=my News\r\n[Shop]\r\n"},
        {"[Workshop]\r\n[shop]\r\n", "Shop", "[WorkNew]\r\n[shop]\r\n"},
        {"[Other]\r\n", "Shop", "[New]\r\n[Other]\r\n"},
        {"", "Shop", "[New]\r\n"},
    };
    for (const Case& test : cases) {
        given(test.before);
        store.editProject(test.oldName, "New");
        EXPECT_EQ(file(), test.after);
    }
}

TEST_F(ProjectStoreTest, RemovesUpToTheNextBracket) {
    struct Case {
        const char* before;
        const char* after;
    };
    const Case cases[] = {
        {"[A]\r\n1=a|\r\n[shop]\r\n1=s|\r\n[B]\r\n", "[A]\r\n1=a|\r\n[B]\r\n\r\n"},
        {"[A]\r\n[Shop]\r\nLast=0\r\n", "[A]\r\n\r\n"},
        {"[Shop]\r\nDescription=a [list] here\r\n1=s|\r\n[B]\r\n", "[list] here\r\n1=s|\r\n[B]\r\n\r\n"},
        {"[Workshop]\r\n", "[Workshop]\r\n"},
    };
    for (const Case& test : cases) {
        given(test.before);
        store.removeProject("Shop");
        EXPECT_EQ(file(), test.after);
    }
}

TEST_F(ProjectStoreTest, AFailedWriteLeavesTheOldIndex) {
    given("[Shop]\r\nLast=0\r\n");
    int saves = 0;
    setSaveFault([&saves](SaveStep step) { return step == SaveStep::Rename && ++saves ? EIO : 0; });
    EXPECT_ANY_THROW(store.addNewProject("Shop", "a", ""));
    EXPECT_ANY_THROW(store.editProject("Shop", "b"));
    EXPECT_ANY_THROW(store.removeProject("Shop"));
    setSaveFault({});
    EXPECT_EQ(saves, 3);
    EXPECT_EQ(file(), "[Shop]\r\nLast=0\r\n");
}

}  // namespace relay::test
