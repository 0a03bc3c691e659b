// Hotkeys' records as they may be found, and the texts of combinations.
#include "ui/hotkeys.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

static std::string Text(const HotkeyRecord& record) {
    char text[kHotkeyTextMax];
    FormatHotkey(record, text);
    return text;
}

TEST(Hotkeys, CombinationsAreShownInOneOrder) {
    EXPECT_EQ(Text({0, 1, 7, 0, 'P', 0, 0, 0, 0}), "<alt><ctrl>P   ");
    EXPECT_EQ(Text({0, 1, 7, 9, 300, 0, 0, 0, 0}), "<alt><shift><ctrl>    ");
    const auto name = [](uint32_t key) { return Text({0, 0, 0, 0, key, 0, 0, 0, 0}); };
    std::string names;
    for (const uint32_t key :
         {1, 8, 13, 19, 32, 33, 37, 48, 90, 91, 105, 106, 112, 135, 144, 145, 186, 255})
        names += name(key) + '|';
    EXPECT_EQ(names, "lmb |bksp|retn|paus|spc |pgup|left|0   |Z   |lwin|pad9|pad*|F1  |F24 |num |"
                     "scrl|oem |    |");
    for (uint32_t key = 0; key <= kMostVirtualKey; ++key)
        EXPECT_EQ(name(key).size(), 4u) << key;
}

TEST(Hotkeys, StoredIdsAndKeysThatNobodyHasAreNotTaken) {
    HotkeyRecord record;
    std::memset(&record, 0xEE, sizeof record);
    FixHotkey(9, &record);
    const HotkeyRecord fixed = {1, 0xEEEEEEEE, 0xEEEEEEEE, 0xEEEEEEEE, 0, 836, 835, 789, 0};
    EXPECT_EQ(std::memcmp(&record, &fixed, sizeof record), 0);
}
