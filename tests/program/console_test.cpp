// The console: switching components, options that last, its icon, and the
// shared block as another program drives it.
#include "tests/program/harness.h"
#include "tests/support/tone_disc.h"

constexpr const char* kPlayer = "CDPlayerUI";
constexpr int kPlayerPower = 739;

static bool IsTopmost(HWND window) {
    return GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOPMOST;
}

// As another process does it: the console and the engine clear bits meanwhile.
static void SetFlags(const SharedPeer& peer, uint32_t bits) {
    char* const at = reinterpret_cast<char*>(peer.block) + SHARED_FIELD(CommandFlags);
    InterlockedOr(reinterpret_cast<volatile LONG*>(at), static_cast<LONG>(bits));
}

// Icons in the notification area (Wine's own tray window).
static int CountTrayIcons(HWND* last = nullptr) {
    HWND tray = FindWindowA("__winex11_standalone_tray", nullptr), icon = nullptr;
    int count = 0;
    while (tray && (icon = FindWindowExA(tray, icon, "__winex11_tray_icon", nullptr))) {
        ++count;
        if (last) *last = icon;
    }
    return count;
}

namespace {
class ConsoleTest : public ProgramTest {
protected:
    void StartWithPlayer() {
        SwitchOn("CDEngineOn");
        SwitchOn("CDPlayerUI");
        Start();
        ASSERT_TRUE(WaitUntil([] { return FindComponent(kPlayer) != nullptr; }));
    }
    static void Toggle(UINT command) { Command(FindConsole(), command); }
    static bool WaitPlayer(bool there) {
        return WaitUntil([=] { return (FindComponent(kPlayer) != nullptr) == there; });
    }
    static bool WaitValue(const char* name, uint32_t value) {
        return WaitUntil([=] { return ReadWindowDword(1, name, 9) == value; });
    }
    // A command with its answer, as windows of the group send it.
    static LRESULT Send(UINT command, int sender, LPARAM lParam) {
        LRESULT answer = -1;
        EXPECT_TRUE(Ask(FindConsole(), WM_COMMAND, MAKEWPARAM(command, sender), lParam, &answer));
        return answer;
    }
};
} // namespace

TEST_F(ConsoleTest, PlayerAndEngineComeGoAndComeBackTogether) {
    SwitchOn(kPlayer); // restored without its engine, which it then brings
    Start();
    ASSERT_TRUE(WaitPlayer(true));
    EXPECT_TRUE(FindCdEngine());
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    EXPECT_EQ(peer.block->RunningFlags, kRunningInstance | kRunningCd);
    Toggle(kConsoleCdEngine);
    EXPECT_TRUE(WaitPlayer(false) && WaitValue(kPlayer, 0) && WaitValue("CDEngineOn", 0));
    EXPECT_FALSE(FindCdEngine());
    EXPECT_EQ(peer.block->RunningFlags, kRunningInstance);
    Toggle(kConsoleCdPlayer);
    ASSERT_TRUE(WaitPlayer(true) && WaitValue(kPlayer, 1) && WaitValue("CDEngineOn", 1));
    EXPECT_TRUE(FindCdEngine());
    EXPECT_TRUE(WaitUntil([] { return GetForegroundWindow() == FindComponent(kPlayer); }));
    // A late notice of an instance that is gone must not switch its successor off.
    const HWND player = FindComponent(kPlayer);
    for (const int id : {2, 3, 0, 13, -1})
        Send(kComponentClosed, 0, id);
    Ask(FindConsole(), WM_TIMER, 799, 0); // the timer may have its say too
    EXPECT_TRUE(FindComponent(kPlayer) == player && ReadWindowDword(1, kPlayer, 9) == 1);
    Command(player, kPlayerPower);
    EXPECT_TRUE(WaitPlayer(false) && WaitValue(kPlayer, 0) && FindCdEngine());
}

TEST_F(ConsoleTest, OptionsAreWrittenAtOnceAndLast) {
    const char* const section = "Software\\Tonvista\\UIWindow1";
    const struct {
        UINT command;
        const char *key, *name;
        uint32_t before;
    } cases[] = {
        {kConsoleAlwaysOnTop, section, "AlwaysOnTop", 0},
        {kConsole3dLook, section, "Use3dLook", 1},
        {kConsolePreventSaver, section, "PreventSS", 0},
        {kConsoleLargeFont, section, "DoubleFontSize", 0},
        {kConsoleLockMovement, kSettingsRoot, "LockMovement", 0},
        {kConsoleLockWindows, kSettingsRoot, "LockWindows", 0},
    };
    for (const uint32_t change : {1u, 0u}) { // the second start reads what the first one wrote
        // With the player: Wine takes a lone window that owns tooltips for topmost only at times.
        StartWithPlayer();
        EXPECT_TRUE(WaitUntil([&] { return IsTopmost(FindConsole()) == !change; }));
        for (const auto& c : cases) {
            SCOPED_TRACE(c.name);
            Toggle(c.command);
            EXPECT_TRUE(WaitUntil(
                [&] { return ReadRegDword(kUserRoot, c.key, c.name) == (c.before ^ change); }));
        }
        EXPECT_EQ(Send(kAskMovementLocked, 2, 0), static_cast<LRESULT>(change));
        EXPECT_TRUE(WaitUntil([&] {
            return IsTopmost(FindConsole()) == IsTopmost(FindComponent(kPlayer)) &&
                   IsTopmost(FindConsole()) == (change != 0);
        }));
        EXPECT_EQ(Close(), 0);
    }
}

TEST_F(ConsoleTest, GroupComesForwardTogether) {
    StartWithPlayer();
    const HWND console = FindConsole(), player = FindComponent(kPlayer);
    // A window of somebody else between the two.
    HWND other = CreateWindowExA(WS_EX_TOOLWINDOW, "STATIC", "other", WS_POPUP | WS_VISIBLE, 0, 0,
                                 300, 300, nullptr, nullptr, nullptr, nullptr);
    const auto place = [&](HWND window) { // 0 is the topmost of the three
        int index = 0;
        for (HWND w = GetTopWindow(nullptr); w; w = GetWindow(w, GW_HWNDNEXT)) {
            if (w == window) return index;
            index += w == console || w == player || w == other;
        }
        return -1;
    };
    for (const HWND window : {console, other, player}) // the player comes to lie on top
        SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    Send(kGroupRaise, 0, reinterpret_cast<LPARAM>(other)); // not of the group: no effect
    ASSERT_EQ(place(console), 2);
    Send(kGroupRaise, 0, reinterpret_cast<LPARAM>(player));
    EXPECT_TRUE(place(player) == 0 && place(console) == 1);
    DestroyWindow(other);
}

TEST_F(ConsoleTest, MinimizeAllAndTheIcon) {
    WriteWindowDword(1, "TaskBarIcon", 1);
    StartWithPlayer();
    HWND icon = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return CountTrayIcons(&icon) == 1; }));
    // The shell has lost its icons and says that it is back.
    NOTIFYICONDATAA lost = {};
    lost.cbSize = sizeof lost;
    lost.hWnd = FindConsole();
    lost.uID = kConsoleIconCallback;
    Shell_NotifyIconA(NIM_DELETE, &lost);
    ASSERT_TRUE(WaitUntil([] { return CountTrayIcons() == 0; }));
    PostMessageA(FindConsole(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    ASSERT_TRUE(WaitUntil([&] { return CountTrayIcons(&icon) == 1; }));
    Toggle(kConsoleMinimizeAll);
    EXPECT_TRUE(WaitUntil(
        [] { return IsIconic(FindConsole()) && !IsWindowVisible(FindComponent(kPlayer)); }));
    Toggle(kConsoleTaskbarOnly); // minimized, but shown: hides it
    EXPECT_TRUE(WaitValue("TaskBarOnly", 1));
    EXPECT_FALSE(IsWindowVisible(FindConsole()));
    PostMessageA(icon, WM_LBUTTONDBLCLK, 0, 0);
    EXPECT_TRUE(WaitUntil([] {
        return IsWindowVisible(FindConsole()) && !IsIconic(FindConsole()) &&
               IsWindowVisible(FindComponent(kPlayer));
    })) << "all that was put away is back";
    EXPECT_EQ(Close(), 0);
    EXPECT_TRUE(WaitUntil([] { return CountTrayIcons() == 0; }));
    Start(); // with the icon only
    EXPECT_TRUE(WaitUntil([] { return !IsWindowVisible(FindConsole()) && CountTrayIcons() == 1; }));
}

// The lamp is a disabled window: the console gets its clicks.
TEST_F(ConsoleTest, LampSwitchesItsEngine) {
    StartWithPlayer();
    const HWND console = FindConsole(), lamp = Child(console, kConsoleCdEngine);
    ASSERT_TRUE(lamp);
    const RECT r = PlaceOf(lamp);
    POINT at = {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    ScreenToClient(console, &at);
    for (const bool on : {false, true}) {
        PostMessageA(console, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(at.x, at.y));
        EXPECT_TRUE(WaitUntil([=] { return (FindCdEngine() != nullptr) == on; }));
    }
}

TEST_F(ConsoleTest, APeerDrivesTheDiscThroughTheSharedBlock) {
    PutImage(MakeToneDisc(kProgramFolder, "console", {{440, 3000}, {660, 3000}, {550, 3000}}).cue);
    StartWithPlayer();
    SharedPeer peer;
    ASSERT_TRUE(peer.block);
    volatile SharedControlBlock* const block = peer.block;
    ASSERT_TRUE(WaitUntil([&] { return block->CdTrackCount == 3; }));
    EXPECT_STREQ(peer.block->CdTitle, "Unknown CD Title");
    block->CommandDrive = static_cast<uint16_t>('-');
    SetFlags(peer, kCommandPlayCd);
    EXPECT_TRUE(WaitUntil([&] { return block->CdTrack == 1; }));
    EXPECT_FALSE(block->CommandFlags & kCommandPlayCd);
    EXPECT_STREQ(peer.block->CdTrackTitle, "Track 1");
    block->RequestedTrack = 3;
    EXPECT_TRUE(WaitUntil([&] { return block->CdTrack == 3 && !block->RequestedTrack; }));
    block->SkipCount = -2;
    EXPECT_TRUE(WaitUntil([&] { return block->CdTrack == 1 && !block->SkipCount; }));
    SetFlags(peer, kCommandRefresh);
    EXPECT_TRUE(WaitUntil([&] { return !(block->CommandFlags & kCommandRefresh); }));
    // The wheel with the middle button, and a key that another window forwards.
    const uint32_t mode = block->CdMode;
    PostMessageA(FindConsole(), WM_MOUSEWHEEL, MAKEWPARAM(MK_MBUTTON, 120), 0);
    EXPECT_TRUE(WaitUntil([&] { return block->CdTrack == 2; }));
    Send(kForwardKey, 1, VK_PAUSE);
    EXPECT_TRUE(WaitUntil([&] { return block->CdMode != mode; }));
    block->VolumeDelta = 5;
    EXPECT_TRUE(WaitUntil([&] { return block->VolumeDelta == 0; }));
    block->CloseRequest = 1;
    EXPECT_EQ(program->WaitEnd(), 0);
    EXPECT_EQ(block->CloseRequest, 0u) << "or the next start would end at once";
}
