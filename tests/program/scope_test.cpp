// The oscilloscope as it stands on the screen, for what the shared block holds. The engine has let
// go of its device, so the block is the test's.
#include "tests/program/harness.h"
#include "tests/support/measure_win.h"
#include "resources/ids.h"
#include "waves/engine_win.h"
#include "waves/format.h"
#include "waves/scope_layout.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

constexpr uint32_t kLine = 0x00F0FF, kLow = 0xFFFF00, kPlum = 0x654321; // 0xRRGGBB
constexpr uint32_t k16Stereo = 2048, k8Mono = 16;                       // of 22 kHz the latter

namespace {
// Where a trace is drawn: inside an outline.
struct Pane {
    int left, top, width, height;
};
class ScopeTest : public ProgramTest {
protected:
    static void Set(const char* name, uint32_t value) { WriteWindowDword(7, name, value); }
    static void SetGain(float gain) { WriteWindowSetting(7, "Gain", kRegBinary, 4, &gain); }
    static float Gain() {
        float gain = -1;
        ReadWindowSetting(7, "Gain", kRegBinary, 4, &gain);
        return gain;
    }
    void StartScope() {
        SwitchOn("WaveInEngineOn");
        SwitchOn("ScopeUI");
        for (const auto& [name, value] : {std::pair{"Width", 420}, {"Height", 260}, {"X", 600}})
            WriteWindowSetting(7, name, kRegBinary, 4, &value);
        Start();
        ASSERT_TRUE(Ask(FindWindowA(kWavesEngineClass, nullptr), WM_COMMAND, kWavesClose, 0));
        peer = std::make_unique<SharedPeer>();
        window = FindComponent("ScopeUI");
        ASSERT_TRUE(peer->block && window);
    }
    // A square wave of 256 bytes up and 256 down.
    void Publish(uint32_t code, int left, int right) {
        const SoundFormatRecord format = FormatOfCode(code);
        for (int i = 0; i < kSoundBufferBytes; i += format.bits / 8) {
            const int sign = i & 256 ? -1 : 1, value = i & format.blockAlign / 2 ? right : left;
            if (format.bits == 16) {
                const auto sample = static_cast<int16_t>(sign * value);
                memcpy(peer->block->SoundBuffer + i, &sample, 2);
            } else {
                peer->block->SoundBuffer[i] = static_cast<uint8_t>(sign * value);
            }
        }
        memcpy(peer->block->SoundFormat, &format, sizeof format);
    }
    void Look() {
        RECT client;
        GetClientRect(window, &client);
        width = client.right;
        height = client.bottom;
        pixels.resize(width * height);
        BITMAPINFO info = {{sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0},
                           {}};
        const HDC dc = GetDC(window), memory = CreateCompatibleDC(dc);
        const HBITMAP bitmap = CreateCompatibleBitmap(dc, width, height);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, width, height, dc, 0, 0, SRCCOPY);
        SelectObject(memory, before);
        GetDIBits(memory, bitmap, 0, height, pixels.data(), &info, DIB_RGB_COLORS);
        DeleteObject(bitmap);
        DeleteDC(memory);
        ReleaseDC(window, dc);
    }
    uint32_t At(int x, int y) const { return pixels[y * width + x] & 0xFFFFFF; }
    // Outlines: horizontal lines of one colour, two to a pane.
    std::vector<Pane> Panes(uint32_t outline) {
        std::vector<Pane> runs, panes;
        Look();
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int left = x;
                while (x < width && At(x, y) == outline)
                    ++x;
                if (x - left > 60) runs.push_back({left, y, x - left, 0});
            }
        std::stable_sort(runs.begin(), runs.end(),
                         [](const Pane& a, const Pane& b) { return a.left < b.left; });
        for (size_t i = 0; i + 1 < runs.size(); i += 2)
            panes.push_back({runs[i].left + 2, runs[i].top + 2, runs[i].width - 4,
                             runs[i + 1].top - runs[i].top - 3});
        return panes;
    }
    // Lit rows of all columns, from the centre and without the connecting lines, in eighths of the
    // pane; each once, e.g. "-2 0 2".
    std::string Rows(const Pane& pane) const {
        std::string rows;
        for (int eighths = -4; eighths <= 4; ++eighths) {
            const int y = pane.top + pane.height / 2 + std::lround(eighths * pane.height / 8.0);
            int lit = 0;
            for (int x = pane.left; x < pane.left + pane.width && y < pane.top + pane.height; ++x)
                lit += At(x, y) != 0;
            if (lit > pane.width / 3) rows += (rows.empty() ? "" : " ") + std::to_string(eighths);
        }
        return rows;
    }
    // The panes' rows; pixels that are lit elsewhere make a difference.
    std::string Shown(uint32_t outline = kLine) {
        std::string rows;
        const std::vector<Pane> panes = Panes(outline);
        for (const Pane& pane : panes)
            rows += (rows.empty() ? "" : " | ") + Rows(pane);
        if (panes.size() == 2 && panes[0].left == panes[1].left) rows += " stacked";
        return rows;
    }
    bool Shows(const char* wanted) {
        return WaitUntil([=, this] { return Shown() == wanted; });
    }
    uint32_t LitIn(const Pane& pane) const {
        uint32_t lit = 0;
        for (int y = 0; y < pane.height; ++y)
            for (int x = 0; x < pane.width; ++x)
                lit += At(pane.left + x, pane.top + y) != 0;
        return lit;
    }
    // A lit label is blue by default, an unlit one black on grey.
    bool ToggleIsOn(int id) {
        Look();
        RECT place = PlaceOf(Child(window, id));
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
        int blue = 0;
        for (int y = place.top + 3; y < place.bottom - 3; ++y)
            for (int x = place.left + 3; x < place.right - 3; ++x)
                blue += static_cast<int>(At(x, y) & 0xFF) > static_cast<int>(At(x, y) >> 16) + 40;
        return blue > 3;
    }
    HWND window = nullptr;
    std::unique_ptr<SharedPeer> peer;
    int width = 0, height = 0; // of what was seen
    std::vector<uint32_t> pixels;
};
} // namespace

TEST_F(ScopeTest, DrawsEachChannelInItsPaneInEveryMode) {
    Set("Legends", 0);
    SetGain(2);
    StartScope();
    Publish(k16Stereo, 0, 0);
    EXPECT_TRUE(Shows("0 | 0")) << Shown();
    for (const Pane& pane : Panes(kLine))
        EXPECT_EQ(LitIn(pane), static_cast<uint32_t>(pane.width)) << "silence is the centre row";
    Publish(k16Stereo, 8192, 4096);
    EXPECT_TRUE(Shows("-2 0 2 | -1 0 1")) << Shown();
    EXPECT_EQ(ChildText(window, kScopeMode) + " " + ChildText(window, kScopeFormat),
              "stereo 44Khz 16bit");
    const Pane left = Panes(kLine)[0];
    const int centre = left.top + left.height / 2, x = left.left + left.width / 32;
    const int up = static_cast<int>(std::lround(left.height / 4.0));
    const int entry = 1 + static_cast<int>(std::lround(253.0 * up / (left.height / 2)));
    EXPECT_EQ(At(x, centre - up), 0xFF0000u | (256 - entry) << 8) << "gradient, by the row";
    EXPECT_EQ(At(x, centre), kLow);
    Command(window, kScopeGradient);
    EXPECT_TRUE(WaitUntil([&] { return Look(), At(x, centre - up) == kLow; }));
    EXPECT_EQ(At(x, centre), kLine);
    Command(window, kScopeGradient);
    Command(window, kScopeVertical);
    EXPECT_TRUE(Shows("-2 0 2 | -1 0 1 stacked")) << Shown();
    Command(window, kScopeForceMono);
    Publish(k16Stereo, 8192, -4096 * 4);
    EXPECT_TRUE(Shows("-1 0 1")) << Shown();
    EXPECT_TRUE(ToggleIsOn(kScopeForceMono) && ToggleIsOn(kScopeVertical));
    EXPECT_FALSE(ToggleIsOn(kScopeLegends));
    // The visuals host takes over: the picture rests, the indicators go on.
    peer->block->VisualsTakeOver = 1;
    Publish(k8Mono, 32, 32);
    EXPECT_TRUE(WaitUntil([&] { return ChildText(window, kScopeFormat) == "22Khz 8bit"; }));
    EXPECT_EQ(ChildText(window, kScopeMode), "mono");
    EXPECT_EQ(Shown(), "-1 0 1");
    peer->block->VisualsTakeOver = 0;
    EXPECT_TRUE(Shows("-2 0 2")) << Shown();
    memset(peer->block->SoundFormat, 0xFF, sizeof peer->block->SoundFormat);
    EXPECT_TRUE(Shows("0")) << "a format that is none: " << Shown();
    EXPECT_EQ(ChildText(window, kScopeFormat), "");
}

TEST_F(ScopeTest, KeepsItsSettingsAndLeavesNothingBehind) {
    SetGain(NAN);
    Set("LineColor", 0xFF214365); // of which the lower three bytes are the colour
    Set("Gradient", 77);
    StartScope();
    Publish(k16Stereo, 8192, 4096);
    ASSERT_TRUE(WaitUntil([&] { return Panes(kPlum).size() == 2; }));
    Command(window, kScopeLegends);
    Command(window, kScopeVertical);
    // A click on the thumb moves nothing: the gain stays below the slider's least.
    const auto scroll = [&](int position) {
        PostMessageA(window, WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, position),
                     reinterpret_cast<LPARAM>(Child(window, kScopeGain)));
    };
    scroll(100);
    ASSERT_EQ(Close(), 0);
    EXPECT_FLOAT_EQ(Gain(), 0.2f);
    EXPECT_EQ(ReadWindowDword(7, "Legends", 9) * 10 + ReadWindowDword(7, "Vertical", 9), 1u);
    EXPECT_EQ(ReadWindowDword(7, "Gradient", 9), 1u);
    StartScope();
    Publish(k16Stereo, 8192, 4096);
    EXPECT_TRUE(WaitUntil([&] { return Shown(kPlum) == "0 | 0 stacked"; })) << Shown(kPlum);
    EXPECT_TRUE(ToggleIsOn(kScopeVertical) && !ToggleIsOn(kScopeLegends));
    scroll(70);
    EXPECT_TRUE(WaitUntil([&] { return Shown(kPlum) == "-2 0 2 | -1 0 1 stacked"; }));
    Command(window, kScopeSettings);
    HWND dialog = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        return IsWindowVisible(dialog = FindWindowA("#32770", "Scope Graphics Colors")) != 0;
    }));
    Command(dialog, IDC_SCOPE_RESET);
    Command(dialog, IDOK);
    EXPECT_TRUE(Shows("-2 0 2 | -1 0 1 stacked")) << "the colours of the beginning";
    EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(7, "LineColor", 9) == 0xFFF000; }));
    EXPECT_EQ(Gain(), 2) << "written with the colours";
    const int before = GdiObjects(program->handle);
    for (int i = 0; i < 4000; ++i) {
        if (i % 40 == 0) Publish(i % 400 ? k16Stereo : k8Mono, i, i * 7);
        PostMessageA(window, WM_TIMER, 799, 0);
        if (i % 500 == 0) Command(window, kScopeLegends);
        if (i % 100 == 0) {
            ASSERT_LT(AnswerTime(window), kPatienceMs);
        }
    }
    EXPECT_LE(GdiObjects(program->handle), before + 1);
}
