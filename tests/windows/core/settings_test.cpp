// The settings store on a real registry.
#include "core/settings.h"

#include <gtest/gtest.h>
#include <string>

static const char* const kTrialKey = "Software\\TonvistaTrial";

TEST(Settings, FailedReadsLeaveTheDefault) {
    const std::string longText(300, 'x');
    DeleteRegTree(kUserRoot, kTrialKey);
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
    DeleteRegTree(kUserRoot, kTrialKey);
}
