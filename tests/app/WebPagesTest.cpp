// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "practice/PracticeWeb.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include <gmock/gmock.h>

namespace relay::test {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;

class WebPagesTest : public WindowTest {
  protected:
    WebPagesTest() {
        m_web.start();
        settleHome(kSmallCatalogue);
        start();
        for (const auto& [name, button] : {std::pair("Shop", "NewProject"), {"Home", "NewWeb"}}) {
            prompts.inputs = {name};
            command(button);
        }
        bringUp();
    }
    void page(int tab) { find<QTabWidget>("SSTab1").setCurrentIndex(tab - 1); }
    bool isFetching() { return program().main().fetcher.isRunning(); }
    QString url(const char* path) const { return QString::fromStdString(m_web.address() + path); }
    // Answers the question of "Get Site Details" with the page.
    void getDetails(const char* path) {
        prompts.inputs = {m_web.address() + path};
        QTest::keyClick(&find<QPushButton>("cmdGetSiteInfo"), Qt::Key_Space);
    }

  private:
    PracticeWeb m_web;
};

}  // namespace

TEST_F(WebPagesTest, AFormCollectsTheLinksOfAPage) {
    page(2);
    whenModal([this](QWidget& dialog) {
        auto& address = control<QLineEdit>(dialog, "txtWebURL");
        EXPECT_EQ(address.text().toStdString(), "www.");
        const auto get = [&](const char* path) {
            address.setText(url(path));
            QTest::keyClick(&address, Qt::Key_Return);
        };
        get("/never");
        EXPECT_TRUE(isFetching());
        EXPECT_FALSE(control<QPushButton>(dialog, "Command1_2").isEnabled());
        EXPECT_EQ(prompts.busyDepth, 1);
        EXPECT_THAT(control<QLabel>(dialog, "StatusBar1").text().toStdString(), EndsWith("/never"));
        QTest::keyClick(&address, Qt::Key_Escape);
        EXPECT_TRUE(waitUntil([this] { return !isFetching(); }));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(prompts.busyDepth, 0);

        auto& filter = control<QLineEdit>(dialog, "txtKeyWord");
        for (const char* const text : {"links", "partner", "/site/shop/"}) {
            filter.setText(QString::fromLatin1(text));
            QTest::keyClick(&filter, Qt::Key_Return);
        }
        auto& filters = control<QListWidget>(dialog, "lstKeywords");
        filters.item(0)->setSelected(true);
        QTest::mouseClick(&control<QPushButton>(dialog, "Command1_1"), Qt::LeftButton);
        EXPECT_EQ(filters.count(), 2);
        get("/site/shop/links.html");
    });
    command("AddFromWeb");
    EXPECT_THAT(rowTexts("lsvSiteURLs"),
                ElementsAre(EndsWith("/about.html"), EndsWith("/contact.html"), EndsWith("/site/index.html"),
                            EndsWith("/top.html"), EndsWith("/map.html")));
    clickRow("lsvSiteURLs", rowTexts("lsvSiteURLs")[1]);
    whenModal([](QWidget& dialog) {
        EXPECT_THAT(control<QLineEdit>(dialog, "txtWebURL").text().toStdString(), EndsWith("/contact.html"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    command("AddFromWeb");
}

TEST_F(WebPagesTest, TheDetailsOfAPageFillTheWebsiteThatIsShown) {
    page(1);
    getDetails("/never");
    EXPECT_EQ(prompts.statuses.back(), "Connecting to " + url("/never").toStdString() + " ...");
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !isFetching(); }));
    EXPECT_EQ(prompts.statuses.back(), "");
    EXPECT_EQ(prompts.busyDepth, 0);

    getDetails("/site/");
    EXPECT_TRUE(waitUntil([this] { return !isFetching(); }));
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text().toStdString(), "Paper Shop: all you write with");

    // What is still on its way when another node is chosen is not wanted any more.
    getDetails("/never");
    clickNode("Shop");
    EXPECT_TRUE(waitUntil([this] { return !isFetching(); }));
    clickNode("Shop/Home");
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text().toStdString(), "Paper Shop: all you write with");
}

}  // namespace relay::test
