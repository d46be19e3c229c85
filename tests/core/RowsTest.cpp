// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/Rows.h"
#include "core/ScreenText.h"
#include "core/Text.h"

#include <QAbstractItemModelTester>
#include <QSortFilterProxyModel>

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace relay::test {
namespace {

Row rowOf(const std::string& key) {
    return {
        .key = key, .text = "text of " + key, .subItems = {"ENG", key}, .icon = "ENG", .tag = "tag " + key};
}

TEST(Rows, KeysCompareWithoutRegardToCase) {
    Rows rows;
    rows.add(rowOf("Alpha"));
    rows.add({.text = "no key"});
    rows.add({.key = "beta", .text = "beta"});
    EXPECT_FALSE(rows.tryAdd(rowOf("ALPHA")));
    EXPECT_THROW(rows.add(rowOf("alpha")), Failure);
    EXPECT_EQ(rows.indexOf("aLPHA"), 0);
    EXPECT_EQ(rows.indexOf(""), -1);
    EXPECT_EQ(rows.indexOf("BETA"), 2);
    EXPECT_EQ(rows.removeIf([](const RowView& row) { return row.key == "beta"; }), 1);
    EXPECT_FALSE(rows.contains("beta"));
    EXPECT_EQ(rows.count(), 2);
    EXPECT_THROW(rows.at(2), std::out_of_range);
}

TEST(Rows, RowsReturnWhatWasStored) {
    Rows rows;
    rows.add({.key = "k", .text = "k", .subItems = {"", "two"}, .tag = "t", .checked = true});
    rows.setSubItem(0, 4, "four");
    rows.setIcon(0, std::string("\0i", 2));
    rows.setHighlighted(0, true);
    const Row row(rows.at(0));
    EXPECT_EQ(row.key, "k");
    EXPECT_EQ(row.text, "k");
    EXPECT_EQ(row.subItems, (std::vector<std::string>{"", "two", "", "four"}));
    EXPECT_EQ(row.icon, std::string("\0i", 2));
    EXPECT_EQ(row.tag, "t");
    EXPECT_TRUE(row.checked && row.highlighted);
    EXPECT_EQ(rows.at(0).subItems.at(1), "two");
    EXPECT_THROW(rows.at(0).subItems.at(4), std::out_of_range);
    EXPECT_EQ(rows.firstHighlighted(), 0);
    rows.clearHighlights();
    EXPECT_EQ(rows.firstHighlighted(), -1);
}

// Random changes, compared with a plain list, with Qt's model checker and a proxy that depends on the signals
// alone.
TEST(Rows, SignalsAndIndexFollowEveryChange) {
    Rows rows;
    rows.setColumns({"Engine", "Type", "Country"});
    rows.setCheckable(true);
    const QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&rows);
    std::vector<std::string> plain;
    std::mt19937 random(3);
    const auto place = [&] { return static_cast<int>(random() % plain.size()); };
    for (int round = 0; round < 3000; ++round) {
        const std::string key = "key" + std::to_string(random() % 60);
        const bool taken = std::find(plain.begin(), plain.end(), key) != plain.end();
        switch (random() % (plain.empty() ? 1 : 6)) {
            case 0:
                EXPECT_EQ(rows.tryAdd(rowOf(key)), !taken);
                if (!taken) plain.push_back(key);
                break;
            case 1: {
                if (random() % 20 != 0) break;
                const auto test = [](std::string_view name) {
                    return name.back() == '3' || name.back() == '7';
                };
                EXPECT_EQ(rows.removeIf([&](const RowView& row) { return test(row.key); }),
                          static_cast<int>(std::erase_if(plain, test)));
                break;
            }
            case 2: {
                const int at = place();
                const QPersistentModelIndex kept = rows.index(at, 1);
                const std::string keyThere = plain[static_cast<std::size_t>(at)];
                rows.sortByColumn(2);
                const bool up = rows.sortedAscending();
                std::sort(plain.begin(), plain.end(),
                          [up](const auto& a, const auto& b) { return up ? a < b : b < a; });
                EXPECT_EQ(fromScreen(kept.data(Rows::KeyRole).toString()), keyThere);
                break;
            }
            case 3: {
                const RowsBatch batch(rows);
                rows.removeIf([&](const RowView& row) { return row.key == plain.front(); });
                plain.erase(plain.begin());
                if (rows.tryAdd(rowOf(key))) plain.push_back(key);
                break;
            }
            case 4:
                rows.setSubItem(place(), 1, key);
                break;
            default:
                if (random() % 50 != 0) break;
                rows.clear();
                plain.clear();
        }
        ASSERT_EQ(rows.count(), static_cast<int>(plain.size()));
        ASSERT_EQ(proxy.rowCount(), rows.count());
        EXPECT_EQ(rows.indexOf(key), [&] {
            const auto found = std::find(plain.begin(), plain.end(), key);
            return found == plain.end() ? -1 : static_cast<int>(found - plain.begin());
        }());
        for (int i = 0; i < rows.count(); ++i) {
            ASSERT_EQ(rows.at(i).key, plain[static_cast<std::size_t>(i)]) << "round " << round;
            ASSERT_EQ(rows.indexOf(plain[static_cast<std::size_t>(i)]), i) << "round " << round;
        }
    }
}

TEST(Rows, SortsWithoutCaseAndReverses) {
    Rows rows;
    rows.setColumns({"Name"});
    for (const char* const text : {"beta", "Alpha", "BETA", "alpha"}) rows.add({.text = text});
    const auto order = [&] {
        std::string all;
        for (int i = 0; i < rows.count(); ++i) all.append(rows.at(i).text).append(" ");
        return all;
    };
    rows.sortByColumn(0);
    EXPECT_EQ(order(), "Alpha alpha beta BETA ");
    rows.sortByColumn(0);
    EXPECT_EQ(order(), "beta BETA Alpha alpha ");
    EXPECT_FALSE(rows.sortedAscending());
    rows.sortByColumn(0);
    EXPECT_TRUE(rows.sortedAscending());
}

TEST(Rows, ABoxTickedInAViewEmitsASignal) {
    Rows rows;
    rows.setCheckable(true);
    rows.add(rowOf("a"));
    std::string told;
    QObject::connect(&rows, &Rows::checkToggled,
                     [&](int row, bool on) { told += std::to_string(row) + (on ? "on " : "off "); });
    const QModelIndex box = rows.index(0, 0);
    rows.setChecked(0, true);
    EXPECT_EQ(box.data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_TRUE(rows.setData(box, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(rows.setData(box, QStringLiteral("x"), Qt::EditRole));
    EXPECT_EQ(told, "0off ");
    rows.setCheckable(false);
    EXPECT_FALSE(box.data(Qt::CheckStateRole).isValid());
}

}  // namespace
}  // namespace relay::test
