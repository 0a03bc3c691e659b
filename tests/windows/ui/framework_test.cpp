// The framework's windows as a user and their owner see them: place, drag, keys, group commands
// and tooltips; and a whole component window on its thread.
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

TEST_F(Framework, StandsWhereItWasSavedAndInSight) {
    EXPECT_EQ(Place(), "100 120 300 200");
    SetSavedPlacement(kId, 5000, -900, 300, 200);
    EXPECT_TRUE(RestoreWindowPlacement(window));
    EXPECT_EQ(Place(), "1260 -180 300 200");
    EXPECT_EQ(Saved("X"), 1260) << "what it moved to is what is saved";
}

TEST_F(Framework, DragMovesItAndSavesThePlaceUnlessLocked) {
    Drag(30, 20, 47, 9);
    EXPECT_EQ(Place(), "117 109 300 200");
    EXPECT_EQ(Saved("X"), 117);
    EXPECT_EQ(Saved("Y"), 109);
    EXPECT_TRUE(owner.Commands(kGroupMove).empty());
    SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, At(30, 20));
    ReleaseCapture();
    SendMessageA(window, WM_MOUSEMOVE, 0, At(90, 90));
    EXPECT_EQ(Place(), "117 109 300 200") << "the drag ended with the capture";
    owner.answer = 1; // to kAskMovementLocked
    Drag(30, 20, 47, 9);
    EXPECT_EQ(Place(), "117 109 300 200");
}

static void HoldKey(int key, int down) {
    BYTE keys[256] = {};
    keys[key] = down ? 0x80 : 0;
    SetKeyboardState(keys);
}

TEST_F(Framework, KeysChangeItAndTheGroupIsAskedThroughTheOwner) {
    for (WPARAM key : {VK_RIGHT, VK_RIGHT, VK_DOWN, VK_LEFT, VK_UP, VK_UP})
        SendMessageA(window, WM_KEYDOWN, key, 0);
    EXPECT_EQ(Place(), "101 119 300 200");
    HoldKey(VK_CONTROL, 1);
    SendMessageA(window, WM_KEYDOWN, VK_LEFT, 0);
    HoldKey(VK_SHIFT, 1);
    SendMessageA(window, WM_KEYDOWN, VK_RIGHT, 0);
    HoldKey(VK_SHIFT, 0);
    EXPECT_EQ(Place(), "101 119 300 200");
    for (char c : {'x', 'x', 'Y', 'z'})
        SendMessageA(window, WM_CHAR, static_cast<WPARAM>(c), 0);
    EXPECT_EQ(Place(), "101 119 298 201");
    EXPECT_EQ(Saved("Width"), 298);
    Drag(30, 20, 25, 32, MK_CONTROL);
    UIOptions.LockWindows = 1;
    Drag(30, 20, 31, 20);
    std::vector<LPARAM> told;
    for (const int id : {kGroupAlign, kGroupStretch, kGroupMove})
        for (const Note& note : owner.Commands(id)) {
            EXPECT_EQ(HIWORD(note.wParam), kId);
            told.push_back(note.lParam);
        }
    EXPECT_EQ(told, (std::vector<LPARAM>{VK_LEFT, VK_RIGHT, At(-5, 12), At(1, 0)}));
}

TEST_F(Framework, TheWheelGoesToTheOwner) {
    ASSERT_EQ(RegisterWheelMessage(), static_cast<UINT>(WM_MOUSEWHEEL));
    SendMessageA(window, WM_MOUSEWHEEL, MAKEWPARAM(MK_MBUTTON, 0xFF88), At(7, 8));
    ASSERT_EQ(owner.notes.size(), 1u);
    EXPECT_EQ(owner.notes[0].wParam, MAKEWPARAM(MK_MBUTTON, 0xFF88));
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
    MovePointer(195, 240);
    MovePointer(200, 240); // the middle of the lamp
    ASSERT_TRUE(PumpUntil([] { return ShownToolTip(); }));
    char text[64];
    GetWindowTextA(ShownToolTip(), text, sizeof text);
    EXPECT_STREQ(text, "the lamp");
    EXPECT_TRUE(PumpUntil([&] { return !owner.Commands(kGroupRaise).empty(); }));
}

// ---- a component window

static int s_refuse;

static LRESULT ProbeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
static ComponentWindow s_probeWindow = {
    .title = "ProbeUI",
    .windowId = kId,
    .procedure = GuardedProc<ProbeProc>,
    .OnCreateControls = [](HWND window) -> int { return window && !s_refuse; },
    .OnLayout = [](HWND, int, int) {},
};
static LRESULT ProbeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return PassOnMessage(&s_probeWindow, window, message, wParam, lParam);
}

// Without a pressed button the capture does not reach into another thread's windows: a button of
// the console must cool down when the pointer goes over to a component.
TEST(ComponentWindowThread, ItsButtonsCoolDownAndItMayRefuseToOpen) {
    Recorder console; // 300 to 700
    SetSavedPlacement(kId, 700, 300, 300, 200);
    HWND button = CreateTNVButton("WW", WS_VISIBLE, 340, 50, 60, 40, console.window, 700, nullptr);
    SetButtonColors(button, 0, 0x808080, 0x00FF00);
    ComponentThread* thread = ComponentThreadOf(&s_probeWindow);
    ASSERT_TRUE(StartComponentThread(thread, GetModuleHandleA(nullptr), console.window));
    auto hot = [&] { return CountPixels(button, ClientRect(button), 0x00FF00) > 0; };
    MovePointer(690, 370);
    EXPECT_TRUE(PumpUntil(hot));
    MovePointer(720, 370);
    EXPECT_TRUE(PumpUntil([&] { return !hot(); }));
    StopComponentThread(thread);
    s_refuse = 1;
    EXPECT_FALSE(StartComponentThread(thread, GetModuleHandleA(nullptr), console.window));
    EXPECT_EQ(FindWindowA(kUIWindowClass, "ProbeUI"), nullptr);
    Forget();
}
