// A component that dies takes nothing with it. The faults come from outside, as damage would: a
// window's data pointer or its kept procedure is overwritten, a thread's next instruction is sent
// to nowhere, a thread is killed, a drive stops answering.
#include "tests/program/harness.h"
#include "tests/support/tone_disc.h"

constexpr const char* kPlayer = "CDPlayerUI";
constexpr int kTrackTitle = 702, kPlayTrack2 = 711; // controls of the player

namespace {
class FaultTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        PutImage(MakeToneDisc(kProgramFolder, "fault", {{440, 3000}, {660, 3000}}).cue);
        SwitchOn("CDEngineOn");
        SwitchOn("CDPlayerUI");
    }
    static std::string LastException() {
        char text[64] = "";
        ReadRegString(kUserRoot, kSettingsRoot, "LastException", text, sizeof text);
        return text;
    }
    // Sends the thread of a window to an address where nothing is.
    static bool DerailThread(HWND window) {
        const DWORD id = GetWindowThreadProcessId(window, nullptr);
        HANDLE thread = OpenThread(THREAD_ALL_ACCESS, FALSE, id);
        if (!thread) return false;
        CONTEXT context = {};
        context.ContextFlags = CONTEXT_CONTROL;
        SuspendThread(thread);
        bool good = GetThreadContext(thread, &context) != 0;
#ifdef __i386__
        context.Eip = 16;
#else
        context.Rip = 16;
#endif
        good = good && SetThreadContext(thread, &context) != 0;
        ResumeThread(thread);
        CloseHandle(thread);
        return good;
    }
};
} // namespace

TEST_F(FaultTest, PlayerFaultsInItsProcedureAndEverythingElseGoesOn) {
    Start();
    const HWND engine = FindCdEngine();
    ASSERT_TRUE(engine);
    for (const int slot : {0, GWLP_USERDATA}) {
        SCOPED_TRACE(slot);
        WriteRegString(kUserRoot, kSettingsRoot, "LastException", "");
        const HWND player = FindComponent(kPlayer);
        SetWindowLongPtrA(player, slot, 16);
        PostMessageA(player, WM_LBUTTONDOWN, 0, MAKELPARAM(2, 2));
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(player); }));
        EXPECT_TRUE(WaitUntil([] { return LastException() == kPlayer; })) << LastException();
        EXPECT_TRUE(WaitUntil([] { return ReadWindowDword(1, kPlayer, 9) == 0; }));
        Command(FindConsole(), kConsoleCdPlayer);
        ASSERT_TRUE(WaitUntil([] { return FindComponent(kPlayer) != nullptr; }));
        EXPECT_LT(AnswerTime(FindComponent(kPlayer)), 1000u);
        EXPECT_EQ(FindCdEngine(), engine);
    }
    EXPECT_EQ(Close(), 0);
}

TEST_F(FaultTest, EngineFaultsAndCanBeSwitchedOnAgain) {
    Start();
    ASSERT_TRUE(WaitUntil([] { return FindCdEngine() != nullptr; }));
    ASSERT_TRUE(DerailThread(FindCdEngine()));
    PostMessageA(FindCdEngine(), WM_NULL, 0, 0);
    ASSERT_TRUE(WaitUntil([] { return FindCdEngine() == nullptr; }));
    EXPECT_EQ(LastException(), "CDPlayrWindow");
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    EXPECT_TRUE(WaitUntil([&] { return !(peer.block->RunningFlags & kRunningCd); }));
    Command(FindConsole(), kConsoleCdEngine);
    EXPECT_TRUE(WaitUntil([&] { return FindCdEngine() && peer.block->RunningFlags & kRunningCd; }));
    // The device was closed by the engine that died, or this one could not have opened it. The
    // player has stayed, and the new engine tells it.
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrackCount == 2; }));
    Command(FindComponent(kPlayer), kPlayTrack2, reinterpret_cast<LPARAM>(FindConsole()));
    EXPECT_TRUE(WaitUntil([&] { return peer.block->CdTrack == 2; }));
    EXPECT_TRUE(
        WaitUntil([] { return ChildText(FindComponent(kPlayer), kTrackTitle) == "Track 2"; }));
    EXPECT_EQ(Close(), 0);
}

// The drive takes seconds for every call: windows answer all the same.
TEST_F(FaultTest, SlowDriveFreezesNoWindow) {
    Start();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    ASSERT_TRUE(WaitUntil([&] { return peer.block->CdTrackCount == 2; }));
    SetDrive("StallMs", 15000);
    const HWND player = FindComponent(kPlayer);
    Command(player, 704); // Play
    DWORD worst = 0;
    for (int i = 0; i < 40; ++i) {
        worst = std::max({worst, AnswerTime(player), AnswerTime(FindConsole())});
        Command(player, 730); // Repeat
        Command(player, 735); // next tracks
        Sleep(50);
    }
    // Far below the stall, whatever else the machine does; the benchmark tells the real figure.
    EXPECT_LT(worst, 2000u);
    SetDrive("StallMs", 0);
    program->Kill(); // it would wait for the drive
}

// Another program's WM_CLOSE comes in while the console waits for the component that it starts.
TEST_F(FaultTest, AskedToCloseWhileTheEngineStarts) {
    FreshSettings();
    Start();
    SetDrive("StallMs", 1000);
    Command(FindConsole(), kConsoleCdEngine);
    ASSERT_TRUE(WaitUntil([] { return FindCdEngine() != nullptr; }));
    Ask(FindConsole(), WM_CLOSE, 0, 0);
    Sleep(2500); // longer than a stop would wait for the engine
    SetDrive("StallMs", 0);
    EXPECT_EQ(program->WaitEnd(), 0);
}
