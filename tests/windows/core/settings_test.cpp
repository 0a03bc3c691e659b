// The settings store on a real registry.
#include "core/settings.h"
#include "core/placement.h"

#include <gtest/gtest.h>
#include <string>

static const char* const kTrialKey = "Software\\TonvistaTrial";

namespace {
class SettingsTest : public testing::Test {
protected:
    void SetUp() override { DeleteRegTree(kUserRoot, kTrialKey); }
    void TearDown() override { DeleteRegTree(kUserRoot, kTrialKey); }
};
} // namespace

TEST_F(SettingsTest, FailedReadsLeaveTheDefault) {
    const std::string longText(300, 'x');
    WriteRegString(kUserRoot, kTrialKey, "Text", "abc");
    WriteRegString(kUserRoot, kTrialKey, "Long", longText.c_str());
    WriteRegValue(kUserRoot, kTrialKey, "Three", kRegBinary, "abc", 3);
    WriteRegValue(kUserRoot, kTrialKey, "NoNul", kRegSz, "abcd", 4);
    WriteRegDword(kUserRoot, kTrialKey, "Binary", kRegBinary, 77);
    WriteRegDword(kUserRoot, kTrialKey, "Word", kRegDword, 78);

    uint32_t number = 5;
    for (const char* name : {"Missing", "Text", "Long", "Three"})
        EXPECT_EQ(ReadRegValue(kUserRoot, kTrialKey, name, kRegDword, &number, 4), 0) << name;
    EXPECT_EQ(number, 5u);
    EXPECT_EQ(ReadRegValue(kUserRoot, kTrialKey, "Binary", kRegDword, &number, 4), 1);
    EXPECT_EQ(number, 77u);

    char text[8] = "before";
    for (const char* name : {"Missing", "Word", "Binary", "Long"})
        EXPECT_EQ(ReadRegString(kUserRoot, kTrialKey, name, text, sizeof text), 0) << name;
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(ReadRegString(kUserRoot, kTrialKey, "NoNul", text, sizeof text), 1);
    EXPECT_STREQ(text, "abcd");
}

TEST_F(SettingsTest, SeedsNeverReplaceAndBadPlacementsAreMissing) {
    constexpr uint32_t kWindow = 77; // no component's number
    const char* const section = "Software\\Tonvista\\UIWindow77";
    DeleteRegTree(kUserRoot, section);
    uint32_t one = 1, two = 2;
    SeedWindowSetting(kWindow, "Value", kRegDword, 4, &one);
    SeedWindowSetting(kWindow, "value", kRegDword, 4, &two);
    EXPECT_EQ(ReadWindowDword(kWindow, "Value", 9), 1u);
    EXPECT_EQ(ReadWindowDword(kWindow, "Other", 9), 9u);

    WindowPlacement back = {};
    LoadWindowPlacement(kWindow, &back);
    EXPECT_TRUE(back.X == 10 && back.Height == 200 && back.BkColor == 0x404040);
    WriteWindowSetting(kWindow, "X", kRegBinary, 3, "abc");
    LoadWindowPlacement(kWindow, &back);
    EXPECT_EQ(back.X, 10) << "a value of the wrong size counts as missing";
    DeleteRegTree(kUserRoot, section);
}
