// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "session/InstalledData.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

namespace relay::test {
namespace {

TEST(InstalledData, PreparesAHomeAndOverwritesNothing) {
    const TestHome home;
    home.write("installed/cat.kws", "categories");
    home.write("installed/country.kws", "countries");
    home.write("new/cat.kws", "mine");
    const Paths paths = Paths::insideHome(home.path("new"));
    prepareHome(paths, home.path("installed"));
    EXPECT_EQ(home.read("new/cat.kws"), "mine");
    EXPECT_EQ(home.read("new/country.kws"), "countries");
    EXPECT_TRUE(folderExists(paths.WindowsPath));
    prepareHome(Paths::insideHome(home.path("bare")), home.path("absent"));
    EXPECT_THROW(prepareHome(Paths::insideHome(home.path("new/cat.kws")), ""), Failure);
}

}  // namespace
}  // namespace relay::test
