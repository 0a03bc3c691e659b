// The oscilloscope's sums: rows of a trace in every format, colours of rows, settings that nobody
// chose, and the geometry at every size. That lines are those of GDI is shown in the windows tests.
#include "tests/support/boxes.h"
#include "waves/scope.h"
#include "waves/scope_layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

// The first row of a trace whose frames are all the same; -1 when it lies outside the pane.
static int RowOf(std::initializer_list<int> frame, uint32_t code, ScopeChannel channel, float gain,
                 int height) {
    uint8_t bytes[kSoundBufferBytes];
    for (size_t i = 0; i < sizeof bytes; ++i)
        bytes[i] = static_cast<uint8_t>(frame.begin()[i % frame.size()]);
    ScopeColumn columns[100];
    TraceColumns(bytes, FormatOfCode(code), channel, gain, 100, height, columns);
    return columns[50].end - columns[50].first == 1 ? columns[50].first : -1;
}

TEST(ScopeTrace, RowsOfEveryFormatWithTheirRounding) {
    constexpr uint32_t k8Mono = 256, k8Stereo = 512, k16Mono = 1024, k16Stereo = 2048;
    const struct {
        std::initializer_list<int> frame;
        uint32_t code;
        ScopeChannel channel;
        float gain;
        int height, row;
    } cases[] = {{{0, 0x40, 0, 0xE0}, k16Stereo, kScopeLeft, 2, 100, 0}, // 16384, -8192
                 {{0, 0x40, 0, 0xE0}, k16Stereo, kScopeRight, 2, 100, 75},
                 {{0, 0x40, 0, 0xE0}, k16Stereo, kScopeMean, 2, 100, 37}, // 12.5 rows up
                 {{0x00, 0x80}, k16Mono, kScopeRight, 1, 200, -1},        // a row below the pane
                 {{0, 0x40}, k16Mono, kScopeLeft, 0.5f, 4, 1}, // half a row goes outwards
                 {{0, 0xC0}, k16Mono, kScopeLeft, 0.5f, 4, 3},
                 {{0, 0x3F}, k16Mono, kScopeLeft, 0.5f, 4, 2},
                 {{127}, k8Mono, kScopeMean, 1, 100, 0}, // folded: this is just below silence
                 {{129}, k8Mono, kScopeMean, 1, 101, 100},
                 {{64, 192}, k8Stereo, kScopeRight, 1, 100, 75},
                 {{0, 0}, k16Mono, kScopeMean, 1, 1, -1}}; // too low for more than the line
    for (const auto& c : cases)
        EXPECT_EQ(RowOf(c.frame, c.code, c.channel, c.gain, c.height), c.row)
            << c.code << " " << *c.frame.begin() << " gain " << c.gain << " height " << c.height;
}

TEST(ScopeSettings, ColorsOfRowsGainAndWhatNobodyChose) {
    uint32_t colors[9];
    ScopeRowColors(DefaultScopeSettings(), 9, colors);
    const uint32_t wanted[] = {0xFF0200, 0xFF4100, 0xFF8000, 0xFFC000, 0xFFFF00};
    for (int y = 0; y < 9; ++y)
        EXPECT_EQ(colors[y], wanted[y < 4 ? y : 8 - y]) << y;
    for (int position = kGainSliderMin; position <= kGainSliderMax; ++position)
        EXPECT_EQ(SliderOfGain(GainOfSlider(position)), position);
    EXPECT_EQ(SliderOfGain(0.2f), 106) << "below the slider's least";
    const float gains[][2] = {{NAN, 0.2f}, {INFINITY, 0.2f}, {1e30f, 5}, {-3, 0}, {0.3f, 0.3f}};
    for (const auto& [read, kept] : gains) {
        ScopeSettings settings = {~0u, ~0u, ~0u, 77, 0, 1, ~0u, read};
        ClampScopeSettings(&settings);
        EXPECT_EQ(settings.gain, kept) << read;
        EXPECT_EQ(settings.lineColor + settings.forceMono + settings.gradient, 0xFFFFFFu + 2);
    }
}

TEST(ScopeLayout, NothingOverlapsOrLeavesTheWindowAtAnySize) {
    ScopePane panes[2];
    for (int width = 1; width < 1700; width += 1 + width / 7)
        for (int height = 1; height < 1200; height += 1 + height / 9) {
            const std::string at = std::to_string(width) + "x" + std::to_string(height);
            const ScopeLayout layout = LayOutScope(width, height);
            const Box& d = layout.display;
            std::vector<Box> boxes(layout.boxes, layout.boxes + kScopeControls);
            boxes.push_back(d);
            EXPECT_TRUE(Tidy(boxes, {0, 0, width, height}, 1)) << at;
            EXPECT_TRUE(width < 20 || d.width > width / 3) << at;
            LayOutPanes(d, 2, width & 1, 24, panes);
            for (const ScopePane& pane : panes)
                EXPECT_TRUE(Inside(pane.frame, d) && Inside(pane.trace, pane.frame)) << at;
        }
    LayOutPanes({10, 20, 201, 101}, 2, 0, 30, panes);
    EXPECT_EQ(panes[0].frame.left + panes[0].frame.width, 10 + 100 - 2);
    EXPECT_EQ(panes[1].frame.left, 10 + 100 + 1 + 2) << "a pixel after the middle";
}
