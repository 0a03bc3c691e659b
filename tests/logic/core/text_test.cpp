// Texts in fixed buffers and the bounds-checked byte reader and writer.
#include "core/bytes.h"
#include "core/text.h"

#include <gtest/gtest.h>

TEST(Text, CopiesAreCutAndComparedWithoutCase) {
    char buffer[5];
    CopyText(buffer, "abcdefgh");
    EXPECT_STREQ(buffer, "abcd");
    CopyText(buffer, nullptr);
    AppendText(buffer, sizeof buffer, "ab");
    AppendText(buffer, sizeof buffer, "cdef");
    EXPECT_STREQ(buffer, "abcd");
    EXPECT_EQ(FormatText(buffer, sizeof buffer, "%d", 123456), 4);
    EXPECT_STREQ(buffer, "1234");
    EXPECT_TRUE(SameText("ARTIST", "Artist"));
    EXPECT_FALSE(SameText("Artist", "Artists"));
    EXPECT_FALSE(SameText("\xC4", "\xE4"));
}

TEST(Bytes, ErrorSticksAndNothingIsReadPastTheEnd) {
    const uint8_t data[] = {1, 2, 3, 4, 5};
    ByteReader r{data};
    EXPECT_EQ(ReadU32(r), 0x04030201u);
    EXPECT_EQ(ReadU16(r), 0u);
    EXPECT_TRUE(r.failed);
    EXPECT_EQ(ReadU8(r), 0u) << "the last byte is not given after an error";
    EXPECT_EQ(BytesLeft(r), 0u);

    uint8_t room[3] = {};
    ByteWriter w{room};
    WriteU16(w, 0x1234);
    WriteU32(w, 1);
    EXPECT_TRUE(w.failed);
    WriteU8(w, 9);
    EXPECT_EQ(room[2], 0) << "nothing is written after an error";
}
