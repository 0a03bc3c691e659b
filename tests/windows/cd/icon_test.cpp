// The CD icon over a drive of the test's making: its menu's entries, and what they do.
#include "cd/icon_win.h"
#include "engine_kit.h"

#include <string>

namespace {
class CdIcon : public Engine {
protected:
    void SetUp() override {
        Engine::SetUp();
        UseFake({{150, 75}, "2000001"});
        ASSERT_TRUE(Start());
        Do(kCdRecordChanged);
        CDInfoRecord record = Record();
        strcpy(record.trackTitles[0], "Salt & Pepper");
        record.program[0] = WholeTrackSegment(record, 2);
        record.program[1] = {MakeTmsf(1, 0, 10, 0), MakeTmsf(1, 1, 5, 0)};
        record.programCount = 2;
        ASSERT_TRUE(SetCdRecord(record));
        Drain();
        ASSERT_TRUE(StartComponentThread(CdIconThread(), GetModuleHandleA(nullptr), m_owner));
    }
    void TearDown() override {
        StopComponentThread(CdIconThread());
        Engine::TearDown();
    }
    static void Icon(WPARAM command, LPARAM lParam = 0) {
        SendMessageA(CdIconThread()->Window, WM_COMMAND, command, lParam);
        Drain();
    }
    // Every entry: "[" for a new column, "+" for a check, its id, its text; "-" for a separator.
    static std::string Entries(HMENU menu) {
        std::string all;
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            char text[200] = "";
            MENUITEMINFOA item = {};
            item.cbSize = sizeof item;
            item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
            item.dwTypeData = text;
            item.cch = sizeof text;
            GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &item);
            all += item.fType & MFT_MENUBREAK ? "[" : "";
            all += item.fState & MFS_CHECKED ? "+" : "";
            all += item.fType & MFT_SEPARATOR ? "-"
                   : item.hSubMenu            ? ""
                                              : std::to_string(item.wID) + " ";
            all += std::string(text) + "\n";
        }
        return all;
    }
    static std::string Menu() {
        HWND window = nullptr;
        PostMessageA(CdIconThread()->Window, WM_COMMAND, kCdIconCallback, WM_RBUTTONUP);
        if (!WaitUntil([&] { return IsWindowVisible(window = FindWindowA("#32768", nullptr)); }))
            return "no menu";
        const auto menu = reinterpret_cast<HMENU>(SendMessageA(window, MN_GETHMENU, 0, 0));
        const std::string entries = Entries(menu);
        RECT last = {}; // of the tracks
        for (UINT i = 0; GetMenuItemID(menu, static_cast<int>(i)) >= kCdIconEntryFirst; ++i)
            GetMenuItemRect(nullptr, menu, i, &last);
        EXPECT_LE(last.bottom, GetSystemMetrics(SM_CYSCREEN));
        PostMessageA(CdIconThread()->Window, WM_CANCELMODE, 0, 0);
        WaitUntil([=] { return !IsWindow(window); });
        return entries;
    }
};
} // namespace

static const std::string kEnd = "-\n710 CD Info\n711 Configure CD Engine...\nCD Drive\n";

TEST_F(CdIcon, MenuTellsTracksTransportAndModes) {
    const std::string off = "-\n706 Repeat\n707 Random\n708 Program\n709 Intro\n";
    EXPECT_EQ(Menu(), "800 Salt && Pepper\n801 Track 2\n[700 Play\n701 Eject\n" + off + kEnd);
    Icon(801); // track 2
    s_fake.mode = kModePlay;
    s_fake.position = MakeTmsf(2, 0, 5, 0);
    EXPECT_EQ(Now().track, 2);
    EXPECT_EQ(Menu(),
              "800 Salt && Pepper\n+801 Track 2\n[702 Stop\n703 Pause\n704 Fwd\n705 Bkwd\n" + off +
                  kEnd);
    Icon(kCdIconCallback, WM_LBUTTONDOWN);
    EXPECT_TRUE(CdIsPaused());
    EXPECT_NE(Menu().find("+703 Pause"), std::string::npos);
    Icon(kCdIconStop);
    EXPECT_FALSE(CdIsBusy());
    Icon(kCdIconProgram);
    Icon(kCdIconRepeat);
    EXPECT_EQ(Menu(), "+800 Track 2 (01:15)\n"
                      "801 T001:M000:S010 - T001:M001:S005   (00:55)\n[700 Play\n701 "
                      "Eject\n-\n+706 Repeat\n707 Random\n+708 Program\n709 Intro\n" +
                          kEnd);
    Icon(801); // the program's second entry now
    EXPECT_EQ(Now().track, 1);
    EXPECT_EQ(Now().listIndex, 1);
    s_fake.mode = kModePlay;
    s_fake.position = MakeTmsf(1, 0, 30, 0);
    Icon(kCdIconBack); // the same entry again, from its start
    EXPECT_EQ(s_fake.Played().from, MakeTmsf(1, 0, 10, 0));
    Icon(kCdIconForward);
    EXPECT_EQ(Now().listIndex, 0) << "round the end";
}

TEST_F(CdIcon, EveryTrackOfALongDiscIsWithinReach) {
    s_fake.mode = kModeOpen;
    Poll();
    UseFake({std::vector<uint32_t>(99, 75), "2000002"});
    Poll();
    const std::string entries = Menu();
    EXPECT_NE(entries.find("898 Track 99\n[700 Play"), std::string::npos) << entries;
}
