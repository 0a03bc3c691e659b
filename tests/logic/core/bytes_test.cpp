// The bounds-checked byte reader and writer.
#include "core/bytes.h"

#include <gtest/gtest.h>

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
