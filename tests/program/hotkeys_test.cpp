// Hotkeys from the keyboard of a user who works in another program: what they do, what the dialog
// shows of them, and what it leaves behind.
#include "resources/ids.h"
#include "tests/program/harness.h"
#include "tests/support/screen_win.h"
#include "tests/support/tone_disc.h"
#include "tests/support/wave_file.h"
#include "ui/hotkey_field_win.h"
#include "ui/hotkeys.h"

#include <cstring>
#include <memory>
#include <vector>

constexpr uint32_t kStopped = 525, kPlaying = 526, kPaused = 529, kOpen = 530;
constexpr uint32_t kMediaPlaying = 529, kMediaPaused = 526;
constexpr int kMixerMasterButton = 750;
constexpr const char* kSection = "Software\\Tonvista\\UIWindow1";

static void Store(int place, uint32_t key) {
    const HotkeyRecord record = {1, 1, 1, 0, key, 0, 0, 0, 0};
    WriteWindowSetting(1, kHotkeyKinds[place].valueName, kRegBinary, sizeof record, &record);
}

// The keys go down in their order and up again, as one burst.
static void Press(const std::vector<WORD>& keys) {
    std::vector<INPUT> burst(2 * keys.size());
    for (size_t i = 0; i < burst.size(); ++i) {
        burst[i].type = INPUT_KEYBOARD;
        burst[i].ki.wVk = i < keys.size() ? keys[i] : keys[burst.size() - 1 - i];
        burst[i].ki.dwFlags = i < keys.size() ? 0 : KEYEVENTF_KEYUP;
    }
    SendInput(static_cast<UINT>(burst.size()), burst.data(), sizeof burst[0]);
}

static void PressHotkey(WORD key) {
    Press({VK_CONTROL, VK_MENU, key});
}

namespace {
class HotkeysTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        for (const HotkeyKind& kind : kHotkeyKinds)
            DeleteRegValue(kUserRoot, kSection, kind.valueName);
        static const std::string s_disc =
            MakeToneDisc(kProgramFolder, "hotkeys", {{440, 4500}, {550, 4500}, {660, 4500}}).cue;
        PutImage(s_disc);
        SwitchOn("CDEngineOn");
    }
    void TearDown() override {
        ProgramTest::TearDown();
        if (other) DestroyWindow(other);
    }
    // The other program: this one.
    void WorkElsewhere() {
        if (!other)
            other = CreateWindowExA(0, "EDIT", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 700, 20, 300,
                                    100, nullptr, nullptr, nullptr, nullptr);
        ASSERT_TRUE(WaitUntil([=, this] { // windows that come up take it, too
            MSG message;
            SetForegroundWindow(other);
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
            return GetForegroundWindow() == other;
        }));
    }
    void StartElsewhere() {
        Start();
        peer = std::make_unique<SharedPeer>();
        WorkElsewhere();
    }
    bool CdComes(uint32_t mode, int track, DWORD waitMs = kPatienceMs) const {
        const auto come = [=, this] {
            return peer->block->CdMode == mode && (track < 0 || peer->block->CdTrack == track);
        };
        return WaitUntil(come, waitMs);
    }
    void OpenDialog() {
        Command(FindConsole(), kConsoleHotkeys);
        ASSERT_TRUE(dialog = WaitForDialog("Set Hotkeys"));
        SetForegroundWindow(dialog);
    }
    void Cancel() {
        Command(dialog, IDCANCEL);
        ASSERT_TRUE(WaitUntil([this] { return !IsWindow(dialog); }));
    }
    void Click(int id) const { PostMessageA(Child(dialog, id), BM_CLICK, 0, 0); }
    bool Shows(int id, const char* text) const {
        return WaitUntil([=, this] { return ChildText(dialog, id) == text; });
    }
    // Presses a "set" button, then the keys.
    void Capture(int setId, const std::vector<WORD>& keys) const {
        const auto field = [this] {
            return FindWindowExA(dialog, nullptr, kHotkeyFieldClass, nullptr);
        };
        Click(setId);
        ASSERT_TRUE(WaitUntil([=] { return IsWindowVisible(field()) != 0; }));
        Press(keys);
        ASSERT_TRUE(WaitUntil([=, this] { return !field() && IsWindowEnabled(dialog); }));
    }
    std::unique_ptr<SharedPeer> peer;
    HWND other = nullptr, dialog = nullptr;
};
} // namespace

TEST_F(HotkeysTest, EachOfTheTenWorksFromAnotherProgram) {
    for (int i = 0; i < kHotkeys; ++i)
        Store(i, static_cast<uint32_t>('A' + i));
    for (const char* on : {"MixerEngineOn", "MixerUI", "WaveInEngineOn"})
        SwitchOn(on);
    StartElsewhere();
    const struct {
        WORD key;
        uint32_t mode;
        int track;
    } steps[] = {{'A', kPlaying, 1}, {'B', kPlaying, 2}, {'C', kPlaying, 1}, {'E', kPaused, 1},
                 {'A', kPlaying, 1}, {'D', kStopped, 0}, {'F', kOpen, -1}};
    for (const auto& step : steps) {
        PressHotkey(step.key);
        EXPECT_TRUE(CdComes(step.mode, step.track)) << static_cast<char>(step.key);
    }
    const auto lit = [] { return IsLit(Child(FindComponent("MixerUI"), kMixerMasterButton)); };
    const bool before = lit();
    for (const bool same : {false, true}) {
        PressHotkey('G');
        EXPECT_TRUE(WaitUntil([=] { return (lit() == before) == same; }));
    }
    PressHotkey('H'); // nothing comes of it while the media player is off
    EXPECT_LT(AnswerTime(FindConsole()), kPatienceMs);
    EXPECT_FALSE(FindComponent("MediaUI"));
    const std::string song = std::string(kProgramFolder) + "\\hotkey.wav";
    const SoundFormatRecord format = FormatOfCode(kDefaultFormatCode);
    WriteWaveFile(song, format, std::vector<uint8_t>(20 * format.bytesPerSecond));
    EXPECT_EQ(Process(song).WaitEnd(), 1) << "handed over";
    const auto mediaIs = [this](uint32_t state) {
        return WaitUntil([=, this] { return peer->block->MediaState == state; });
    };
    ASSERT_TRUE(mediaIs(kMediaPlaying)) << peer->block->MediaState;
    WorkElsewhere();
    PressHotkey('J');
    EXPECT_TRUE(mediaIs(kMediaPaused)) << peer->block->MediaState;
    PressHotkey('H');
    EXPECT_TRUE(mediaIs(kMediaPlaying)) << peer->block->MediaState;
    PressHotkey('I');
    EXPECT_TRUE(mediaIs(kStopped)) << peer->block->MediaState;
}

TEST_F(HotkeysTest, ATakenOneIsMarkedAndKeptAndBrokenRecordsAreOff) {
    ASSERT_TRUE(RegisterHotKey(nullptr, 1, MOD_ALT | MOD_CONTROL, 'K'));
    for (const int place : {0, 1, 8})
        Store(place, place ? 'L' : 'K');
    const std::vector<uint8_t> bytes(4001, 0xFF);
    const uint32_t sizes[] = {0, 4, 27, 29, 4001};
    for (int i = 0; i < 5; ++i)
        WriteWindowSetting(1, kHotkeyKinds[2 + i].valueName, kRegBinary, sizes[i], bytes.data());
    WriteWindowSetting(1, kHotkeyKinds[9].valueName, kRegBinary, 28, bytes.data());
    StartElsewhere();
    EXPECT_FALSE(FindWindowA("#32770", nullptr)) << "nothing pops up";
    OpenDialog();
    EXPECT_EQ(ChildText(dialog, 813), "<alt><ctrl>K   ");
    EXPECT_EQ(ChildText(dialog, IDC_HOTKEY_REFUSED), "taken");
    EXPECT_EQ(ChildText(dialog, IDC_HOTKEY_REFUSED + 1), "");
    EXPECT_EQ(ChildText(dialog, IDC_HOTKEY_REFUSED + 8), "taken") << "by another of ours";
    for (int i = 2; i < 8; ++i)
        EXPECT_FALSE(IsDlgButtonChecked(dialog, kHotkeyKinds[i].checkId)) << i;
    EXPECT_EQ(ChildText(dialog, 836), "<alt><shift><ctrl>    ");
    Click(809);
    EXPECT_TRUE(Shows(IDC_HOTKEY_REFUSED + 8, "")) << "let go of";
    Cancel();
    OpenDialog();
    EXPECT_TRUE(Shows(813, "<alt><ctrl>K   ") && IsDlgButtonChecked(dialog, 808)) << "kept";
    UnregisterHotKey(nullptr, 1);
}

TEST_F(HotkeysTest, ChangesCountAtOnceAndStayAfterCancel) {
    Store(3, 'S');
    StartElsewhere();
    OpenDialog();
    Capture(818, {VK_CONTROL, VK_MENU, 'P'});
    EXPECT_TRUE(Shows(813, "<alt><ctrl>P   "));
    Capture(818, {VK_SHIFT, VK_ESCAPE});
    EXPECT_EQ(ChildText(dialog, 813), "<alt><ctrl>P   ") << "as before";
    PressHotkey('P');
    EXPECT_FALSE(CdComes(kPlaying, 1, 500)) << "still off";
    Click(808);
    ASSERT_TRUE(WaitUntil([this] { return IsDlgButtonChecked(dialog, 808) != 0; }));
    PressHotkey('P');
    EXPECT_TRUE(CdComes(kPlaying, 1)) << "from the open dialog";
    // An enabled one is registered anew; its own combination reaches the field, too.
    Capture(821, {VK_CONTROL, VK_MENU, 'S'});
    Capture(821, {VK_RETURN, VK_RETURN}); // held: it presses none of the buttons
    EXPECT_TRUE(Shows(816, "retn"));
    EXPECT_FALSE(WaitUntil([this] { return !IsWindow(dialog); }, 300));
    Cancel();
    WorkElsewhere();
    PressHotkey('S');
    EXPECT_FALSE(CdComes(kStopped, 0, 500)) << "neither in the field nor now";
    Press({VK_RETURN});
    EXPECT_TRUE(CdComes(kStopped, 0));
    HotkeyRecord play = {};
    const HotkeyRecord expected = {1, 1, 1, 0, 'P', 813, 808, 780, 0};
    ReadRegValue(kUserRoot, kSection, "HKPlay", kRegBinary, &play, sizeof play);
    EXPECT_EQ(memcmp(&play, &expected, sizeof play), 0);
}
