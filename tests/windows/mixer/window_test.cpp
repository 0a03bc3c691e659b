// The mixer window over the engine and a fake card: what a user sees and reads, what reaches the
// device, and what a refresh costs.
#include "core/commands.h"
#include "core/settings.h"
#include "mixer/engine_win.h"
#include "mixer/mixer_win.h"
#include "tests/windows/mixer/fake_mixer.h"
#include "ui/components.h"
#include "ui/framework_win.h"
#include "ui/trackbar.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

constexpr DWORD kVolume = MIXERCONTROL_CONTROLTYPE_VOLUME, kMute = MIXERCONTROL_CONTROLTYPE_MUTE;
constexpr DWORD kTreble = MIXERCONTROL_CONTROLTYPE_TREBLE, kBass = MIXERCONTROL_CONTROLTYPE_BASS;
constexpr const char* kDestination = "Dest Component";
constexpr COLORREF kBlue = 0x800000; // thumbs, and labels of what is on
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
        StartComponentThread(MixerEngineThread(), GetModuleHandleA(nullptr), nullptr);
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
    void Send(UINT message, int id, int high, int low) const {
        SendMessageA(window, message, MAKEWPARAM(low, high), reinterpret_cast<LPARAM>(Control(id)));
    }
    void Press(int id) const { Send(WM_COMMAND, id, 0, id); }
    void Slide(int id, int position) const { Send(WM_VSCROLL, id, position, SB_ENDSCROLL); }
    // Changed at the device, which tells of it.
    static void Device(DWORD line, DWORD type, const Values& values) {
        const FakeLock lock;
        FindFake(line, type)->values = values;
        PostMessageA(MixerEngineThread()->Window, MM_MIXM_CONTROL_CHANGE, 0, 0);
    }
    static Values Device(DWORD line, DWORD type) {
        const FakeLock lock;
        return FindFake(line, type)->values;
    }
    RECT Place(int id) const {
        RECT place = {};
        GetWindowRect(Control(id), &place);
        return place;
    }
    // Rows of a control, from the given one on, until one that shows blue.
    int RowsToBlue(int id, int row) const {
        const RECT place = Place(id);
        const HDC screen = GetDC(nullptr);
        bool blue = false;
        for (int y = place.top + row; !blue && y < place.bottom; ++row, ++y)
            for (int x = place.left + 3; !blue && x < place.right - 3; ++x)
                blue = GetPixel(screen, x, y) == kBlue;
        ReleaseDC(nullptr, screen);
        return blue ? row - 1 : -1;
    }
    bool BarShows(int id, int percent) const {
        const int height = Place(id).bottom - Place(id).top;
        const TrackBarModel bar = {0, 100, 100 - percent, std::clamp(height / 7, 5, 12), 1};
        return Until([&] { return RowsToBlue(id, 0) == ThumbStart(bar, height) + 2; });
    }
    bool TurnsLit(int id, bool on) const {
        return Until([=, this] { return (RowsToBlue(id, 3) >= 0) == on; });
    }
    HWND window = nullptr;
};
} // namespace

TEST_F(Window, ThirtySourcesShowTwentyFourColumns) {
    const std::string longName(31, 'W');
    for (int i = 3; i < 30; ++i)
        AddSource(0, PlainSource(i == 5 ? longName : "Source"));
    Open();
    EXPECT_EQ(Text(800) + Text(801) + Text(802) + Text(806), "WaveSynthesizerCD AudioSource");
    EXPECT_TRUE(Shown(823) && Shown(847) && !Shown(757));
    EXPECT_NE(Text(805), longName) << "cut where it has no room";
    EXPECT_EQ(Tip(805) + Tip(829), longName + longName);
    Press(700);
    EXPECT_EQ(Text(800) + Tip(825), "MicrophoneLine In");
    EXPECT_TRUE(Shown(825) && !Shown(802) && !Shown(826));
}

TEST_F(Window, EightDestinationsWithTheirTextsAndMessages) {
    static constexpr const char* kTexts[] = {
        "Record, Recording (WAV In) Lines, Wave Capture Controls",
        "Listen, Listening (Speaker) Lines, Speaker Output Controls",
        "Headphones, HeadPhone Destination, Headphone Output Controls",
        "Voice, Voice Recognition Lines, Voice Input Controls",
        "Telephone, Telephone Output Lines, Telephone Device Controls",
        "Line, Line Level Destination, Line Device Controls",
        "Monitor, Monitor Destination, Monitor Device Controls",
        "Digital, Digital Destination, Digital Device Controls"};
    WriteWindowDword(kMixerWindowId, kDestination, 8); // reads as 0
    for (FakeDestination& destination : Fake.cards[0].destinations)
        destination.sources.clear();
    Open();
    EXPECT_EQ(Text(758), "Wave Capture Controls");
    for (int i = 7; i >= 0; --i) {
        Press(700 + i);
        EXPECT_EQ(Text(700 + i) + ", " + Tip(700 + i) + ", " + Text(758), kTexts[i]);
        EXPECT_TRUE(Shown(757) && Shown(758) && !Shown(800) && !Shown(824));
        EXPECT_EQ(ReadWindowDword(kMixerWindowId, kDestination, 9), static_cast<uint32_t>(i));
        EXPECT_TRUE(TurnsLit(700 + i, true) && TurnsLit(700 + (i + 1) % 8, false));
    }
    EXPECT_EQ(Text(757), "Your SoundCard/Driver Does Not Support");
    EXPECT_EQ(Text(708) + Tip(709) + Tip(750) + Tip(752) + Tip(753),
              "Tonvue MixerOn/OffMaster VolumeMaster TrebleMaster Bass");
}

TEST_F(Window, BarsAndButtonsSetTheDeviceAndFollowIt) {
    Open();
    const DWORD speakers = SpeakerLine(), synth = SourceLine(0, 1);
    const struct {
        int id, shown;
        DWORD line, type;
        int position;
        DWORD value;
    } bars[] = {{825, 45, synth, kVolume, 0, 65535},
                {751, 30, speakers, kVolume, 50, 32767}, // reads back 49
                {752, 75, speakers, kTreble, 100, 0},
                {753, 25, speakers, kBass, 10, 58981}};
    for (const auto& bar : bars) {
        EXPECT_TRUE(BarShows(bar.id, bar.shown)) << bar.id;
        Slide(bar.id, bar.position);
        EXPECT_EQ(Device(bar.line, bar.type), Values(2, bar.value)) << bar.id;
        EXPECT_TRUE(BarShows(bar.id, 100 - bar.position)) << bar.id;
    }
    Device(synth, kVolume, {0, 65535});
    EXPECT_TRUE(BarShows(825, 49));
    Slide(825, 51); // a release where the bar stands
    Slide(825, 700);
    EXPECT_EQ(Device(synth, kVolume), Values({0, 65535})) << "the balance is kept";
    EXPECT_TRUE(TurnsLit(801, true) && TurnsLit(750, true));
    Press(801);
    Press(750);
    EXPECT_EQ(Device(synth, kMute)[0] + Device(speakers, kMute)[0], 2u);
    EXPECT_TRUE(TurnsLit(801, false) && TurnsLit(750, false));
    Device(synth, kMute, {0});
    EXPECT_TRUE(TurnsLit(801, true));
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
    EXPECT_EQ(s_painted, std::set<HWND>{Control(844)});
    reset();
    SendMessageA(window, WM_TIMER, 6969, 0); // nothing has changed
    Sleep(200);
    UnhookWindowsHookEx(hook);
    EXPECT_TRUE(s_painted.empty() && !Fake.writes);
    EXPECT_TRUE(Fake.calls > 24 && Fake.calls <= 24 * 9) << Fake.calls;
}

TEST_F(Window, LivesWithWhatTheDeviceLacksAndWithoutIt) {
    auto& controls = Fake.cards[0].destinations[0].line.controls;
    controls.erase(controls.begin() + 1, controls.begin() + 3); // bass and treble
    Open();
    EXPECT_FALSE(IsWindowEnabled(Control(752)) || IsWindowEnabled(Control(753)));
    Fake.removed = true; // only the timer notices
    EXPECT_TRUE(Until([this] { return Shown(757) && !Shown(800); }) && TurnsLit(750, false));
    Press(750);
    Fake.removed = false;
    StopComponentThread(MixerEngineThread());
    StartComponentThread(MixerEngineThread(), GetModuleHandleA(nullptr), nullptr);
    EXPECT_TRUE(Until([this] { return Shown(800) && !Shown(757); }));
    EXPECT_TRUE(UnregisterMixerWindow(window)) << "it has made itself known to the new engine";
    RegisterMixerWindow(window);
    StopComponentThread(MixerThread());
    EXPECT_FALSE(UnregisterMixerWindow(window)) << "and has said goodbye";
}
