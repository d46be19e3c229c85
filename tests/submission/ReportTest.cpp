// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "submission/SubmissionReport.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

TEST(ReportTest, KeepsEachFailedEngineOnce) {
    FailEngines engines;
    for (const std::string_view name : {"Big Search", "Two", "two", "search", "BIG SEARCH", "Big Search 2"})
        engines.add(name);
    EXPECT_EQ(engines.text(), "Big Search\r\nTwo\r\nBig Search 2\r\n");
    engines.clear();
    engines.add("Two");
    EXPECT_EQ(engines.text(), "Two\r\n");
}

TEST(ReportTest, IsListedInTheWebsiteFileOrNotAtAll) {
    const TestHome home;
    const QDateTime time = FixedClock().now();
    const std::string text = "[Web Site Info]\r\nLastReport=2147483647\r\n";
    const std::string file = home.write("Site.kws", text);
    EXPECT_THROW(noteReport(file, "http://a.test/", time, "r.html"), Failure);
    EXPECT_EQ(home.read("Site.kws"), text);

    home.write("Site.kws", "[Web Site Info]\r\nTitle=x\r\n");
    setSaveFault([](SaveStep step) { return step == SaveStep::Rename ? 28 : 0; });
    EXPECT_THROW(noteReport(file, "http://a.test/", time, "r.html"), Failure);
    setSaveFault({});
    EXPECT_EQ(home.read("Site.kws"), "[Web Site Info]\r\nTitle=x\r\n");
    // A line break in the URL must not begin a line of its own.
    noteReport(file, "http://a.test/\r\nTitle=y", time, "r.html");
    const IniFile after = IniFile::load(file);
    EXPECT_EQ(after.value("Report", "URL1"), "http://a.test/");
    EXPECT_EQ(after.value("Web Site Info", "LastReport"), "1");
    EXPECT_EQ(after.value("Report", "Title"), "");
}

}  // namespace

}  // namespace relay::test
