// The mixer window over the engine and a fake card: what a user sees and reads, what reaches the
// device, and what a refresh costs.
#include "core/commands.h"
#include "core/settings.h"
#include "mixer/engine_win.h"
#include "mixer/mixer_layout.h"
#include "mixer/mixer_win.h"
#include "tests/windows/mixer/fake_mixer.h"
#include "ui/components.h"
#include "ui/framework_win.h"
#include "ui/look_win.h"
#include "ui/trackbar.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>

constexpr DWORD kVolume = MIXERCONTROL_CONTROLTYPE_VOLUME, kMute = MIXERCONTROL_CONTROLTYPE_MUTE;
constexpr DWORD kTreble = MIXERCONTROL_CONTROLTYPE_TREBLE, kBass = MIXERCONTROL_CONTROLTYPE_BASS;
constexpr const char* kDestination = "Dest Component";
using Values = std::vector<DWORD>;

static bool Until(const std::function<bool()>& condition, DWORD waitMs = 8000) {
    for (const DWORD start = GetTickCount(); !condition(); Sleep(10))
        if (GetTickCount() - start > waitMs) return false;
    return true;
}

// Windows that took a WM_PAINT from their queue since the set was last cleared.
static std::set<HWND> s_painted;
static LRESULT CALLBACK SeePaint(int code, WPARAM wParam, LPARAM lParam) {
    const auto* message = reinterpret_cast<const MSG*>(lParam);
    const FakeLock lock;
    if (code >= 0 && message->message == WM_PAINT) s_painted.insert(message->hwnd);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

namespace {
class Window : public testing::Test {
protected:
    void SetUp() override {
        ResetFake();
        DeleteRegTree(kUserRoot, "Software\\Tonvista\\Mixer");
        WriteWindowDword(kMixerWindowId, kDestination, 1);
        SetSavedPlacement(kMixerWindowId, 20, 20, 900, 400);
    }
    void TearDown() override {
        StopComponentThread(MixerThread());
        StopComponentThread(MixerEngineThread());
    }
    void Open() {
        ASSERT_TRUE(StartComponentThread(MixerEngineThread(), GetModuleHandleA(nullptr), nullptr));
        ASSERT_TRUE(StartComponentThread(MixerThread(), GetModuleHandleA(nullptr), nullptr));
        window = MixerThread()->Window;
    }
    HWND Control(int id) const { return GetDlgItem(window, id); }
    bool Shown(int id) const { return IsWindowVisible(Control(id)); }
    std::string Text(int id) const {
        char text[260] = "";
        SendMessageA(Control(id), WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
        return text;
    }
    std::string Tip(int id) const {
        HWND tips = nullptr;
        while ((tips = FindWindowExA(nullptr, tips, TOOLTIPS_CLASSA, nullptr)))
            if (GetWindow(tips, GW_OWNER) == window) break;
        char text[520] = "";
        TTTOOLINFOA tool = {};
        tool.cbSize = TTTOOLINFOA_V2_SIZE;
        tool.hwnd = window;
        tool.uId = reinterpret_cast<UINT_PTR>(Control(id));
        tool.lpszText = text;
        SendMessageA(tips, TTM_GETTEXTA, 260, reinterpret_cast<LPARAM>(&tool));
        return text;
    }
    void Press(int id) const {
        SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(id),
                     reinterpret_cast<LPARAM>(Control(id)));
    }
    void Slide(int id, int position, int code = SB_ENDSCROLL) const {
        SendMessageA(window, WM_VSCROLL, MAKEWPARAM(code, position),
                     reinterpret_cast<LPARAM>(Control(id)));
    }
    void Mouse(int id, UINT message, int y) const {
        SendMessageA(Control(id), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON,
                     MAKELPARAM(10, y));
    }
    // As a driver tells it.
    static void Notice() {
        PostMessageA(MixerEngineThread()->Window, MM_MIXM_CONTROL_CHANGE, 0, 0);
    }
    static void Device(DWORD line, DWORD type, const Values& values) {
        {
            const FakeLock lock;
            FindFake(line, type)->values = values;
        }
        Notice();
    }
    static Values Device(DWORD line, DWORD type) {
        const FakeLock lock;
        return FindFake(line, type)->values;
    }
    // First row of the thumb on the screen, by its face; its edge is 2 pixels.
    int ThumbTop(int id, COLORREF face = 0x800000) const {
        RECT bar;
        GetWindowRect(Control(id), &bar);
        const HDC screen = GetDC(nullptr);
        int y = bar.top;
        while (y < bar.bottom && GetPixel(screen, bar.left + 5, y) != face)
            ++y;
        ReleaseDC(nullptr, screen);
        return y - bar.top - 2;
    }
    bool BarShows(int id, int percent) const {
        RECT client;
        GetClientRect(Control(id), &client);
        const int height = client.bottom, thumb = std::clamp(height / 7, 5, 12);
        const TrackBarModel bar = {0, 100, 100 - percent, thumb, 1};
        return Until([&] { return ThumbTop(id) == ThumbStart(bar, height); });
    }
    // The label's colour: blue is on, black off.
    bool IsLit(int id) const {
        RECT place;
        GetWindowRect(Control(id), &place);
        const HDC screen = GetDC(nullptr);
        int blue = 0;
        for (int y = place.top + 3; y < place.bottom - 3; y += 2)
            for (int x = place.left + 3; x < place.right - 3; ++x) {
                const COLORREF color = GetPixel(screen, x, y);
                blue += GetBValue(color) > GetRValue(color) + 40;
            }
        ReleaseDC(nullptr, screen);
        return blue > 3;
    }
    bool TurnsLit(int id, bool on) const {
        return Until([=, this] { return IsLit(id) == on; });
    }
    HWND window = nullptr;
};
} // namespace

TEST_F(Window, ThirtySourcesShowTwentyFourColumns) {
    for (int i = 3; i < 30; ++i)
        AddSource(0, PlainSource(i == 5 ? "Front Panel Microphone Input" : "Source"));
    Open();
    EXPECT_EQ(Text(800) + Text(801) + Text(802) + Text(806), "WaveSynthesizerCD AudioSource");
    EXPECT_TRUE(Shown(823) && Shown(847) && !Shown(757));
    EXPECT_EQ(Text(805).substr(0, 5), "Front") << "cut where it has no room";
    EXPECT_EQ(Tip(805), "Front Panel Microphone Input");
    EXPECT_EQ(Tip(829), "Front Panel Microphone Input");
    Press(700);
    EXPECT_EQ(Text(800) + Text(801), "MicrophoneLine In");
    EXPECT_EQ(Tip(800) + Tip(825), "MicrophoneLine In");
    EXPECT_TRUE(Shown(825) && !Shown(802) && !Shown(826));
}

TEST_F(Window, EightDestinationsWithTheirTextsAndMessages) {
    static const struct {
        const char *label, *tip, *message;
    } kTexts[] = {{"Record", "Recording (WAV In) Lines", "Wave Capture Controls"},
                  {"Listen", "Listening (Speaker) Lines", "Speaker Output Controls"},
                  {"Headphones", "HeadPhone Destination", "Headphone Output Controls"},
                  {"Voice", "Voice Recognition Lines", "Voice Input Controls"},
                  {"Telephone", "Telephone Output Lines", "Telephone Device Controls"},
                  {"Line", "Line Level Destination", "Line Device Controls"},
                  {"Monitor", "Monitor Destination", "Monitor Device Controls"},
                  {"Digital", "Digital Destination", "Digital Device Controls"}};
    WriteWindowDword(kMixerWindowId, kDestination, 8); // reads as 0
    for (FakeDestination& destination : Fake.cards[0].destinations)
        destination.sources.clear();
    Open();
    EXPECT_EQ(Text(758), kTexts[0].message);
    for (int i = 7; i >= 0; --i) {
        EXPECT_TRUE(IsWindowEnabled(Control(700 + i)));
        Press(700 + i);
        EXPECT_EQ(Text(700 + i), kTexts[i].label);
        EXPECT_EQ(Tip(700 + i), kTexts[i].tip);
        EXPECT_EQ(Text(757) + " " + Text(758),
                  std::string("Your SoundCard/Driver Does Not Support ") + kTexts[i].message);
        EXPECT_TRUE(Shown(757) && Shown(758) && !Shown(800) && !Shown(824));
        EXPECT_EQ(ReadWindowDword(kMixerWindowId, kDestination, 9), static_cast<uint32_t>(i));
        EXPECT_TRUE(TurnsLit(700 + i, true) && TurnsLit(700 + (i + 1) % 8, false));
    }
    EXPECT_EQ(Text(708) + Text(709) + Text(750), "Tonvue MixerPowerMaster");
    EXPECT_EQ(Tip(709) + Tip(750) + Tip(752) + Tip(753),
              "On/OffMaster VolumeMaster TrebleMaster Bass");
}

TEST_F(Window, BarsAndButtonsSetTheDeviceAndFollowIt) {
    Open();
    EXPECT_TRUE(BarShows(751, 30) && BarShows(752, 75) && BarShows(753, 25) && BarShows(825, 45));
    const DWORD speakers = SpeakerLine(), synth = SourceLine(0, 1);
    Slide(825, 0);
    EXPECT_EQ(Device(synth, kVolume), Values(2, 65535)) << "the top is full";
    Slide(751, 50, SB_THUMBTRACK);
    EXPECT_EQ(Device(speakers, kVolume), Values(2, 32767)) << "reads back 49";
    Slide(752, 100);
    EXPECT_EQ(Device(speakers, kTreble), Values(2, 0));
    Slide(753, 10);
    EXPECT_EQ(Device(speakers, kBass), Values(2, 58981));
    EXPECT_TRUE(BarShows(825, 100) && BarShows(751, 50) && BarShows(752, 0) && BarShows(753, 90));

    Device(synth, kVolume, {0, 65535});
    EXPECT_TRUE(BarShows(825, 49));
    Slide(825, 51); // a release where the bar stands
    EXPECT_EQ(Device(synth, kVolume), Values({0, 65535})) << "the balance is kept";
    Slide(825, 700);
    EXPECT_EQ(Device(synth, kVolume), Values({0, 65535})) << "no position";

    EXPECT_TRUE(TurnsLit(801, true) && TurnsLit(750, true));
    Press(801);
    Press(750);
    EXPECT_EQ(Device(synth, kMute)[0] + Device(speakers, kMute)[0], 2u);
    EXPECT_TRUE(TurnsLit(801, false) && TurnsLit(750, false));
    Device(synth, kMute, {0});
    Device(speakers, kMute, {0});
    EXPECT_TRUE(TurnsLit(801, true) && TurnsLit(750, true));
    {
        const FakeLock lock; // a driver that does not tell: the timer sees it
        FindFake(speakers, kVolume)->values = {65535, 65535};
    }
    EXPECT_TRUE(BarShows(751, 100));
}

// The real thumb: while it is held the device's own changes leave it alone.
TEST_F(Window, AHeldBarIsLeftAlone) {
    Open();
    ASSERT_TRUE(BarShows(751, 30));
    const int from = ThumbTop(751) + 3;
    Mouse(751, WM_LBUTTONDOWN, from);
    Mouse(751, WM_MOUSEMOVE, from - 40);
    const auto moved = [] { return Device(SpeakerLine(), kVolume)[0] > 25000; };
    ASSERT_TRUE(Until(moved));
    const int held = ThumbTop(751, 0xFFFFFF);
    const Values dragged = Device(SpeakerLine(), kVolume);
    Device(SpeakerLine(), kVolume, Values(2, 0));
    Device(SourceLine(0, 0), kVolume, Values(2, 65535));
    ASSERT_TRUE(BarShows(824, 100)) << "a refresh has come";
    EXPECT_EQ(ThumbTop(751, 0xFFFFFF), held);
    Mouse(751, WM_LBUTTONUP, from - 40);
    EXPECT_TRUE(Until([=] { return Device(SpeakerLine(), kVolume) == dragged; }))
        << "what the user let go of counts";
    Device(SpeakerLine(), kVolume, Values(2, 0));
    EXPECT_TRUE(BarShows(751, 0));
}

TEST_F(Window, RefreshWritesNothingAndRepaintsOnlyWhatChanged) {
    for (int i = 3; i < 24; ++i)
        AddSource(0, PlainSource("Source"));
    Open();
    ASSERT_TRUE(BarShows(847, 45));
    const HHOOK hook = SetWindowsHookExA(WH_GETMESSAGE, SeePaint, nullptr, MixerThread()->threadId);
    const auto reset = [] {
        const FakeLock lock;
        s_painted.clear();
        Fake.calls = Fake.writes = 0;
    };
    Sleep(100); // what opening has left to paint
    reset();
    Device(SourceLine(0, 20), kVolume, Values(2, 0));
    EXPECT_TRUE(BarShows(844, 0));
    {
        const FakeLock lock;
        EXPECT_EQ(s_painted, std::set<HWND>{Control(844)});
    }
    // No notice, so one refresh by the timer, in which nothing has changed.
    reset();
    ASSERT_TRUE(Until([] { return Fake.calls > 0; }));
    Sleep(300);
    const FakeLock lock;
    EXPECT_TRUE(s_painted.empty());
    EXPECT_EQ(Fake.writes, 0);
    EXPECT_LE(Fake.calls, 24 * 11 + 20);
    std::printf("a refresh of 24 sources: %d calls\n", Fake.calls);
    UnhookWindowsHookEx(hook);
}

TEST_F(Window, LivesWithWhatTheDeviceLacksAndWithoutIt) {
    auto& controls = Fake.cards[0].destinations[0].line.controls;
    controls.erase(controls.begin() + 1, controls.begin() + 3); // bass and treble
    Open();
    EXPECT_FALSE(IsWindowEnabled(Control(752)) || IsWindowEnabled(Control(753)));
    EXPECT_TRUE(IsWindowEnabled(Control(751)) && BarShows(751, 30));
    Fake.removed = true;
    EXPECT_TRUE(Until([this] { return Shown(757) && !Shown(800); })) << "the timer has noticed";
    EXPECT_FALSE(IsLit(750));
    Press(750);
    Slide(824, 0);
    Fake.removed = false;
    Notice();
    EXPECT_TRUE(Until([this] { return Shown(800) && !Shown(757); }));
    StopComponentThread(MixerEngineThread());
    EXPECT_TRUE(Until([this] { return Shown(757); })) << "engine off, window still on";
    ASSERT_TRUE(StartComponentThread(MixerEngineThread(), GetModuleHandleA(nullptr), nullptr));
    EXPECT_TRUE(Until([this] { return Shown(800); }));
    EXPECT_TRUE(UnregisterMixerWindow(window)) << "it has made itself known to the new engine";
    RegisterMixerWindow(window);
    StopComponentThread(MixerThread());
    EXPECT_FALSE(UnregisterMixerWindow(window)) << "and has said goodbye";
}
