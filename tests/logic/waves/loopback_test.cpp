// Gathering what an output plays: conversion, packets of any size, dropping, silence's pace.
#include "waves/loopback.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

static void TakeAll(SoundGather* gather, std::vector<uint8_t>* all) {
    uint8_t buffer[kSoundBufferBytes];
    while (TakeBuffer(gather, buffer))
        all->insert(all->end(), buffer, buffer + kSoundBufferBytes);
}

// The frames are numbered, left and right apart: after any packets, they come out in order.
TEST(Loopback, PacketsOfAnySizeLoseNothingAndFloodsKeepTheNewest) {
    SoundGather gather;
    ASSERT_TRUE(StartGather(&gather, FormatOfCode(2048)));
    std::vector<uint32_t> sent(300000);
    for (uint32_t i = 0; i < sent.size(); ++i)
        sent[i] = i;
    std::vector<uint8_t> all;
    size_t at = 0;
    for (size_t packet = 0; at + packet < sent.size(); packet = (packet * 7 + 3) % 1500) {
        GatherSound(&gather, sent.data() + at, packet);
        at += packet;
        TakeAll(&gather, &all);
    }
    ASSERT_GT(all.size(), 1000000u);
    EXPECT_EQ(memcmp(all.data(), sent.data(), all.size()), 0);
    for (const size_t packet : {441, 6000}) { // and one that is larger than the room
        for (at = 0; at + packet <= sent.size(); at += packet)
            GatherSound(&gather, sent.data() + at, packet);
        all.clear();
        TakeAll(&gather, &all);
        ASSERT_EQ(all.size(), sizeof(gather.bytes));
        EXPECT_EQ(memcmp(all.data(), sent.data() + at - all.size() / 4, all.size()), 0);
    }
}

TEST(Loopback, EightBitsAreRoundedAroundTheMiddleAndSilenceKeepsPaceOverDays) {
    const int16_t delivered[] = {0, -1, -128, -129, 127, 128, 256, 32767, -32768, 16384};
    const uint8_t made[] = {128, 128, 128, 127, 128, 129, 129, 255, 0, 192};
    SoundGather gather;
    EXPECT_FALSE(StartGather(&gather, {}));
    ASSERT_TRUE(StartGather(&gather, FormatOfCode(1)));
    GatherSound(&gather, delivered, sizeof(made));
    EXPECT_EQ(memcmp(gather.bytes, made, sizeof(made)), 0);

    ASSERT_TRUE(StartGather(&gather, FormatOfCode(1)));
    std::vector<uint8_t> all;
    const uint32_t start = 0xFFFFFFFF - 1800000; // the clock wraps on the way
    uint32_t gone = kQuietMs - 1;
    GatherSilence(&gather, start, 1);
    GatherSilence(&gather, start + gone, 0);
    EXPECT_EQ(gather.used, 0) << "a gap between packets stays free of it";
    for (uint32_t step = 1; gone < 3600000; step = step % 61 + 1) {
        GatherSilence(&gather, start + (gone += step), 0);
        TakeAll(&gather, &all);
    }
    EXPECT_NEAR(static_cast<double>(all.size()), gone * 11.025, kSoundBufferBytes);
    EXPECT_EQ(all, std::vector<uint8_t>(all.size(), 128));
    all.clear();
    GatherSilence(&gather, start + gone + 86400000, 0); // a day's sleep
    TakeAll(&gather, &all);
    EXPECT_EQ(all.size(), sizeof(gather.bytes)) << "no flood";
}
