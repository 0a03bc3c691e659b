// The CD player window as a user sees it: texts, buttons, pages, modes, slider, segment repeater
// and menu commands, with tone discs in the drive.
#include "tests/program/harness.h"
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
    // Silent tracks of a second as WAV files; the last one of 4 s.
    static std::string MakeFolder(int tracks) {
        const std::string folder = std::string(kProgramFolder) + "\\folder";
        CreateDirectoryA(folder.c_str(), nullptr);
        for (int i = 1; i <= tracks; ++i) {
            const uint32_t bytes = (i == tracks ? 300 : 75) * kSamplesPerFrame * 4;
            const uint32_t header[] = {0x46464952, bytes + 36, 0x45564157, 0x20746D66,
                                       16,         0x20001,    44100,      176400,
                                       0x100004,   0x61746164, bytes};
            std::string file(reinterpret_cast<const char*>(header), sizeof header);
            file.resize(file.size() + bytes);
            char name[16];
            snprintf(name, sizeof name, "\\%03d.wav", i);
            WriteWholeFile(folder + name, file.data(), file.size());
        }
        return folder;
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
    // A lit label is blue by default, an unlit one black on grey.
    static bool IsLit(int id) {
        const RECT button = PlaceOf(Child(FindComponent(kPlayer), id));
        const HDC dc = GetDC(nullptr);
        int blue = 0;
        for (int y = button.top + 3; y < button.bottom - 3; ++y)
            for (int x = button.left + 3; x < button.right - 3; ++x) {
                const COLORREF color = GetPixel(dc, x, y);
                blue += GetBValue(color) > GetRValue(color) + 40;
            }
        ReleaseDC(nullptr, dc);
        return blue > 3;
    }
    static bool TurnsLit(int id, bool on) {
        return WaitUntil([=] { return IsLit(id) == on; });
    }
    static uint32_t EngineSetting(const char* name) {
        return ReadRegDword(kUserRoot, "Software\\Tonvista\\CDEngine", name);
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
    EXPECT_TRUE(Enabled(729) && Enabled(735) && !Enabled(736));
    Command(player, 735);
    Command(player, 735);
    ASSERT_TRUE(WaitUntil([] { return Text(710) == "11"; }));
    EXPECT_EQ(Text(729), "30");
    EXPECT_TRUE(Enabled(736) && !Enabled(735)) << "track 30 is in sight";
    Command(player, 735);
    EXPECT_TRUE(WaitUntil([] { return Text(710) == "1"; })) << "a page past the end is not kept";
    PutImage(MakeToneDisc(kProgramFolder, "twelve", {12, {330, 150}}).cue);
    ASSERT_TRUE(TextBegins(741, "D: 00:24")) << Text(741);
    EXPECT_EQ(Text(721), "12");
    EXPECT_TRUE(Enabled(721));
    EXPECT_FALSE(Enabled(722) || Enabled(729) || Enabled(735) || Enabled(736));
}

TEST_F(PlayerTest, TransportByButtonsKeysAndMenuCommands) {
    StartPlayer();
    Command(player, 704);
    ASSERT_TRUE(ShowsTrack(1));
    EXPECT_EQ(Text(703).substr(9), " / 00:20");
    EXPECT_EQ(Text(702), "Track 1");
    EXPECT_TRUE(TurnsLit(704, true) && TurnsLit(710, true));
    Command(player, 706);
    EXPECT_TRUE(ShowsTrack(2));
    PostMessageA(player, WM_KEYDOWN, VK_NEXT, 1);
    EXPECT_TRUE(ShowsTrack(3));
    PostMessageA(player, WM_KEYDOWN, VK_PRIOR, 1);
    EXPECT_TRUE(ShowsTrack(2));
    Command(player, 600 + 30);
    EXPECT_TRUE(ShowsTrack(30)) << "track entry of the menu";
    Command(player, 735);
    ASSERT_TRUE(WaitUntil([] { return Text(710) == "6"; }));
    Command(player, 710);
    EXPECT_TRUE(ShowsTrack(6)) << "the page counts";
    PostMessageA(player, WM_KEYDOWN, VK_PAUSE, 1);
    EXPECT_TRUE(TurnsLit(707, true));
    Command(player, 708);
    EXPECT_TRUE(WaitUntil([] { return Text(703) + Text(740) + Text(702) == ""; }));
    EXPECT_TRUE(TurnsLit(704, false) && TurnsLit(707, false));
    Command(player, 761);
    EXPECT_TRUE(TextBegins(700, "Drive Door is Open")) << "the image was taken out";
    EXPECT_FALSE(Enabled(710));
}

// The menu's entry for track 100 has the number of the title display.
TEST_F(PlayerTest, TrackHundredAndADoubleClickOnTheTitleAreToldApart) {
    PutImage(MakeFolder(100));
    Start();
    player = FindComponent(kPlayer);
    ASSERT_TRUE(TextBegins(741, "D: 01:43")) << Text(741);
    Command(player, 700);
    EXPECT_TRUE(ShowsTrack(100)) << Text(703);
    const auto editor = [] { return FindWindowA("#32770", "CD Information"); };
    EXPECT_FALSE(editor());
    PostMessageA(player, WM_COMMAND, MAKEWPARAM(700, 5),
                 reinterpret_cast<LPARAM>(Child(player, 700)));
    EXPECT_TRUE(WaitUntil([=] { return editor() != nullptr; }));
    Command(editor(), IDCANCEL);
    EXPECT_TRUE(WaitUntil([=] { return !editor(); }));
    EXPECT_LT(AnswerTime(player), 1000u);
}

TEST_F(PlayerTest, ModesAreToggledShownAndKept) {
    StartPlayer();
    const struct {
        int id;
        const char* value; // null: never stored
    } rows[] = {
        {730, "Repeat"}, {731, "Random"}, {732, "Intro"}, {733, "Programmed"}, {744, nullptr}};
    for (const uint32_t on : {1u, 0u})
        for (const auto& row : rows) {
            Command(player, row.id);
            EXPECT_TRUE(TurnsLit(row.id, on != 0)) << row.id;
            if (!row.value) continue;
            EXPECT_TRUE(WaitUntil([&] { return (EngineSetting(row.value) != 0) == (on != 0); }))
                << row.value;
        }
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
    Sleep(700); // at least one tick of the window's timer
    EXPECT_EQ(Shown(), wanted) << "a tick must not take the display from the thumb";
    Mouse(737, WM_LBUTTONUP, end, y);
    ASSERT_TRUE(TurnsLit(707, false)) << "a seek plays on";
    EXPECT_TRUE(WaitUntil([=] { return Shown() > wanted; })) << Text(703);
    EXPECT_LE(Shown(), wanted + 4);
    // A click beside the thumb is a page back; its release, later, asks for nothing more.
    Command(player, 707);
    ASSERT_TRUE(TurnsLit(707, true));
    const int before = Shown();
    Mouse(737, WM_LBUTTONDOWN, 3, y, MK_LBUTTON);
    ASSERT_TRUE(TurnsLit(707, false)) << Text(703);
    Command(player, 707);
    ASSERT_TRUE(TurnsLit(707, true));
    EXPECT_TRUE(WaitUntil([=] { return Shown() < before; })) << Text(703);
    Mouse(737, WM_LBUTTONUP, 3, y);
    Sleep(700);
    EXPECT_TRUE(IsLit(707)) << "still paused";
}

TEST_F(PlayerTest, SegmentRepeaterLoopsAStretchAndKeepsItAsProgram) {
    StartPlayer();
    Command(player, 710);
    ASSERT_TRUE(WaitUntil([] { return Shown() >= 2; }));
    Mouse(742, WM_LBUTTONDOWN, 4, 4, MK_LBUTTON);
    const int from = Shown();
    ASSERT_TRUE(WaitUntil([=] { return Shown() >= from + 3; }));
    Mouse(742, WM_LBUTTONUP, 4, 4);
    ASSERT_TRUE(TurnsLit(733, true) && TurnsLit(730, true));
    int length = 0;
    ASSERT_TRUE(WaitUntil([&] {
        return sscanf(Text(741).c_str(), "D: 00:%d", &length) == 1 && length < 20;
    })) << Text(741);
    EXPECT_GE(length, 2);
    EXPECT_LE(length, 6);
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
TEST_F(PlayerTest, ClosesAtOnceFromUnderItsMenuAndItsDialogs) {
    StartPlayer();
    const struct {
        UINT message, id;
        const char *windowClass, *caption;
    } rows[] = {{WM_CONTEXTMENU, 0, "#32768", nullptr},
                {WM_COMMAND, 760, "#32770", "Put a Disc Image into the Drive"},
                {WM_COMMAND, 734, "#32770", "CD Information"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.caption ? row.caption : "context menu");
        player = FindComponent(kPlayer);
        PostMessageA(player, row.message, row.id, MAKELPARAM(0, 0));
        const auto opened = [&] {
            const HWND found = FindWindowA(row.windowClass, row.caption);
            return found && IsWindowVisible(found);
        };
        ASSERT_TRUE(WaitUntil(opened));
        const DWORD start = GetTickCount();
        Command(FindConsole(), kConsoleCdPlayer);
        ASSERT_TRUE(WaitUntil([] { return ReadWindowDword(1, kPlayer, 9) == 0; }));
        EXPECT_LT(GetTickCount() - start, 1500u) << "a stuck thread is killed after 2 s";
        EXPECT_FALSE(opened());
        Command(FindConsole(), kConsoleCdPlayer);
        ASSERT_TRUE(WaitUntil([] { return FindComponent(kPlayer) != nullptr; }));
        EXPECT_TRUE(TextBegins(741, "D: 01:47"));
    }
}
