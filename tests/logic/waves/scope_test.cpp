// The oscilloscope's sums: rows of a trace in every format, colours of rows, gain and slider,
// settings that nobody chose, and the geometry at every size. That lines are those of GDI is shown
// in the windows tests.
#include "waves/scope.h"
#include "waves/scope_layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

// A buffer of the same frame again and again: bytes as they stand in it.
static std::vector<uint8_t> BufferOf(std::vector<int> frame) {
    std::vector<uint8_t> bytes(kSoundBufferBytes);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(frame[i % frame.size()]);
    return bytes;
}

// The row of a flat trace; "a-b" where it covers more, "none", or "uneven".
static std::string RowOf(const std::vector<uint8_t>& bytes, uint32_t code, ScopeChannel channel,
                         float gain, int height) {
    std::vector<ScopeColumn> columns(100);
    TraceColumns(bytes.data(), FormatOfCode(code), channel, gain, 100, height, columns.data());
    const ScopeColumn& first = columns[0];
    columns.pop_back(); // the line's last pixel is left out, so a flat trace ends a column early
    for (const ScopeColumn& column : columns)
        if (column.first != first.first || column.end != first.end) return "uneven";
    if (first.first >= first.end) return "none";
    return std::to_string(first.first) +
           (first.end - first.first > 1 ? "-" + std::to_string(first.end - 1) : "");
}

TEST(ScopeTrace, RowsOfEveryFormatWithTheirRounding) {
    constexpr uint32_t k8Mono = 256, k8Stereo = 512, k16Mono = 1024, k16Stereo = 2048;
    const struct {
        std::vector<int> frame;
        uint32_t code;
        ScopeChannel channel;
        float gain;
        int height;
        const char* row;
    } cases[] = {{{0, 0}, k16Mono, kScopeMean, 5, 101, "50"},
                 {{0, 0x40, 0, 0xE0}, k16Stereo, kScopeLeft, 2, 100, "0"}, // 16384, -8192
                 {{0, 0x40, 0, 0xE0}, k16Stereo, kScopeRight, 2, 100, "75"},
                 {{0, 0x40, 0, 0xE0}, k16Stereo, kScopeMean, 2, 100, "37"}, // 4096: 12.5 rows up
                 {{0xFF, 0x7F}, k16Mono, kScopeRight, 1, 200, "0"},
                 {{0x00, 0x80}, k16Mono, kScopeLeft, 1, 200, "none"}, // a row below the pane
                 {{0xFF, 0x7F}, k16Mono, kScopeLeft, 5, 200, "none"},
                 {{0, 0x40}, k16Mono, kScopeLeft, 0.5f, 4, "1"}, // half a row goes outwards
                 {{0, 0xC0}, k16Mono, kScopeLeft, 0.5f, 4, "3"},
                 {{0, 0x3F}, k16Mono, kScopeLeft, 0.5f, 4, "2"},
                 {{64}, k8Mono, kScopeMean, 1, 100, "25"},
                 {{127}, k8Mono, kScopeMean, 1, 100, "0"}, // 8 bits are folded: just below silence
                 {{129}, k8Mono, kScopeMean, 1, 100, "none"},
                 {{64, 192}, k8Stereo, kScopeRight, 1, 100, "75"},
                 {{64, 192}, k8Stereo, kScopeMean, 1, 100, "50"},
                 {{0, 0}, k16Mono, kScopeMean, 1, 1, "none"}, // too low for more than the line
                 {{0, 0}, k16Mono, kScopeMean, 1, 0, "none"}};
    for (const auto& c : cases)
        EXPECT_EQ(RowOf(BufferOf(c.frame), c.code, c.channel, c.gain, c.height), c.row)
            << c.code << " " << c.frame[0] << " gain " << c.gain << " height " << c.height;
    std::vector<ScopeColumn> columns(10, {0, 5});
    TraceColumns(BufferOf({1}).data(), {}, kScopeLeft, 1, 10, 50, columns.data());
    EXPECT_GE(columns[0].first, columns[0].end) << "no format, no trace";
}

TEST(ScopeColors, OfEachRowByItsDistance) {
    uint32_t colors[9];
    ScopeSettings settings = DefaultScopeSettings();
    ScopeRowColors(settings, 9, colors);
    const uint32_t wanted[] = {0xFF0200, 0xFF4100, 0xFF8000, 0xFFC000, 0xFFFF00,
                               0xFFC000, 0xFF8000, 0xFF4100, 0xFF0200};
    for (int y = 0; y < 9; ++y)
        EXPECT_EQ(colors[y], wanted[y]) << y;
    settings.gradient = 0;
    ScopeRowColors(settings, 4, colors);
    EXPECT_EQ(colors[0], 0xFFFF00u);
    EXPECT_EQ(colors[2], 0x00F0FFu) << "the centre line is the frames' colour";
}

TEST(ScopeSettings, GainSliderAndWhatNobodyChose) {
    for (int position = kGainSliderMin; position <= kGainSliderMax; ++position)
        EXPECT_EQ(SliderOfGain(GainOfSlider(position)), position);
    EXPECT_EQ(GainOfSlider(10), 5.0f);
    EXPECT_EQ(GainOfSlider(65535), 0.5f);
    EXPECT_EQ(SliderOfGain(0.2f), 106) << "below the slider's least";
    const struct {
        float read, kept;
    } gains[] = {{NAN, 0.2f}, {INFINITY, 0.2f}, {1e30f, 5}, {-3, 0}, {0.2f, 0.2f}, {4.95f, 4.95f}};
    for (const auto& gain : gains) {
        ScopeSettings settings = {~0u, ~0u, ~0u, 77, 0, 1, ~0u, gain.read};
        ClampScopeSettings(&settings);
        EXPECT_EQ(settings.gain, gain.kept) << gain.read;
        EXPECT_EQ(settings.lineColor, 0xFFFFFFu);
        EXPECT_EQ(settings.forceMono + settings.gradient, 2u);
    }
    char text[kFormatTextSize];
    ScopeFormatText(FormatOfCode(16), text);
    EXPECT_EQ(std::string(text), "22Khz 8bit");
    ScopeFormatText({1, 2, ~0u, 0, 0, 65535, 0}, text);
    EXPECT_EQ(std::string(text), "4294967Khz 65535bit");
}

static bool Inside(const Box& box, const Box& area) {
    return box.width >= 0 && box.height >= 0 && box.left >= area.left && box.top >= area.top &&
           box.left + box.width <= area.left + area.width &&
           box.top + box.height <= area.top + area.height;
}

static bool Apart(const Box& a, const Box& b) {
    return !a.width || !b.width || a.left + a.width < b.left || b.left + b.width < a.left ||
           a.top + a.height < b.top || b.top + b.height < a.top;
}

TEST(ScopeLayout, NothingOverlapsOrLeavesTheWindowAtAnySize) {
    for (int width = 1; width < 1700; width += 1 + width / 7)
        for (int height = 1; height < 1200; height += 1 + height / 9) {
            const std::string at = std::to_string(width) + "x" + std::to_string(height);
            const ScopeLayout layout = LayOutScope(width, height);
            std::vector<Box> boxes(std::begin(layout.boxes), std::end(layout.boxes));
            boxes.push_back(layout.display);
            for (size_t i = 0; i < boxes.size(); ++i) {
                EXPECT_TRUE(Inside(boxes[i], {0, 0, width, height})) << at << " " << i;
                for (size_t j = 0; j < i; ++j)
                    EXPECT_TRUE(Apart(boxes[i], boxes[j])) << at << " " << i << " " << j;
            }
            EXPECT_TRUE(width < 20 || layout.display.width > width / 3) << at;
            ScopePane panes[2];
            const Box& d = layout.display;
            for (const int vertical : {0, 1}) {
                LayOutPanes(d, 2, vertical, 24, panes);
                for (const ScopePane& pane : panes)
                    EXPECT_TRUE(Inside(pane.frame, d) && Inside(pane.trace, pane.frame)) << at;
            }
        }
    ScopePane panes[2];
    LayOutPanes({10, 20, 201, 101}, 2, 0, 30, panes);
    EXPECT_EQ(panes[0].frame.left + panes[0].frame.width, 10 + 100 - 2);
    EXPECT_EQ(panes[1].frame.left, 10 + 100 + 1 + 2) << "a pixel after the middle";
    EXPECT_EQ(panes[1].trace.left, panes[1].divider + 1);
    LayOutPanes({10, 20, 201, 101}, 2, 1, 0, panes);
    EXPECT_EQ(panes[1].frame.top, 20 + 50 + 1 + 2);
}
