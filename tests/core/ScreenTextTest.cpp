// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenText.h"

#include <gtest/gtest.h>
#include <random>

namespace relay::test {
namespace {

TEST(ScreenText, ShowsUtf8AndCarriesOtherBytes) {
    const struct {
        std::string bytes;
        QString shown;
        std::string printable;
    } cases[] = {
        {"plain", QStringLiteral("plain"), "plain"},
        {"\xC3\xA9\xE2\x82\xAC", QStringLiteral("é€"), "\xC3\xA9\xE2\x82\xAC"},
        {"\xF0\x9F\x98\x80", QStringLiteral("😀"), "\xF0\x9F\x98\x80"},
        {"caf\xE9", QStringLiteral("caf") + QChar(0xDCE9), "caf\\xE9"},
        {"\xC0\xAF", QString(QChar(0xDCC0)) + QChar(0xDCAF), "\\xC0\\xAF"},  // overlong
        {"\xE0\x80\xAF", QString(QChar(0xDCE0)) + QChar(0xDC80) + QChar(0xDCAF), "\\xE0\\x80\\xAF"},
        {"\xED\xB2\x80", QString(QChar(0xDCED)) + QChar(0xDCB2) + QChar(0xDC80),
         "\\xED\\xB2\\x80"},                                                 // surrogate
        {"\xE2\x82", QString(QChar(0xDCE2)) + QChar(0xDC82), "\\xE2\\x82"},  // cut short
        {"\xF0\x9F\x98\x80\x80", QStringLiteral("😀") + QChar(0xDC80), "\xF0\x9F\x98\x80\\x80"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(toScreen(each.bytes), each.shown) << each.printable;
        EXPECT_EQ(toPrintableUtf8(each.bytes), each.printable);
    }
    EXPECT_EQ(toScreen("\xF4\x90\x80\x80").size(), 4);  // beyond the last code point
    const QChar loose[] = {QChar(0xD83D), QChar(u'x'), QChar(0xDC00)};
    EXPECT_EQ(fromScreen(QStringView(loose, 3)), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(ScreenText, EveryByteStringComesBack) {
    std::mt19937 random(11);
    const std::string pieces[] = {"a",        "\xC3\xA9", "\xF0\x9F\x98\x80", "\xED\xA0\xBD\xED\xB8\x80",
                                  "\xE2\x82", "\xF0"};
    for (int round = 0; round < 50000; ++round) {
        std::string bytes;
        for (auto i = random() % 12; i > 0; --i) {
            if (random() % 2 == 0)
                bytes += pieces[random() % std::size(pieces)];
            else
                bytes += static_cast<char>(random());
        }
        ASSERT_EQ(fromScreen(toScreen(bytes)), bytes) << toPrintableUtf8(bytes);
        ASSERT_TRUE(QByteArray::fromStdString(toPrintableUtf8(bytes)).isValidUtf8());
    }
}

}  // namespace
}  // namespace relay::test
