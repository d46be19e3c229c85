// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowApplication.h"
#include "widgets/Appearance.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // No test needs a real screen; an explicit platform is used.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    relay::WindowApplication application(argc, argv);
    relay::applyAppearance(application, QStringLiteral("light"));
    return RUN_ALL_TESTS();
}
