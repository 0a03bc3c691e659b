// The CD information editor as a user meets it: on a component's thread, driven from outside by
// keys, clicks and button presses, closed by OK, by Cancel and by the component's end.
#include "cdinfo/editor_win.h"
#include "core/component_win.h"
#include "resources/ids.h"
#include "tests/windows/cdinfo/support.h"

#include <gtest/gtest.h>

constexpr UINT kOpenEditor = WM_APP;
constexpr UINT kMark = WM_APP + 1;

static std::unique_ptr<CDInfoRecord> s_record;
static volatile LONG s_result; // of the last editor; -1 while it is open
static volatile LONG s_marks;
static volatile LONG s_closed; // the component's thread has ended in order

static LRESULT OwnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kOpenEditor: s_result = EditCdInformation(window, s_record.get()); return 0;
    case kMark: InterlockedIncrement(&s_marks); return 0;
    case WM_CLOSE: DestroyWindow(window); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

static int OpenOwner(ComponentThread* component) {
    component->Window = CreateHiddenWindow(component->Instance, "TonvistaEditorTestOwner", "Owner",
                                           GuardedProc<OwnerProcedure>);
    return component->Window != nullptr;
}

class Editor : public testing::Test {
protected:
    ComponentThread owner = {};
    HWND dialog = nullptr;
    CDInfoRecord before;

    void SetUp() override {
        owner.title = "EditorTest";
        owner.Open = OpenOwner;
        owner.Close = [](ComponentThread*) { s_closed = 1; };
        s_closed = 0;
        s_record = MakeRecord(0x1234, "Disc", 3);
        DefaultProgram(s_record.get());
        ASSERT_TRUE(StartComponentThread(&owner, GetModuleHandleA(nullptr), nullptr));
    }
    void TearDown() override { StopComponentThread(&owner); }

    void Open() {
        before = *s_record;
        s_result = -1;
        PostMessageA(owner.Window, kOpenEditor, 0, 0);
        ASSERT_TRUE(Wait([&] { return (dialog = Popup()) && IsWindowVisible(dialog); }));
    }
    HWND Popup() const {
        const HWND popup = GetLastActivePopup(owner.Window);
        return popup == owner.Window ? nullptr : popup;
    }
    HWND Control(int id) const { return GetDlgItem(dialog, id); }
    // Messages posted to the thread so far are done when it comes to this one.
    void Settle() const {
        const LONG mark = s_marks;
        PostMessageA(owner.Window, kMark, 0, 0);
        EXPECT_TRUE(Wait([&] { return s_marks != mark; }));
    }
    HWND Focus() const {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(owner.threadId, &info);
        return info.hwndFocus;
    }
    void Key(WORD key) const {
        PostMessageA(Focus(), WM_KEYDOWN, key, 1);
        Settle();
    }
    void Type(const std::string& text) const {
        for (char c : text)
            PostMessageA(Focus(), WM_CHAR, static_cast<uint8_t>(c), 1);
        Settle();
    }
    void FocusOn(int id) const {
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
    }
    void Press(int id) const { SendMessageA(Control(id), BM_CLICK, 0, 0); }
    void Choose(int listId, int row) const {
        for (int at : {-1, row}) {
            LVITEMA item = {};
            item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
            item.state = at < 0 ? 0 : item.stateMask;
            SendMessageA(Control(listId), LVM_SETITEMSTATE, at, reinterpret_cast<LPARAM>(&item));
        }
    }
    void Put(int id, const char* text) const {
        SendMessageA(Control(id), EM_SETSEL, 0, -1);
        SendMessageA(Control(id), EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text));
    }
    std::string Cell(int listId, int row, int column) const {
        char text[300] = "";
        LVITEMA item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        SendMessageA(Control(listId), LVM_GETITEMTEXTA, row, reinterpret_cast<LPARAM>(&item));
        return text;
    }
    LONG End(int button) const {
        PostMessageA(dialog, WM_COMMAND, button, 0);
        EXPECT_TRUE(Wait([] { return s_result != -1; }));
        return s_result;
    }
};

TEST_F(Editor, CellsAreEditedByKeyboard) {
    strcpy(s_record->trackArtists[1], "Ben");
    Open();
    Put(IDC_EDITOR_TITLE, "Other");
    EXPECT_EQ(End(IDCANCEL), 0);
    EXPECT_EQ(memcmp(s_record.get(), &before, sizeof before), 0);
    Open();
    Press(IDC_EDITOR_SAME_ARTIST);
    EXPECT_EQ(Cell(IDC_EDITOR_TRACKS, 1, 1), "Artist");
    Press(IDC_EDITOR_SAME_ARTIST); // thought better of it
    EXPECT_EQ(Cell(IDC_EDITOR_TRACKS, 1, 1), "Ben");
    FocusOn(IDC_EDITOR_TRACKS);
    Key(VK_F2);
    Type(std::string(70, 'a'));
    Key(VK_RETURN);
    Type("Second");
    Key(VK_TAB);
    Type("remark");
    Key(VK_TAB); // on to the artist of track 3
    Type("Nobody");
    Key(VK_ESCAPE); // this cell alone is given up
    Type("Ann");    // typing opens the cell again
    FocusOn(IDC_EDITOR_TITLE);
    Type(" Night ");
    EXPECT_EQ(End(IDOK), 1);
    EXPECT_STREQ(s_record->trackArtists[2], "Ann") << "leaving a cell keeps it";
    EXPECT_EQ(s_record->trackTitles[0], std::string(63, 'a'));
    EXPECT_STREQ(s_record->trackTitles[1], "Second");
    EXPECT_STREQ(s_record->trackComments[1], "remark");
    EXPECT_STREQ(s_record->title, "Night");
    EXPECT_EQ(s_record->revision, before.revision + 1);
}

TEST_F(Editor, TheProgramIsBuilt) {
    Open();
    Press(IDC_EDITOR_CLEAR);
    Choose(IDC_EDITOR_TRACKS, 2); // offers the whole of track 3 as a stretch
    Put(IDC_EDITOR_TO_SECOND, "21");
    EXPECT_FALSE(IsWindowEnabled(Control(IDC_EDITOR_ADD_STRETCH))) << "behind the track's end";
    Put(IDC_EDITOR_TO_MINUTE, "0");
    Put(IDC_EDITOR_FROM_SECOND, "5");
    FocusOn(IDC_EDITOR_FROM_SECOND);
    Key(VK_RETURN); // adds it and does not end the dialog
    Choose(IDC_EDITOR_TRACKS, 0);
    Press(IDC_EDITOR_ADD_TRACKS);
    Choose(IDC_EDITOR_TRACKS, 1);
    Press(IDC_EDITOR_ADD_TRACKS);
    EXPECT_EQ(Cell(IDC_EDITOR_PROGRAM, 0, 2), "00:05 - 00:21");
    Press(IDC_EDITOR_UP);
    Press(IDC_EDITOR_UP);
    Choose(IDC_EDITOR_PROGRAM, 2);
    FocusOn(IDC_EDITOR_PROGRAM);
    Key(VK_DELETE);
    EXPECT_EQ(End(IDOK), 1);
    ASSERT_EQ(s_record->programCount, 2);
    EXPECT_EQ(s_record->program[0].start, MakeTmsf(2, 0, 0, 1));
    EXPECT_EQ(s_record->program[1].stop, MakeTmsf(3, 0, 21, 0));
}

// By WM_QUIT alone, as after a fault elsewhere in the component.
TEST_F(Editor, TheComponentsEndKeepsWhatWasTyped) {
    Open();
    Put(IDC_EDITOR_TITLE, "New");
    FocusOn(IDC_EDITOR_TRACKS);
    Key(VK_F2);
    Type("Half typ");
    PostThreadMessageA(owner.threadId, WM_QUIT, 0, 0);
    EXPECT_TRUE(Wait([&] { return ComponentThreadEnded(&owner); }));
    StopComponentThread(&owner);
    EXPECT_TRUE(s_closed) << "the thread was killed";
    EXPECT_EQ(s_result, 1);
    EXPECT_STREQ(s_record->title, "New");
    EXPECT_STREQ(s_record->trackTitles[0], "Half typ");
}
