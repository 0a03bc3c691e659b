// The mixer window in the real program, over Wine's mixer: it and the console's volume bar follow
// each other, its destination survives a restart, and its dialog keeps the engine alive.
#include "tests/program/harness.h"

#include <cmath>

constexpr const char* kMixer = "MixerUI";
constexpr const char* kEngineClass = "MixerHiddenWindowClassName";
constexpr const char* kDialog = "Configure Mixer Engine";
constexpr int kMasterBar = 751, kConsoleBar = 791;

namespace {
class MixerWindowTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        SwitchOn("MixerEngineOn");
        SwitchOn(kMixer);
        WriteWindowPlacement({20, 20, 500, 160, 0x404040, 1}); // both in sight
        WriteWindowPlacement({20, 300, 700, 200, 0x404040, 4});
    }
    static HWND Mixer() { return FindComponent(kMixer); }
    static bool IsReady() {
        return WaitUntil([] { return IsWindowVisible(Child(Mixer(), 754)); });
    }
    void StartMixer() {
        Start();
        ASSERT_TRUE(IsReady());
    }
    static void Slide(HWND window, int id, int percent) {
        PostMessageA(window, WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, 100 - percent),
                     reinterpret_cast<LPARAM>(Child(window, id)));
    }
    // Where the thumb stands on the screen: its face is blue, its edge 2 pixels.
    static int Shown(HWND window, int id) {
        const RECT bar = PlaceOf(Child(window, id));
        int first = -1, last = -1;
        const HDC screen = GetDC(nullptr);
        for (int y = bar.top; y < bar.bottom; ++y) {
            if (GetPixel(screen, bar.left + 4, y) != 0x800000) continue;
            if (first < 0) first = y;
            last = y;
        }
        ReleaseDC(nullptr, screen);
        const double track = bar.bottom - bar.top - (last - first + 5) - 2;
        return static_cast<int>(std::lround(100 - (first - bar.top - 3) * 100 / track));
    }
    static bool Shows(HWND window, int id, int percent) {
        return WaitUntil([=] { return std::abs(Shown(window, id) - percent) <= 2; });
    }
    static HWND Dialog() { return FindWindowA("#32770", kDialog); }
};
} // namespace

TEST_F(MixerWindowTest, MasterAndConsoleFollowEachOther) {
    StartMixer();
    Slide(Mixer(), kMasterBar, 20);
    EXPECT_TRUE(Shows(FindConsole(), kConsoleBar, 20)) << Shown(FindConsole(), kConsoleBar);
    Slide(FindConsole(), kConsoleBar, 85);
    EXPECT_TRUE(Shows(Mixer(), kMasterBar, 85)) << Shown(Mixer(), kMasterBar);
    Slide(Mixer(), kMasterBar, 0);
    EXPECT_TRUE(Shows(FindConsole(), kConsoleBar, 0));
    // The wheel over the mixer goes to the console, and comes back as a new volume.
    PostMessageA(Child(Mixer(), kMasterBar), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    EXPECT_TRUE(WaitUntil([] { return Shown(Mixer(), kMasterBar) > 0; }));
}

TEST_F(MixerWindowTest, DestinationSurvivesARestartAndPowerEndsTheWindow) {
    StartMixer();
    const auto says = [](const char* text) {
        return WaitUntil([=] { return ChildText(Mixer(), 758) == text; });
    };
    Command(Mixer(), 704);
    EXPECT_TRUE(says("Telephone Device Controls") && IsWindowVisible(Child(Mixer(), 758)));
    EXPECT_EQ(Close(), 0);
    StartMixer();
    EXPECT_TRUE(says("Telephone Device Controls"));
    Command(Mixer(), 709);
    EXPECT_TRUE(WaitUntil([] { return !Mixer() && ReadWindowDword(1, kMixer, 9) == 0; }));
    EXPECT_TRUE(FindWindowA(kEngineClass, nullptr));
}

TEST_F(MixerWindowTest, ConfigurationDialogKeepsTheEngineAlive) {
    StartMixer();
    for (const bool fromMixer : {true, false}) {
        const HWND owner = fromMixer ? Mixer() : FindConsole();
        Command(owner, fromMixer ? 754 : kConsoleConfigureMixer);
        ASSERT_TRUE(WaitUntil([] { return Dialog() && IsWindowVisible(Dialog()); })) << fromMixer;
        const HWND list = FindWindowExA(Dialog(), nullptr, "ListBox", nullptr);
        LRESULT count = 0, chosen = -1;
        EXPECT_TRUE(Ask(list, LB_GETCOUNT, 0, 0, &count) && count >= 1);
        EXPECT_TRUE(Ask(list, LB_GETCURSEL, 0, 0, &chosen) && chosen == 0);
        Command(Dialog(), IDOK);
        EXPECT_TRUE(WaitUntil([=] { return !Dialog() && IsWindowEnabled(owner); }));
        Slide(Mixer(), kMasterBar, fromMixer ? 40 : 60);
        EXPECT_TRUE(Shows(FindConsole(), kConsoleBar, fromMixer ? 40 : 60));
    }
    // Switched off from under its dialog, it goes at once; a stuck thread is killed after 2 s.
    Command(Mixer(), 754);
    ASSERT_TRUE(WaitUntil([] { return Dialog() != nullptr; }));
    const DWORD start = GetTickCount();
    Command(FindConsole(), kConsoleMixer);
    EXPECT_TRUE(WaitUntil([] { return !Mixer() && ReadWindowDword(1, kMixer, 9) == 0; }));
    EXPECT_LT(GetTickCount() - start, 1500u);
    EXPECT_FALSE(Dialog());
    Command(FindConsole(), kConsoleMixer);
    EXPECT_TRUE(IsReady());
    Slide(Mixer(), kMasterBar, 30);
    EXPECT_TRUE(Shows(FindConsole(), kConsoleBar, 30));
}
