// The framework's windows as a user and their owner see them: place, drag, keys, group commands,
// tooltips, colours; and a whole component window on its thread.
#include "core/commands.h"
#include "core/settings.h"
#include "core/text.h"
#include "kit.h"
#include "ui/button_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/tooltips_win.h"
#include "ui/window_thread_win.h"

#include <gtest/gtest.h>

constexpr uint32_t kId = 77;

static int32_t Saved(const char* name) {
    int32_t value = INT32_MIN;
    ReadWindowSetting(kId, name, kRegBinary, 4, &value);
    return value;
}

static void Forget() {
    DeleteRegTree(kUserRoot, "Software\\Tonvista\\UIWindow77");
}

namespace {
// A framework window owned by the recorder, at 100,120, 300 by 200.
struct Framework : testing::Test {
    void SetUp() override {
        Forget();
        UIOptions = {};
        SetSavedPlacement(kId, 100, 120, 300, 200);
        window = CreateUIWindow(GetModuleHandleA(nullptr), kId, "TrialUI", 0, owner.window);
        Pump();
        owner.notes.clear();
    }
    void TearDown() override {
        DestroyWindow(window);
        Pump();
        UIOptions = {};
        Forget();
    }
    void Drag(int fromX, int fromY, int toX, int toY, WPARAM keys = 0) {
        SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, At(fromX, fromY));
        SendMessageA(window, WM_MOUSEMOVE, MK_LBUTTON | keys, At(toX, toY));
        SendMessageA(window, WM_LBUTTONUP, keys, At(fromX, fromY));
    }
    // left, top, width, height
    std::string Place() const {
        RECT rect;
        GetWindowRect(window, &rect);
        char text[64];
        FormatText(text, sizeof text, "%ld %ld %ld %ld", rect.left, rect.top,
                   rect.right - rect.left, rect.bottom - rect.top);
        return text;
    }
    Recorder owner;
    HWND window = nullptr;
};
} // namespace

TEST_F(Framework, StandsWhereItWasSavedAndBelongsToItsOwner) {
    EXPECT_EQ(Place(), "100 120 300 200");
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_TRUE(GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
    EXPECT_EQ(GetWindow(window, GW_OWNER), nullptr);
    SetSavedPlacement(kId, 5000, -900, 300, 200);
    EXPECT_TRUE(RestoreWindowPlacement(window));
    EXPECT_EQ(Place(), "1260 -180 300 200");
    EXPECT_EQ(Saved("X"), 1260) << "what it moved to is what is saved";
    SetSavedPlacement(kId, 5000, -900, 300, 200);
    EXPECT_TRUE(RestoreWindowPlacement(window));
    EXPECT_TRUE(SaveWindowPlacement(window));
    EXPECT_EQ(Saved("X"), 1260) << "what others wrote meanwhile is written over";
}

TEST_F(Framework, PPlayMakesItHiddenAndTheConsoleHasATaskbarButton) {
    UIOptions.PPlay = 1;
    HWND console = CreateUIWindow(GetModuleHandleA(nullptr), 78, "Trial", 1, nullptr);
    EXPECT_FALSE(IsWindowVisible(console));
    EXPECT_TRUE(GetWindowLongA(console, GWL_EXSTYLE) & WS_EX_APPWINDOW);
    RegisterWheelMessage();
    SendMessageA(console, WM_MOUSEWHEEL, 0, 0); // its own owner: must not go round for ever
    DestroyWindow(console);
    DeleteRegTree(kUserRoot, "Software\\Tonvista\\UIWindow78");
}

TEST_F(Framework, DragMovesItAndSavesThePlaceUnlessLocked) {
    Drag(30, 20, 47, 9);
    EXPECT_EQ(Place(), "117 109 300 200");
    EXPECT_EQ(Saved("X"), 117);
    EXPECT_EQ(Saved("Y"), 109);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_TRUE(owner.Commands(kGroupMove).empty());
    SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, At(30, 20));
    ReleaseCapture();
    SendMessageA(window, WM_MOUSEMOVE, 0, At(90, 90));
    EXPECT_EQ(Place(), "117 109 300 200") << "the drag ended with the capture";
    owner.answer = 1; // to kAskMovementLocked
    SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, At(30, 20));
    EXPECT_EQ(GetCapture(), nullptr);
    Drag(30, 20, 47, 9);
    EXPECT_EQ(Place(), "117 109 300 200");
}

TEST_F(Framework, TheRealPointerDragsItByItsBackground) {
    SetForegroundWindow(owner.window);
    MovePointer(200, 200);
    PressPointer(1);
    MovePointer(230, 210);
    MovePointer(260, 190);
    EXPECT_EQ(Place(), "160 110 300 200");
    PressPointer(0);
    MovePointer(300, 300);
    EXPECT_EQ(Place(), "160 110 300 200");
    ASSERT_FALSE(owner.Commands(kGroupRaise).empty()) << "activated by the click";
    EXPECT_EQ(owner.Commands(kGroupRaise)[0].lParam, reinterpret_cast<LPARAM>(window));
}

TEST_F(Framework, GroupMovesWithCtrlOrWhenLockedTogether) {
    Drag(30, 20, 25, 32, MK_CONTROL);
    UIOptions.LockWindows = 1;
    Drag(30, 20, 31, 20);
    const auto moves = owner.Commands(kGroupMove);
    ASSERT_EQ(moves.size(), 2u);
    EXPECT_EQ(HIWORD(moves[0].wParam), kId);
    EXPECT_EQ(moves[0].lParam, At(-5, 12));
    EXPECT_EQ(moves[1].lParam, At(1, 0));
}

TEST_F(Framework, CharactersChangeTheSizeAndSaveIt) {
    for (char c : {'x', 'x', 'x', 'x', 'x', 'Y', 'Y', 'y', 'z'})
        SendMessageA(window, WM_CHAR, static_cast<WPARAM>(c), 0);
    EXPECT_EQ(Place(), "100 120 295 201");
    EXPECT_EQ(Saved("Width"), 295);
    EXPECT_EQ(Saved("Height"), 201);
}

static void HoldKey(int key, int down) {
    BYTE keys[256] = {};
    keys[key] = down ? 0x80 : 0;
    SetKeyboardState(keys);
}

TEST_F(Framework, ArrowsNudgeAlignAndStretch) {
    for (WPARAM key : {VK_RIGHT, VK_RIGHT, VK_DOWN, VK_LEFT, VK_UP, VK_UP})
        SendMessageA(window, WM_KEYDOWN, key, 0);
    EXPECT_EQ(Place(), "101 119 300 200");
    HoldKey(VK_CONTROL, 1);
    SendMessageA(window, WM_KEYDOWN, VK_LEFT, 0);
    HoldKey(VK_SHIFT, 1);
    SendMessageA(window, WM_KEYDOWN, VK_RIGHT, 0);
    HoldKey(VK_SHIFT, 0);
    EXPECT_EQ(Place(), "101 119 300 200");
    for (const auto& [id, key] :
         {std::pair<int, int>{kGroupAlign, VK_LEFT}, {kGroupStretch, VK_RIGHT}}) {
        const auto commands = owner.Commands(id);
        ASSERT_EQ(commands.size(), 1u) << id;
        EXPECT_EQ(HIWORD(commands[0].wParam), kId);
        EXPECT_EQ(commands[0].lParam, key);
    }
}

TEST_F(Framework, MediaKeysAndWheelGoToTheOwner) {
    for (WPARAM key : {VK_PAUSE, VK_PRIOR, VK_NEXT, VK_PLAY, VK_F3})
        SendMessageA(window, WM_KEYDOWN, key, 0);
    const auto keys = owner.Commands(kForwardKey);
    ASSERT_EQ(keys.size(), 4u);
    EXPECT_EQ(keys[3].lParam, VK_PLAY);
    EXPECT_EQ(HIWORD(keys[3].wParam), kId);
    ASSERT_EQ(RegisterWheelMessage(), static_cast<UINT>(WM_MOUSEWHEEL));
    owner.notes.clear();
    SendMessageA(window, WM_MOUSEWHEEL, MAKEWPARAM(MK_MBUTTON, 0xFF88), At(7, 8));
    ASSERT_EQ(owner.notes.size(), 1u);
    EXPECT_EQ(owner.notes[0].wParam, MAKEWPARAM(MK_MBUTTON, 0xFF88));
}

TEST_F(Framework, ColorIsSavedPaintedAndSharedWithIndicators) {
    HWND lamp = CreateTNVIndicator(0, WS_VISIBLE, 50, 50, 40, 20, window, 719, nullptr);
    EXPECT_EQ(SetWindowBkColor(window, 0x123456), 0x404040u);
    Pump();
    EXPECT_EQ(PixelOf(window, 20, 20), 0x123456u);
    EXPECT_EQ(PixelOf(lamp, 5, 5), 0x123456u);
    EXPECT_EQ(PixelOf(window, 0, 0), GetSysColor(COLOR_3DLIGHT)) << "raised edge";
    SetSavedPlacement(kId, 1, 2, 300, 200);
    EXPECT_EQ(Saved("BkColor"), 0x123456) << "kept by layouts";
}

// The window itself is the indicator's parent.
static int s_doubleClicks;
static LRESULT CALLBACK CountDoubleClicks(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    s_doubleClicks +=
        message == WM_COMMAND && wParam == MAKEWPARAM(719, kIndicatorDoubleClicked) && lParam;
    return CallKeptProcedure(window, message, wParam, lParam);
}

TEST_F(Framework, DoubleClickFindsTheDisabledIndicator) {
    HWND lamp = CreateTNVIndicator(0, WS_VISIBLE, 50, 50, 100, 40, window, 719, nullptr);
    const POINT center = CenterOf(lamp);
    MovePointer(center.x, center.y);
    SubclassUIWindow(window, CountDoubleClicks);
    s_doubleClicks = 0;
    for (int i = 0; i < 2; i++) {
        PressPointer(1);
        PressPointer(0);
    }
    EXPECT_EQ(s_doubleClicks, 1);
    EXPECT_EQ(Place(), "100 120 300 200");
    SendMessageA(window, WM_LBUTTONDBLCLK, MK_LBUTTON, At(10, 10)); // elsewhere: a press
    EXPECT_EQ(GetCapture(), window);
    SendMessageA(window, WM_LBUTTONUP, 0, At(10, 10));
}

static HWND ShownToolTip() {
    HWND found = nullptr;
    while ((found = FindWindowExA(nullptr, found, TOOLTIPS_CLASSA, nullptr)))
        if (IsWindowVisible(found)) return found;
    return nullptr;
}

TEST_F(Framework, ToolTipOfAnIndicatorFollowsItAndRaisesTheGroup) {
    InitCommonControls();
    HWND lamp = CreateTNVIndicator(0, WS_VISIBLE, 50, 50, 100, 40, window, 719, nullptr);
    HWND tips = CreateToolTips(window);
    ASSERT_TRUE(AddIndicatorToolTip(tips, window, lamp, 0));
    ASSERT_TRUE(SetRectToolTipText(tips, window, 719, "the lamp"));
    MoveWindow(lamp, 50, 100, 100, 40, TRUE);
    PlaceIndicatorToolTip(tips, window, lamp);
    const POINT center = CenterOf(lamp);
    MovePointer(center.x - 5, center.y);
    MovePointer(center.x, center.y);
    ASSERT_TRUE(PumpUntil([] { return ShownToolTip(); }));
    char text[64];
    GetWindowTextA(ShownToolTip(), text, sizeof text);
    EXPECT_STREQ(text, "the lamp");
    EXPECT_TRUE(PumpUntil([&] { return !owner.Commands(kGroupRaise).empty(); }));
    EXPECT_FALSE(SetToolTipText(nullptr, window, lamp, "x")) << "no tooltips, no harm";
}

// ---- a component window

namespace {
struct Probe {
    int refuse;
    int layouts, width;
    int destroyed, saved;
} s_probe;
} // namespace

static LRESULT ProbeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
static ComponentWindow s_probeWindow = {
    .title = "ProbeUI",
    .windowId = kId,
    .procedure = GuardedProc<ProbeProc>,
    .OnCreateControls = [](HWND window) -> int {
        CreateTNVButton("P", WS_VISIBLE, 10, 10, 50, 20, window, 700, nullptr);
        return !s_probe.refuse;
    },
    .OnLayout =
        [](HWND window, int width, int) {
            s_probe.layouts++;
            s_probe.width = width;
            const ControlPlace places[] = {{999, {0, 0, 1, 1}}, {700, {0, 0, width, 25}}};
            PlaceControls(window, places, 2);
        },
    .OnDestroy = [](HWND window) { s_probe.destroyed += GetDlgItem(window, 700) != nullptr; },
    .OnSave = [] { s_probe.saved++; },
};
static LRESULT ProbeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_USER + 9) RaiseException(0xE0001234, 0, 0, nullptr);
    return PassOnMessage(&s_probeWindow, window, message, wParam, lParam);
}

TEST(ComponentWindowThread, LivesAsAComponentDoes) {
    Recorder console;
    ComponentThread* thread = ComponentThreadOf(&s_probeWindow);
    for (int fault : {0, 1}) {
        SetSavedPlacement(kId, 100, 120, 300, 200);
        s_probe = {};
        ASSERT_TRUE(StartComponentThread(thread, GetModuleHandleA(nullptr), console.window));
        HWND window = thread->Window;
        EXPECT_EQ(WindowIdOf(window), kId);
        SetWindowPos(window, nullptr, 0, 0, 240, 180, SWP_NOMOVE | SWP_NOZORDER);
        EXPECT_EQ(s_probe.width, ClientRect(window).right);
        EXPECT_EQ(ClientRect(GetDlgItem(window, 700)).right, s_probe.width);
        SendMessageA(window, WM_COMMAND, kFontChanged, 0);
        EXPECT_EQ(s_probe.layouts, 3) << "at the start, at a new size, with a new font";
        if (fault) {
            SendMessageA(window, WM_USER + 9, 0, 0);
            EXPECT_TRUE(PumpUntil([&] { return !console.Commands(kComponentClosed).empty(); }));
        }
        StopComponentThread(thread);
        EXPECT_FALSE(IsWindow(window));
        EXPECT_EQ(s_probe.destroyed, 1);
        EXPECT_EQ(s_probe.saved, !fault) << "nothing is saved after a fault";
    }
    s_probe = {};
    s_probe.refuse = 1;
    EXPECT_FALSE(StartComponentThread(thread, GetModuleHandleA(nullptr), console.window));
    EXPECT_EQ(FindWindowA(kUIWindowClass, "ProbeUI"), nullptr);
    Forget();
}

// Without a pressed button the capture does not reach into another thread's windows.
TEST(ComponentWindowThread, HoverEndsWhereAnotherThreadsWindowBegins) {
    Recorder console; // 300 to 700
    SetSavedPlacement(kId, 700, 300, 300, 200);
    HWND button = CreateTNVButton("WW", WS_VISIBLE, 340, 50, 60, 40, console.window, 700, nullptr);
    SetButtonColors(button, 0, 0x808080, 0x00FF00);
    ComponentThread* thread = ComponentThreadOf(&s_probeWindow);
    s_probe = {};
    ASSERT_TRUE(StartComponentThread(thread, GetModuleHandleA(nullptr), console.window));
    auto hot = [&] { return CountPixels(button, ClientRect(button), 0x00FF00) > 0; };
    MovePointer(690, 370);
    EXPECT_TRUE(PumpUntil(hot));
    MovePointer(720, 370);
    EXPECT_TRUE(PumpUntil([&] { return !hot(); }));
    StopComponentThread(thread);
    Forget();
}
