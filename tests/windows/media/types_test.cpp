// The registry after the file types were registered, and after the dialog.
#include "media/types_win.h"

#include "beside.h"
#include "core/settings.h"
#include "resources/ids.h"

#include <gtest/gtest.h>
#include <thread>

static std::string Class(const std::string& key) {
    char text[MAX_PATH] = "-";
    ReadRegString(kClassesRoot, key.c_str(), "", text, sizeof text);
    return text;
}
static void SetClass(const char* key, const char* text) {
    ASSERT_TRUE(WriteRegString(kClassesRoot, key, "", text));
}
static std::string Self() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

TEST(MediaTypes, RegisteredForTheCommandLine) {
    EXPECT_EQ(RegisterMediaTypes("\"C:\\My Program\\t.exe\" /x"), 1);
    for (const std::string extension : {".mp3", ".wav", ".m3u", ".pls"}) {
        EXPECT_EQ(Class(extension), "Tonvue" + extension);
        EXPECT_EQ(Class("Tonvue" + extension + "\\shell\\Open\\command"),
                  "\"C:\\My Program\\t.exe\" /x %1");
    }
}

namespace {
// The dialog, open on a thread of its own.
struct OpenDialog {
    OpenDialog() : thread([] { ShowFileTypes(nullptr); }) {
        WaitUntil([this] {
            window = FindWindowA("#32770", "File Types");
            return window && IsWindowVisible(window);
        });
    }
    bool Ticked(int row) const { return IsDlgButtonChecked(window, IDC_TYPE_TICK + row) != 0; }
    void Close(int button) {
        PostMessageA(window, WM_COMMAND, button, 0);
        thread.join();
    }
    HWND window = nullptr;
    std::thread thread;
};
} // namespace

TEST(MediaTypes, DialogTakesGivesBackAndLeavesOthersAlone) {
    const std::string extractor = ExtractorBeside();
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
    RegisterMediaTypes("x");
    SetClass(".pls", "Other.list");
    SetClass(".m3u", "TONVUE.old");
    for (const char* extension : {".mp3", ".wav", ".m3u", ".pls"})
        DeleteRegTree(kClassesRoot, (std::string("Tonvue") + extension + "\\DefaultIcon").c_str());
    {
        OpenDialog dialog;
        EXPECT_TRUE(dialog.Ticked(0) && dialog.Ticked(1) && !dialog.Ticked(2));
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
        EXPECT_EQ(Class(".m3u"), "-");
        EXPECT_EQ(Class("Tonvue.mp3\\DefaultIcon"), "-") << "never ours, no icon";
        EXPECT_EQ(Class(std::string(kExtractorClassKey) + "\\InprocServer32"), extractor);
    }
    {
        const std::string icons = "C:\\windows\\system32\\shell32.dll";
        SetClass("Tonvue.pls\\DefaultIcon", (icons + ",4").c_str());
        OpenDialog dialog;
        CheckDlgButton(dialog.window, IDC_TYPE_TICK + 2, BST_CHECKED);
        for (const int button : {IDOK, IDCANCEL}) { // the second, then not the third
            PostMessageA(dialog.window, WM_COMMAND, IDC_TYPE_CHOOSE + 2, 0);
            HWND chooser = nullptr;
            ASSERT_TRUE(WaitUntil([&] {
                chooser = FindWindowA("#32770", "Choose icon for .PLS and .M3U Files");
                return chooser && IsWindowVisible(chooser);
            }));
            const HWND list = GetDlgItem(chooser, IDC_ICON_LIST);
            EXPECT_GT(SendMessageA(list, LB_GETCOUNT, 0, 0), 10);
            SendMessageA(list, LB_SETCURSEL, button == IDOK ? 1 : 2, 0);
            PostMessageA(chooser, WM_COMMAND, button, 0);
            WaitUntil([&] { return !IsWindow(chooser); });
        }
        dialog.Close(IDOK);
        EXPECT_EQ(Class(".m3u"), "Tonvue.m3u");
        EXPECT_EQ(Class("Tonvue.pls\\shell\\Open\\command"), "\"" + Self() + "\" %1");
        EXPECT_EQ(Class("Tonvue.pls\\DefaultIcon"), icons + ",1");
        EXPECT_EQ(Class("Tonvue.m3u\\DefaultIcon"), icons + ",1");
    }
    char temp[MAX_PATH] = "";
    GetTempPathA(sizeof temp, temp);
    WIN32_FIND_DATAA found;
    EXPECT_EQ(FindFirstFileA((std::string(temp) + "TNV~*").c_str(), &found), INVALID_HANDLE_VALUE);
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
}
