// Layouts as a user meets them: applied, stored, recalled, chosen at the first start. And all
// windows as a group.
#include "core/text.h"
#include "tests/program/harness.h"
#include "ui/layouts_win.h"

#include <iterator>
#include <vector>

namespace {
struct Member {
    int id;
    const char *title, *onValue;
};
// Whose windows a layout holds.
constexpr Member kMembers[] = {
    {1, "Tonvista", nullptr},  {2, "CDPlayerUI", "CDPlayerUI"}, {3, "SpectrumUI", "SpectrumIU"},
    {4, "MixerUI", "MixerUI"}, {7, "ScopeUI", "ScopeUI"},       {9, "MediaUI", "MediaPlayerOn"},
};
constexpr int kLayoutsWindow = 12;
using Rect = std::vector<LONG>; // x, y, width, height

Rect Shown(const char* title) {
    const RECT r = PlaceOf(FindComponent(title));
    return {r.left, r.top, r.right - r.left, r.bottom - r.top};
}
Rect Saved(int id) {
    WindowPlacement p = {};
    LoadWindowPlacement(id, &p);
    return {p.X, p.Y, p.Width, p.Height};
}
Rect Stored(const LayoutEntry& e) {
    return {e.X, e.Y, e.Width, e.Height};
}
bool Shows(const char* title) {
    return IsWindowVisible(FindComponent(title));
}

LayoutEntry EntryOf(int layout, int id) {
    LayoutEntry entry;
    ReadLayoutEntry(layout, id - 1, &entry);
    return entry;
}

// The window that is not yet as the layout says; empty when all are.
std::string Different(int layout) {
    for (const Member& m : kMembers) {
        const LayoutEntry entry = EntryOf(layout, m.id);
        const HWND window = FindComponent(m.title);
        if ((window != nullptr) != (entry.Open != 0) || Saved(m.id) != Stored(entry) ||
            (window && !IsIconic(window) && Shown(m.title) != Stored(entry)) ||
            (m.onValue && ReadWindowDword(1, m.onValue, 0) != (entry.Open != 0)))
            return m.title;
    }
    return "";
}
testing::AssertionResult Comes(int layout) {
    if (WaitUntil([=] { return Different(layout).empty(); }, 20000))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "layout " << layout << ": " << Different(layout);
}

void Type(BYTE key, BYTE modifier = 0) {
    if (modifier) keybd_event(modifier, 0, 0, 0);
    keybd_event(key, 0, KEYEVENTF_EXTENDEDKEY, 0);
    keybd_event(key, 0, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP, 0);
    if (modifier) keybd_event(modifier, 0, KEYEVENTF_KEYUP, 0);
}

class LayoutsTest : public ProgramTest {
protected:
    static testing::AssertionResult Apply(int layout, const char* asked = "Tonvista") {
        Command(FindComponent(asked), kLayoutFirst + layout);
        return Comes(layout) << " asked of " << asked;
    }
    static HWND OpenLayouts() {
        Command(FindConsole(), kConsoleLayouts);
        EXPECT_TRUE(WaitUntil([] { return FindComponent("Layouts") != nullptr; }));
        return FindComponent("Layouts");
    }
    static bool Front(const char* title) {
        const HWND window = FindComponent(title);
        return WaitUntil([=] {
            SetForegroundWindow(window);
            GUITHREADINFO info = {};
            info.cbSize = sizeof info;
            return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info) &&
                   info.hwndFocus == window && GetForegroundWindow() == window;
        });
    }
};
} // namespace

TEST_F(LayoutsTest, EachOpensMovesAndClosesFromWhereverItIsAskedFor) {
    Start();
    ASSERT_TRUE(Apply(2)); // all but the oscilloscope
    EXPECT_EQ(Shown("SpectrumUI"), (Rect{110, 0, 662, 134}));
    const HWND layouts = OpenLayouts();
    const Rect chooser = Shown("Layouts");
    ASSERT_TRUE(Apply(0, "MixerUI") && Apply(1, "SpectrumUI") && Apply(4, "CDPlayerUI"));
    ASSERT_TRUE(Apply(3, "MediaUI") && Apply(5, "Layouts") && Apply(2, "CDPlayerUI"));
    EXPECT_TRUE(FindComponent("Layouts") == layouts && Shown("Layouts") == chooser);
    for (const int layout : {4, 1, 0}) // overtaken by the next
        Command(FindConsole(), kLayoutFirst + layout);
    EXPECT_TRUE(Apply(3));
    // Whoever asks for an arrangement wants to see it.
    Command(FindConsole(), kConsoleMinimizeAll);
    ASSERT_TRUE(WaitUntil([] { return IsIconic(FindConsole()) && !Shows("CDPlayerUI"); }));
    EXPECT_TRUE(Apply(5));
    EXPECT_TRUE(WaitUntil([] { return !IsIconic(FindConsole()) && Shows("CDPlayerUI"); }));
    // A minimized console that lives in its icon stays there.
    Command(FindConsole(), kConsoleMinimizeAll);
    Command(FindConsole(), kConsoleTaskbarOnly);
    EXPECT_TRUE(Apply(0));
    EXPECT_TRUE(IsIconic(FindConsole()) && !Shows("Tonvista") && Shows("CDPlayerUI"));
    Command(FindConsole(), kConsoleTaskbarOnly);
    EXPECT_TRUE(WaitUntil([] { return !IsIconic(FindConsole()); }) && Comes(0));
    EXPECT_EQ(Close(), 0);
    Start(); // the next start finds what the layout left
    EXPECT_TRUE(Comes(0));
}

TEST_F(LayoutsTest, HomeClosesTheVeryWindowThatAskedAndLetsItEnd) {
    WriteWindowDword(kLayoutsWindow, "Setting", 3);
    Start();
    ASSERT_TRUE(Apply(4));
    // The analyzer writes its settings on its way out. Killed by the wait it would not.
    const char* const section = "Software\\Tonvista\\UIWindow3";
    DeleteRegValue(kUserRoot, section, "Trails");
    ASSERT_TRUE(Front("SpectrumUI"));
    Type(VK_HOME);
    ASSERT_TRUE(Comes(3));
    EXPECT_TRUE(RegValueExists(kUserRoot, section, "Trails"));
    WriteWindowDword(kLayoutsWindow, "Setting", 7); // none: the first
    PostMessageA(FindConsole(), WM_KEYDOWN, VK_HOME, 1);
    EXPECT_TRUE(Comes(0));
}

TEST_F(LayoutsTest, WhatIsStoredComesBack) {
    Start();
    ASSERT_TRUE(Apply(4));
    const HWND layouts = OpenLayouts();
    Command(layouts, kLayoutsChoice + 2);
    Command(FindConsole(), kConsoleMixer); // off
    Command(FindConsole(), kConsoleScope); // on
    ASSERT_TRUE(WaitUntil([] { return !FindComponent("MixerUI") && FindComponent("ScopeUI"); }));
    SetWindowPos(FindComponent("ScopeUI"), nullptr, 30, 300, 600, 260, SWP_NOZORDER);
    SetWindowPos(layouts, nullptr, 800, 300, 300, 350, SWP_NOZORDER);
    ASSERT_TRUE(WaitUntil([] { return Saved(7) == Rect{30, 300, 600, 260}; }));
    Command(layouts, kLayoutsStore);
    ASSERT_TRUE(WaitUntil([] { return EntryOf(2, kLayoutsWindow).Open != 0; })); // the last
    EXPECT_EQ(Stored(EntryOf(2, 7)), (Rect{30, 300, 600, 260}));
    EXPECT_EQ(Stored(EntryOf(2, 4)), (Rect{34, 504, 742, 115})) << "closed, where it last stood";
    EXPECT_TRUE(EntryOf(2, 1).Open && EntryOf(2, 7).Open && !EntryOf(2, 4).Open);
    ASSERT_TRUE(Apply(0));
    Command(layouts, kLayoutsRecall);
    EXPECT_TRUE(Comes(2));
    EXPECT_TRUE(WaitUntil([=] { return FindWindowA(kWindowClass, nullptr) == layouts; }))
        << "on top of those that were opened";
    // It stayed where it was, and will be found there again.
    EXPECT_TRUE(WaitUntil([] { return Saved(kLayoutsWindow) == Rect{800, 300, 300, 350}; }));
    Command(layouts, kLayoutsClose);
    EXPECT_TRUE(WaitUntil([] { return !FindComponent("Layouts"); }));
}

// A damaged entry counts as one that is missing: closed, without a size. Numbers beyond all screens
// leave the windows in sight.
TEST_F(LayoutsTest, StoredNumbersMayBeAnything) {
    Start();
    ASSERT_TRUE(Apply(2));
    WriteRegValue(kUserRoot, "Software\\Tonvista\\Layouts\\Layout2", "Window1", kRegBinary,
                  "damaged", 8);
    WriteLayoutEntry(2, 0, INT32_MIN, INT32_MAX, INT32_MAX, INT32_MAX, 1);
    WriteLayoutEntry(2, 2, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, 1);
    WriteLayoutEntry(2, 8, 10, 10, INT32_MIN, INT32_MIN, 1);
    WriteLayoutEntry(2, 3, 5000, -5000, 0, 0, 0xFFFFFFFF);
    Command(FindConsole(), kLayoutFirst + 2);
    ASSERT_TRUE(WaitUntil([] { return !FindComponent("CDPlayerUI"); }));
    EXPECT_TRUE(WaitUntil([] { return Saved(2)[2] == 0 && Saved(2)[3] == 0; }));
    const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    for (const char* title : {"Tonvista", "SpectrumUI", "MediaUI", "MixerUI"})
        EXPECT_TRUE(WaitUntil([&] {
            const RECT r = PlaceOf(FindComponent(title));
            RECT both;
            return Shown(title) != Rect{110, 470, 662, 101} && IntersectRect(&both, &r, &screen);
        })) << title;
}

// On the display that is there: first_start.sh repeats it on others.
TEST_F(LayoutsTest, TheFirstStartSuitsTheScreen) {
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int layout = width >= 1024 ? 4 : width >= 800 ? 2 : 0;
    const char* const expected = getenv("TONVISTA_SCREEN_WIDTH");
    EXPECT_EQ(width, expected ? atoi(expected) : width);
    DeleteRegTree(kUserRoot, kSettingsRoot);
    Process installation("");
    ASSERT_TRUE(AnswerBox("Tonvista Install", IDOK));
    EXPECT_EQ(installation.WaitEnd(), 0);
    Start();
    ASSERT_TRUE(Comes(layout));
    EXPECT_EQ(ReadWindowDword(kLayoutsWindow, "Setting", 9), 9u) << "the choice is no setting";
    // Chosen once: the user's arrangement stays from then on.
    SetWindowPos(FindConsole(), nullptr, 3, 5, 400, 100, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_EQ(Shown("Tonvista"), (Rect{3, 5, 400, 100}));
}

// FreshSettings is such an installation: places of its own, no layouts, and no mark.
TEST_F(LayoutsTest, AnOlderInstallationIsNotRearrangedButGetsTheLayouts) {
    const Rect before = Saved(1);
    Start();
    EXPECT_EQ(Shown("Tonvista"), before);
    EXPECT_FALSE(FindComponent("CDPlayerUI"));
    EXPECT_EQ(Stored(EntryOf(5, 5)), (Rect{0, 0, 300, 200}));
}

TEST_F(LayoutsTest, AllWindowsActAsOneGroup) {
    for (const Member& m : kMembers)
        if (m.onValue) SwitchOn(m.onValue);
    Start();
    OpenLayouts();
    const char* const titles[] = {"Tonvista", "CDPlayerUI", "SpectrumUI", "MixerUI",
                                  "ScopeUI",  "MediaUI",    "Layouts"};
    constexpr int kTitles = static_cast<int>(std::size(titles));
    const auto spot = [](int i) {
        return Rect{20 + i % 2 * 620, 20 + i / 2 * 240, 400 + 10 * i, 200};
    };
    const auto put = [&] { // apart from each other, each of a size of its own
        for (int i = 0; i < kTitles; ++i)
            SetWindowPos(FindComponent(titles[i]), nullptr, spot(i)[0], spot(i)[1], spot(i)[2],
                         spot(i)[3], SWP_NOZORDER | SWP_NOACTIVATE);
    };
    struct {
        const char *front, *reference;
        BYTE modifier, key;
        LONG RECT::*side;
    } const keys[] = {
        {"CDPlayerUI", "CDPlayerUI", VK_CONTROL, VK_LEFT, &RECT::left},
        {"ScopeUI", "Tonvista", VK_CONTROL, VK_DOWN, &RECT::bottom}, // none of its own
        {"MixerUI", "MixerUI", VK_SHIFT, VK_RIGHT, &RECT::right},
    };
    for (const auto& k : keys) {
        SCOPED_TRACE(k.front);
        put();
        const LONG edge = PlaceOf(FindComponent(k.reference)).*k.side;
        ASSERT_TRUE(Front(k.front));
        Type(k.key, k.modifier);
        for (int i = 0; i < kTitles; ++i)
            EXPECT_TRUE(WaitUntil([&] {
                return k.modifier == VK_SHIFT && i == kTitles - 1 // Layouts keeps its size
                           ? Shown(titles[i]) == spot(i)
                           : PlaceOf(FindComponent(titles[i])).*k.side == edge;
            })) << titles[i];
    }
    // Where a minimized console would come back.
    put();
    ShowWindow(FindConsole(), SW_MINIMIZE);
    Command(FindConsole(), MAKEWPARAM(kGroupAlign, 7), VK_LEFT);
    EXPECT_TRUE(WaitUntil([] { return Shown("MixerUI")[0] == 20 && Shown("MediaUI")[0] == 20; }));
    ShowWindow(FindConsole(), SW_RESTORE);
    put();
    Command(FindConsole(), kConsoleLockWindows);
    ASSERT_TRUE(WaitUntil([] { return ReadRegDword(kUserRoot, kSettingsRoot, "LockWindows"); }));
    constexpr int kGrip = 8; // just inside the frame, where no control is
    POINT at = {spot(1)[0] + kGrip, spot(1)[1] + kGrip};
    SetCursorPos(at.x, at.y);
    mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
    for (int step = 0; step < 10; ++step) {
        SetCursorPos(at.x += 7, at.y += 3);
        EXPECT_TRUE(WaitUntil([&] {
            const Rect r = Shown(titles[1]);
            return r[0] == at.x - kGrip && r[1] == at.y - kGrip;
        }));
    }
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    for (int i = 0; i < kTitles; ++i)
        EXPECT_TRUE(WaitUntil([&] {
            return Shown(titles[i]) ==
                   Rect{spot(i)[0] + 70, spot(i)[1] + 30, spot(i)[2], spot(i)[3]};
        })) << titles[i];
}
