// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CaseTable.h"
#include "transport/RequestUrl.h"

#include <gtest/gtest.h>

namespace relay::test {

TEST(RequestUrlTest, FollowsItsTable) {
    using Inputs = std::vector<std::string>;
    playCases(TEST_FOLDER "/cases/urls.txt",
              {{"wireUrl", [](const Inputs& in) { return wireUrl(in[0]); }},
               {"loggableUrl", [](const Inputs& in) { return loggableUrl(in[0]); }}});
}

}  // namespace relay::test
