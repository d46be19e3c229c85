// SPDX-License-Identifier: GPL-3.0-or-later
#include "SubmissionFixture.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "support/GoldenCases.h"

#include <filesystem>

namespace relay::test {

namespace {

std::string requestText(const std::vector<std::string>& requests) {
    std::string text;
    for (const std::string& request : requests) {
        text.append(firstLine(request)).append("\n");
        const std::size_t head = request.find("\r\n\r\n");
        if (head + 4 < request.size()) text.append(request.substr(head + 4)).append("\n");
    }
    return text;
}

// Every folder is a run. Input: krveng5.dat and catkws.dat ({web} stands for the server's address),
// website.kws and case.ini (CommandLine, BlockSpam). Output, compared byte for byte: the reports in order
// (report1.html and on), the website file (website-after.kws, {home} for the home), fail.eng and the requests
// (requests.txt, request line and body). It is April 1 of 2002, 13:05, and one connection is used.
class SubmissionGoldenTest : public testing::TestWithParam<std::string> {};

TEST_P(SubmissionGoldenTest, SubmitsAndReports) {
    const auto file = [&](const std::string& name) {
        return TEST_FOLDER "/golden/" + GetParam() + "/" + name;
    };
    const IniFile options = IniFile::load(file("case.ini"));
    SubmissionFixture fixture(options.value("Case", "CommandLine"));
    fixture.preference.BlockSpam =
        static_cast<std::int16_t>(leadingInteger(options.value("Case", "BlockSpam")));
    fixture.preference.Connections = 1;
    fixture.selectEngines(replaceAll(readFile(file("krveng5.dat")), "{web}", fixture.server.url("")),
                          readFile(file("catkws.dat")));
    fixture.run({fixture.home.write("Projects/website.kws", readFile(file("website.kws")))});

    for (std::size_t i = 0; i < fixture.reports.size(); ++i) {
        EXPECT_EQ(readFile(fixture.reports[i].path),
                  readFile(file("report" + std::to_string(i + 1) + ".html")));
    }
    EXPECT_FALSE(fileExists(file("report" + std::to_string(fixture.reports.size() + 1) + ".html")));
    EXPECT_EQ(replaceAll(fixture.home.read("Projects/website.kws"), fixture.home.path(""), "{home}/"),
              readFile(file("website-after.kws")));
    EXPECT_EQ(fixture.home.read("fail.eng"), readFile(file("fail.eng")));
    EXPECT_EQ(requestText(fixture.server.requests()), readFile(file("requests.txt")));
    // The website file holds a password.
    const auto rights = std::filesystem::status(fixture.home.path("Projects/website.kws")).permissions();
    EXPECT_EQ(rights, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

INSTANTIATE_TEST_SUITE_P(Golden, SubmissionGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

}  // namespace

}  // namespace relay::test
