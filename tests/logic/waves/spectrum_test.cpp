// The fast spectrum against the plain one, bit for bit: all sizes, every kind of input.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>

#include "plain_spectrum.h"
#include "waves/spectrum.h"

static std::vector<StereoFrame> Input(int kind, int points, std::mt19937& random) {
    std::vector<StereoFrame> frames(static_cast<size_t>(points));
    const auto sine = [&](int i, double bin, double amplitude) {
        return static_cast<int16_t>(
            std::lround(amplitude * std::sin(6.283185307179586 * bin * i / points)));
    };
    for (int i = 0; i < points; ++i) {
        StereoFrame& f = frames[static_cast<size_t>(i)];
        switch (kind) {
        case 0: f = {static_cast<int16_t>(random()), static_cast<int16_t>(random())}; break;
        case 1: f = {sine(i, 6, 32767), sine(i, points / 2.0 - 4, 20000)}; break;
        case 2: f = {sine(i, 7.3, 3), sine(i, 0.5, 32767)}; break;
        case 3: f = {-32768, static_cast<int16_t>(i % 2 ? 32767 : -32768)}; break;
        case 4: f = {static_cast<int16_t>(i == points - 1 ? 32767 : 0), 0}; break;
        default: f = {static_cast<int16_t>(random() % 3 - 1), 127}; break;
        }
    }
    return frames;
}

static void EqualsThePlainForm(Spectrum* spectrum) {
    std::mt19937 random(20);
    for (const float nyquist : {22050.0f, 11025.0f, 5512.5f}) {
        float edges[kBands];
        BandEdges(nyquist, edges);
        for (const int points : {1024, 64, 4096, 128, 512, 256, 2048}) {
            for (int kind = 0; kind < 24; ++kind) { // from 6 on: more of the random one
                SCOPED_TRACE(testing::Message() << nyquist << " " << points << " " << kind);
                const auto frames = Input(kind < 6 ? kind : 0, points, random);
                std::vector<float> left, right;
                for (const StereoFrame& f : frames) {
                    left.push_back(f.left);
                    right.push_back(f.right);
                }
                PlainTransform(left);
                PlainTransform(right);
                float leftBands[kBands], rightBands[kBands];
                PlainBands(left, edges, leftBands);
                PlainBands(right, edges, rightBands);
                StereoValue bands[kBands];
                ComputeBands(spectrum, frames.data(), points, edges, bands);
                const auto same = [](float a, float b) { return !std::memcmp(&a, &b, sizeof a); };
                for (size_t i = 0; i < static_cast<size_t>(points) / 2; i += 2)
                    ASSERT_TRUE(same(spectrum->magnitudes[i / 2].left, left[i]) &&
                                same(spectrum->magnitudes[i / 2].right, right[i]))
                        << "position " << i;
                for (int i = 0; i < kBands; ++i)
                    ASSERT_TRUE(same(bands[i].left, leftBands[i]) &&
                                same(bands[i].right, rightBands[i]))
                        << "band " << i;
            }
        }
    }
}

TEST(Spectrum, EveryPositionAndBandIsThePlainFormsToTheBit) {
    const auto spectrum = std::make_unique<Spectrum>();
    spectrum->withoutAvx = 1;
    EqualsThePlainForm(spectrum.get());
}

TEST(Spectrum, TheFormForAvxIsTheSameToTheBit) {
    if (!__builtin_cpu_supports("avx")) GTEST_SKIP() << "no AVX on this machine";
    EqualsThePlainForm(std::make_unique<Spectrum>().get());
}
