// The fast spectrum against the plain one, bit for bit: all sizes, every kind of input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>

#include "plain_spectrum.h"
#include "waves/spectrum.h"

static std::vector<StereoFrame> Input(int kind, int points, std::mt19937& random) {
    std::vector<StereoFrame> frames;
    for (int i = 0; i < points; ++i) {
        const auto a = static_cast<int16_t>(random()), b = static_cast<int16_t>(random());
        const auto sine = static_cast<int16_t>(32767 * std::sin(6.283 * 7.3 * i / points));
        const StereoFrame kinds[] = {{sine, static_cast<int16_t>(sine / 10000)},
                                     {-32768, static_cast<int16_t>(i % 2 ? 32767 : -32768)},
                                     {static_cast<int16_t>(i == points - 1 ? 32767 : 0), 127},
                                     {a, b}};
        frames.push_back(kinds[std::min(kind, 3)]);
    }
    return frames;
}

static bool Same(float a, float b) {
    return !std::memcmp(&a, &b, sizeof a);
}

static void EqualsThePlainForm(Spectrum* spectrum) {
    std::mt19937 random(20);
    for (const float nyquist : {22050.0f, 11025.0f, 5512.5f}) {
        float edges[kBands];
        BandEdges(nyquist, edges);
        for (const int points : {1024, 64, 4096, 128, 512, 256, 2048}) {
            for (int kind = 0; kind < 24; ++kind) {
                SCOPED_TRACE(testing::Message() << nyquist << " " << points << " " << kind);
                const auto frames = Input(kind, points, random);
                StereoValue bands[kBands];
                ComputeBands(spectrum, frames.data(), points, edges, bands);
                for (const auto& [sample, value] :
                     {std::pair{&StereoFrame::left, &StereoValue::left},
                      std::pair{&StereoFrame::right, &StereoValue::right}}) {
                    std::vector<float> plain;
                    for (const StereoFrame& frame : frames)
                        plain.push_back(frame.*sample);
                    PlainTransform(plain);
                    float plainBands[kBands];
                    PlainBands(plain, edges, plainBands);
                    for (size_t i = 0; i < plain.size() / 2; i += 2)
                        ASSERT_TRUE(Same(spectrum->magnitudes[i / 2].*value, plain[i])) << i;
                    for (int i = 0; i < kBands; ++i)
                        ASSERT_TRUE(Same(bands[i].*value, plainBands[i])) << "band " << i;
                }
            }
        }
    }
}

TEST(Spectrum, EveryPositionAndBandIsThePlainFormsToTheBitWithAvxAndWithout) {
    const auto spectrum = std::make_unique<Spectrum>();
    EqualsThePlainForm(spectrum.get()); // with it, where the machine has it
    spectrum->withoutAvx = 1;
    EqualsThePlainForm(spectrum.get());
}
