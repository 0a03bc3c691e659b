// The media player's dialogs as a user meets them: on a component's thread, driven by keys,
// buttons, the mouse and dropped files; and what they leave behind.
#include "media/dialogs_win.h"

#include "core/component_win.h"
#include "media/gather_win.h"
#include "media/graph_win.h"
#include "media/history_win.h"
#include "media/playlist_win.h"
#include "resources/ids.h"
#include "tests/support/driver_win.h"
#include "tests/windows/media/drop.h"
#include "ui/components.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using Entries = std::vector<std::string>;
constexpr UINT kRun = WM_APP, kMark = WM_APP + 1;
static const std::string kFolder = "C:\\TonvistaDialogs", kA = kFolder + "\\a.wav",
                         kB = kFolder + "\\b.wav", kC = kFolder + "\\c.wav";

static std::function<int()> s_run; // on the owner's thread
static volatile LONG s_result;     // of the last one; -1 while it runs
static volatile LONG s_marks;
static HANDLE s_hang; // graphs wait for it
static DWORD s_findMs;

// A slow drive.
static BOOL WINAPI SlowFind(HANDLE search, LPWIN32_FIND_DATAA found) {
    Sleep(s_findMs);
    static const auto s_real = reinterpret_cast<BOOL(WINAPI*)(HANDLE, LPWIN32_FIND_DATAA)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32"), "FindNextFileA")));
    return s_real(search, found);
}
#ifdef _WIN64
extern "C" void* const imp_FindNextFileA asm("__imp_FindNextFileA");
#else
extern "C" void* const imp_FindNextFileA asm("__imp__FindNextFileA@8");
#endif
void* const imp_FindNextFileA = reinterpret_cast<void*>(SlowFind);

static LRESULT OwnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kRun: s_result = s_run(); return 0;
    case kMark: InterlockedIncrement(&s_marks); return 0;
    case WM_CLOSE: DestroyWindow(window); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

// A WAV of silence, 8000 bytes a second.
static void PutWav(const std::string& path, uint32_t seconds) {
    std::string bytes(
        "RIFF    WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x08\0data    ", 44);
    const uint32_t size = seconds * 8000, whole = size + 36;
    memcpy(&bytes[4], &whole, 4);
    memcpy(&bytes[40], &size, 4);
    std::ofstream(path, std::ios::binary) << bytes << std::string(size, '\x80');
}

// A thread that nobody waits for may still be in it.
static void RemoveFolder() {
    EXPECT_TRUE(WaitUntil([] {
        std::error_code error;
        std::filesystem::remove_all(kFolder, error);
        return !error;
    }));
}

namespace {
class MediaDialogs : public testing::Test {
protected:
    ComponentThread owner = {};
    HWND dialog = nullptr;
    Playlist list = {};
    const MediaPlatform platform = TheMediaPlatform;

    void SetUp() override {
        RemoveFolder();
        std::filesystem::create_directory(kFolder);
        PutWav(kA, 1);
        PutWav(kB, 2);
        PutWav(kC, 60);
        std::ofstream(kFolder + "\\note.txt") << "x";
        DeleteRegTree(kUserRoot, (std::string(kSettingsRoot) + "\\UIWindow9").c_str());
        WriteWindowSetting(kMediaWindowId, "Directory", kRegSz, 19, kFolder.c_str());
        owner.title = "DialogsTest";
        owner.Open = [](ComponentThread* component) -> int {
            component->Window = CreateHiddenWindow(component->Instance, "TonvistaDialogsTestOwner",
                                                   "Owner", GuardedProc<OwnerProcedure>);
            return component->Window != nullptr;
        };
        ASSERT_TRUE(StartComponentThread(&owner, GetModuleHandleA(nullptr), nullptr));
    }
    void TearDown() override {
        s_findMs = 0;
        StopComponentThread(&owner);
        TheMediaPlatform = platform;
    }
    HWND Front() const { return GetLastActivePopup(owner.Window); }
    // A dialog of the owner's with that start of a caption.
    HWND Await(const std::string& caption) const {
        HWND found = nullptr;
        EXPECT_TRUE(WaitUntil([&] {
            found = Front();
            return IsWindowVisible(found) && TextOf(found).starts_with(caption);
        })) << caption;
        return found;
    }
    void Start(std::function<int()> run) {
        s_run = std::move(run);
        s_result = -1;
        PostMessageA(owner.Window, kRun, 0, 0);
    }
    void Edit() {
        Start([this] { return EditPlaylist(owner.Window, &list); });
        dialog = Await("Playlist Editor");
    }
    LONG Finish() const {
        EXPECT_TRUE(WaitUntil([] { return s_result != -1; }));
        return s_result;
    }
    LONG End(int button) const {
        PostMessageA(dialog, WM_COMMAND, button, 0);
        return Finish();
    }
    void Press(int id) const { PostMessageA(Child(dialog, id), BM_CLICK, 0, 0); }
    void Settle() const {
        const LONG mark = s_marks;
        PostMessageA(owner.Window, kMark, 0, 0);
        EXPECT_TRUE(WaitUntil([&] { return s_marks != mark; }));
    }
    // Answers a file dialog by a name.
    void Answer(const char* caption, const std::string& name) const {
        const HWND box = Await(caption);
        SetWindowTextA(GetDlgItem(box, 1148), name.c_str());
        PostMessageA(box, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(box); }));
    }
    void Choose(int first, int last) const {
        for (int row = -1; row <= last; ++row) {
            LVITEMA item = {};
            item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
            item.state = row >= first && row >= 0 ? item.stateMask : 0;
            SendMessageA(Child(dialog, IDC_LIST), LVM_SETITEMSTATE, row,
                         reinterpret_cast<LPARAM>(&item));
        }
    }
    void Key(UINT message, WORD key) const {
        PostMessageA(Child(dialog, IDC_LIST), message, key, 1);
        Settle();
    }
    std::string Cell(int row, int column) const {
        char text[300] = "";
        LVITEMA item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        SendMessageA(Child(dialog, IDC_LIST), LVM_GETITEMTEXTA, row,
                     reinterpret_cast<LPARAM>(&item));
        return text;
    }
    std::string Files() const {
        const LRESULT count = SendMessageA(Child(dialog, IDC_LIST), LVM_GETITEMCOUNT, 0, 0);
        std::string names;
        for (int row = 0; row < count; ++row)
            names += Cell(row, 1) + " ";
        return names;
    }
    bool Shows(int id, const char* text) const {
        return WaitUntil([&] { return ChildText(dialog, id) == text; });
    }
    // In screen pixels: the middle of a row, or `up` above it.
    POINT RowPoint(int row, int up = 0) const {
        RECT place = {};
        SendMessageA(Child(dialog, IDC_LIST), LVM_GETITEMRECT, row,
                     reinterpret_cast<LPARAM>(&place));
        POINT point = {60, (place.top + place.bottom) / 2 - up};
        ClientToScreen(Child(dialog, IDC_LIST), &point);
        return point;
    }
    void Drop(const Entries& paths, POINT place) const {
        ScreenToClient(dialog, &place);
        PostMessageA(dialog, WM_DROPFILES, reinterpret_cast<WPARAM>(DropOf(paths, place)), 0);
    }
};
} // namespace

TEST_F(MediaDialogs, FilesAreAddedMovedRemovedAndSaved) {
    list = {"C:\\x.m3u", 0, {kA, kFolder + "\\gone.wav"}};
    WINDOWPLACEMENT mad = {};
    mad.rcNormalPosition = {LONG_MIN, 90000, LONG_MAX, -90000};
    WriteWindowSetting(kMediaWindowId, "PLSEditWndPlcmnt", kRegBinary, sizeof mad, &mad);
    Edit();
    const RECT place = PlaceOf(dialog);
    EXPECT_TRUE(place.left >= 0 && place.top >= 0 &&
                place.bottom <= GetSystemMetrics(SM_CYSCREEN) && place.bottom - place.top > 300);
    EXPECT_TRUE(Shows(IDC_LIST_TOTAL, "PlayList: 1 Seconds"));
    Press(IDC_LIST_ADD_FILES);
    Answer("Tonvue: Add Files", "\"b.wav\" \"c.wav\"");
    EXPECT_TRUE(Shows(IDC_LIST_TOTAL, "PlayList: 01:03"));
    EXPECT_EQ(Files(), "a.wav gone.wav b.wav c.wav ");
    EXPECT_EQ(Cell(1, 3) + Cell(2, 3) + Cell(3, 2), "-0:02" + kFolder);
    EXPECT_FALSE(IsWindowVisible(Child(dialog, IDC_LIST_HOLD))) << "all lengths are read";
    Key(WM_SYSKEYDOWN, VK_UP); // both that were added
    EXPECT_EQ(Files(), "a.wav b.wav c.wav gone.wav ");
    Choose(3, 3);
    Key(WM_KEYDOWN, VK_DELETE);
    Choose(0, 0);
    Press(IDC_LIST_DOWN);
    EXPECT_TRUE(WaitUntil([&] { return Files() == "b.wav a.wav c.wav "; }));
    Press(IDC_LIST_SAVE);
    Answer("Tonvue: Save Playlist", "mix");
    Playlist saved = {};
    EXPECT_TRUE(ReadPlaylist(kFolder + "\\mix.m3u", &saved));
    EXPECT_EQ(saved.entries, (Entries{kB, kA, kC}));
    EXPECT_EQ(End(IDOK), 1);
    EXPECT_EQ(list.entries, saved.entries);
    EXPECT_EQ(list.name, kFolder + "\\mix.m3u");
    EXPECT_EQ(list.position, 1u) << "the current entry was moved";
}

TEST_F(MediaDialogs, RowsAreDraggedAndCancelLeavesTheList) {
    const Playlist before = list = {"x", 2, {kA, kB, kC}};
    Edit();
    Choose(0, 0);
    const POINT from = RowPoint(0), to = RowPoint(2, 4); // upper half of the third
    for (const bool escape : {true, false}) {
        SetCursorPos(from.x, from.y);
        Sleep(100);
        mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
        for (int step = 1; step <= 8; ++step) {
            Sleep(40);
            SetCursorPos(from.x + step, from.y + (to.y - from.y) * step / 8);
        }
        EXPECT_TRUE(WaitUntil([&] {
            return IsWindowVisible(Child(Child(dialog, IDC_LIST), IDC_LIST_MARK)) != FALSE;
        }));
        Sleep(100);
        if (escape) Key(WM_KEYDOWN, VK_ESCAPE);
        mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
        Sleep(100);
        EXPECT_TRUE(WaitUntil([&] {
            return Files() == (escape ? "a.wav b.wav c.wav " : "b.wav a.wav c.wav ");
        })) << Files();
    }
    Choose(2, 2);
    Press(IDC_LIST_REMOVE);
    EXPECT_TRUE(WaitUntil([&] { return Files() == "b.wav a.wav "; }));
    EXPECT_EQ(End(IDCANCEL), 0);
    EXPECT_TRUE(list.entries == before.entries && list.position == 2);
}

TEST_F(MediaDialogs, DroppedFilesFoldersAndListsGoWhereTheyFall) {
    std::filesystem::create_directory(kFolder + "\\sub");
    PutWav(kFolder + "\\sub\\d.wav", 1);
    std::ofstream(kFolder + "\\l.m3u") << "c.wav\n";
    list = {"x", 1, {kA, kB}};
    Edit();
    Drop({kFolder + "\\sub", kFolder + "\\note.txt", kFolder + "\\l.m3u", kFolder + "\\none.mp3"},
         RowPoint(1, 4));
    std::string text;
    EXPECT_TRUE(AnswerBox("Tonvue", IDOK, &text));
    EXPECT_NE(text.find("none.mp3"), std::string::npos);
    EXPECT_TRUE(WaitUntil([&] { return Files() == "a.wav d.wav note.txt c.wav b.wav "; }))
        << Files();
    EXPECT_EQ(End(IDOK), 1);
    EXPECT_EQ(list.position, 4u);
    list.entries.assign(kPlaylistMax - 2, kA);
    Edit();
    Drop({kFolder}, {-5, -5});
    EXPECT_TRUE(AnswerBox("Tonvue", IDOK, &text));
    EXPECT_NE(text.find("at most 512"), std::string::npos);
    EXPECT_TRUE(Shows(IDC_LIST_COUNT, "512 of at most 512 entries"));
    EXPECT_FALSE(IsWindowEnabled(Child(dialog, IDC_LIST_ADD_FILES)));
    End(IDCANCEL);
}

TEST_F(MediaDialogs, FoldersAreScannedAsideAndMayGo) {
    Start([this] { return AddFolderByDialog(owner.Window, &list, -1); });
    HWND chooser = nullptr;
    EXPECT_TRUE(WaitUntil([&] { return (chooser = Front()) != owner.Window; }));
    // It shows the remembered folder as the chosen one.
    Sleep(500);
    PostMessageA(chooser, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(Finish(), 3);
    s_findMs = 200;
    Start([this] {
        Entries songs;
        return GatherFolder(owner.Window, kFolder, &songs);
    });
    dialog = Await("Looking for Songs");
    Settle(); // the owner's timers go on
    EXPECT_EQ(End(IDCANCEL), 0);
    s_findMs = 0;
    RemoveFolder();
    Start([this] {
        Entries songs;
        return GatherFolder(owner.Window, kFolder, &songs);
    });
    std::string text;
    EXPECT_TRUE(AnswerBox("Tonvue", IDOK, &text));
    EXPECT_NE(text.find("cannot be read"), std::string::npos);
    EXPECT_EQ(Finish(), 0);
}

// By Stop, and by the end of the component while a file is being read for ever.
TEST_F(MediaDialogs, NobodyWaitsForALength) {
    s_hang = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    TheMediaPlatform.CreateGraph = [](IGraphBuilder**) -> HRESULT {
        WaitForSingleObject(s_hang, INFINITE);
        return E_FAIL;
    };
    list = {"x", 0, {kA, kB, kA}};
    Edit();
    EXPECT_TRUE(Shows(IDC_LIST_READING, "Reading lengths: 0 of 3"));
    EXPECT_EQ(ChildText(dialog, IDC_LIST_TOTAL), "PlayList: 0 Seconds");
    Press(IDC_LIST_HOLD);
    EXPECT_TRUE(Shows(IDC_LIST_READING, "Lengths of 3 entries unread"));
    Press(IDC_LIST_HOLD);
    const DWORD start = GetTickCount();
    StopComponentThread(&owner);
    EXPECT_LT(GetTickCount() - start, 1500u);
    EXPECT_EQ(s_result, 0);
    SetEvent(s_hang);
    Sleep(300); // the reader finds nobody
}

TEST_F(MediaDialogs, HistoryIsListedRemovedPlayedAndCleared) {
    for (const std::string& path : {kA, kB, kC})
        AddHistory(path);
    std::string path;
    const auto show = [&] { return ShowHistory(owner.Window, &path); };
    Start(show);
    dialog = Await("Media History");
    EXPECT_EQ(Files().size(), 3 * (kFolder.size() + 1)) << "folders in the second column";
    Choose(1, 1);
    Key(WM_KEYDOWN, VK_DELETE);
    EXPECT_EQ(ListHistory(), (Entries{kA, kC}));
    EXPECT_EQ(End(IDOK), 1);
    EXPECT_EQ(path, kC) << "the row that came up";
    Start(show);
    dialog = Await("Media History");
    Press(IDC_HISTORY_CLEAR);
    EXPECT_TRUE(WaitUntil([&] { return Files().empty(); }));
    EXPECT_FALSE(IsWindowEnabled(Child(dialog, IDOK)));
    EXPECT_EQ(End(IDCANCEL), 0);
    EXPECT_TRUE(ListHistory().empty());
}

TEST_F(MediaDialogs, OpenRemembersItsFolder) {
    WriteWindowSetting(kMediaWindowId, "Directory", kRegSz, 9, "C:\\gone\\");
    std::string path;
    Start([&] { return AskMediaFile(owner.Window, &path); });
    Answer("Tonvue: Open", kA);
    EXPECT_EQ(Finish(), 1);
    EXPECT_EQ(path, kA);
    Start([&] { return AskMediaFile(owner.Window, &path); });
    Answer("Tonvue: Open", "b.wav");
    EXPECT_EQ(Finish(), 1);
    EXPECT_EQ(path, kB);
}
