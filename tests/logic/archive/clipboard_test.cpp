// The block of discs: what goes in comes out, and nothing else comes out.
#include "archive/clipboard.h"

#include "core/text.h"
#include "tests/support/big_archive.h"

#include <gtest/gtest.h>

static std::vector<uint8_t> MakeBlock(uint32_t discs) {
    std::vector<uint8_t> block;
    for (uint32_t n = 1; n <= discs; ++n)
        EXPECT_TRUE(AppendToDiscBlock(*BigRecord(n), &block));
    return block;
}

static size_t Discs(std::span<const uint8_t> block) {
    DiscBlockReader reader;
    CDInfoRecord record;
    size_t discs = 0;
    if (!OpenDiscBlock(block, &reader)) return 0;
    while (NextInDiscBlock(&reader, &record))
        ++discs;
    return discs;
}

TEST(DiscBlock, DiscsComeBackInTheirOrder) {
    auto block = MakeBlock(3);
    block.resize(block.size() + 500, 0xEE); // clipboard memory comes in steps
    DiscBlockReader reader;
    ASSERT_TRUE(OpenDiscBlock(block, &reader));
    CDInfoRecord record;
    for (uint32_t n = 1; n <= 3; ++n) {
        ASSERT_TRUE(NextInDiscBlock(&reader, &record));
        const auto expected = BigRecord(n);
        EXPECT_EQ(0, std::memcmp(&record, expected.get(), sizeof record)) << n;
    }
    EXPECT_FALSE(NextInDiscBlock(&reader, &record));
}

TEST(DiscBlock, WhatIsNotWholeAndSoundIsRefused) {
    const auto block = MakeBlock(2);
    ASSERT_EQ(Discs(block), 2u);
    EXPECT_EQ(Discs({}), 0u);
    for (size_t cut = 0; cut < block.size(); cut += 7)
        EXPECT_EQ(Discs(std::span(block).first(cut)), 0u) << cut;
    for (size_t at = 0; at < block.size(); ++at) {
        auto changed = block;
        changed[at] ^= 0x10;
        EXPECT_EQ(Discs(changed), 0u) << at;
    }
}

TEST(DiscBlock, ARecordThatCannotBePackedLeavesTheBlock) {
    auto block = MakeBlock(1);
    const auto before = block;
    auto record = BigRecord(2);
    record->trackCount = 101;
    EXPECT_FALSE(AppendToDiscBlock(*record, &block));
    EXPECT_EQ(block, before);
}
