// Import and export as a user meets them: the dialogs driven by their controls, and jobs that go on
// while their window answers, end when it goes, and leave the database whole.
#include "archive/transfer_win.h"

#include "archive/clipboard.h"
#include "cdinfo/store.h"
#include "core/settings.h"
#include "resources/ids.h"
#include "tests/support/big_archive.h"
#include "tests/windows/cdinfo/support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <commdlg.h>
#include <dlgs.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

constexpr UINT kNotice = 900, kRun = WM_APP;
static const std::string kFolder = "C:\\TonvistaTransfer";

static std::string WindowsFile(const char* name) {
    char folder[MAX_PATH];
    GetWindowsDirectoryA(folder, sizeof folder);
    return std::string(folder) + "\\" + name;
}

static void PutFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// The owner's window on a thread of its own, as a component has it.
struct TransferTest : testing::Test {
    HWND owner = nullptr;
    Transfer* transfer = nullptr;
    std::atomic<int> notices{0}, seesEnd{0};
    std::function<void()> run;
    std::thread thread;

    static LRESULT CALLBACK OwnerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* test = reinterpret_cast<TransferTest*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        if (message == WM_COMMAND && LOWORD(wParam) == kNotice) {
            ++test->notices;
            if (test->transfer) test->seesEnd.store(ReadTransfer(test->transfer).ended);
        } else if (message == kRun)
            test->run();
        else if (message == WM_DESTROY)
            PostQuitMessage(0);
        else
            return DefWindowProcA(window, message, wParam, lParam);
        return 0;
    }
    TransferTest() {
        std::filesystem::remove_all(kFolder);
        std::filesystem::create_directory(kFolder);
        Forget(DefaultDatabasePath());
        HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        thread = std::thread([this, ready] {
            owner = CreateWindowA("STATIC", "owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 600, 500,
                                  300, 200, nullptr, nullptr, nullptr, nullptr);
            SetWindowLongPtrA(owner, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
            SetWindowLongPtrA(owner, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(OwnerProc));
            SetEvent(ready);
            MSG message;
            while (GetMessageA(&message, nullptr, 0, 0) > 0)
                DispatchMessageA(&message);
        });
        WaitForSingleObject(ready, INFINITE);
        CloseHandle(ready);
    }
    ~TransferTest() override {
        if (IsWindow(owner)) PostMessageA(owner, WM_CLOSE, 0, 0);
        thread.join();
        EXPECT_TRUE(FinishTransfers(10000));
        Forget(DefaultDatabasePath());
        std::filesystem::remove_all(kFolder);
    }
    // On the owner's thread; returns when it is done.
    void OnOwner(std::function<void()> what) {
        run = std::move(what);
        SendMessageA(owner, kRun, 0, 0);
    }
    void Start(std::function<Transfer*()> start) {
        notices = 0;
        seesEnd = 0;
        OnOwner([&] { transfer = start(); });
    }
    TransferState Finish() {
        EXPECT_TRUE(Wait([&] { return seesEnd != 0; })) << "no notice of the end";
        TransferState state;
        OnOwner([&] {
            state = ReadTransfer(transfer);
            FreeTransfer(transfer);
            transfer = nullptr;
        });
        return state;
    }
};

static HWND WaitForDialog(const char* caption) {
    HWND found = nullptr;
    Wait([&] { return (found = FindWindowA("#32770", caption)) && IsWindowVisible(found); });
    EXPECT_TRUE(found) << caption;
    return found;
}

static std::vector<uint8_t> MakeBlock(uint32_t discs) {
    std::vector<uint8_t> block;
    for (uint32_t n = 1; n <= discs; ++n)
        AppendToDiscBlock(*BigRecord(n), &block);
    return block;
}

// ---- dialogs

// A dialog that runs on the owner's thread, seen from outside.
struct ShownDialog {
    HWND frame = nullptr, ours = nullptr;
    int result = -1;
    TransferChoice choice;
    TransferTest* test;

    ShownDialog(TransferTest* t, int (*choose)(HWND, TransferChoice*), const char* caption)
        : test(t) {
        test->run = [this, choose] { result = choose(test->owner, &choice); };
        PostMessageA(test->owner, kRun, 0, 0);
        frame = WaitForDialog(caption);
        Wait([&] {
            EnumChildWindows(frame, FindOurs, reinterpret_cast<LPARAM>(this));
            return ours && Hint() != "";
        });
    }
    static BOOL CALLBACK FindOurs(HWND child, LPARAM self) {
        if (GetDlgCtrlID(child) == IDC_TRANSFER_HINT)
            reinterpret_cast<ShownDialog*>(self)->ours = GetParent(child);
        return TRUE;
    }
    std::string Hint() const {
        char text[300] = "";
        GetDlgItemTextA(ours, IDC_TRANSFER_HINT, text, sizeof text);
        return text;
    }
    void ChooseType(int index) const {
        SendDlgItemMessageA(frame, cmb1, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        SendMessageA(frame, WM_COMMAND, MAKEWPARAM(cmb1, CBN_SELENDOK),
                     reinterpret_cast<LPARAM>(GetDlgItem(frame, cmb1)));
    }
    void Press(int id) const {
        PostMessageA(GetDlgItem(ours, id), BM_CLICK, 0, 0);
        SendMessageA(frame, WM_NULL, 0, 0);
    }
    void Name(const std::string& path) const { SetDlgItemTextA(frame, cmb13, path.c_str()); }
    void Ok() const { PostMessageA(frame, WM_COMMAND, IDOK, 0); }
    bool Ended() {
        return Wait([&] { return result != -1; });
    }
    int Enabled(int id) const { return IsWindowEnabled(GetDlgItem(ours, id)); }
};

// What the user chooses, and what comes of it.
struct DialogCase {
    int type;
    std::string name;
    int press;
    ExchangeForm form;
    char separator;
    std::string path;
};

static void ChooseAndCompare(TransferTest* test, int (*choose)(HWND, TransferChoice*),
                             const char* caption, const std::vector<DialogCase>& cases) {
    for (const DialogCase& c : cases) {
        ShownDialog dialog(test, choose, caption);
        EXPECT_EQ(dialog.Enabled(IDC_IMPORT_FOLDER), 0) << "a CDP file is one";
        dialog.ChooseType(c.type);
        EXPECT_EQ(dialog.Enabled(IDC_EXPORT_TAB), choose == ChooseExport && c.type == 1);
        dialog.Name(c.name);
        if (c.press == IDC_IMPORT_FOLDER) {
            dialog.Ok(); // into the folder, where the name is cleared
            char shown[MAX_PATH] = "";
            EXPECT_TRUE(Wait([&] {
                GetDlgItemTextA(dialog.frame, cmb13, shown, sizeof shown);
                return !*shown;
            }));
        }
        if (c.press) dialog.Press(c.press);
        if (c.press != IDC_IMPORT_FOLDER) dialog.Ok();
        ASSERT_TRUE(dialog.Ended()) << c.path;
        EXPECT_EQ(dialog.result, 1);
        EXPECT_EQ(dialog.choice.form, c.form) << c.path;
        EXPECT_EQ(dialog.choice.separator, c.separator) << c.path;
        EXPECT_EQ(_stricmp(dialog.choice.path.c_str(), c.path.c_str()), 0) << dialog.choice.path;
    }
}

TEST_F(TransferTest, DialogsGiveFormSeparatorAndPath) {
    const std::string ini = WindowsFile("CDPlayer.ini"), cdp = kFolder + "\\some.cdp",
                      cddb = kFolder + "\\850d8a0b", list = kFolder + "\\list";
    for (const std::string& path : {ini, cdp, cddb})
        PutFile(path, "[1]\r\n");
    ChooseAndCompare(this, ChooseImport, "Import CD Information",
                     {{0, cdp, 0, kCdpForm, ',', cdp},
                      {1, cdp, 0, kCdpForm, ',', cdp}, // its name tells
                      {1, cddb, 0, kCddbForm, ',', cddb},
                      {0, "", IDC_TRANSFER_INI, kIniForm, ',', ini},
                      {1, kFolder, IDC_IMPORT_FOLDER, kCddbForm, ',', kFolder},
                      {2, kFolder, IDC_IMPORT_FOLDER, kCueForm, ',', kFolder}});
    DeleteFileA(ini.c_str());
    DeleteRegValue(kUserRoot, "Software\\Tonvista\\CDInfoUI", "ExportFolder");
    ChooseAndCompare(this, ChooseExport, "Export CD Information",
                     {{0, list, 0, kTextForm, ',', list + ".txt"},
                      {1, list + ".dat", 0, kDelimitedForm, ',', list + ".dat"},
                      {1, list, IDC_EXPORT_TAB, kDelimitedForm, '\t', list + ".csv"},
                      {2, list, 0, kCdpForm, ',', list + ".cdp"},
                      {3, list, 0, kCddbForm, ',', kFolder},
                      {4, list, 0, kCueForm, ',', kFolder},
                      {1, list, IDC_TRANSFER_INI, kIniForm, ',', ini},
                      // The folder is remembered, but for CDPlayer.ini's.
                      {0, "bare", 0, kTextForm, ',', kFolder + "\\bare.txt"}});
}

TEST_F(TransferTest, AnExistingListIsReplacedOnlyAfterAQuestion) {
    PutFile(kFolder + "\\list.txt", "x");
    ShownDialog dialog(this, ChooseExport, "Export CD Information");
    const auto question = [&] {
        HWND box = nullptr;
        Wait([&] {
            for (HWND at = nullptr;
                 (at = FindWindowExA(nullptr, at, "#32770", "Export CD Information"));)
                if (at != dialog.frame) box = at;
            return box != nullptr;
        });
        return box;
    };
    for (const int answer : {IDNO, IDYES}) {
        dialog.Name(kFolder + "\\list");
        dialog.Ok();
        const HWND box = question();
        ASSERT_TRUE(box);
        EXPECT_EQ(dialog.result, -1);
        PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        EXPECT_TRUE(Wait([&] { return !IsWindow(box); }));
    }
    EXPECT_TRUE(dialog.Ended());
    EXPECT_EQ(dialog.result, 1);
}

// A component is switched off while its dialog is open.
TEST_F(TransferTest, ADialogGoesWithItsOwner) {
    ShownDialog dialog(this, ChooseExport, "Export CD Information");
    PostMessageA(owner, WM_CLOSE, 0, 0);
    EXPECT_TRUE(dialog.Ended());
    EXPECT_EQ(dialog.result, 0);
}

// ---- jobs

TEST_F(TransferTest, DiscsGoOutAndComeBack) {
    const TransferChoice cdp = {kCdpForm, kFolder + "\\out.cdp", ','};
    Start([&] { return StartExport(owner, kNotice, cdp, MakeBlock(40)); });
    TransferState state = Finish();
    EXPECT_TRUE(state.good);
    EXPECT_FALSE(state.isImport);
    EXPECT_EQ(state.total, 40u);
    Start([&] { return StartImport(owner, kNotice, cdp); });
    state = Finish();
    EXPECT_TRUE(state.good);
    EXPECT_TRUE(state.isImport);
    EXPECT_EQ(state.discs, 40u);
    EXPECT_EQ(TitleOf(DefaultDatabasePath(), BigIdentity(17)), BigRecord(17)->title);
    Forget(DefaultDatabasePath());
    Start([&] { return StartPaste(owner, kNotice, MakeBlock(3)); });
    state = Finish();
    EXPECT_TRUE(state.good);
    EXPECT_EQ(state.discs, 3u);
    EXPECT_EQ(TitleOf(DefaultDatabasePath(), BigIdentity(3)), BigRecord(3)->title);
    Start([&] { return StartPaste(owner, kNotice, {1, 2, 3}); });
    EXPECT_FALSE(Finish().good);
}

// With ten thousand discs there is time to break it off in the middle.
TEST_F(TransferTest, ACancelledImportChangesNothing) {
    const auto big = BigArchive(10000);
    const std::string path = kFolder + "\\big.cdp";
    PutFile(path, std::string(big.begin(), big.end()));
    Add(DefaultDatabasePath(), 77, "Before");
    const Bytes before = Slurp(DefaultDatabasePath());
    const DWORD from = GetTickCount();
    Start([&] { return StartImport(owner, kNotice, {kCdpForm, path, ','}); });
    EXPECT_TRUE(Wait([&] { return ReadTransfer(transfer).done > 3000; }));
    CancelTransfer(transfer);
    EXPECT_FALSE(Finish().good);
    EXPECT_LE(static_cast<DWORD>(notices.load()), (GetTickCount() - from) / 50 + 2);
    EXPECT_EQ(Slurp(DefaultDatabasePath()), before);
    const auto discs = CountEntries(nullptr);
    EXPECT_EQ(discs, 2u) << "with the pair that every database begins with";
}

// The file is not whole: its message stands over the owner, which goes on answering and can be
// switched off with the message open.
TEST_F(TransferTest, AMessageOfAJobHoldsNobodyUp) {
    const std::string path = kFolder + "\\old.cdp";
    PutFile(path, "TONV????");
    for (const int isAnswered : {1, 0}) {
        Start([&] { return StartImport(owner, kNotice, {kCdpForm, path, ','}); });
        const HWND box = WaitForDialog(path.c_str());
        ASSERT_TRUE(box);
        EXPECT_EQ(GetWindow(box, GW_OWNER), owner);
        DWORD_PTR result;
        EXPECT_TRUE(SendMessageTimeoutA(owner, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result));
        if (isAnswered) {
            PostMessageA(box, WM_COMMAND, IDOK, 0);
            EXPECT_FALSE(Finish().good);
        } else {
            OnOwner([&] {
                FreeTransfer(transfer);
                DestroyWindow(owner);
            });
            EXPECT_TRUE(FinishTransfers(0)) << "the job went on behind its message";
        }
        EXPECT_TRUE(Wait([&] { return !IsWindow(box); }));
    }
}
