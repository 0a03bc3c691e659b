// The order of the catalog's rows is that of the platform's own comparison.
#include "archive/text_key_win.h"

#include "core/platform.h"

#include <gtest/gtest.h>

#include <random>

static int Sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(TextKey, OrdersAsThePlatformCompares) {
    static constexpr const char kLetters[] =
        "abABzZ09 -'.,!()&\xE4\xC4\xDF\xE9\xC9\xF1\xF8\xD8\xC6\x8A\x01\xA0\x96";
    std::mt19937 random(3);
    const auto text = [&] {
        std::string made;
        for (uint32_t n = random() % 6; n; --n)
            made += kLetters[random() % (sizeof kLetters - 1)];
        return made;
    };
    for (int i = 0; i < 50000; ++i) {
        std::string a = text(), b = text();
        if (i % 2) b = a + text(); // what they share counts as well
        if (i % 100 == 0) b.insert(0, 600, 'x'), a.insert(0, 600, 'x'); // no key is cut
        std::string keyA, keyB;
        PlatformTextKey(a.c_str(), &keyA);
        PlatformTextKey(b.c_str(), &keyB);
        ASSERT_EQ(Sign(keyA.compare(keyB)), Sign(lstrcmpA(a.c_str(), b.c_str())))
            << "\"" << a << "\" and \"" << b << "\"";
    }
}

TEST(TextKey, SmallLettersAreThePlatforms) {
    const uint8_t* lower = PlatformLowerCase();
    EXPECT_EQ(lower[0], 0);
    EXPECT_EQ(lower[static_cast<uint8_t>('Q')], 'q');
    EXPECT_EQ(lower[static_cast<uint8_t>('[')], '[');
    EXPECT_TRUE(GetACP() != 1252 || lower[0xC9] == 0xE9);
}
