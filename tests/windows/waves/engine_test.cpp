// The engine over a wave input of the test's making: refusing, silent, gone, stuck; and its dialog.
#include "core/commands.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "fake_input.h"
#include "fake_sound.h"
#include "resources/ids.h"
#include "tests/support/driver_win.h"
#include "waves/engine_win.h"
#include "waves/loopback_win.h"

#include <gtest/gtest.h>

constexpr const char* kWavesKey = "Software\\Tonvista\\Waves";

// Device and format that are stored.
static uint32_t Stored() {
    return ReadRegDword(kUserRoot, kWavesKey, "InDevice") * 10000 +
           ReadRegDword(kUserRoot, kWavesKey, "InFormat");
}

namespace {
class WavesEngine : public testing::Test {
protected:
    void SetUp() override {
        DeleteRegTree(kUserRoot, kWavesKey);
        SharedBlock = OpenSharedBlock();
        TheInput = FakeInput();
        s_sound = {.missing = 1};
        TheLoopbackSource.MakeEnumerator = MakeFakeEnumerator;
        ForgetLoopbackVerdict();
    }
    void TearDown() override {
        EXPECT_EQ(TheInput.wrong, 0) << "a driver would not like that";
        StopComponentThread(WavesEngineThread());
        EXPECT_EQ(TheInput.open, 0);
        CloseSharedBlock(SharedBlock);
        SharedBlock = nullptr;
        TheLoopbackSource = kept;
    }
    static bool Start() {
        return StartComponentThread(WavesEngineThread(), GetModuleHandleA(nullptr), nullptr);
    }
    static LRESULT Do(UINT command, WORD device = 0, WORD format = 0) {
        return SendMessageA(Window(), WM_COMMAND, command, MAKELPARAM(device, format));
    }
    // Seconds without sound go by.
    static void Watch(int seconds = 1) {
        for (int i = 0; i < seconds; ++i) {
            TheClockAhead += 1001;
            SendMessageA(Window(), WM_TIMER, 600, 0);
        }
    }
    static bool Sounds(int level) {
        DeliverBuffer(level);
        return WaitUntil([=] { return SharedBlock->SoundBuffer[4095] == level; }, 1000);
    }
    static HWND Window() { return WavesEngineThread()->Window; }
    const LoopbackSource kept = TheLoopbackSource;
};
} // namespace

TEST_F(WavesEngine, BuffersThatCantBeQueuedOrComeBackEmptyAreLeftToTheWatchdog) {
    ASSERT_TRUE(Start());
    TheInput.refuseQueueing = 31;
    EXPECT_TRUE(Sounds(1));
    EXPECT_TRUE(WaitUntil([] { return TheInput.queue.size() == 3; }));
    TheInput.refuseQueueing = 3 * 32;
    for (int level = 2; level < 5; ++level)
        EXPECT_TRUE(Sounds(level));
    EXPECT_TRUE(WaitUntil([] { return !TheInput.refuseQueueing; }));
    Watch();
    EXPECT_TRUE(Sounds(5));
    EXPECT_EQ(TheInput.opens, 1) << "restarted";
    // As a device does that is being taken away: all of them, at once, however often.
    EXPECT_TRUE(WaitUntil([] { return TheInput.queue.size() == 3; }));
    while (!TheInput.queue.empty())
        DeliverBuffer(6, 0);
    EXPECT_FALSE(WaitUntil([] { return !TheInput.queue.empty(); }, 200));
    EXPECT_EQ(SharedBlock->SoundBuffer[0], 5);
    Watch();
    EXPECT_TRUE(Sounds(7));
}

TEST_F(WavesEngine, BuffersOfAnEarlierOpenDoNotCount) {
    ASSERT_TRUE(Start());
    EXPECT_TRUE(Sounds(9));
    WAVEHDR* old = TheInput.queue[0];
    EXPECT_EQ(Do(kWavesReconfigure, 0, 1), 1); // the reset gives three back, unheard so far
    SendMessageA(Window(), MM_WIM_DATA, 77, 1234);
    SendMessageA(Window(), MM_WIM_DATA, 77, reinterpret_cast<LPARAM>(old));
    EXPECT_EQ(SharedBlock->SoundBuffer[0], 128) << "silence, until something new comes";
    EXPECT_TRUE(Sounds(7));
    EXPECT_TRUE(WaitUntil([] { return TheInput.queue.size() == 3; }));
}

TEST_F(WavesEngine, SilentForHoursOrGoneItComesBackAndTakesNoMemory) {
    ASSERT_TRUE(Start());
    Watch();
    EXPECT_EQ(TheInput.opens, 1) << "restarted, not opened";
    Watch(2 * 3600);
    EXPECT_TRUE(Sounds(3));
    TheInput.gone = 1;
    Watch(10);
    TheInput.gone = 0;
    Watch();
    EXPECT_TRUE(Sounds(4));
    EXPECT_EQ(TheInput.everSeen.size(), 3u) << "the same buffers all the time";
}

TEST_F(WavesEngine, WhatIsWantedAndWhatIsOpen) {
    TheInput.gone = 1;
    EXPECT_FALSE(Start());
    TheInput.gone = 0;
    ASSERT_TRUE(Start());
    EXPECT_EQ(Do(kWavesReconfigure, 0, 512), 1);
    TheInput.refusedRate = 11025;
    EXPECT_EQ(Do(kWavesReconfigure, 0, 1), 0);
    EXPECT_EQ(TheInput.open, 1) << "the one before goes on";
    EXPECT_EQ(TheInput.format.nAvgBytesPerSec, 88200u);
    EXPECT_EQ(Stored(), 512u);

    // Another publishes: nothing is captured, whatever time goes by.
    EXPECT_EQ(Do(kWavesClose), 1);
    SharedBlock->SoundFormat[2] = 99;
    Watch(5);
    EXPECT_EQ(TheInput.open, 0);
    TheInput.devices = 2;
    EXPECT_EQ(Do(kWavesReconfigure, 1, 1024), 1);
    EXPECT_TRUE(TheInput.device == 1 && !TheInput.open) << "tried and closed";
    EXPECT_EQ(Stored(), 11024u) << "and stored";
    EXPECT_EQ(SharedBlock->SoundFormat[2], 99) << "the other's format stands";
    EXPECT_EQ(Do(kWavesOpen), 1);
    EXPECT_EQ(SharedBlock->SoundFormat[2], 1) << "known before the first buffer: mono";
}

TEST_F(WavesEngine, StuckDriverIsLeftAloneWithItsBuffers) {
    ASSERT_TRUE(Start());
    TheInput.stuckMs = INFINITE;
    const DWORD start = GetTickCount();
    StopComponentThread(WavesEngineThread());
    EXPECT_LT(GetTickCount() - start, 8000u);
    TheInput.stuckMs = 0;
    TheInput.open = 0; // for the fake's accounts only
    ASSERT_TRUE(Start());
    EXPECT_EQ(TheInput.everSeen.size(), 6u) << "the old ones may be written to at any time";
    TheInput.queue.erase(TheInput.queue.begin(), TheInput.queue.begin() + 3);
    EXPECT_TRUE(Sounds(6));
}

TEST_F(WavesEngine, WhatYouHearIsSeededWhereThereIsNoInputAndPublishedInItsTime) {
    s_sound.missing = 0;
    SeedWavesDefaults();
    EXPECT_FALSE(RegValueExists(kUserRoot, kWavesKey, "InDevice"));
    TheInput.devices = 0;
    SeedWavesDefaults();
    ASSERT_TRUE(Start());
    EXPECT_EQ(s_sound.from, 0);
    SharedBlock->SoundBuffer[0] = 1;
    EXPECT_TRUE(WaitUntil([] { return !SharedBlock->SoundBuffer[0]; })) << "silence comes, too";
    TheInput.devices = 1;
    EXPECT_EQ(Do(kWavesReconfigure, 32780, 1), 0) << "there is no such output";
    EXPECT_EQ(s_sound.from, 0) << "the one before goes on";
    EXPECT_EQ(Do(kWavesReconfigure, 0, 1), 1);
    EXPECT_TRUE(Sounds(77));
}

// ---- the dialog

namespace {
// Opens it on a thread of its own and closes it, by a button.
struct Dialog {
    Dialog() {
        thread = CreateThread(nullptr, 0, Show, nullptr, 0, nullptr);
        WaitUntil([&] { return (window = FindWindowA("#32770", "Waves Engine Configuration")); });
        Ask(window, WM_NULL, 0, 0);
    }
    ~Dialog() {
        Command(window, button);
        EXPECT_EQ(WaitForSingleObject(thread, kPatienceMs), WAIT_OBJECT_0);
        CloseHandle(thread);
    }
    // The chosen text, and how many there are.
    std::string List(int id) const {
        const LRESULT count = SendDlgItemMessageA(window, id, CB_GETCOUNT, 0, 0);
        return ChildText(window, id) + ", " + std::to_string(count);
    }
    void Choose(int id, int index) const {
        SendDlgItemMessageA(window, id, CB_SETCURSEL, index, 0);
        SendMessageA(window, WM_COMMAND, MAKEWPARAM(id, CBN_SELENDOK), 0);
    }
    static DWORD WINAPI Show(void*) {
        ConfigureWaves(nullptr);
        return 0;
    }
    UINT button = IDCANCEL;
    HWND window = nullptr;
    HANDLE thread;
};
} // namespace

TEST_F(WavesEngine, DialogListsWhatThereIsAndStoresWithTheEngineOnAndOff) {
    TheInput.devices = 2;
    TheInput.formats = 1 | 64 | 2048;
    {
        const Dialog dialog;
        EXPECT_EQ(dialog.List(IDC_WAVES_DEVICE), "Input A, 2");
        EXPECT_EQ(dialog.List(IDC_WAVES_FORMAT), "44Khz Stereo 16bit, 3");
        dialog.Choose(IDC_WAVES_DEVICE, 1);
        EXPECT_EQ(dialog.List(IDC_WAVES_FORMAT), "44Khz Mono 16bit, 1");
    } // and is cancelled
    EXPECT_FALSE(RegKeyExists(kUserRoot, kWavesKey));
    for (const int on : {0, 1}) {
        ASSERT_TRUE(!on || Start());
        Dialog dialog;
        dialog.Choose(IDC_WAVES_DEVICE, !on);
        Command(dialog.window, dialog.button = IDOK);
        // With the first format, where the stored one is not.
        EXPECT_TRUE(WaitUntil([&] { return Stored() == (on ? 1u : 11024u); }));
    }
    TheInput.devices = 0; // taken away while the engine runs: only the last list counts
    {
        Dialog dialog;
        EXPECT_EQ(dialog.List(IDC_WAVES_DEVICE), "No WaveIn Device Found, 1");
        EXPECT_EQ(dialog.List(IDC_WAVES_FORMAT), "No Formats Available, 1");
        dialog.Choose(IDC_WAVES_FFT, 5);
        dialog.button = IDOK;
    }
    SharedBlock->BandsLeft[0] = 5;
    EXPECT_TRUE(Sounds(200));
    EXPECT_TRUE(WaitUntil([] { return !SharedBlock->BandsLeft[0] && SharedBlock->PowerLeft; }))
        << "no bands, but power";
    s_sound.missing = 0;
    ForgetLoopbackVerdict();
    const Dialog dialog;
    EXPECT_EQ(dialog.List(IDC_WAVES_DEVICE), "What you hear: default output, 3");
    EXPECT_NE(dialog.List(IDC_WAVES_FORMAT).find(", 12"), std::string::npos);
}
