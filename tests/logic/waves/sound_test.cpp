// What is published of a buffer: formats, power and its hold, bands.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>

#include "plain_spectrum.h"
#include "tests/support/tones.h"
#include "waves/sound.h"

namespace {
struct Publisher {
    std::unique_ptr<SoundSums> sums = std::make_unique<SoundSums>();
    SoundValues values = {};
};
} // namespace

static int Process(Publisher& p, const std::vector<uint8_t>& bytes, const SoundFormatRecord& format,
                   uint32_t choice = kFftAll) {
    return ProcessSound(p.sums.get(), bytes.data(), format, choice, 0, &p.values);
}

// Past the buffer that goes without bands at 44 kHz.
static SoundValues Publish(const std::vector<uint8_t>& bytes, const SoundFormatRecord& format,
                           uint32_t choice = kFftAll) {
    Publisher p;
    const bool fresh = Process(p, bytes, format, choice) || Process(p, bytes, format, choice);
    EXPECT_TRUE(fresh);
    return p.values;
}

// The samples of a channel, read in the plainest way.
static std::vector<float> Samples(const std::vector<uint8_t>& bytes,
                                  const SoundFormatRecord& format, int channel) {
    std::vector<float> samples;
    const size_t width = format.bits / 8u;
    for (size_t at = format.channels == 2 && channel ? width : 0; at < bytes.size();
         at += width * format.channels)
        samples.push_back(
            width == 1 ? static_cast<float>(bytes[at] - 128)
                       : static_cast<float>(static_cast<int16_t>(bytes[at] | bytes[at + 1] << 8)));
    return samples;
}

static std::vector<uint8_t> Noise(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(kSoundBufferBytes);
    for (auto& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return bytes;
}

TEST(Format, EveryCodeAndWhatIsNone) {
    const uint32_t rates[] = {11025, 22050, 44100};
    const int frames[] = {4096, 2048, 2048, 1024};
    for (int i = 0; i < kFormatCount; ++i) {
        const SoundFormatRecord f = FormatOfCode(1u << i);
        EXPECT_TRUE(f.tag == 1 && f.rate == rates[i / 4] && f.channels == 1 + i % 2 &&
                    f.bits == (i % 4 < 2 ? 8 : 16) && f.blockAlign == 4096 / frames[i % 4] &&
                    f.bytesPerSecond == f.rate * f.blockAlign &&
                    FramesPerBuffer(f) == frames[i % 4])
            << i;
    }
    const SoundFormatRecord usual = FormatOfCode(2048);
    for (const uint32_t code : {0u, 3u, 4096u, ~0u})
        EXPECT_EQ(FormatOfCode(code).bytesPerSecond, usual.bytesPerSecond);
    SoundFormatRecord broken[] = {{}, usual, usual, usual, usual};
    broken[1].tag = 6;
    broken[2].rate = 0;
    broken[3].channels = 6;
    broken[4].bits = 24;
    for (const SoundFormatRecord& f : broken) {
        Publisher p;
        p.values.powerLeft = 7;
        EXPECT_EQ(FramesPerBuffer(f) + Process(p, Noise(1), f), 0);
        EXPECT_EQ(p.values.powerLeft, 7);
    }
}

TEST(Format, LabelsAndEdgesFollowTheRate) {
    const struct {
        uint32_t rate;
        const char *first, *sixth, *last;
        float low;
    } rows[] = {{44100, "150Hz", "1.5KHz", "18KHz", 300},
                {48000, "150Hz", "1.5KHz", "18KHz", 300},
                {22050, "75Hz", "750Hz", "9KHz", 150},
                {11025, "40Hz", "400KHz", "4.5KHz", 75}};
    for (const auto& row : rows) {
        const char* const* labels = BandLabels(row.rate);
        float edges[kBands];
        BandEdges(static_cast<float>(row.rate) / 2, edges);
        EXPECT_STREQ(labels[0], row.first);
        EXPECT_STREQ(labels[5], row.sixth);
        EXPECT_STREQ(labels[15], row.last);
        EXPECT_TRUE(edges[0] == row.low && edges[15] == row.low * 73.5f);
    }
}

// Noise in every format: power is the exact sum, each band what the plain form says.
TEST(Sound, PowerAndBandsOfEveryFormat) {
    for (const uint32_t code : kFormatCodes) {
        SCOPED_TRACE(code);
        const SoundFormatRecord format = FormatOfCode(code);
        const std::vector<uint8_t> bytes = Noise(code);
        for (const uint32_t choice : {kFftAll, kFftHalf, kFftSixteenth, kFftNone, FftChoice{99}}) {
            const SoundValues values = Publish(bytes, format, choice);
            const int frames = FramesPerBuffer(format);
            const int points = choice < kFftNone ? frames >> choice : frames;
            const float top = static_cast<float>(points) * (format.bits == 16 ? 16384 : 64);
            EXPECT_EQ(values.bandReference, top);
            EXPECT_EQ(values.powerFullScale,
                      static_cast<float>(frames) * (format.bits == 16 ? 1 << 30 : 1 << 21));
            float edges[kBands], expected[kBands] = {};
            BandEdges(static_cast<float>(format.rate) / 2, edges);
            for (int channel = 0; channel < 2; ++channel) {
                std::vector<float> samples = Samples(bytes, format, channel);
                int64_t power = 0;
                for (const float x : samples)
                    power += static_cast<int64_t>(x) * static_cast<int64_t>(x);
                EXPECT_EQ(channel ? values.powerRight : values.powerLeft,
                          static_cast<float>(power));
                samples.resize(static_cast<size_t>(points));
                PlainTransform(samples);
                if (choice != kFftNone) PlainBands(samples, edges, expected);
                for (int i = 0; i < kBands; ++i)
                    EXPECT_EQ((channel ? values.bandsRight : values.bandsLeft)[i],
                              std::min(expected[i], top))
                        << i;
            }
        }
    }
}

TEST(Sound, TheLoudestThereIsDoesNotOverflow) {
    std::vector<uint8_t> bytes(kSoundBufferBytes, 0); // 8 bit: all at -128
    EXPECT_EQ(Publish(bytes, FormatOfCode(512)).powerLeft, 2048.0f * 16384);
    for (size_t i = 1; i < bytes.size(); i += 2)
        bytes[i] = 0x80; // 16 bit: all at -32768
    const SoundValues values = Publish(bytes, FormatOfCode(2048));
    EXPECT_EQ(values.powerLeft, values.powerFullScale);
    EXPECT_EQ(values.powerRight, values.powerFullScale);
}

TEST(Sound, HoldTakesTheHighestOfSoManyBuffers) {
    const SoundFormatRecord format = FormatOfCode(128);
    const auto power = [&](Publisher& p, double amplitude) {
        Process(p, ToneBuffer(format, 1000, amplitude), format);
        return std::sqrt(p.values.powerLeft / p.values.powerFullScale * 2); // amplitude again
    };
    Publisher p;
    p.values.holdLimit = 3;
    const double in[] = {0.1, 0.5, 0.2, 0.3, 0.1, 0.4, 0.2}, out[] = {.1, .5, .5, .3, .3, .4, .2};
    for (int i = 0; i < 7; ++i)
        EXPECT_NEAR(power(p, in[i]), out[i], 0.01) << i;
    p.values.holdCounter = 1; // what others may write there
    p.values.powerLeft = std::numeric_limits<float>::quiet_NaN();
    EXPECT_NEAR(power(p, 0.3), 0.3, 0.01);
    p.values.holdLimit = 0;
    EXPECT_NEAR(power(p, 0.1), 0.1, 0.01);
}

TEST(Sound, At44KhzEveryOtherBufferGoesWithoutBands) {
    for (const uint32_t code : {2048u, 128u}) {
        Publisher p;
        p.values.bandReference = 7;
        const SoundFormatRecord format = FormatOfCode(code);
        for (int i = 0; i < 6; ++i) {
            const bool done = code == 128 || i % 2;
            p.values.bandsLeft[3] = 7;
            EXPECT_EQ(Process(p, Noise(2), format), done);
            EXPECT_EQ(p.values.bandsLeft[3] != 7, done) << i;
        }
    }
}

// A constant 1 at 64 points: bin 0 is 64, all others nothing, and odd positions keep the 1. The
// positions are 689 Hz apart, more than a band is wide, so the bands are taken one by one until
// they have caught up at 7 kHz.
TEST(Sound, PositionsWalkOneBandAtMost) {
    std::vector<uint8_t> ones(kSoundBufferBytes, 0);
    for (size_t i = 0; i < ones.size(); i += 4)
        ones[i] = 1; // left
    const SoundValues values = Publish(ones, FormatOfCode(2048), kFftSixteenth);
    const float expected[kBands] = {64, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 1, 1, 2, 6};
    for (int i = 0; i < kBands; ++i) {
        EXPECT_NEAR(values.bandsLeft[i], expected[i], 1e-5) << i;
        EXPECT_EQ(values.bandsRight[i], 0) << i;
    }
}

// How high a full tone stands in the analyzer at its usual gain: a level reference of 0.2 times
// full-scale power by the number of positions, a scale of a sixteenth of that.
TEST(Sound, FullScaleToneOnTheAnalyzersScale) {
    const struct {
        uint32_t code;
        double fraction;
    } rows[] = {{2048, 0.625}, {1024, 1.25}, {512, 2.5}};
    for (const auto& row : rows) {
        const SoundFormatRecord format = FormatOfCode(row.code);
        const int points = FramesPerBuffer(format), bin = EvenBinOfBand(format, points, 9);
        const SoundValues values =
            Publish(ToneBuffer(format, static_cast<double>(format.rate) * bin / points, 1), format);
        const double scale =
            0.2 / (points / 2.0) * static_cast<double>(values.powerFullScale) * 0.0625;
        EXPECT_NEAR(values.bandsLeft[9] / scale, row.fraction, row.fraction * 0.02) << row.code;
    }
}
