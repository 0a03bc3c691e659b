// The printing dialog as a user meets it, over printers that the test stands in for: what comes out
// of them, what is told when they fail, and that nothing hangs with them.
#include "archive/print_system_win.h"
#include "archive/print_win.h"
#include "core/settings.h"
#include "resources/ids.h"
#include "tests/support/measure_win.h"
#include "tests/support/print_pages.h"
#include "tests/support/screen_win.h"
#include "tests/windows/archive/print_kit.h"

#include <gtest/gtest.h>

#include <algorithm>

constexpr UINT kRun = WM_APP;

namespace {
// The printer. Pages go into a metafile.
struct Fake {
    int none;            // there is no printer
    int failStart;       // StartDocument fails
    int failSheet;       // the sheet that fails, from 1
    HANDLE hang;         // StartSheet waits for it
    size_t first, last;  // ordered; 0: all
    volatile LONG pages; // that the dialog offered
    volatile LONG sheets, ended, aborted, freed;
    std::string name;
    HENHMETAFILE file;
};
struct Discs {
    std::vector<CDInfoRecord> records;
    size_t gone = SIZE_MAX;
    DWORD thread = 0;
    int foreign = 0; // asked on another thread
};
} // namespace
static Fake s_fake;
static Discs s_discs;
static volatile LONG s_returned;

static const PrintSystem kFakeSystem = {
    [](PrinterSetup*, PrintPaper* paper, std::string* printer) {
        if (s_fake.none) return 0;
        *paper = MakePaper(21000, 29700, {500, 500, 20000, 28700});
        *printer = "Test printer";
        return 1;
    },
    [](HWND, PrinterSetup*) { return s_fake.none ? kPrintNoPrinter : kPrintChosen; },
    [](HWND, PrinterSetup*, size_t pages, PrintOrder* order) {
        if (s_fake.none) return kPrintNoPrinter;
        s_fake.pages = static_cast<LONG>(pages);
        const HDC dc = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
        *order = {dc, s_fake.first ? s_fake.first : 1, s_fake.last ? s_fake.last : pages};
        return kPrintChosen;
    },
    [](HDC, PrintPaper* paper, DeviceScale* scale) {
        *paper = MakePaper(21000, 29700, {500, 500, 20000, 28700});
        *scale = {0.04, 0.04, -20, -20};
    },
    [](HDC, const char* name) {
        s_fake.name = name;
        SetLastError(ERROR_DISK_FULL);
        return s_fake.failStart ? 0 : 1;
    },
    [](HDC) {
        if (s_fake.hang) WaitForSingleObject(s_fake.hang, INFINITE);
        SetLastError(ERROR_DISK_FULL);
        return s_fake.sheets + 1 == s_fake.failSheet ? 0 : 1;
    },
    [](HDC) { return InterlockedIncrement(&s_fake.sheets) > 0 ? 1 : 0; },
    [](HDC) { return InterlockedIncrement(&s_fake.ended) > 0 ? 1 : 0; },
    [](HDC) { InterlockedIncrement(&s_fake.aborted); },
    [](HDC dc) {
        if (s_fake.file) DeleteEnhMetaFile(s_fake.file);
        s_fake.file = CloseEnhMetaFile(dc);
        InterlockedIncrement(&s_fake.freed);
    },
};

static int ReadDisc(size_t index, CDInfoRecord* record, void*) {
    s_discs.foreign += GetCurrentThreadId() != s_discs.thread;
    if (index == s_discs.gone || index >= s_discs.records.size()) return 0;
    *record = s_discs.records[index];
    return 1;
}

static LRESULT CALLBACK OwnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kRun:
        s_discs.thread = GetCurrentThreadId();
        ShowPrintingOn(kFakeSystem, window, {s_discs.records.size(), ReadDisc, nullptr});
        s_returned = 1;
        return 0;
    case WM_CLOSE: DestroyWindow(window); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

static DWORD WINAPI OwnerThread(void* window) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = OwnerProcedure;
    windowClass.lpszClassName = "PrintOwner";
    RegisterClassA(&windowClass);
    *static_cast<HWND*>(window) =
        CreateWindowA("PrintOwner", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 900, 700, nullptr,
                      nullptr, nullptr, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    return 0;
}

namespace {
class PrintDialogTest : public testing::Test {
protected:
    HWND volatile owner = nullptr;
    HWND dialog = nullptr;
    HANDLE thread = nullptr;

    void SetUp() override {
        s_fake = {};
        s_discs = {};
        DeleteRegTree(kUserRoot, "Software\\Tonvista\\CDInfoUI");
        for (int i = 0; i < 150; ++i) {
            s_discs.records.push_back(MakeDisc(3, kShortTexts, 0));
            CopyText(s_discs.records[i].title, ("Disc " + std::to_string(i + 1)).c_str());
        }
    }
    void TearDown() override {
        if (s_fake.hang) SetEvent(s_fake.hang);
        if (thread) {
            PostMessageA(owner, WM_CLOSE, 0, 0);
            EXPECT_EQ(WaitForSingleObject(thread, kPatienceMs), WAIT_OBJECT_0);
            CloseHandle(thread);
        }
        Forget();
        EXPECT_EQ(s_discs.foreign, 0);
    }
    static void Forget() {
        if (s_fake.file) DeleteEnhMetaFile(s_fake.file);
        s_fake = {};
    }
    void Open() {
        s_returned = 0;
        if (!thread)
            thread = CreateThread(nullptr, 0, OwnerThread, const_cast<HWND*>(&owner), 0, nullptr);
        ASSERT_TRUE(WaitUntil([&] { return owner && IsWindowVisible(owner); }));
        PostMessageA(owner, kRun, 0, 0);
        ASSERT_TRUE(dialog = WaitForDialog("Print"));
        ASSERT_TRUE(WaitUntil([&] { return Text(IDC_PRINT_PAGE) != ""; }));
    }
    void Close() {
        Click(IDCANCEL);
        EXPECT_TRUE(WaitUntil([] { return s_returned != 0; }));
    }
    std::string Text(int id) const { return ChildText(dialog, id); }
    void Click(int id) const { PostMessageA(GetDlgItem(dialog, id), BM_CLICK, 0, 0); }
    void Choose(int id, const char* page) {
        Click(id);
        EXPECT_TRUE(WaitUntil([&] { return Text(IDC_PRINT_PAGE) == page; }))
            << Text(IDC_PRINT_PAGE);
    }
    // Prints and waits for the end.
    void Print() {
        Click(IDOK);
        EXPECT_TRUE(WaitUntil([&] { return s_fake.freed && IsWindowEnabled(dialog); }));
    }
    // Of "Disc n" with these numbers, one after the other, in what came out.
    std::vector<int> Printed() const {
        std::vector<int> numbers;
        for (const std::string& text : TextsOf(s_fake.file))
            if (text.starts_with("Disc ")) numbers.push_back(atoi(text.c_str() + 5));
        return numbers;
    }
    // Dark pixels in the upper middle of the preview: letters, not the sheet's shadow.
    int Ink() const {
        const HWND preview = GetDlgItem(dialog, IDC_PRINT_PREVIEW);
        const RECT place = PlaceOf(preview);
        const int width = place.right - place.left;
        int ink = 0;
        for (int y = 0; y < (place.bottom - place.top) / 4; y += 2)
            for (int x = width / 4; x < width / 2; x += 2) {
                const COLORREF color = ScreenPixelOf(preview, x, y);
                ink += color != GetSysColor(COLOR_APPWORKSPACE) && (color & 0xFF) < 190;
            }
        return ink;
    }
};
} // namespace

TEST_F(PrintDialogTest, PrintsWhatItShows) {
    Open();
    EXPECT_EQ(Text(IDC_PRINT_PAGE), "Page 1 of 3");
    EXPECT_TRUE(WaitUntil([&] { return Ink() > 20; }));
    EXPECT_EQ(Text(IDC_PRINT_NOTE), "");
    Choose(IDC_PRINT_LAST, "Page 3 of 3");
    Choose(IDC_PRINT_BACK, "Page 2 of 3");
    Print();
    EXPECT_EQ(s_fake.name, "Audio CDs");
    EXPECT_EQ(s_fake.pages, 3);
    EXPECT_EQ(s_fake.sheets, 3);
    EXPECT_EQ(s_fake.ended, 1);
    const auto numbers = Printed();
    ASSERT_EQ(numbers.size(), 150u);
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));

    Forget();
    s_fake.first = s_fake.last = 2;
    Print();
    EXPECT_EQ(s_fake.sheets, 1);
    EXPECT_LT(Printed().size(), 100u);

    Forget();
    Choose(IDC_PRINT_INLAY, "Page 1 of 1");
    SetDlgItemTextA(dialog, IDC_PRINT_NUMBER, "77");
    EXPECT_TRUE(WaitUntil([&] { return Text(IDC_PRINT_NAME).starts_with("Disc 77"); }));
    PostMessageA(GetDlgItem(dialog, IDC_PRINT_NUMBER), WM_KEYDOWN, VK_UP, 0);
    EXPECT_TRUE(WaitUntil([&] { return Text(IDC_PRINT_NAME).starts_with("Disc 78"); }));
    SetDlgItemTextA(dialog, IDC_PRINT_NUMBER, "1000"); // there is none
    Command(dialog, MAKEWPARAM(IDC_PRINT_NUMBER, EN_KILLFOCUS));
    EXPECT_TRUE(WaitUntil([&] { return Text(IDC_PRINT_NUMBER) == "78"; }));
    Print();
    EXPECT_EQ(s_fake.name, "Disc 78");
    EXPECT_EQ(Printed(), (std::vector<int>{78, 78})); // front and back

    Forget();
    s_discs.gone = 4;
    Choose(IDC_PRINT_DISC, "Page 1 of 1");
    Click(IDC_PRINT_ALL);
    Print();
    EXPECT_EQ(s_fake.pages, 0); // no range
    EXPECT_EQ(s_fake.sheets, 149);
    EXPECT_EQ(Printed().size(), 149u);
    SetDlgItemTextA(dialog, IDC_PRINT_NUMBER, "5");
    EXPECT_TRUE(WaitUntil([&] { return !IsWindowEnabled(GetDlgItem(dialog, IDOK)); }));
    EXPECT_NE(Text(IDC_PRINT_NOTE), "");
    Close();
    Open(); // the kind was kept
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_PRINT_DISC), static_cast<UINT>(BST_CHECKED));
}

TEST_F(PrintDialogTest, TellsWhyItDidNotPrint) {
    s_fake.none = 1; // the preview works all the same
    Open();
    EXPECT_TRUE(Text(IDC_PRINT_NOTE).starts_with("There is no printer."));
    EXPECT_TRUE(WaitUntil([&] { return Ink() > 20; }));
    const auto complains = [&](int button, const char* with) {
        std::string text;
        Click(button);
        EXPECT_TRUE(AnswerBox("Printing", IDOK, &text) && text.starts_with(with)) << text;
    };
    complains(IDOK, "There is no printer that could be used.");
    complains(IDC_PRINT_PAPER, "There is no printer that could be used.");
    s_fake.none = 0;
    s_fake.failStart = 1;
    complains(IDOK, "The printer did not take the job.");
    EXPECT_EQ(s_fake.aborted + s_fake.ended, 0);
    s_fake.failStart = 0;
    s_fake.failSheet = 2;
    complains(IDOK, "Printing ended early: 1 pages went to the printer.");
    EXPECT_EQ(s_fake.aborted, 1);
    EXPECT_EQ(s_fake.ended, 0);
}

TEST_F(PrintDialogTest, AHangingPrinterHangsNobody) {
    s_fake.hang = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    Open();
    Click(IDOK);
    HWND progress = WaitForDialog("Printing");
    ASSERT_TRUE(progress);
    EXPECT_LT(AnswerTime(progress), kPatienceMs);
    EXPECT_LT(AnswerTime(owner), kPatienceMs);
    // Cancelled, it ends as soon as the printer lets it.
    Command(progress, IDCANCEL);
    EXPECT_TRUE(
        WaitUntil([&] { return ChildText(progress, IDC_PRINTING_TEXT) == "Cancelling..."; }));
    SetEvent(s_fake.hang);
    EXPECT_TRUE(WaitUntil([&] { return s_fake.freed && IsWindowEnabled(dialog); }));
    EXPECT_EQ(s_fake.aborted, 1);
    EXPECT_EQ(s_fake.sheets, 1); // the one that hung

    // The owner goes at once, the job when it can.
    ResetEvent(s_fake.hang);
    s_fake.freed = 0;
    Click(IDOK);
    ASSERT_TRUE(WaitForDialog("Printing"));
    PostMessageA(owner, WM_CLOSE, 0, 0);
    EXPECT_EQ(WaitForSingleObject(thread, kPatienceMs), WAIT_OBJECT_0);
    EXPECT_EQ(s_returned, 1);
    EXPECT_EQ(s_fake.freed, 0);
    SetEvent(s_fake.hang);
    EXPECT_TRUE(WaitUntil([] { return s_fake.freed != 0; }));
    EXPECT_EQ(s_fake.aborted, 2);
    CloseHandle(thread);
    thread = nullptr;
}

TEST_F(PrintDialogTest, LeavesNoGdiObjects) {
    int before = 0;
    for (int round = 0; round < 6; ++round) {
        Open();
        for (const int kind : {IDC_PRINT_DISC, IDC_PRINT_INLAY})
            Choose(kind, "Page 1 of 1");
        Choose(IDC_PRINT_LIST, "Page 1 of 3");
        Choose(IDC_PRINT_NEXT, "Page 2 of 3");
        s_fake.freed = 0;
        Print();
        Close();
        const int now = GdiObjects(GetCurrentProcess());
        if (round == 1) before = now; // the first rounds fill the system's caches
        EXPECT_TRUE(round < 2 || now <= before) << now << " after " << before;
    }
}
