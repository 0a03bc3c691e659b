// The oscilloscope as it stands on the screen, for what the shared block holds. The engine has let
// go of its device, so the block is the test's.
#include "tests/program/harness.h"
#include "tests/support/measure_win.h"
#include "tests/support/screen_win.h"
#include "resources/ids.h"
#include "waves/engine_win.h"
#include "waves/format.h"
#include "waves/scope_layout.h"

#include <cmath>
#include <cstring>
#include <memory>

constexpr COLORREF kLine = 0xFFF000, kLow = 0x00FFFF, kPlum = 0x214365;
constexpr uint32_t k16Stereo = 2048, k8Mono = 16; // the latter of 22 kHz

namespace {
class ScopeTest : public ProgramTest {
protected:
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
    // A square wave: 256 bytes of the samples, then 256 of their opposites.
    void Publish(uint32_t code, int left, int right) {
        const SoundFormatRecord format = FormatOfCode(code);
        for (int i = 0; i < kSoundBufferBytes; i += format.bits / 8) {
            const int value = (i & 256 ? -1 : 1) * (i & format.blockAlign / 2 ? right : left);
            memcpy(peer->block->SoundBuffer + i, &value, format.bits / 8);
        }
        memcpy(peer->block->SoundFormat, &format, sizeof format);
    }
    COLORREF At(int x, int y) const { return ScreenPixelOf(window, x, y); }
    // Where panes are when there are no legends, in the window.
    void LayOut(int panes, int stacked) {
        RECT client;
        GetClientRect(window, &client);
        LayOutPanes(LayOutScope(client.right, client.bottom).display, panes, stacked, 0, pane);
    }
    // The lit rows of a column, in eighths of the pane below its centre; "?" for any between.
    std::string Rows(const Box& trace, int x) const {
        std::string rows;
        for (int y = 0; y < trace.height; ++y) {
            if (!At(trace.left + x, trace.top + y)) continue;
            const int off = y - trace.height / 2;
            const auto eighths = std::lround(off * 8.0 / trace.height);
            rows +=
                std::lround(eighths * trace.height / 8.0) == off ? std::to_string(eighths) : "?";
            rows += " ";
        }
        return rows;
    }
    // All panes' rows where the wave stands high and where it stands low.
    std::string Shown(int panes, int stacked, COLORREF outline = kLine) {
        std::string rows;
        LayOut(panes, stacked);
        for (int i = 0; i < panes; ++i) {
            const Box &frame = pane[i].frame, &trace = pane[i].trace;
            if (At(frame.left, frame.top) != outline ||
                At(frame.left + frame.width - 1, frame.top + frame.height - 1) != outline)
                return "no pane";
            rows += Rows(trace, trace.width / 32) + "/ " + Rows(trace, trace.width * 3 / 32) + "| ";
        }
        return rows;
    }
    bool Shows(int panes, int stacked, const char* wanted, COLORREF outline = kLine) {
        return WaitUntil([=, this] { return Shown(panes, stacked, outline) == wanted; });
    }
    bool Lit(int id) const { return IsLit(Child(window, id)); }
    HWND window = nullptr;
    std::unique_ptr<SharedPeer> peer;
    ScopePane pane[2] = {};
};
} // namespace

TEST_F(ScopeTest, DrawsEachChannelInItsPaneInEveryMode) {
    WriteWindowDword(7, "Legends", 0);
    SetGain(2);
    StartScope();
    Publish(k16Stereo, 8192, 4096);
    EXPECT_TRUE(Shows(2, 0, "-2 0 / 0 2 | -1 0 / 0 1 | ")) << Shown(2, 0);
    EXPECT_EQ(ChildText(window, kScopeMode) + " " + ChildText(window, kScopeFormat),
              "stereo 44Khz 16bit");
    const Box trace = pane[0].trace;
    const int centre = trace.top + trace.height / 2, x = trace.left + trace.width / 32;
    const int up = static_cast<int>(std::lround(trace.height / 4.0));
    const int entry = 1 + static_cast<int>(std::lround(253.0 * up / (trace.height / 2)));
    EXPECT_EQ(At(x, centre - up), RGB(255, 256 - entry, 0)) << "gradient, by the row";
    EXPECT_EQ(At(x, centre), kLow);
    Command(window, kScopeGradient);
    EXPECT_TRUE(WaitUntil([&] { return At(x, centre - up) == kLow && At(x, centre) == kLine; }));
    Publish(k16Stereo, 0, 0);
    EXPECT_TRUE(Shows(2, 0, "0 / 0 | 0 / 0 | ")) << Shown(2, 0);
    Publish(k16Stereo, 8192, 4096);
    Command(window, kScopeVertical);
    EXPECT_TRUE(Shows(2, 1, "-2 0 / 0 2 | -1 0 / 0 1 | ")) << Shown(2, 1);
    Publish(k16Stereo, 8192, -4096 * 4);
    Command(window, kScopeForceMono);
    EXPECT_TRUE(Shows(1, 0, "0 1 / -1 0 | ")) << Shown(1, 0);
    EXPECT_TRUE(Lit(kScopeForceMono) && Lit(kScopeVertical));
    EXPECT_FALSE(Lit(kScopeLegends) || Lit(kScopeGradient));
    // The visuals host takes over: the picture rests, the indicators go on.
    peer->block->VisualsTakeOver = 1;
    Publish(k8Mono, 32, 32);
    EXPECT_TRUE(WaitUntil([&] { return ChildText(window, kScopeFormat) == "22Khz 8bit"; }));
    EXPECT_EQ(ChildText(window, kScopeMode) + Shown(1, 0), "mono0 1 / -1 0 | ");
    peer->block->VisualsTakeOver = 0;
    EXPECT_TRUE(Shows(1, 0, "-2 0 / 0 2 | ")) << Shown(1, 0);
    memset(peer->block->SoundFormat, 0xFF, sizeof peer->block->SoundFormat);
    EXPECT_TRUE(Shows(1, 0, "0 / 0 | ")) << "a format that is none: " << Shown(1, 0);
}

TEST_F(ScopeTest, KeepsItsSettingsAndLeavesNothingBehind) {
    SetGain(NAN);
    WriteWindowDword(7, "LineColor", 0xFF000000 | kPlum);
    StartScope();
    Command(window, kScopeLegends);
    Command(window, kScopeVertical);
    const auto scroll = [&](int position) {
        PostMessageA(window, WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, position),
                     reinterpret_cast<LPARAM>(Child(window, kScopeGain)));
    };
    scroll(100); // a click on the thumb moves nothing: the gain stays below the slider's least
    ASSERT_EQ(Close(), 0);
    EXPECT_FLOAT_EQ(Gain(), 0.2f);
    StartScope();
    Publish(k16Stereo, 8192, 4096);
    scroll(70);
    EXPECT_TRUE(Shows(2, 1, "-2 0 / 0 2 | -1 0 / 0 1 | ", kPlum)) << Shown(2, 1, kPlum);
    EXPECT_TRUE(Lit(kScopeVertical) && Lit(kScopeGradient) && !Lit(kScopeLegends));
    Command(window, kScopeSettings);
    const HWND dialog = WaitForDialog("Scope Graphics Colors");
    ASSERT_TRUE(dialog);
    Command(dialog, IDC_SCOPE_RESET);
    Command(dialog, IDOK);
    EXPECT_TRUE(Shows(2, 1, "-2 0 / 0 2 | -1 0 / 0 1 | ")) << "the colours of the beginning";
    EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(7, "LineColor", 9) == kLine; }));
    EXPECT_TRUE(WaitUntil([] { return Gain() == 2; })) << "written with the colours";
    const int before = GdiObjects(program->handle);
    for (int i = 0; i < 4000; ++i) {
        Publish(i % 400 ? k16Stereo : k8Mono, i, i * 7);
        PostMessageA(window, WM_TIMER, 799, 0);
        if (i % 500 == 0) Command(window, kScopeLegends);
        if (i % 100 == 0) AnswerTime(window); // no more than the queue holds
    }
    EXPECT_LE(GdiObjects(program->handle), before + 1);
}
