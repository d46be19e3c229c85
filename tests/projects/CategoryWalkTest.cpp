// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeAddress.h"
#include "practice/PracticeWeb.h"
#include "projects/CategoryWalk.h"
#include "projects/OpenWebsite.h"
#include "support/SessionFixture.h"
#include "transport/frmHTTP.h"

namespace relay::test {

namespace {

// A website, the two outside directories of a practice web, and the walk through them.
struct CategoryWalkTest : testing::Test, SessionFixture {
    CategoryWalkTest() {
        web.start();
        const std::string port = web.address().substr(web.address().rfind(':'));
        home.write("practice.addr", web.address() + "/\n");
        loadEngines("Name=Yahoo\r\nCategory=C\r\nName=dmoz\r\nCategory=C\r\n",
                    "[Yahoo]\r\nURL=http://yahoo.localhost" + port +
                        "/\r\nArts=/Arts\r\n[dmoz]\r\nURL=http://dmoz.localhost" + port +
                        "/\r\nArts=/Arts\r\n");
        website.open(file);
        QObject::connect(&walk, &CategoryWalk::ended, &walk, [this] { ++ended; });
    }

    // Double clicks, each after the page of the one before.
    void take(int engine, std::string_view main, const std::vector<std::string>& subs) {
        walk.chooseEngine(engine);
        const auto row = [](const Rows& rows, std::string_view label) {
            for (int i = 0; i < rows.count(); ++i)
                if (rows.at(i).text == label) return i;
            return -1;
        };
        const auto wait = [this] {
            const int before = ended;
            return waitUntil([&] { return ended > before; });
        };
        walk.chooseMainCategory(row(website.fields.lsvCustomMainCategory, main));
        walk.openMainCategory(row(website.fields.lsvCustomMainCategory, main));
        ASSERT_TRUE(wait());
        for (const std::string& label : subs) {
            walk.openSubCategory(row(website.fields.lsvCustomSubCategory, label));
            ASSERT_TRUE(wait());
        }
    }

    PracticeWeb web;
    frmHTTP fetcher{services};
    OpenWebsite website{catalogue, services};
    const std::string file = home.writeWebsite("one.kws", {"http://one.test/"});
    CategoryWalk walk{website.fields,
                      lists,
                      fetcher,
                      services,
                      {[this](std::string_view engine) { return website.storedCategory(engine); },
                       [this] { return directoryHosts(session.paths, preference); }}};
    int ended = 0;
};

}  // namespace

// What was chosen belongs to the website it was chosen for.
TEST_F(CategoryWalkTest, StoresPathAndIdentifierWithTheirWebsite) {
    const std::string other = home.writeWebsite("other.kws", {"http://other.test/"});
    take(1, "Arts", {"Visual Arts", "Painting"});
    EXPECT_EQ(website.fields.txtCustomCategory, "Arts/Visual Arts/Painting");
    EXPECT_EQ(walk.lblReadyToSubmit(), "Ready to submit");
    EXPECT_FALSE(walk.readyStandsOut());
    const std::string id = walk.spaceID();
    EXPECT_FALSE(id.empty());
    // The first engine's choice survives a look at the other.
    take(0, "Arts", {"Humanities"});
    EXPECT_TRUE(walk.readyStandsOut());
    walk.chooseEngine(1);
    EXPECT_EQ(website.fields.txtCustomCategory, "Arts/Visual Arts/Painting");
    EXPECT_TRUE(website.isTouched());
    website.saveOver(file);
    const auto stored = [this](const char* name, const char* key) {
        return ReadIniValue(home.path(name), kCustomCategorySection, key);
    };
    EXPECT_EQ(stored("one.kws", "dmoz"), "Arts/Visual Arts/Painting");
    EXPECT_EQ(stored("one.kws", "dmozSpaceID"), id);
    EXPECT_EQ(stored("one.kws", "Yahoo"), "Arts/Humanities");

    website.open(other);
    walk.leave();
    walk.chooseEngine(1);
    EXPECT_EQ(website.fields.txtCustomCategory + walk.spaceID(), "");
    EXPECT_FALSE(website.isTouched()) << "looking changes nothing";
    website.saveOver(other);
    EXPECT_EQ(stored("other.kws", "dmozSpaceID"), "");

    website.open(file);
    walk.leave();
    walk.chooseEngine(1);
    EXPECT_EQ(website.fields.txtCustomCategory, "Arts/Visual Arts/Painting");
    EXPECT_EQ(walk.spaceID(), id);
    EXPECT_FALSE(website.isTouched());
}

// A request that runs is not disturbed, and a page that cannot be had leaves the way up.
TEST_F(CategoryWalkTest, BeepsWhileAPageIsFetchedAndSaysWhatIsWrong) {
    walk.chooseEngine(0);
    walk.chooseMainCategory(0);
    walk.openMainCategory(0);
    walk.openMainCategory(0);
    EXPECT_EQ(prompts.last().kind, "beep");
    ASSERT_TRUE(waitUntil([this] { return ended == 1; }));
    // Opened again by the keyboard, without a click, it is the same page.
    walk.openMainCategory(0);
    ASSERT_TRUE(waitUntil([this] { return ended == 2; }));
    EXPECT_EQ(website.fields.lsvCustomMainCategory.at(0).tag, "/Arts/");
    website.fields.lsvCustomSubCategory.setTag(1, "/Nowhere/");
    walk.openSubCategory(1);
    ASSERT_TRUE(waitUntil([this] { return ended == 3; }));
    EXPECT_NE(prompts.statuses.back().find("404"), std::string::npos);
    EXPECT_EQ(texts(website.fields.lsvCustomSubCategory), std::vector<std::string>{"<< ..."});
    EXPECT_EQ(walk.lblReadyToSubmit(), "");
}

}  // namespace relay::test
