// The mixer window in the real program: its destination survives a restart, and its dialog keeps
// window and engine alive. What its bar does to the sound stands in mixer_test.cpp.
#include "tests/program/harness.h"
#include "tests/support/screen_win.h"

class MixerWindowTest : public ProgramTest {};

static HWND Mixer() {
    return FindComponent("MixerUI");
}

constexpr const char* kDialog = "Configure Mixer Engine";

static bool Says(const char* text) {
    return WaitUntil(
        [=] { return ChildText(Mixer(), 758) == text && IsWindowVisible(Child(Mixer(), 758)); });
}

TEST_F(MixerWindowTest, DestinationRestartDialogAndPower) {
    SwitchOn("MixerEngineOn");
    SwitchOn("MixerUI");
    Start();
    Command(Mixer(), 704);
    ASSERT_TRUE(Says("Telephone Device Controls"));
    EXPECT_EQ(Close(), 0);
    Start();
    ASSERT_TRUE(Says("Telephone Device Controls"));
    for (const bool fromMixer : {true, false}) {
        Command(fromMixer ? Mixer() : FindConsole(), fromMixer ? 754 : kConsoleConfigureMixer);
        const HWND dialog = WaitForDialog(kDialog);
        LRESULT chosen = -1;
        ASSERT_TRUE(dialog && Ask(Child(dialog, 900), LB_GETCURSEL, 0, 0, &chosen));
        EXPECT_EQ(chosen, 0);
        Command(dialog, IDOK);
        EXPECT_TRUE(WaitUntil([=] { return !IsWindow(dialog); }));
        Command(Mixer(), fromMixer ? 705 : 706);
        EXPECT_TRUE(Says(fromMixer ? "Line Device Controls" : "Monitor Device Controls"));
        EXPECT_TRUE(Ask(FindWindowA("MixerHiddenWindowClassName", nullptr), WM_NULL, 0, 0));
    }
    // Switched off from under its dialog, it goes at once; a stuck thread is killed after 2 s.
    const auto gone = [] { return !Mixer() && ReadWindowDword(1, "MixerUI", 9) == 0; };
    Command(Mixer(), 754);
    ASSERT_TRUE(WaitForDialog(kDialog));
    const DWORD start = GetTickCount();
    Command(FindConsole(), kConsoleMixer);
    EXPECT_TRUE(WaitUntil(gone) && !FindWindowA("#32770", kDialog));
    EXPECT_LT(GetTickCount() - start, 1500u);
    Command(FindConsole(), kConsoleMixer);
    ASSERT_TRUE(Says("Monitor Device Controls"));
    Command(Mixer(), 709);
    EXPECT_TRUE(WaitUntil(gone));
}
