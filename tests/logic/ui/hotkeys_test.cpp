// Hotkeys' records as they may be found, and the texts of combinations.
#include "ui/hotkeys.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
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
    const struct {
        uint32_t key;
        const char* name;
    } keys[] = {{1, "lmb "},   {8, "bksp"},   {13, "retn"},        {19, "paus"},  {32, "spc "},
                {33, "pgup"},  {37, "left"},  {48, "0   "},        {57, "9   "},  {65, "A   "},
                {90, "Z   "},  {91, "lwin"},  {96, "pad0"},        {105, "pad9"}, {106, "pad*"},
                {112, "F1  "}, {135, "F24 "}, {144, "num "},       {145, "scrl"}, {186, "oem "},
                {192, "oem "}, {219, "oem "}, {226, "oem "},       {0, "    "},   {136, "    "},
                {255, "    "}, {300, "    "}, {0xFFFFFFFF, "    "}};
    for (const auto& key : keys)
        EXPECT_EQ(KeyName(key.key), key.name) << key.key;
    for (uint32_t key = 0; key <= kMostVirtualKey; ++key)
        EXPECT_EQ(KeyName(key).size(), 4u) << key;
}

TEST(Hotkeys, StoredIdsAndKeysThatNobodyHasAreNotTaken) {
    std::set<int> controls;
    for (int i = 0; i < kHotkeys; ++i) {
        HotkeyRecord record;
        std::memset(&record, 0xEE, sizeof record);
        FixHotkey(i, &record);
        EXPECT_EQ(record.HotkeyId, 780 + i);
        EXPECT_EQ(record.VirtualKey, 0u);
        EXPECT_EQ(record.Enabled, 1u);
        EXPECT_TRUE(record.Alt && record.Ctrl && record.Shift);
        controls.insert({record.TextControlId, record.CheckControlId, kHotkeyKinds[i].setId});
        record.VirtualKey = 300;
        FixHotkey(i, &record);
        EXPECT_EQ(record.VirtualKey, 0u);
    }
    EXPECT_EQ(controls.size(), 30u);
    EXPECT_EQ(*controls.begin(), 808);
    EXPECT_EQ(*controls.rbegin(), 837);
}
