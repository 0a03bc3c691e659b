// The CD player window as a user sees it: texts, buttons, pages, modes, slider, segment repeater
// and menu commands, with tone discs in the drive.
#include "tests/program/harness.h"
#include "tests/support/screen_win.h"
#include "tests/support/tone_disc.h"

#include <vector>

constexpr const char* kPlayer = "CDPlayerUI";

namespace {
class PlayerTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        std::vector<ToneTrack> tracks(30, {660, 225}); // 3 s each, the first one 20 s
        tracks[0] = {440, 1500};
        static const std::string s_long = MakeToneDisc(kProgramFolder, "thirty", tracks).cue;
        PutImage(s_long);
        SwitchOn("CDEngineOn");
        SwitchOn(kPlayer);
    }
    void StartPlayer() {
        Start();
        ASSERT_TRUE(WaitUntil([] { return Text(741) == "D: 01:47"; })) << Text(741);
        player = FindComponent(kPlayer);
    }
    static std::string Text(int id) { return ChildText(FindComponent(kPlayer), id); }
    static bool Enabled(int id) { return IsWindowEnabled(Child(FindComponent(kPlayer), id)) != 0; }
    static bool TextBegins(int id, const char* begin) {
        return WaitUntil([=] { return Text(id).find(begin) == 0; });
    }
    // Elapsed seconds as display 703 shows them; -1 while it is empty or shows another track.
    static int Shown(int track = 0) {
        int number = 0, minutes = 0, seconds = 0;
        if (sscanf(Text(703).c_str(), "[%d] %d:%d", &number, &minutes, &seconds) != 3) return -1;
        return track && number != track ? -1 : minutes * 60 + seconds;
    }
    static bool ShowsTrack(int wanted) {
        return WaitUntil([=] { return Shown(wanted) >= 0; });
    }
    static bool Lit(int id) { return IsLit(Child(FindComponent(kPlayer), id)); }
    static bool TurnsLit(int id, bool on) {
        return WaitUntil([=] { return Lit(id) == on; });
    }
    void Mouse(int id, UINT message, int x, int y, WPARAM buttons = 0) {
        PostMessageA(Child(player, id), message, buttons, MAKELPARAM(x, y));
    }
    HWND player = nullptr;
};
} // namespace

TEST_F(PlayerTest, PagesThroughThirtyTracksAndFollowsAnotherDisc) {
    StartPlayer();
    EXPECT_EQ(Text(700), "Unknown CD Title");
    EXPECT_EQ(Text(702) + Text(703) + Text(740), "") << "nothing plays";
    Command(player, 735);
    Command(player, 735);
    ASSERT_TRUE(WaitUntil([] { return Text(710) == "11"; }));
    EXPECT_EQ(Text(729), "30");
    EXPECT_TRUE(Enabled(736) && !Enabled(735)) << "track 30 is in sight";
    PutImage(MakeToneDisc(kProgramFolder, "twelve", {12, {330, 150}}).cue);
    ASSERT_TRUE(TextBegins(741, "D: 00:24")) << Text(741);
    EXPECT_TRUE(Enabled(721) && Text(721) == "12");
    EXPECT_FALSE(Enabled(722) || Enabled(729) || Enabled(735) || Enabled(736));
}

TEST_F(PlayerTest, TransportByButtonsKeysAndMenuCommands) {
    StartPlayer();
    Command(player, 704);
    ASSERT_TRUE(ShowsTrack(1));
    EXPECT_EQ(Text(703).substr(9), " / 00:20");
    EXPECT_EQ(Text(702), "Track 1");
    EXPECT_TRUE(TurnsLit(704, true) && TurnsLit(710, true));
    PostMessageA(player, WM_KEYDOWN, VK_NEXT, 1);
    EXPECT_TRUE(ShowsTrack(2));
    Command(player, 600 + 30);
    EXPECT_TRUE(ShowsTrack(30)) << "track entry of the menu";
    // The menu's entry for track 100 has the number of the title display, whose double click opens
    // the editor.
    const auto editor = [] { return FindWindowA("#32770", "CD Information"); };
    Command(player, 700);
    Command(player, 735);
    ASSERT_TRUE(WaitUntil([] { return Text(710) == "6"; }));
    EXPECT_FALSE(editor());
    Command(player, 710);
    EXPECT_TRUE(ShowsTrack(6)) << "the page counts";
    PostMessageA(player, WM_COMMAND, MAKEWPARAM(700, 5),
                 reinterpret_cast<LPARAM>(Child(player, 700)));
    EXPECT_TRUE(WaitUntil([=] { return editor() != nullptr; }));
    Command(editor(), IDCANCEL);
    PostMessageA(player, WM_KEYDOWN, VK_PAUSE, 1);
    EXPECT_TRUE(TurnsLit(707, true));
    Command(player, 708);
    EXPECT_TRUE(WaitUntil([] { return Text(703) + Text(740) + Text(702) == ""; }));
    EXPECT_TRUE(TurnsLit(704, false) && TurnsLit(707, false));
}

TEST_F(PlayerTest, SliderShowsTheThumbsTimeAndSeeks) {
    StartPlayer();
    Command(player, 704);
    ASSERT_TRUE(ShowsTrack(1));
    Command(player, 707); // a thumb that stands still is easier to catch
    ASSERT_TRUE(TurnsLit(707, true));
    RECT client;
    GetClientRect(Child(player, 737), &client);
    const int y = client.bottom / 2, start = 4 + Shown() * (client.right - 12) / 20;
    const int end = client.right * 6 / 10;
    Mouse(737, WM_LBUTTONDOWN, start, y, MK_LBUTTON);
    Mouse(737, WM_MOUSEMOVE, end, y, MK_LBUTTON);
    ASSERT_TRUE(WaitUntil([] { return Shown() >= 11 && Shown() <= 13; })) << Text(703);
    const int wanted = Shown();
    Sleep(600); // at least one tick of the window's timer
    EXPECT_EQ(Shown(), wanted) << "a tick must not take the display from the thumb";
    Mouse(737, WM_LBUTTONUP, end, y);
    ASSERT_TRUE(TurnsLit(707, false)) << "a seek plays on";
    EXPECT_TRUE(WaitUntil([=] { return Shown() > wanted; })) << Text(703);
}

TEST_F(PlayerTest, SegmentRepeaterLoopsAStretchAndKeepsItAsProgram) {
    StartPlayer();
    Command(player, 710);
    ASSERT_TRUE(WaitUntil([] { return Shown() >= 1; }));
    Mouse(742, WM_LBUTTONDOWN, 4, 4, MK_LBUTTON);
    const int from = Shown();
    ASSERT_TRUE(WaitUntil([=] { return Shown() >= from + 2; }));
    Mouse(742, WM_LBUTTONUP, 4, 4);
    ASSERT_TRUE(TurnsLit(733, true) && TurnsLit(730, true));
    int length = 0;
    ASSERT_TRUE(WaitUntil([&] {
        return sscanf(Text(741).c_str(), "D: 00:%d", &length) == 1 && length < 20;
    })) << Text(741);
    EXPECT_TRUE(length >= 1 && length <= 5) << length;
    // It loops: the display comes to the stretch's end and back to its start.
    EXPECT_TRUE(WaitUntil([=] { return Shown() >= from + length - 1; })) << Text(703);
    EXPECT_TRUE(WaitUntil([=] { return Shown() >= 0 && Shown() <= from + 1; })) << Text(703);
    const std::string total = Text(741);
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_TRUE(TextBegins(741, total.c_str())) << "the disc's stored program: " << Text(741);
    EXPECT_TRUE(TurnsLit(733, true));
}

// A modal loop must not keep the window alive until its thread is killed.
TEST_F(PlayerTest, ClosesAtOnceFromUnderItsMenu) {
    StartPlayer();
    PostMessageA(player, WM_CONTEXTMENU, 0, MAKELPARAM(0, 0));
    ASSERT_TRUE(WaitUntil([] { return FindWindowA("#32768", nullptr) != nullptr; }));
    const DWORD start = GetTickCount();
    Command(FindConsole(), kConsoleCdPlayer);
    ASSERT_TRUE(WaitUntil([] { return ReadWindowDword(1, kPlayer, 9) == 0; }));
    EXPECT_LT(GetTickCount() - start, 1500u) << "a stuck thread is killed after 2 s";
    Command(FindConsole(), kConsoleCdPlayer);
    EXPECT_TRUE(TextBegins(741, "D: 01:47"));
}
