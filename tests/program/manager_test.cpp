// The database manager as a user drives it: browsing, sorting, searching, editing, deleting, copy
// and paste, with three discs and with ten thousand, and with a database that others hold.
#include "archive/clipboard.h"
#include "archive/manager_layout.h"
#include "cdinfo/store.h"
#include "tests/program/harness.h"
#include "tests/support/big_archive.h"
#include "tests/support/list_peer.h"
#include "tests/support/tone_disc.h"

#include <fstream>
#include <functional>
#include <memory>
#include <set>

constexpr const char* kManager = "CDInfoUI";
constexpr const char* kSection = "Software\\Tonvista\\CDInfoUI";
constexpr int kCellEdit = 728, kViewFirst = 740, kSortFirst = 730, kEditorComment = 601;

static std::wstring WideDatabase() {
    const std::string path = DatabasePath();
    return {path.begin(), path.end()};
}

static void WriteDatabase(uint32_t discs) {
    const std::vector<uint8_t> bytes = BigArchive(discs);
    std::ofstream(DatabasePath(), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

static void AddDisc(uint32_t identity, const char* title,
                    std::initializer_list<const char*> artists, uint32_t seconds,
                    const char* comment) {
    auto record = std::make_unique<CDInfoRecord>();
    SetIdentity(record.get(), identity);
    CopyText(record->title, title);
    CopyText(record->comment, comment);
    record->trackStarts[0] = 150;
    for (const char* artist : artists) {
        const int track = record->trackCount++;
        CopyText(record->trackArtists[track], artist);
        DefaultTrackTitle(record->trackTitles[track], track + 1);
        record->trackStarts[track + 1] = record->trackStarts[track] + 75 * seconds;
    }
    DefaultProgram(record.get());
    ASSERT_TRUE(AddOrReplace(WideDatabase().c_str(), *record, 0, nullptr));
}

static std::string StoredTitle(uint32_t identity) {
    auto record = std::make_unique<CDInfoRecord>();
    return ReadEntry(WideDatabase().c_str(), identity, record.get()) ? record->title : "-";
}

namespace {
class ManagerTest : public ProgramTest {
protected:
    void TearDown() override {
        list.reset();
        ProgramTest::TearDown();
        DeleteRegTree(kUserRoot, kSection);
    }
    void ThreeDiscs() {
        AddDisc(0x11, "Beta", {"Zoe", "Zoe"}, 100, "loud");
        AddDisc(0x22, "Alpha", {"Yann", "Xaver"}, 2000, "");
        AddDisc(0x33, "alpha", {"Will"}, 50, "soft");
    }
    void Open(int discs) {
        if (!FindConsole()) Start();
        Command(FindConsole(), kConsoleDatabase);
        ASSERT_TRUE(WaitUntil([&] { // the list is the last of what is made
            window = FindComponent(kManager);
            return window && Child(window, kManagerList) && GetForegroundWindow() == window;
        })); // the console brings it forward, which would end what is typed before
        list = std::make_unique<ListPeer>(Child(window, kManagerList));
        ASSERT_TRUE(WaitUntil([&] { return list->Count() == discs; }, 30000)) << list->Count();
    }
    void Shut() {
        list.reset();
        Command(window, kManagerPower);
        ASSERT_TRUE(WaitUntil([] { return !FindComponent(kManager); }));
    }
    std::string Text(int id) const { return ChildText(window, id); }
    bool Shows(int id, const std::string& text) const {
        return WaitUntil([&] { return Text(id) == text; });
    }
    bool Enabled(int id) const { return IsWindowEnabled(Child(window, id)) != 0; }
    // All cells of a column, "|" between.
    std::string Column(int column) const {
        std::string text;
        for (int row = 0; row < list->Count(); ++row)
            text += (row ? "|" : "") + list->Cell(row, column);
        return text;
    }
    bool Becomes(int column, const std::string& text) const {
        return WaitUntil([&] { return Column(column) == text; });
    }
    void Key(WPARAM key) const { Ask(list->list, WM_KEYDOWN, key, 1); }
    // Types over what the open cell holds and leaves it with that key.
    bool Type(const char* text, WPARAM key) const {
        const HWND edit = GetDlgItem(list->list, kCellEdit);
        if (!WaitUntil([&] { return IsWindowVisible(edit) != 0; })) return false;
        for (const char* c = text; *c; ++c)
            Ask(edit, WM_CHAR, static_cast<uint8_t>(*c), 1);
        return Ask(edit, WM_KEYDOWN, key, 1);
    }
    void Search(const char* words) const {
        const HWND search = Child(window, kManagerSearch);
        Ask(search, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(words));
    }
    int RowOf(const std::string& title) const {
        for (int row = 0; row < list->Count(); ++row)
            if (list->Cell(row, 0) == title) return row;
        return -1;
    }
    std::string FocusedTitle() const {
        const int row = list->Next(-1, LVNI_FOCUSED);
        return row < 0 ? "none" : list->Cell(row, 0);
    }
    HWND window = nullptr;
    std::unique_ptr<ListPeer> list;
};
} // namespace

TEST_F(ManagerTest, ShowsThreeViewsInEveryOrder) {
    ThreeDiscs();
    Open(3);
    EXPECT_EQ(Column(0), "alpha|Alpha|Beta");
    EXPECT_EQ(Column(1) + " " + Column(2), "Will|Various|Zoe 0:50|1:06:40|3:20");
    EXPECT_EQ(Text(kManagerView) + Text(kManagerSort) + Text(kManagerProgress),
              "CD ViewSort by CD (A)3 CDs");
    EXPECT_TRUE(Shows(kManagerSummary, "0 CD's Selected"));
    list->SelectOnly(RowOf("Beta"));
    EXPECT_TRUE(WaitUntil([&] { return Text(kManagerSummary).find("[Beta] by [Zoe]") != -1u; }));
    Command(window, kSortFirst + 1);
    EXPECT_TRUE(Becomes(1, "Various|Will|Zoe"));
    Command(window, kManagerSort);
    EXPECT_TRUE(Becomes(2, "0:50|3:20|1:06:40"));
    EXPECT_EQ(FocusedTitle(), "Beta") << "focus and selection stay with their rows";
    EXPECT_EQ(list->Next(-1, LVNI_SELECTED), 1);
    EXPECT_EQ(Text(kManagerSort), "Sort by Time (A)");

    const HWND header = reinterpret_cast<HWND>(list->Send(LVM_GETHEADER, 0, 0));
    RECT place;
    GetWindowRect(header, &place);
    const auto clickHead = [&] { // the last column's
        const LPARAM at = MAKELPARAM((place.right - place.left) * 7 / 10, 5);
        PostMessageA(header, WM_LBUTTONDOWN, MK_LBUTTON, at);
        PostMessageA(header, WM_LBUTTONUP, 0, at);
    };
    clickHead();
    EXPECT_TRUE(Becomes(3, "|loud|soft"));
    clickHead();
    EXPECT_TRUE(Becomes(3, "soft|loud|"));
    EXPECT_EQ(Text(kManagerSort), "Sort by Comment (D)");

    Command(window, kManagerToggle);
    EXPECT_TRUE(Shows(kManagerProgress, "5 Entries"));
    Command(window, kSortFirst + 5);
    Command(window, 723); // the other direction
    EXPECT_TRUE(Becomes(5, "1|1|1|2|2")) << Column(5);
    EXPECT_EQ(Column(1), "Will|Yann|Zoe|Xaver|Zoe");
    EXPECT_EQ(Text(kManagerView) + Text(kManagerSort), "Track ViewSort by Track # (A)");
    EXPECT_EQ(Text(kManagerSummary), "");
    for (int id = kManagerExport; id <= kManagerToggle; ++id)
        EXPECT_EQ(Enabled(id), id >= kManagerPrint) << id;
    list->SelectOnly(0);
    for (const UINT id : {kManagerDelete, kManagerSelect}) // by keys and menus just as little
        Command(window, id);
    AnswerTime(window);
    EXPECT_EQ(list->Selected(), 1);
    Command(window, kManagerToggle);
    EXPECT_TRUE(Shows(kManagerProgress, "4 Entries"));
    EXPECT_EQ(Text(kManagerView) + Text(kManagerSort), "Artist ViewSort by CD (A)");
    EXPECT_TRUE(Becomes(1, "Will|Xaver|Yann|Zoe")) << Column(1);
    EXPECT_TRUE(Enabled(kManagerDelete) && Enabled(kManagerExport));
    Command(window, kManagerToggle);
    EXPECT_TRUE(Shows(kManagerProgress, "3 CDs"));
    EXPECT_EQ(StoredTitle(0x11) + StoredTitle(0x22) + StoredTitle(0x33), "BetaAlphaalpha");
}

TEST_F(ManagerTest, EditsInPlaceAndInTheEditor) {
    ThreeDiscs();
    Open(3);
    list->SelectOnly(0);
    Key(VK_F2);
    ASSERT_TRUE(Type("Omega", VK_TAB));
    ASSERT_TRUE(Type("Vera", VK_TAB));
    ASSERT_TRUE(Type("typed", VK_RETURN));
    EXPECT_TRUE(Becomes(0, "Alpha|Beta|Omega")) << Column(0);
    EXPECT_EQ(Column(1) + " " + Column(3), "Various|Zoe|Vera |loud|typed");
    EXPECT_EQ(FocusedTitle(), "Omega");
    EXPECT_TRUE(WaitUntil([] { return StoredTitle(0x33) == "Omega"; }));
    auto record = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(ReadEntry(WideDatabase().c_str(), 0x33, record.get()));
    EXPECT_EQ(1, record->revision) << "one change of the row";
    Key(VK_F2);
    ASSERT_TRUE(Type("gone", VK_ESCAPE));
    list->SelectOnly(RowOf("Alpha"));
    Key(VK_F2);
    ASSERT_TRUE(Type("Alpha", VK_TAB)); // the artist's cell of several is passed over
    ASSERT_TRUE(Type("third", VK_DOWN));
    ASSERT_TRUE(Type("", VK_ESCAPE));
    EXPECT_TRUE(Becomes(3, "third|loud|typed"));
    Command(window, kViewFirst + 2);
    ASSERT_TRUE(Shows(kManagerProgress, "4 Entries"));
    list->SelectOnly(0);
    ASSERT_EQ(list->Cell(0, 1), "Xaver");
    Key(VK_F2);
    ASSERT_TRUE(Type("Alpha", VK_TAB));
    ASSERT_TRUE(Type("Ulla", VK_RETURN));
    EXPECT_TRUE(Becomes(1, "Ulla|Yann|Zoe|Vera")) << Column(1);
    Command(window, kViewFirst + 1);
    ASSERT_TRUE(Shows(kManagerProgress, "5 Entries"));
    list->SelectOnly(0);
    Key(VK_RETURN);
    ASSERT_TRUE(Type("Song", VK_RETURN));
    EXPECT_TRUE(WaitUntil([&] { return list->Cell(0, 4) == "Song"; }));
    Command(window, kViewFirst);

    ASSERT_TRUE(Shows(kManagerProgress, "3 CDs"));
    list->SelectOnly(RowOf("Beta"));
    Key(VK_RETURN);
    HWND editor = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        editor = GetLastActivePopup(window);
        return editor != window && IsWindowVisible(editor);
    }));
    Ask(Child(editor, 600), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Aaa"));
    Ask(Child(editor, 600), EM_SETMODIFY, 1, 0);
    Command(editor, IDOK);
    EXPECT_TRUE(Becomes(0, "Aaa|Alpha|Omega"));
    EXPECT_TRUE(WaitUntil([] { return StoredTitle(0x11) == "Aaa"; }));
    // Changed by somebody else, as the engine tells it.
    AddDisc(0x22, "Elsewhere", {"Yann"}, 10, "");
    Command(window, kDatabaseChanged, 0x22);
    EXPECT_TRUE(Becomes(0, "Aaa|Elsewhere|Omega"));
    // Typed to the last moment: the window takes it along.
    list->SelectOnly(0);
    Key(VK_F2);
    ASSERT_TRUE(Type("Last words", VK_SHIFT));
    EXPECT_EQ(0, Close());
    EXPECT_EQ(StoredTitle(0x11), "Last words");
}

TEST_F(ManagerTest, KeepsWhatAForeignProcessHolds) {
    ThreeDiscs();
    Open(3);
    const HANDLE holder =
        CreateFileA(DatabasePath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    list->SelectOnly(0);
    Command(window, kManagerDelete);
    EXPECT_TRUE(Shows(kManagerProgress, "Database In Use"));
    EXPECT_EQ(list->Count(), 3);
    EXPECT_EQ(list->Selected(), 0) << "the row is left, and left alone";
    const auto edit = [&](const char* text) {
        list->SelectOnly(0);
        Key(VK_F2);
        return Type(text, VK_RETURN);
    };
    ASSERT_TRUE(edit("never"));
    ASSERT_TRUE(AnswerBox("CD Database", IDCANCEL));
    EXPECT_TRUE(Becomes(0, "alpha|Alpha|Beta"));
    ASSERT_TRUE(edit("at last"));
    ASSERT_TRUE(AnswerBox("CD Database", IDRETRY));
    CloseHandle(holder);
    EXPECT_TRUE(WaitUntil([] { return StoredTitle(0x33) == "at last"; }));
    Shut();
    // Held when the window opens: it comes as soon as it can be read.
    const HANDLE again = CreateFileA(DatabasePath().c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
    Open(0);
    EXPECT_TRUE(Shows(kManagerProgress, "Database Not Readable"));
    CloseHandle(again);
    EXPECT_TRUE(Becomes(0, "Alpha|at last|Beta")) << Column(0);
}

TEST_F(ManagerTest, DeletesThreeAtOnceAndAsksForFour) {
    WriteDatabase(10000);
    Open(10000);
    EXPECT_EQ(Text(kManagerProgress), "10000 CDs");
    std::string first[8];
    for (int row = 0; row < 8; ++row)
        first[row] = list->Cell(row, 0) + list->Cell(row, 1);
    for (const int row : {0, 2, 3})
        list->Select(row);
    EXPECT_TRUE(Shows(kManagerSummary, "3 CD's Selected"));
    Key(VK_DELETE);
    EXPECT_TRUE(Shows(kManagerProgress, "9997 CDs"));
    EXPECT_EQ(list->Cell(0, 0) + list->Cell(0, 1), first[1]);
    EXPECT_EQ(list->Cell(1, 0) + list->Cell(1, 1), first[4]);
    EXPECT_EQ(list->Selected(), 0);
    for (const int row : {0, 1, 2, 9000})
        list->Select(row);
    std::string question;
    Command(window, kManagerDelete);
    ASSERT_TRUE(AnswerBox("Are you sure?", IDNO, &question));
    EXPECT_EQ(question, "Delete these 4 CDs?");
    EXPECT_EQ(list->Count(), 9997);
    Command(window, kManagerDelete);
    ASSERT_TRUE(AnswerBox("Are you sure?", IDYES));
    EXPECT_TRUE(Shows(kManagerProgress, "9993 CDs"));
    EXPECT_EQ(CountEntries(WideDatabase().c_str()), 9994u) << "with the pair of a new database";

    // Copied, deleted, pasted.
    Command(window, kManagerSelect);
    EXPECT_TRUE(WaitUntil([&] { return list->Selected() == 9993; }));
    Command(window, kManagerSelect);
    EXPECT_TRUE(WaitUntil([&] { return list->Selected() == 0; }));
    list->Select(0), list->Select(1);
    Command(window, kManagerCopy);
    EXPECT_TRUE(WaitUntil([&] { return Enabled(kManagerPaste); }));
    Command(window, kManagerDelete);
    EXPECT_TRUE(Shows(kManagerProgress, "9991 CDs"));
    Command(window, kManagerPaste);
    EXPECT_TRUE(Shows(kManagerProgress, "9993 CDs"));
    EXPECT_EQ(list->Cell(0, 0) + list->Cell(0, 1), first[6]);

    // What others put there under our name.
    const HGLOBAL junk = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 4000);
    memset(GlobalLock(junk), 0x7F, 4000);
    GlobalUnlock(junk);
    ASSERT_TRUE(WaitUntil([] { return OpenClipboard(nullptr) && EmptyClipboard(); }));
    SetClipboardData(RegisterClipboardFormatA(kClipboardFormat), junk);
    CloseClipboard();
    Command(window, kManagerPaste);
    AnswerTime(window);
    ASSERT_TRUE(WaitUntil([] { return OpenClipboard(nullptr) && EmptyClipboard(); }));
    CloseClipboard();
    EXPECT_TRUE(WaitUntil([&] { return !Enabled(kManagerPaste); }));
    EXPECT_EQ(Text(kManagerProgress), "9993 CDs");
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(CountEntries(WideDatabase().c_str()), 9994u);
}

TEST_F(ManagerTest, NarrowsAsOneTypesAndFindsRows) {
    WriteDatabase(10000);
    Open(10000);
    const std::string wanted = BigRecord(4321)->title;
    Search(wanted.c_str());
    ASSERT_TRUE(WaitUntil([&] { return list->Count() > 0 && list->Count() < 100; }));
    ASSERT_GE(RowOf(wanted), 0);
    list->SelectOnly(RowOf(wanted));
    Search("no such words");
    EXPECT_TRUE(Shows(kManagerProgress, "0 CDs"));
    PostMessageA(Child(window, kManagerSearch), WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_TRUE(Shows(kManagerProgress, "10000 CDs"));
    EXPECT_EQ(FocusedTitle(), "none");
    EXPECT_EQ(list->Selected(), 1) << "what the search hid is selected still";
    EXPECT_EQ(list->Cell(list->Next(-1, LVNI_SELECTED), 0), wanted);
    Search(wanted.c_str());
    ASSERT_TRUE(WaitUntil([&] { return list->Count() < 100; }));
    Key(VK_ESCAPE); // from the list as well; and once more, when there is nothing to leave
    EXPECT_TRUE(Shows(kManagerProgress, "10000 CDs"));
    Key(VK_ESCAPE);
    // Typed into the list.
    for (const char c : {'w', 'i', 'n', 't'})
        PostMessageA(list->list, WM_CHAR, static_cast<WPARAM>(c), 1);
    EXPECT_TRUE(WaitUntil([&] { return FocusedTitle().find("winter") == 0; }));
}

TEST_F(ManagerTest, RemembersHowItWasLeft) {
    ThreeDiscs();
    // Nonsense first.
    const uint32_t junk = 0x80000001;
    for (const char* name :
         {"ColumnOrder0", "ColumnOrder3", "ColumnWidth1", "SortOrder", "ViewType", "SortDirection"})
        WriteRegValue(kUserRoot, kSection, name, kRegBinary, &junk, 4);
    WriteRegValue(kUserRoot, kSection, "CDListHeight", kRegDword, &junk, 4);
    Open(3);
    EXPECT_EQ(list->Order(4), "0123");
    RECT client;
    GetClientRect(window, &client);
    EXPECT_EQ(list->Send(LVM_GETCOLUMNWIDTH, 1, 0), client.right / 5);
    Command(window, kViewFirst + 1);
    Command(window, kSortFirst + 4);
    Command(window, 723);
    ASSERT_TRUE(Shows(kManagerSort, "Sort by Track (D)"));
    const int order[] = {5, 1, 4, 0, 3, 2};
    list->SetOrder(order, 6);
    list->Send(LVM_SETCOLUMNWIDTH, 4, 77);
    SetWindowPos(window, nullptr, 0, 0, 600, 400, SWP_NOMOVE | SWP_NOZORDER);
    const RECT before = PlaceOf(list->list);
    PostMessageA(window, WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, -40), 0);
    EXPECT_TRUE(WaitUntil([&] { return PlaceOf(list->list).bottom == before.bottom - 40; }));
    const int height = static_cast<int>(before.bottom - before.top) - 40;
    EXPECT_EQ(Close(), 0);
    uint32_t value = 0;
    EXPECT_TRUE(ReadRegValue(kUserRoot, kSection, "CDListHeight", kRegDword, &value, 4));
    EXPECT_EQ(value, static_cast<uint32_t>(height));
    EXPECT_TRUE(ReadRegValue(kUserRoot, kSection, "ColumnOrder0", kRegBinary, &value, 4));
    EXPECT_EQ(value, 5u);

    Open(5);
    EXPECT_EQ(Text(kManagerView) + Text(kManagerSort), "Track ViewSort by Track (D)");
    EXPECT_EQ(list->Order(6), "514032");
    EXPECT_EQ(list->Send(LVM_GETCOLUMNWIDTH, 4, 0), 77);
    const RECT after = PlaceOf(list->list);
    EXPECT_EQ(after.bottom - after.top, height);
    Command(window, kViewFirst);
    EXPECT_TRUE(Shows(kManagerSort, "Sort by CD (D)"));
    EXPECT_EQ(list->Order(4), "1032") << "without the columns that went";
    EXPECT_EQ(Close(), 0);
    Start();
    EXPECT_FALSE(FindComponent(kManager)) << "it is not restored";
}

TEST_F(ManagerTest, SharesTheDiscInTheDriveWithTheCdPlayer) {
    PutImage(MakeToneDisc(kProgramFolder, "shared", {{440, 300}, {550, 300}}).cue);
    SwitchOn("CDEngineOn");
    SwitchOn("CDPlayerUI");
    Open(1);
    const auto shown = [] { return ChildText(FindComponent("CDPlayerUI"), 700); };
    const auto retitle = [&](const char* title) {
        list->SelectOnly(0);
        Key(VK_F2);
        return Type(title, VK_RETURN);
    };
    const auto edit = [](int field, const char* text, const std::function<void()>& meanwhile) {
        const HWND player = FindComponent("CDPlayerUI");
        PostMessageA(player, WM_COMMAND, MAKEWPARAM(700, 5),
                     reinterpret_cast<LPARAM>(Child(player, 700)));
        HWND editor = nullptr;
        ASSERT_TRUE(WaitUntil([&] { return editor = FindWindowA("#32770", "CD Information"); }));
        meanwhile();
        Ask(Child(editor, field), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
        Ask(Child(editor, field), EM_SETMODIFY, 1, 0);
        Command(editor, IDOK);
        ASSERT_TRUE(WaitUntil([] { return !FindWindowA("#32770", "CD Information"); }));
    };
    ASSERT_TRUE(Becomes(0, "Unknown CD Title"));
    ASSERT_TRUE(retitle("From here"));
    EXPECT_TRUE(WaitUntil([&] { return shown() == "From here"; })) << shown();
    edit(kEditorComment, "from there", [] {});
    EXPECT_TRUE(Becomes(3, "from there"));
    EXPECT_EQ(list->Cell(0, 0), "From here");
    // Both at once.
    edit(kEditorComment, "again", [&] { ASSERT_TRUE(retitle("Meanwhile")); });
    EXPECT_TRUE(Becomes(3, "again"));
    EXPECT_TRUE(WaitUntil([&] { return list->Cell(0, 0) + shown() == "MeanwhileMeanwhile"; }));
    // Deleted here, it is in the drive still, and an edit brings it back whole.
    list->SelectOnly(0);
    Key(VK_DELETE);
    EXPECT_TRUE(Shows(kManagerProgress, "0 CDs"));
    EXPECT_EQ(shown(), "Meanwhile");
    edit(kEditorComment, "back", [] {});
    EXPECT_TRUE(Becomes(3, "back"));
    EXPECT_EQ(list->Cell(0, 0), "Meanwhile");
    Shut();
}
