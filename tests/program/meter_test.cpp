// The volume meter in the tray: what stands there for what the shared block holds, read off the
// screen. The engine has let go of its device, so the block is the test's.
#include "tests/program/harness.h"
#include "tests/support/measure_win.h"
#include "tests/support/screen_win.h"
#include "resources/ids.h"
#include "waves/engine_win.h"
#include "waves/format.h"
#include "waves/meter_win.h"

#include <cstring>
#include <memory>

constexpr const char* kDialog = "Volume Meter"; // its caption

namespace {
class MeterTest : public ProgramTest {
protected:
    void StartSilent() {
        SwitchOn("WaveInEngineOn");
        SwitchOn("VolumeMeterTBIcon");
        Start();
        ASSERT_TRUE(Ask(FindWindowA(kWavesEngineClass, nullptr), WM_COMMAND, kWavesClose, 0));
        peer = std::make_unique<SharedPeer>();
        Publish(2048, 0, 0);
        ASSERT_TRUE(Shows("0000000000000000"));
    }
    // Of a full scale of 1000.
    void Publish(uint32_t formatCode, float left, float right) {
        const SoundFormatRecord format = FormatOfCode(formatCode);
        memcpy(peer->block->SoundFormat, &format, sizeof format);
        peer->block->PowerFullScale = 1000;
        peer->block->PowerLeft = left;
        peer->block->PowerRight = right;
    }
    static HWND Window() { return FindWindowA(kMeterClass, nullptr); }
    // Heights of the columns in hexadecimal; empty without an icon.
    std::string Shown() const {
        std::string heights;
        const HWND tray = FindWindowA("__winex11_standalone_tray", nullptr);
        const HWND icon = FindWindowExA(tray, nullptr, "__winex11_tray_icon", nullptr);
        if (!icon) return heights;
        SetWindowPos(tray, HWND_TOPMOST, 0, 600, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
        const RECT place = PlaceOf(icon);
        for (int x = 2; x < 18; ++x) {
            int height = 0;
            for (int y = 2; y < 18; ++y)
                height += ScreenPixel(place.left + x, place.top + y) == bars;
            heights += "0123456789abcdefg"[height];
        }
        return heights;
    }
    bool Shows(const char* wanted) const {
        return WaitUntil([=, this] { return Shown() == wanted; });
    }
    std::unique_ptr<SharedPeer> peer;
    COLORREF bars = RGB(0, 255, 0);
};
} // namespace

TEST_F(MeterTest, ShowsThePowerInEveryLayoutAndKeepsItsSettings) {
    StartSilent();
    Publish(2048, 100, 200);
    EXPECT_TRUE(Shows("4444444088888880")) << Shown(); // of 400, by the gain
    Command(Window(), kMeterCenter);
    Command(Window(), kMeterLeftRight);
    Publish(512, 0.1f, 0.2f); // 8 bit: of 400 / 1024
    EXPECT_TRUE(Shows("6666666666666666")) << Shown();
    peer->block->VisualsTakeOver = 1; // it only waits
    Publish(2048, 400, 400);
    ASSERT_TRUE(Ask(Window(), WM_TIMER, 1, 0));
    EXPECT_EQ(Shown(), "6666666666666666");
    peer->block->VisualsTakeOver = 0;
    EXPECT_TRUE(Shows("gggggggggggggggg"));
    // The picture moves under the open dialog, whose values count after OK and after a restart.
    Command(Window(), kMeterConfigure);
    const HWND dialog = WaitForDialog(kDialog);
    Publish(2048, 100, 400);
    EXPECT_TRUE(Shows("aaaaaaaaaaaaaaaa")) << Shown();
    Ask(Child(dialog, IDC_METER_GAIN), TBM_SETPOS, TRUE, 80);
    Ask(dialog, WM_HSCROLL, TB_ENDTRACK, 0);
    // A colour of its own, mixed in the chooser that the swatch opens.
    const HWND swatch = Child(dialog, IDC_METER_FOREGROUND);
    PostMessageA(swatch, BM_CLICK, 0, 0);
    const HWND chooser = WaitForDialog("Color");
    Ask(Child(chooser, 706), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("250")); // red
    Command(chooser, IDOK);
    bars = RGB(250, 255, 0);
    EXPECT_TRUE(WaitUntil([&] { return ScreenPixelOf(swatch, 9, 9) == bars; }));
    Command(dialog, IDOK);
    EXPECT_TRUE(Shows("5555555555555555")) << Shown();
    EXPECT_EQ(Close(), 0);
    StartSilent();
    Publish(2048, 100, 400);
    EXPECT_TRUE(Shows("5555555555555555")) << Shown();
}

TEST_F(MeterTest, ComesBackWithTheShellAndGoesWhenSwitchedOff) {
    StartSilent();
    NOTIFYICONDATAA lost = {}; // as after the shell has died
    lost.cbSize = NOTIFYICONDATAA_V1_SIZE;
    lost.hWnd = Window();
    lost.uID = kMeterIconCallback;
    ASSERT_TRUE(Shell_NotifyIconA(NIM_DELETE, &lost));
    ASSERT_EQ(Shown(), "");
    PostMessageA(FindConsole(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_TRUE(Shows("0000000000000000"));
    // Many frames leave nothing behind.
    const auto frames = [&](int count) {
        for (int i = 0; i < count; ++i) {
            Publish(2048, static_cast<float>(i % 15 * 25), 0);
            Ask(Window(), WM_TIMER, 1, 0);
        }
        return GdiObjects(program->handle);
    };
    const int before = frames(20);
    EXPECT_LE(frames(300), before + 2);
    Command(Window(), kMeterConfigure);
    ASSERT_TRUE(WaitForDialog(kDialog));
    // Switched off with it open: the icon goes no later than they do.
    Command(FindConsole(), kConsoleVolumeIcon);
    ASSERT_TRUE(WaitUntil([] { return !Window(); }));
    EXPECT_EQ(Shown(), "");
    EXPECT_FALSE(FindWindowA(nullptr, kDialog));
    EXPECT_EQ(Close(), 0);
}
