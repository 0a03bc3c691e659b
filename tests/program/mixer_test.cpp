// The volume as it is heard: what bar, wheel and mute do to the sound that the disc drive makes.
#include "tests/program/harness.h"
#include "tests/support/capture_win.h"
#include "tests/support/tone_disc.h"

#include <cmath>

constexpr const char* kMixerWindow = "MixerUI";
constexpr int kConsoleVolume = 791;
constexpr int kMixerMasterButton = 750, kMixerMasterBar = 751;

// Loudness of what is played just now: the median over pieces of 10 ms, which the silence that a
// busy sound server puts in does not move.
static double Loudness() {
    constexpr size_t kPiece = 441 * 2;
    Capture capture;
    const std::vector<int16_t>& sound = capture.Stop();
    std::vector<double> pieces;
    for (size_t at = 0; at + kPiece <= sound.size(); at += kPiece) {
        double sum = 0;
        for (size_t i = 0; i < kPiece; ++i)
            sum += sound[at + i] * sound[at + i];
        pieces.push_back(std::sqrt(sum / kPiece));
    }
    if (pieces.empty()) return -1;
    std::nth_element(pieces.begin(), pieces.begin() + pieces.size() / 2, pieces.end());
    return pieces[pieces.size() / 2];
}

// A server that lags plays the sound of before for a while.
constexpr int kAttempts = 5;

static HWND ConsoleBar() {
    return Child(FindConsole(), kConsoleVolume);
}

static HWND MixerBar() {
    return Child(FindComponent(kMixerWindow), kMixerMasterBar);
}

static void Key(HWND bar, int key, int times = 1) {
    for (int i = 0; i < times; ++i)
        PostMessageA(bar, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
}

static void Wheel(int notches) {
    for (int i = 0; i < std::abs(notches); ++i)
        PostMessageA(FindConsole(), WM_MOUSEWHEEL, MAKEWPARAM(0, notches > 0 ? 120 : -120), 0);
}

static void ChangeVolume(int delta) {
    SharedPeer peer;
    volatile SharedControlBlock* const block = peer.block;
    block->VolumeDelta = delta;
    EXPECT_TRUE(WaitUntil([=] { return block->VolumeDelta == 0; }));
}

// What a bar tells the console; anybody may.
static void Scroll(int position) {
    PostMessageA(FindConsole(), WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, position),
                 reinterpret_cast<LPARAM>(ConsoleBar()));
}

static void ClickBelowThumb(HWND bar) {
    RECT client;
    GetClientRect(bar, &client);
    PostMessageA(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.right / 2, client.bottom - 3));
    PostMessageA(bar, WM_LBUTTONUP, 0, MAKELPARAM(client.right / 2, client.bottom - 3));
}

class VolumeTest : public ProgramTest {};

// Each step goes on from where the one before has left the volume, mostly by another control: so
// each control must have followed the others. A page of a bar is 12 percent.
TEST_F(VolumeTest, EveryControlIsHeardAndFollowsTheOthers) {
    PutImage(MakeToneDisc(kProgramFolder, "mixer", {{500, 75 * 120}}).cue);
    for (const char* value : {"CDEngineOn", "MixerEngineOn", kMixerWindow})
        SwitchOn(value);
    Start();
    ASSERT_TRUE(ConsoleBar() && MixerBar());
    Command(FindCdEngine(), kCdPlay, 1);
    double full = 0;
    ASSERT_TRUE(WaitUntil([&] { return (full = Loudness()) > 5000; })) << "nothing is heard";
    const auto mute = [] { Command(FindComponent(kMixerWindow), kMixerMasterButton); };
    const struct {
        const char* what;
        std::function<void()> act;
        int percent;
    } steps[] = {
        {"wheel down", [] { Wheel(-25); }, 50},
        {"another process", [] { ChangeVolume(-20); }, 30},
        {"and the wheel", [] { Wheel(4); }, 38},
        {"console's bar, a page by mouse", [] { ClickBelowThumb(ConsoleBar()); }, 26},
        {"mixer's bar to the top", [] { Key(MixerBar(), VK_HOME); }, 100},
        {"console's bar, a page down", [] { Key(ConsoleBar(), VK_NEXT); }, 88},
        {"mixer's bar, a page down", [] { Key(MixerBar(), VK_NEXT); }, 75}, // 88 reads as 87
        {"and to the top", [] { Key(MixerBar(), VK_HOME); }, 100},
        {"mute", mute, 0},
        {"wheel down while muted", [] { Wheel(-4); }, 0},
        {"mute again", mute, 92},
        {"console's bar to its end", [] { Key(ConsoleBar(), VK_END); }, 0},
        {"and to the top", [] { Key(ConsoleBar(), VK_HOME); }, 100},
        {"no position of the bar", [] { Scroll(700), ChangeVolume(-10); }, 90},
        {"beyond what other processes may", [] { ChangeVolume(INT32_MIN); }, 1},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.what);
        step.act();
        double heard = -1;
        for (int i = 0; i < kAttempts && std::abs(heard - step.percent) > 1.2; ++i)
            heard = Loudness() * 100 / full;
        EXPECT_NEAR(heard, step.percent, 1.2);
    }
}

// Without its engine the bar stands there dead, and nothing moves it.
TEST_F(VolumeTest, BarLivesWithTheEngine) {
    Start();
    SharedPeer peer;
    for (const bool on : {true, false}) {
        EXPECT_EQ(IsWindowEnabled(ConsoleBar()) != 0, !on);
        Command(FindConsole(), kConsoleMixerEngine);
        EXPECT_TRUE(
            WaitUntil([&] { return ReadWindowDword(1, "MixerEngineOn", 9) == uint32_t{on}; }));
        EXPECT_EQ(peer.block->RunningFlags & kRunningMixer, on ? kRunningMixer : 0u);
    }
    EXPECT_FALSE(IsWindowEnabled(ConsoleBar()));
}
