// Layouts as a user meets them: applied, stored, recalled, chosen at the first start. And all
// windows as a group.
#include "core/text.h"
#include "tests/program/harness.h"
#include "ui/layouts.h"

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

Rect Of(const RECT& r) {
    return {r.left, r.top, r.right - r.left, r.bottom - r.top};
}
Rect Shown(const char* title) {
    return Of(PlaceOf(FindComponent(title)));
}
Rect Saved(int id) {
    WindowPlacement p = {};
    LoadWindowPlacement(id, &p);
    return {p.X, p.Y, p.Width, p.Height};
}
Rect Stored(const LayoutEntry& e) {
    return {e.X, e.Y, e.Width, e.Height};
}
// As another program reads it.
LayoutEntry EntryOf(int layout, int id) {
    LayoutEntry entry = {};
    char key[64], name[16];
    FormatText(key, sizeof key, "Software\\Tonvista\\Layouts\\Layout%d", layout);
    FormatText(name, sizeof name, "Window%d", id - 1);
    ReadRegValue(kUserRoot, key, name, kRegBinary, &entry, sizeof entry);
    return entry;
}

// What is not yet as the layout says; empty when all is.
std::string Differences(int layout) {
    std::string text;
    for (const Member& m : kMembers) {
        const LayoutEntry entry = EntryOf(layout, m.id);
        const HWND window = FindComponent(m.title);
        if ((window != nullptr) != (entry.Open != 0)) text += std::string(m.title) + " open? ";
        if (window && entry.Open && Shown(m.title) != Stored(entry))
            text += std::string(m.title) + " elsewhere ";
        if (Saved(m.id) != Stored(entry)) text += std::string(m.title) + " saved elsewhere ";
        if (m.onValue && ReadWindowDword(1, m.onValue, 0) != (entry.Open != 0))
            text += std::string(m.title) + " restored otherwise ";
    }
    return text;
}
testing::AssertionResult Comes(int layout) {
    if (WaitUntil([=] { return Differences(layout).empty(); }, 20000))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "layout " << layout << ": " << Differences(layout);
}

void Key(BYTE key, DWORD flags = 0) {
    keybd_event(key, 0, flags, 0);
}
void TypeWith(BYTE modifier, BYTE key) {
    Key(modifier);
    Key(key, KEYEVENTF_EXTENDEDKEY);
    Key(key, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP);
    Key(modifier, KEYEVENTF_KEYUP);
}

class LayoutsTest : public ProgramTest {
protected:
    static void Apply(HWND asked, int layout) { Command(asked, kLayoutFirst + layout); }
    static void Home(HWND window) { PostMessageA(window, WM_KEYDOWN, VK_HOME, 1); }
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
    Apply(FindConsole(), 2);
    ASSERT_TRUE(Comes(2)); // all but the oscilloscope
    EXPECT_EQ(Shown("SpectrumUI"), (Rect{110, 0, 662, 134}));
    EXPECT_EQ(Shown("MediaUI"), (Rect{110, 134, 662, 98}));
    const HWND layouts = OpenLayouts();
    const Rect chooser = Shown("Layouts");
    struct {
        const char* asked;
        int layout;
    } const steps[] = {{"MixerUI", 0}, {"SpectrumUI", 1}, {"CDPlayerUI", 4},
                       {"MediaUI", 3}, {"Layouts", 5},    {"CDPlayerUI", 2}};
    for (const auto& step : steps) {
        Apply(FindComponent(step.asked), step.layout);
        ASSERT_TRUE(Comes(step.layout)) << "asked of " << step.asked;
    }
    EXPECT_TRUE(FindComponent("Layouts") == layouts && Shown("Layouts") == chooser);
    // Two in a row, and a window that is opened by the one and closed by the other.
    for (const int layout : {4, 1, 0, 3})
        Apply(FindConsole(), layout);
    EXPECT_TRUE(Comes(3));
    // Whoever asks for an arrangement wants to see it.
    Command(FindConsole(), kConsoleMinimizeAll);
    ASSERT_TRUE(WaitUntil(
        [] { return IsIconic(FindConsole()) && !IsWindowVisible(FindComponent("CDPlayerUI")); }));
    Apply(FindConsole(), 5);
    EXPECT_TRUE(Comes(5));
    EXPECT_TRUE(WaitUntil(
        [] { return !IsIconic(FindConsole()) && IsWindowVisible(FindComponent("CDPlayerUI")); }));
    EXPECT_EQ(Close(), 0);
    Start(); // the next start finds what the layout left
    EXPECT_TRUE(Comes(5));
}

TEST_F(LayoutsTest, HomeClosesTheVeryWindowThatAskedAndLetsItEnd) {
    WriteWindowDword(kLayoutsWindow, "Setting", 3);
    Start();
    Apply(FindConsole(), 4);
    ASSERT_TRUE(Comes(4));
    // The analyzer writes its settings on its way out. Killed by the wait it would not.
    const char* const section = "Software\\Tonvista\\UIWindow3";
    DeleteRegValue(kUserRoot, section, "Trails");
    ASSERT_TRUE(Front("SpectrumUI"));
    Key(VK_HOME, KEYEVENTF_EXTENDEDKEY);
    Key(VK_HOME, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP);
    ASSERT_TRUE(Comes(3));
    EXPECT_TRUE(RegValueExists(kUserRoot, section, "Trails"));
    WriteWindowDword(kLayoutsWindow, "Setting", 7); // none: the first
    Home(FindConsole());
    EXPECT_TRUE(Comes(0));
}

TEST_F(LayoutsTest, WhatIsStoredComesBack) {
    Start();
    Apply(FindConsole(), 4);
    ASSERT_TRUE(Comes(4));
    HWND layouts = OpenLayouts();
    SetWindowPos(layouts, nullptr, 800, 300, 300, 350, SWP_NOZORDER | SWP_NOACTIVATE);
    Command(layouts, kLayoutsChoice + 2);
    ASSERT_TRUE(WaitUntil([] { return ReadWindowDword(kLayoutsWindow, "Setting", 9) == 2; }));
    Command(FindConsole(), kConsoleMixer); // off
    Command(FindConsole(), kConsoleScope); // on
    ASSERT_TRUE(WaitUntil([] { return !FindComponent("MixerUI") && FindComponent("ScopeUI"); }));
    const RECT moved[] = {{30, 40, 640, 200}, {700, 40, 500, 300}, {30, 300, 600, 260}};
    const Member* const movers[] = {&kMembers[0], &kMembers[1], &kMembers[4]};
    for (int i = 0; i < 3; ++i) {
        SetWindowPos(FindComponent(movers[i]->title), nullptr, moved[i].left, moved[i].top,
                     moved[i].right, moved[i].bottom, SWP_NOZORDER | SWP_NOACTIVATE);
        ASSERT_TRUE(WaitUntil([&] { return Saved(movers[i]->id) == Shown(movers[i]->title); }));
    }
    Command(layouts, kLayoutsStore);
    ASSERT_TRUE(WaitUntil([] { return EntryOf(2, 7).Open && !EntryOf(2, 4).Open; }));
    EXPECT_EQ(Stored(EntryOf(2, 4)), (Rect{34, 504, 742, 115})) << "closed, where it last stood";
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Stored(EntryOf(2, movers[i]->id)), Shown(movers[i]->title));
    EXPECT_TRUE(EntryOf(2, kLayoutsWindow).Open && EntryOf(2, 1).Open);
    Apply(FindConsole(), 0);
    ASSERT_TRUE(Comes(0));
    Command(layouts, kLayoutsRecall);
    EXPECT_TRUE(Comes(2));
    EXPECT_TRUE(WaitUntil([] { // on top of those that were opened
        HWND top = GetTopWindow(nullptr);
        char name[64];
        while (top && (!IsWindowVisible(top) || !GetClassNameA(top, name, sizeof name) ||
                       strcmp(name, kWindowClass) != 0))
            top = GetWindow(top, GW_HWNDNEXT);
        return top == FindComponent("Layouts");
    }));
    // It stayed where it was, and will be found there again.
    EXPECT_TRUE(WaitUntil([] { return Saved(kLayoutsWindow) == Shown("Layouts"); }));
    Command(layouts, kLayoutsClose);
    EXPECT_TRUE(WaitUntil([] { return !FindComponent("Layouts"); }));
    // A damaged entry counts as one that is missing: closed, at 0,0, without a size.
    const char cut[12] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    WriteRegValue(kUserRoot, "Software\\Tonvista\\Layouts\\Layout2", "Window1", kRegBinary, cut,
                  sizeof cut);
    Apply(FindConsole(), 2);
    EXPECT_TRUE(WaitUntil([] { return !FindComponent("CDPlayerUI"); }));
    EXPECT_TRUE(WaitUntil([] { return Saved(2)[2] == 0 && Saved(2)[3] == 0; }));
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
    for (const Member& m : kMembers) {
        const HWND window = FindComponent(m.title);
        if (!window) continue;
        const RECT r = PlaceOf(window);
        EXPECT_TRUE(r.left >= 0 && r.top >= 0 && r.right <= width) << m.title;
        EXPECT_LE(r.bottom, GetSystemMetrics(SM_CYSCREEN)) << m.title;
    }
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
    std::vector<const char*> titles;
    for (const Member& m : kMembers)
        titles.push_back(m.title);
    titles.push_back("Layouts");
    const auto put = [&] { // apart from each other, each of a size of its own
        for (int i = 0; i < static_cast<int>(titles.size()); ++i) {
            ASSERT_TRUE(FindComponent(titles[i])) << titles[i];
            SetWindowPos(FindComponent(titles[i]), nullptr, 20 + i % 2 * 620, 20 + i / 2 * 240,
                         400 + 10 * i, 200, SWP_NOZORDER | SWP_NOACTIVATE);
        }
    };
    const auto all = [&](const auto& holds) {
        return WaitUntil([&] {
            for (const char* title : titles)
                if (!holds(title, PlaceOf(FindComponent(title)))) return false;
            return true;
        });
    };
    put();
    const RECT player = PlaceOf(FindComponent("CDPlayerUI"));
    ASSERT_TRUE(Front("CDPlayerUI"));
    TypeWith(VK_CONTROL, VK_LEFT);
    EXPECT_TRUE(all([&](const char*, RECT r) { return r.left == player.left; }));
    put();
    const RECT console = PlaceOf(FindConsole());
    ASSERT_TRUE(Front("ScopeUI")); // no reference of its own: the console's edge
    TypeWith(VK_CONTROL, VK_DOWN);
    EXPECT_TRUE(all([&](const char*, RECT r) { return r.bottom == console.bottom; }));
    put();
    const RECT mixer = PlaceOf(FindComponent("MixerUI")), kept = PlaceOf(FindComponent("Layouts"));
    ASSERT_TRUE(Front("MixerUI"));
    TypeWith(VK_SHIFT, VK_RIGHT);
    EXPECT_TRUE(all([&](const std::string& title, RECT r) {
        return r.right == (title == "Layouts" ? kept.right : mixer.right);
    }));
    put();
    std::vector<RECT> before;
    for (const char* title : titles)
        before.push_back(PlaceOf(FindComponent(title)));
    Command(FindConsole(), kConsoleLockWindows);
    ASSERT_TRUE(WaitUntil([] { return ReadRegDword(kUserRoot, kSettingsRoot, "LockWindows"); }));
    constexpr int kGrip = 8; // just inside the frame, where no control is
    POINT at = {before[1].left + kGrip, before[1].top + kGrip};
    SetCursorPos(at.x, at.y);
    mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
    for (int step = 0; step < 10; ++step) {
        at.x += 7;
        at.y += 3;
        SetCursorPos(at.x, at.y);
        const RECT wanted = {at.x - kGrip, at.y - kGrip, 0, 0};
        EXPECT_TRUE(WaitUntil([&] {
            const RECT r = PlaceOf(FindComponent(titles[1]));
            return r.left == wanted.left && r.top == wanted.top;
        }));
    }
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    for (size_t i = 0; i < titles.size(); ++i) {
        OffsetRect(&before[i], 70, 30);
        EXPECT_TRUE(WaitUntil([&] {
            return Of(PlaceOf(FindComponent(titles[i]))) == Of(before[i]);
        })) << titles[i];
    }
}
