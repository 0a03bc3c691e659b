// The registry after the file types were registered, and after the dialog.
#include "media/types_win.h"

#include "beside.h"
#include "core/settings.h"
#include "resources/ids.h"

#include <gtest/gtest.h>
#include <thread>

static std::string Class(const std::string& key, RegRoot root = kClassesRoot) {
    char text[MAX_PATH] = "-";
    ReadRegString(root, key.c_str(), "", text, sizeof text);
    return text;
}

static HWND ShownDialog(const char* caption) {
    HWND window = nullptr;
    WaitUntil([&] {
        window = FindWindowA("#32770", caption);
        return window && IsWindowVisible(window);
    });
    return window;
}

namespace {
// The dialog, open on a thread of its own.
struct OpenDialog {
    OpenDialog() : thread([] { ShowFileTypes(nullptr); }), window(ShownDialog("File Types")) {}
    std::string Ticks() const {
        std::string ticks;
        for (int row = 0; row < 3; ++row)
            ticks += IsDlgButtonChecked(window, IDC_TYPE_TICK + row) ? "x" : "-";
        return ticks;
    }
    void Close(int button) {
        PostMessageA(window, WM_COMMAND, button, 0);
        thread.join();
    }
    std::thread thread;
    HWND window;
};
} // namespace

TEST(MediaTypes, RegisteredAndThenTakenAndGivenBackByTheDialog) {
    const std::string extractor = ExtractorBeside();
    const std::string icons = "C:\\windows\\system32\\shell32.dll";
    const char* const userList = "Software\\Classes\\.pls";
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
    EXPECT_EQ(RegisterMediaTypes("\"C:\\My Program\\t.exe\" /x"), 1);
    for (const std::string extension : {".mp3", ".wav", ".m3u", ".pls"}) {
        EXPECT_EQ(Class(extension), "Tonvue" + extension);
        EXPECT_EQ(Class("Tonvue" + extension + "\\shell\\Open\\command"),
                  "\"C:\\My Program\\t.exe\" /x %1");
        DeleteRegTree(kClassesRoot, ("Tonvue" + extension + "\\DefaultIcon").c_str());
    }
    WriteRegString(kClassesRoot, ".pls", "", "Other.list");
    WriteRegString(kUserRoot, userList, "", "Tonvue.pls"); // the user's counts first
    WriteRegString(kClassesRoot, ".m3u", "", "TONVUE.old");
    {
        OpenDialog dialog;
        EXPECT_EQ(dialog.Ticks(), "xx-");
        CheckDlgButton(dialog.window, IDC_TYPE_TICK, BST_UNCHECKED);
        dialog.Close(IDCANCEL);
        EXPECT_EQ(Class(".mp3"), "Tonvue.mp3");
    }
    {
        OpenDialog dialog;
        CheckDlgButton(dialog.window, IDC_TYPE_TICK, BST_UNCHECKED);
        CheckDlgButton(dialog.window, IDC_TYPE_TICK + 1, BST_UNCHECKED);
        dialog.Close(IDOK);
        EXPECT_EQ(Class(".mp3"), "-");
        EXPECT_EQ(Class(".wav"), "soundrec");
        EXPECT_EQ(Class(".pls"), "Other.list");
        EXPECT_EQ(Class(userList, kUserRoot), "-");
        EXPECT_EQ(Class(".m3u"), "-");
        EXPECT_EQ(Class("Tonvue.mp3\\DefaultIcon"), "-") << "never ours, no icon";
        EXPECT_EQ(Class(std::string(kExtractorClassKey) + "\\InprocServer32"), extractor);
    }
    {
        WriteRegString(kClassesRoot, "Tonvue.pls\\DefaultIcon", "", (icons + ",4").c_str());
        OpenDialog dialog;
        CheckDlgButton(dialog.window, IDC_TYPE_TICK + 2, BST_CHECKED);
        PostMessageA(dialog.window, WM_COMMAND, IDC_TYPE_CHOOSE + 2, 0);
        const HWND chooser = ShownDialog("Choose icon for .PLS and .M3U Files");
        const HWND list = GetDlgItem(chooser, IDC_ICON_LIST);
        EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), 4);
        SendMessageA(list, LB_SETCURSEL, 1, 0);
        PostMessageA(chooser, WM_COMMAND, IDOK, 0);
        WaitUntil([&] { return !IsWindow(chooser); });
        dialog.Close(IDOK);
        EXPECT_EQ(Class(".m3u"), "Tonvue.m3u");
        EXPECT_NE(Class("Tonvue.pls\\shell\\Open\\command").find(".exe\" %1"), std::string::npos);
        EXPECT_EQ(Class("Tonvue.pls\\DefaultIcon"), icons + ",1");
        EXPECT_EQ(Class("Tonvue.m3u\\DefaultIcon"), icons + ",1");
    }
    char temp[MAX_PATH] = "";
    GetTempPathA(sizeof temp, temp);
    WIN32_FIND_DATAA found;
    EXPECT_EQ(FindFirstFileA((std::string(temp) + "TNV~*").c_str(), &found), INVALID_HANDLE_VALUE);
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
}
