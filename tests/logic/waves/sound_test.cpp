// What is published of a buffer: formats, power and its hold, bands.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <string>

#include "plain_spectrum.h"
#include "tests/support/tones.h"
#include "waves/sound.h"

// A publisher's sums and what it published last.
namespace {
struct Publisher {
    std::unique_ptr<SoundSums> sums = std::make_unique<SoundSums>();
    SoundValues values = {};
    int Process(const std::vector<uint8_t>& bytes, const SoundFormatRecord& format,
                uint32_t choice = kFftAll) {
        return ProcessSound(sums.get(), bytes.data(), format, choice, 0, &values);
    }
};
} // namespace

// Past the buffer that goes without bands at 44 kHz.
static SoundValues Publish(const std::vector<uint8_t>& bytes, const SoundFormatRecord& format,
                           uint32_t choice = kFftAll) {
    Publisher p;
    EXPECT_TRUE(p.Process(bytes, format, choice) || p.Process(bytes, format, choice));
    return p.values;
}

// The samples of a channel, read in the plainest way.
static std::vector<float> Samples(const std::vector<uint8_t>& bytes, const SoundFormatRecord& f,
                                  int channel) {
    std::vector<float> samples;
    for (size_t at = f.channels == 2 && channel ? f.bits / 8 : 0; at < bytes.size();
         at += f.blockAlign)
        samples.push_back(f.bits == 8 ? static_cast<float>(bytes[at] - 128)
                                      : static_cast<int16_t>(bytes[at] | bytes[at + 1] << 8));
    return samples;
}

static std::vector<uint8_t> Noise(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(kSoundBufferBytes);
    for (auto& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return bytes;
}

TEST(Format, EveryCodeAndWhatIsNoneAndLabelsAndEdgesByRate) {
    const struct {
        uint32_t rate;
        const char *first, *sixth, *last;
        float low;
    } rows[] = {{11025, "40Hz", "400KHz", "4.5KHz", 75},
                {22050, "75Hz", "750Hz", "9KHz", 150},
                {44100, "150Hz", "1.5KHz", "18KHz", 300}};
    const int frames[] = {4096, 2048, 2048, 1024};
    for (int i = 0; i < kFormatCount; ++i) {
        const auto& row = rows[i / 4];
        const SoundFormatRecord f = FormatOfCode(1u << i);
        EXPECT_TRUE(f.tag == 1 && f.rate == row.rate && f.channels == 1 + i % 2 &&
                    f.bits == (i % 4 < 2 ? 8 : 16) && f.blockAlign == 4096 / frames[i % 4] &&
                    f.bytesPerSecond == f.rate * f.blockAlign &&
                    FramesPerBuffer(f) == frames[i % 4])
            << i;
        const char* const* labels = BandLabels(f.rate);
        float edges[kBands];
        BandEdges(static_cast<float>(f.rate) / 2, edges);
        EXPECT_EQ(labels[0] + std::string(labels[5]) + labels[15],
                  row.first + std::string(row.sixth) + row.last);
        EXPECT_TRUE(edges[0] == row.low && edges[15] == row.low * 73.5f);
    }
    const SoundFormatRecord usual = FormatOfCode(2048);
    for (const uint32_t code : {0u, 3u, 4096u, ~0u})
        EXPECT_EQ(FormatOfCode(code).bytesPerSecond, usual.bytesPerSecond);
    SoundFormatRecord broken[] = {{}, usual, usual, usual, usual};
    broken[1].tag = 6;
    broken[2].rate = 0;
    broken[3].channels = 6;
    broken[4].bits = 24;
    for (const SoundFormatRecord& f : broken)
        EXPECT_EQ(FramesPerBuffer(f) + Publisher().Process(Noise(1), f), 0);
}

// Noise in every format: power is the exact sum, each band what the plain form says.
TEST(Sound, PowerAndBandsOfEveryFormat) {
    for (const uint32_t code : kFormatCodes) {
        const SoundFormatRecord format = FormatOfCode(code);
        const std::vector<uint8_t> bytes = Noise(code);
        const int frames = FramesPerBuffer(format), full = format.bits == 16 ? 32768 : 128;
        float edges[kBands];
        BandEdges(static_cast<float>(format.rate) / 2, edges);
        for (const uint32_t choice : {kFftAll, kFftHalf, kFftSixteenth, kFftNone, FftChoice{99}}) {
            SCOPED_TRACE(testing::Message() << code << " " << choice);
            const SoundValues values = Publish(bytes, format, choice);
            const int points = choice < kFftNone ? frames >> choice : frames;
            EXPECT_EQ(values.bandReference, static_cast<float>(points * (full / 2)));
            EXPECT_EQ(values.powerFullScale,
                      static_cast<float>(frames) * (full == 128 ? 1 << 21 : 1 << 30));
            for (const int channel : {0, 1}) {
                std::vector<float> samples = Samples(bytes, format, channel);
                double power = 0;
                for (const double x : samples)
                    power += x * x;
                EXPECT_EQ(channel ? values.powerRight : values.powerLeft,
                          static_cast<float>(power));
                samples.resize(static_cast<size_t>(points));
                PlainTransform(samples);
                float expected[kBands] = {};
                if (choice != kFftNone) PlainBands(samples, edges, expected);
                for (int i = 0; i < kBands; ++i)
                    EXPECT_EQ((channel ? values.bandsRight : values.bandsLeft)[i],
                              std::min(expected[i], values.bandReference));
            }
        }
    }
}

TEST(Sound, TheLoudestThereIsDoesNotOverflow) {
    std::vector<uint8_t> bytes(kSoundBufferBytes, 0);
    for (size_t i = 1; i < bytes.size(); i += 2)
        bytes[i] = 0x80; // all at -32768
    const SoundValues values = Publish(bytes, FormatOfCode(2048));
    EXPECT_EQ(values.powerLeft + values.powerRight, 2 * values.powerFullScale);
}

TEST(Sound, HoldTakesTheHighestOfSoManyBuffers) {
    const SoundFormatRecord format = FormatOfCode(128);
    Publisher p;
    const auto next = [&](double in, double out) {
        p.Process(ToneBuffer(format, 1000, in), format);
        EXPECT_NEAR(std::sqrt(p.values.powerLeft / p.values.powerFullScale * 2), out, 0.01);
    };
    p.values.holdLimit = 3;
    const double in[] = {0.1, 0.5, 0.2, 0.3, 0.1, 0.4, 0.2}, out[] = {.1, .5, .5, .3, .3, .4, .2};
    for (int i = 0; i < 7; ++i)
        next(in[i], out[i]);
    p.values.holdCounter = 1; // what others may write there
    p.values.powerLeft = std::numeric_limits<float>::quiet_NaN();
    next(0.3, 0.3);
    p.values.holdLimit = 0;
    next(0.1, 0.1);
}

TEST(Sound, At44KhzEveryOtherBufferGoesWithoutBands) {
    Publisher p;
    for (int i = 0; i < 12; ++i) {
        const bool done = i >= 6 || i % 2;
        p.values.bandsLeft[3] = 7;
        EXPECT_EQ(p.Process(Noise(2), FormatOfCode(i < 6 ? 2048 : 128)), done);
        EXPECT_EQ(p.values.bandsLeft[3] != 7, done) << i;
    }
}

// How high a full tone stands in the analyzer at its usual gain: a level reference of 0.2 times
// full-scale power by the number of positions, a scale of a sixteenth of that.
TEST(Sound, FullScaleToneOnTheAnalyzersScale) {
    const SoundFormatRecord format = FormatOfCode(2048);
    const double hertz = 44100.0 * EvenBinOfBand(format, 1024, 9) / 1024;
    const SoundValues values = Publish(ToneBuffer(format, hertz, 1), format);
    const double scale = 0.2 / 512 * static_cast<double>(values.powerFullScale) / 16;
    EXPECT_NEAR(values.bandsLeft[9] / scale, 0.625, 0.0125);
}
