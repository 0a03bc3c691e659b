// Cutting of sound into blocks, and when each is due.
#include "extractor/blocks.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

static const SoundFormatRecord kStereo = FormatOfCode(2048); // 44.1 kHz, 4 bytes a frame

static std::vector<uint8_t> Bytes(size_t count, size_t first = 0) {
    std::vector<uint8_t> bytes(count);
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<uint8_t>((first + i) / 4 * 7 + (first + i) % 4);
    return bytes;
}

static std::unique_ptr<BlockQueue> Queue(const SoundFormatRecord& format = kStereo) {
    auto queue = std::make_unique<BlockQueue>();
    SetBlockFormat(queue.get(), format);
    return queue;
}

static int Put(BlockQueue* queue, const std::vector<uint8_t>& bytes, const SampleTime& time = {}) {
    return PutSample(queue, bytes.data(), bytes.size(), time);
}

TEST(Blocks, AreTheSoundItselfInOrderAndEachIsDueWhenItsLastByteSounds) {
    auto queue = Queue();
    constexpr size_t kSample = 7056; // 40 ms
    for (size_t i = 0; i < 4; ++i) {
        const int64_t start = static_cast<int64_t>(i) * 400000;
        Put(queue.get(), Bytes(kSample, i * kSample), {1, i % 2 == 0, start, start + 400000, 0});
    }
    for (size_t i = 0; i < 6; ++i) {
        const SoundBlock* block = NextBlock(queue.get());
        ASSERT_TRUE(block);
        EXPECT_EQ(std::vector(block->bytes, block->bytes + kSoundBufferBytes),
                  Bytes(kSoundBufferBytes, i * kSoundBufferBytes));
        const double exact = double(i + 1) * kSoundBufferBytes / 176400 * 1e7;
        EXPECT_NEAR(static_cast<double>(block->heard), exact, 2);
        TakeBlock(queue.get());
    }
    EXPECT_FALSE(NextBlock(queue.get()));
}

TEST(Blocks, HostileSamplesLeaveTheQueueWhole) {
    const SampleTime kTimes[] = {{1, 1, INT64_MIN, INT64_MAX, 0},
                                 {1, 1, INT64_MAX, INT64_MIN, 1},
                                 {1, 0, INT64_MAX, 0, 0},
                                 {0, 1, 5, INT64_MAX, 0},
                                 {1, 1, 100, 100, 0},
                                 {0, 0, 0, 0, 0}};
    for (const SampleTime& time : kTimes) {
        auto queue = Queue();
        for (const size_t size : {0u, 1u, 4095u, 3u, 4097u, 5000000u, 2u})
            Put(queue.get(), Bytes(size), time);
        uint32_t count = 0;
        for (; const SoundBlock* block = NextBlock(queue.get()); ++count) {
            EXPECT_LE(MsUntilShown(*block, INT64_MIN), kMaxWaitMs);
            TakeBlock(queue.get());
        }
        EXPECT_EQ(count, kBlocks); // what is over is not shown
        EXPECT_EQ(Put(queue.get(), Bytes(kSoundBufferBytes)), 1);
    }
}

TEST(Blocks, WaitsAreRoundedUpSoThatNothingIsShownEarly) {
    SoundBlock block = {};
    block.heard = 20000000 - kDeviceMs * kTimeUnitsPerMs;
    const struct {
        int64_t now;
        uint32_t wait;
    } kCases[] = {{20000000, 0}, {30000000, 0}, {INT64_MAX, 0},  {19999999, 1},
                  {19980000, 2}, {19979999, 3}, {0, kMaxWaitMs}, {INT64_MIN, kMaxWaitMs}};
    for (const auto& c : kCases)
        EXPECT_EQ(MsUntilShown(block, c.now), c.wait) << c.now;
}

TEST(Blocks, GapsFlushesAndTheEndCutWhatIsIncomplete) {
    auto queue = Queue(FormatOfCode(1)); // 8 bit
    Put(queue.get(), Bytes(4000));
    SampleTime gap = {};
    gap.gap = 1;
    EXPECT_EQ(Put(queue.get(), Bytes(4000), gap), 0);
    FlushBlocks(queue.get());
    EXPECT_EQ(PutEnd(queue.get()), 0);
    Put(queue.get(), Bytes(4096));
    FlushBlocks(queue.get());
    EXPECT_FALSE(NextBlock(queue.get()));
    Put(queue.get(), std::vector<uint8_t>(10, 7)); // without a time: the stream begins anew
    EXPECT_EQ(PutEnd(queue.get()), 1);
    const SoundBlock* block = NextBlock(queue.get());
    ASSERT_TRUE(block);
    EXPECT_EQ(block->bytes[9], 7);
    EXPECT_EQ(block->bytes[10], 128);
    EXPECT_LT(block->heard, 10 * kTimeUnitsPerMs);
    EXPECT_EQ(PutEnd(queue.get()), 0);
    SetBlockFormat(queue.get(), {}); // nothing that could be shown
    EXPECT_EQ(Put(queue.get(), Bytes(9000)), 0);
}

TEST(Blocks, TwoThreadsLoseNothingAndMixNothing) {
    auto queue = Queue();
    constexpr uint32_t kCount = 5000;
    std::thread reader([&] {
        for (uint32_t seen = 0; seen < kCount;) {
            const SoundBlock* block = NextBlock(queue.get());
            if (!block) continue;
            const auto want = static_cast<uint8_t>(seen++);
            const std::vector<uint8_t> bytes(block->bytes, block->bytes + kSoundBufferBytes);
            ASSERT_EQ(bytes, std::vector<uint8_t>(kSoundBufferBytes, want));
            TakeBlock(queue.get());
        }
    });
    for (uint32_t i = 0; i < kCount; ++i) {
        while (queue->written - queue->taken >= kBlocks)
            std::this_thread::yield();
        Put(queue.get(), std::vector<uint8_t>(kSoundBufferBytes, static_cast<uint8_t>(i)));
    }
    reader.join();
}
