// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every folder under webforms/ is a case: data.txt is applied to a website whose fields are all set, and
// expected.txt has what comes of it. With RELAY_GOLDEN_UPDATE set it is written instead of compared.
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/WebFormData.h"
#include "projects/WebsiteFields.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"

#include <cstdlib>

namespace relay::test {

namespace {

class WebFormGolden : public testing::TestWithParam<std::string> {};

std::string applied(std::string_view text) {
    WebsiteFields fields;
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) fields.*key.field = "old " + std::string(key.name);
    addNewItem(fields.lsvSiteURLs, "http://old.test/");
    Row report;
    report.text = "http://old.test/";
    fields.lsvReports.add(report);
    fields.txtURLTitle = fields.txtURLFileLocation = fields.lblURLTitle = "old";

    std::string out;
    const int lines = applyWebFormData(text, fields, [&out](std::string_view main, std::string_view sub) {
        out.append("select ").append(main).append("/").append(sub).append("\n");
    });
    out += std::to_string(lines) + " lines applied\n";
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) out += std::string(key.name) + "=" + fields.*key.field + "\n";
    for (const std::string& url : texts(fields.lsvSiteURLs)) out += "url " + url + "\n";
    out += "reports " + std::to_string(fields.lsvReports.count()) + ", work area \"" + fields.txtURLTitle +
           fields.txtURLFileLocation + fields.lblURLTitle + "\"\n";
    return out;
}

}  // namespace

TEST_P(WebFormGolden, FillsTheFields) {
    const std::string folder = TEST_FOLDER "/webforms/" + GetParam();
    const std::string result = applied(readWebFormData(folder + "/data.txt"));
    if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr) writeFile(folder + "/expected.txt", result);
    EXPECT_EQ(result, readFile(folder + "/expected.txt"));
}

INSTANTIATE_TEST_SUITE_P(Folders, WebFormGolden, testing::ValuesIn(goldenCases(TEST_FOLDER "/webforms")),
                         goldenName);

TEST(WebFormDataTest, RefusesWhatIsNoText) {
    const TestHome home;
    for (const char* mark : {"\xFF\xFE", "\xFE\xFF"})
        EXPECT_THROW(readWebFormData(home.write("data.txt", std::string(mark) + "T")), Failure);
    EXPECT_THROW(readWebFormData(home.path("")), Failure);
    EXPECT_THROW(readWebFormData(home.path("missing.txt")), Failure);
}

}  // namespace relay::test
