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

static std::string KeyName(uint32_t key) {
    HotkeyRecord record = {};
    record.VirtualKey = key;
    return Text(record);
}

TEST(Hotkeys, CombinationsAreShownInOneOrder) {
    HotkeyRecord record = {0, 1, 7, 0, 'P', 0, 0, 0, 0};
    EXPECT_EQ(Text(record), "<alt><ctrl>P   ");
    record.Shift = 1;
    EXPECT_EQ(Text(record), "<alt><shift><ctrl>P   ");
    ClearHotkey(&record);
    EXPECT_EQ(Text(record), "    ");
    std::string names;
    for (const uint32_t key : {1, 8, 13, 19, 32, 33, 37, 48, 90, 91, 105, 106, 112, 135, 144, 145})
        names += KeyName(key) + '|';
    EXPECT_EQ(names, "lmb |bksp|retn|paus|spc |pgup|left|0   |Z   |lwin|pad9|pad*|F1  |F24 |num |"
                     "scrl|");
    EXPECT_EQ(KeyName(186) + KeyName(255) + KeyName(300) + KeyName(0xFFFFFFFF), "oem             ");
    for (uint32_t key = 0; key <= kMostVirtualKey; ++key)
        EXPECT_EQ(KeyName(key).size(), 4u) << key;
}

TEST(Hotkeys, StoredIdsAndKeysThatNobodyHasAreNotTaken) {
    HotkeyRecord record;
    std::memset(&record, 0xEE, sizeof record);
    FixHotkey(9, &record);
    const HotkeyRecord fixed = {1, 0xEEEEEEEE, 0xEEEEEEEE, 0xEEEEEEEE, 0, 836, 835, 789, 0};
    EXPECT_EQ(std::memcmp(&record, &fixed, sizeof record), 0);
}
