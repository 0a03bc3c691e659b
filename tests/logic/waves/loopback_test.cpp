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

TEST(Loopback, EightBitsAreRoundedAroundTheMiddle) {
    const int16_t delivered[] = {0, -1, -128, -129, 127, 128, 256, 32767, -32768, 16384};
    const uint8_t made[] = {128, 128, 128, 127, 128, 129, 129, 255, 0, 192};
    SoundGather gather;
    ASSERT_TRUE(StartGather(&gather, FormatOfCode(1)));
    EXPECT_EQ(DeliveredFormat(gather).blockAlign, 2);
    GatherSound(&gather, delivered, sizeof(made));
    EXPECT_EQ(memcmp(gather.bytes, made, sizeof(made)), 0);
    EXPECT_FALSE(StartGather(&gather, {}));
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
    for (at = 0; at + 441 <= sent.size(); at += 441)
        GatherSound(&gather, sent.data() + at, 441);
    all.clear();
    TakeAll(&gather, &all);
    ASSERT_EQ(all.size(), sizeof(gather.bytes));
    EXPECT_EQ(memcmp(all.data(), sent.data() + at - all.size() / 4, all.size()), 0);
}

TEST(Loopback, SilenceKeepsTheFormatsPaceForAnHourAndTheClocksWrap) {
    for (const uint32_t code : {1, 32, 2048}) {
        const SoundFormatRecord format = FormatOfCode(code);
        SoundGather gather;
        ASSERT_TRUE(StartGather(&gather, format));
        std::vector<uint8_t> some;
        uint64_t gone = 0, bytes = 0;
        const uint32_t start = 0xFFFFFFFF - 1800000;
        GatherSilence(&gather, start, 1);
        GatherSilence(&gather, start + kQuietMs - 1, 0);
        EXPECT_EQ(gather.used, 0) << "a gap between packets stays free of it";
        for (uint32_t step = 1; gone < 3600000; step = step % 61 + 1) {
            GatherSilence(&gather, start + static_cast<uint32_t>(gone += step), 0);
            some.clear();
            TakeAll(&gather, &some);
            bytes += some.size();
            if (some.empty()) continue;
            ASSERT_EQ(some[0], format.bits == 8 ? 128 : 0);
            ASSERT_EQ(memcmp(some.data(), some.data() + 1, some.size() - 1), 0);
        }
        EXPECT_NEAR(static_cast<double>(bytes),
                    static_cast<double>(gone * format.bytesPerSecond / 1000), kSoundBufferBytes);
        GatherSilence(&gather, start + static_cast<uint32_t>(gone) + 86400000, 0); // a day's sleep
        some.clear();
        TakeAll(&gather, &some);
        EXPECT_EQ(some.size(), sizeof(gather.bytes)) << "no flood";
    }
}
