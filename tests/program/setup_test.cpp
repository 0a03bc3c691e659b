// Installation, another one over it, and its taking back, with the real program: what stands in the
// registry and on the disk before and after.
#include "app/resources/ids.h"
#include "tests/program/harness.h"

#include <map>
#include <shellapi.h>
#include <shlobj.h>

static const std::string kRoot = "C:\\TonvistaSetup";
static const std::string kTarget = kRoot + "\\Some Place";
constexpr const char* kPlayer = "AudioCD\\shell\\play\\command";
constexpr const char* kDrivers = "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI";
constexpr const char* kListed = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tonvista";
constexpr const char* kAppPaths =
    "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\tonvista.exe";
constexpr const char* kDone = "Tonvista was successfully installed!";

// ---- snapshots: what is there, as lines

using Snapshot = std::map<std::string, std::string>;

static void AddKey(HKEY parent, const std::string& path, const std::string& shown, Snapshot* all) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(parent, path.c_str(), 0, KEY_READ, &key)) return;
    (*all)[shown + "\\"] = "";
    char name[512];
    BYTE data[8192];
    for (DWORD i = 0;; ++i) {
        DWORD length = sizeof name, size = sizeof data, type = 0;
        if (RegEnumValueA(key, i, name, &length, nullptr, &type, data, &size)) break;
        (*all)[shown + "\\\\" + name] =
            std::to_string(type) + std::string(reinterpret_cast<char*>(data), size);
    }
    for (DWORD i = 0;; ++i) {
        DWORD length = sizeof name;
        if (RegEnumKeyExA(key, i, name, &length, nullptr, nullptr, nullptr, nullptr)) break;
        if (std::string(name) != "Wine") AddKey(key, name, shown + "\\" + name, all);
    }
    RegCloseKey(key);
}

static void AddFolder(const std::string& folder, Snapshot* all) {
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((folder + "\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        const std::string name = found.cFileName, path = folder + "\\" + name;
        if (name == "." || name == "..") continue;
        (*all)[path] = std::to_string(found.nFileSizeLow);
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) AddFolder(path, all);
    } while (FindNextFileA(search, &found));
    FindClose(search);
}

static std::string ShellFolder(int id) {
    char path[MAX_PATH] = "";
    SHGetFolderPathA(nullptr, id | CSIDL_FLAG_CREATE, nullptr, 0, path);
    return path;
}

static Snapshot TakeSnapshot() {
    Snapshot all;
    AddKey(HKEY_LOCAL_MACHINE, "Software\\Classes", "classes", &all);
    for (const char* key : {"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths",
                            "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall", kDrivers,
                            "Software\\Tonvista", "Software\\TonvistaDiscDrive"})
        AddKey(HKEY_LOCAL_MACHINE, key, key, &all);
    AddKey(HKEY_CURRENT_USER, "Software", "user", &all);
    AddFolder(kRoot, &all);
    AddFolder(ShellFolder(CSIDL_PROGRAMS), &all);
    return all;
}

static std::string Difference(const Snapshot& before, const Snapshot& after) {
    std::string lines;
    for (const auto& [name, value] : before)
        if (!after.contains(name) || after.at(name) != value) lines += "- " + name + "\n";
    for (const auto& [name, value] : after)
        if (!before.contains(name)) lines += "+ " + name + "\n";
    return lines;
}

// ---- files

static void Write(const std::string& path, const std::string& text) {
    const HANDLE file =
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
}

static void DeleteFolder(std::string folder) {
    folder.push_back(0); // a list of names, which ends with an empty one
    SHFILEOPSTRUCTA operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = folder.c_str();
    operation.fFlags = FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_SILENT;
    SHFileOperationA(&operation);
}

static int64_t SizeOf(const std::string& path) { // -1: not there
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) return -1;
    return data.nFileSizeLow;
}

static std::string TargetOfLink(const std::string& link) {
    char path[MAX_PATH] = "";
    IShellLinkA* shell = nullptr;
    IPersistFile* file = nullptr;
    CoInitialize(nullptr);
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                     reinterpret_cast<void**>(&shell));
    shell->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file));
    wchar_t wide[MAX_PATH];
    MultiByteToWideChar(CP_ACP, 0, link.c_str(), -1, wide, MAX_PATH);
    if (SUCCEEDED(file->Load(wide, STGM_READ))) shell->GetPath(path, MAX_PATH, nullptr, 0);
    file->Release();
    shell->Release();
    CoUninitialize();
    return path;
}

// The message box that was opened by a dialog of the same caption.
static HWND BoxOver(HWND dialog) {
    HWND box = nullptr;
    while ((box = FindWindowExA(nullptr, box, "#32770", TextOf(dialog).c_str())) && box == dialog)
        continue;
    return box;
}

static std::string Text(RegRoot root, const std::string& key, const char* name = "") {
    char text[600] = "-";
    ReadRegString(root, key.c_str(), name, text, sizeof text);
    return text;
}

// ---- the tests

namespace {
class SetupTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        DeleteRegTree(kUserRoot, kSettingsRoot);
        DeleteRegTree(kMachineRoot, kSettingsRoot);
        for (const char* key : {".mp3", ".wav", ".m3u", ".pls", ".cdp", "Tonvue.mp3", "Tonvue.wav",
                                "Tonvue.m3u", "Tonvue.pls", "Tonvista.CDPFile", "AudioCD",
                                "CLSID\\{669B1B7A-3BC7-4466-8B2F-6FC46E6CC031}"})
            DeleteRegTree(kClassesRoot, key); // of tests before
        for (const char* key : {kListed, kAppPaths})
            DeleteRegTree(kMachineRoot, key);
        WriteRegString(kClassesRoot, ".mp3", "", "Other.song");
        WriteRegString(kClassesRoot, kPlayer, "", "C:\\other.exe %1");
        DeleteFolder(ShellFolder(CSIDL_PROGRAMS) + "\\Tonvista");
        DeleteFolder(kRoot);
        CreateDirectoryA(kRoot.c_str(), nullptr);
        CreateDirectoryA((std::string(kProgramFolder) + "\\manual").c_str(), nullptr);
        Write(std::string(kProgramFolder) + "\\manual\\index.html", "page");
        Write(DatabasePath(), "records");
    }
    void Run(const std::string& arguments, const std::string& program_ = ProgramPath()) {
        delete program;
        program = new Process(arguments, program_);
        ASSERT_TRUE(program->handle);
    }
    // Answers one box after the other and gives the last one's text.
    std::string Answer(const char* caption, std::initializer_list<int> buttons) {
        std::string text;
        for (const int button : buttons)
            if (!AnswerBox(caption, button, &text)) return "no box after: " + text;
        return text;
    }
    void Uninstall(int database, int settings) {
        Run("-uninstall", kTarget + "\\tonvista.exe");
        HWND dialog = nullptr;
        ASSERT_TRUE(WaitUntil([&] {
            dialog = FindWindowA("#32770", "Tonvista Uninstall");
            return dialog && IsWindowVisible(Child(dialog, IDOK));
        }));
        EXPECT_NE(ChildText(dialog, IDC_UNINSTALL_TEXT).find(kTarget), std::string::npos);
        if (database) Ask(Child(dialog, IDC_UNINSTALL_DATABASE), BM_CLICK, 0, 0);
        if (settings) Ask(Child(dialog, IDC_UNINSTALL_SETTINGS), BM_CLICK, 0, 0);
        Command(dialog, IDOK);
        ASSERT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
        EXPECT_EQ(Answer("Tonvista Uninstall", {IDOK}), "Tonvista was removed.");
        EXPECT_EQ(program->WaitEnd(), 0);
        EXPECT_TRUE(WaitUntil([] { return SizeOf(kTarget + "\\tonvista.exe") < 0; }, 30000));
    }
};
} // namespace

TEST_F(SetupTest, InstalledTwiceWithSettingsKeptAndTakenBackWithoutATrace) {
    DeleteRegTree(kUserRoot, kDiscDriveKey);
    const Snapshot before = TakeSnapshot();
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "D"); // or there is no CD drive
    Run("/install /target \"" + kTarget + "\\\\\""); // the quote would be escaped by one backslash
    EXPECT_EQ(Answer("Tonvista Install", {IDOK}), kDone);
    EXPECT_EQ(program->WaitEnd(), 0);
    const std::string exe = kTarget + "\\tonvista.exe";
    EXPECT_EQ(SizeOf(exe), SizeOf(ProgramPath()));
    EXPECT_EQ(SizeOf(kTarget + "\\manual\\index.html"), 4);
    EXPECT_EQ(SizeOf(kTarget + "\\CDInfo.CDP"), 7) << "records come along";
    EXPECT_EQ(Text(kUserRoot, "Software\\Tonvista\\Saved", "Module"), exe);
    EXPECT_EQ(Text(kMachineRoot, kListed, "DisplayName"), "Tonvista");
    EXPECT_EQ(Text(kMachineRoot, kListed, "DisplayVersion"), "1.0.0");
    EXPECT_EQ(Text(kMachineRoot, kListed, "UninstallString"), "\"" + exe + "\" /uninstall");
    EXPECT_GT(ReadRegDword(kMachineRoot, kListed, "EstimatedSize"), 500u);
    EXPECT_EQ(Text(kClassesRoot, ".mp3"), "Tonvue.mp3");
    EXPECT_EQ(Text(kClassesRoot, "Tonvue.mp3\\shell\\Open\\command"), "\"" + exe + "\" %1");
    EXPECT_EQ(Text(kClassesRoot, kPlayer), exe + " /play %1");
    const std::string link = ShellFolder(CSIDL_PROGRAMS) + "\\Tonvista\\Tonvista.lnk";
    EXPECT_STRCASEEQ(TargetOfLink(link).c_str(), exe.c_str());

    WriteWindowDword(1, "BtnFaceClr", 0x123456);
    WriteWindowDword(1, "TaskBarIcon", 0);
    WriteRegDword(kUserRoot, "Software\\Tonvista\\CDEngine", "IntroLength", kRegDword, 17);
    Write(kTarget + "\\TONVExtr.dll", "an older one");
    Write(kTarget + "\\CDInfo.CDP", "records of the user");
    Run("/install /nodefcd /target \"" + kTarget + "\"");
    EXPECT_EQ(Answer("Tonvista Install", {IDOK}), kDone);
    program->WaitEnd();
    EXPECT_EQ(SizeOf(kTarget + "\\TONVExtr.dll"),
              SizeOf(kProgramFolder + std::string("\\TONVExtr.dll")));
    EXPECT_EQ(SizeOf(kTarget + "\\CDInfo.CDP"), 19);
    EXPECT_EQ(ReadWindowDword(1, "BtnFaceClr", 0), 0x123456u);
    EXPECT_EQ(ReadWindowDword(1, "TaskBarIcon", 1), 0u);
    EXPECT_EQ(ReadRegDword(kUserRoot, "Software\\Tonvista\\CDEngine", "IntroLength"), 17u);
    EXPECT_EQ(Text(kClassesRoot, kPlayer), "CDPlayer /play %1") << "given up, as asked for";

    WriteRegString(kClassesRoot, kPlayer, "", "C:\\other.exe %1");
    Uninstall(1, 1);
    DeleteRegValue(kClassesRoot, kPlayer, "Tonvista.Before");
    Snapshot after;
    EXPECT_TRUE(WaitUntil([&] { return (after = TakeSnapshot()) == before; }, 30000))
        << Difference(before, after);
}

TEST_F(SetupTest, WhatIsTheUsersOrAnothersStays) {
    Run("/install /target \"" + kTarget + "\"");
    EXPECT_EQ(Answer("Tonvista Install", {IDOK}), kDone);
    program->WaitEnd();
    WriteRegString(kClassesRoot, ".wav", "", "Newer.sound");
    Write(kTarget + "\\manual\\own.html", "mine");
    Uninstall(0, 0);
    EXPECT_EQ(SizeOf(kTarget + "\\CDInfo.CDP"), 7);
    EXPECT_EQ(SizeOf(kTarget + "\\manual\\own.html"), 4);
    EXPECT_EQ(SizeOf(kTarget + "\\TONVDisc.dll"), -1);
    EXPECT_EQ(SizeOf(kTarget + "\\manual\\index.html"), -1);
    EXPECT_EQ(ReadWindowDword(1, "TaskBarIcon", 9), 1u);
    EXPECT_FALSE(RegKeyExists(kMachineRoot, kListed));
    EXPECT_EQ(Text(kClassesRoot, ".wav"), "Newer.sound");
    EXPECT_EQ(Text(kClassesRoot, ".mp3"), "Other.song");
    EXPECT_EQ(Text(kClassesRoot, kPlayer), "C:\\other.exe %1");
    DeleteRegTree(kClassesRoot, ".wav");
}

TEST_F(SetupTest, TheDialogRefusesAFolderAndInstallsWhatIsTicked) {
    const std::string driver = Text(kMachineRoot, kDrivers, "cdaudio"), place = kRoot + "\\Short";
    Run("/installui /nodefcd /target \"Q:\\Nowhere\"");
    HWND dialog = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        dialog = FindWindowA("#32770", "Tonvista Install");
        return dialog && ChildText(dialog, IDC_INSTALL_FOLDER) == "Q:\\Nowhere";
    }));
    EXPECT_FALSE(Ask(Child(dialog, IDC_INSTALL_CD), BM_GETCHECK, 0, 0) &&
                 IsDlgButtonChecked(dialog, IDC_INSTALL_CD));
    Command(dialog, IDOK);
    HWND box = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (box = BoxOver(dialog)) != nullptr; }));
    EXPECT_NE(ChildText(box, 65535).find("Q:\\Nowhere"), std::string::npos);
    Command(box, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(box) && IsWindowEnabled(Child(dialog, IDOK)); }));
    SetWindowTextA(Child(dialog, IDC_INSTALL_FOLDER), place.c_str());
    Ask(Child(dialog, IDC_INSTALL_FOLDER), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(place.c_str()));
    Ask(Child(dialog, IDC_INSTALL_MEDIA), BM_CLICK, 0, 0);
    Ask(Child(dialog, IDC_INSTALL_MENU), BM_CLICK, 0, 0);
    EXPECT_TRUE(IsDlgButtonChecked(dialog, IDC_INSTALL_DRIVE)) << "there is no real CD drive";
    Command(dialog, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return (box = BoxOver(dialog)) != nullptr; }));
    EXPECT_EQ(ChildText(box, 65535), kDone);
    Command(box, IDOK);
    EXPECT_EQ(program->WaitEnd(), 0);
    EXPECT_EQ(Text(kMachineRoot, kDrivers, "cdaudio"), place + "\\TONVDisc.dll");
    EXPECT_EQ(Text(kClassesRoot, ".mp3"), "Other.song");
    EXPECT_EQ(Text(kClassesRoot, kPlayer), "C:\\other.exe %1");
    WriteRegString(kMachineRoot, kDrivers, "cdaudio", driver.c_str());
}

TEST_F(SetupTest, AFolderThatCantBeHadFailsWithoutATrace) {
    for (const char* folder : {"Q:\\Nowhere", "C:\\windows\\win.ini\\x", "C:\\a?b"}) {
        SCOPED_TRACE(folder);
        Run(std::string("/install /target ") + folder);
        EXPECT_NE(Answer("Tonvista Install", {IDOK})
                      .find(folder[0] == 'Q' ? "can't be written to" : folder),
                  std::string::npos);
        EXPECT_EQ(Answer("Tonvista Install", {IDOK}),
                  "Tonvista Install Did Not Complete Properly. You'll probably need to reinstall.");
        EXPECT_EQ(program->WaitEnd(), 0);
        EXPECT_FALSE(RegKeyExists(kUserRoot, kSettingsRoot) || RegKeyExists(kMachineRoot, kListed));
    }
}

TEST_F(SetupTest, AFileThatIsHeldLeavesTheOldProgramWhole) {
    CreateDirectoryA(kTarget.c_str(), nullptr);
    for (const char* name : {"\\tonvista.exe", "\\TONVDisc.dll", "\\TONVExtr.dll"})
        Write(kTarget + name, "old");
    const HANDLE held = CreateFileA((kTarget + "\\TONVExtr.dll").c_str(), GENERIC_READ,
                                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    Snapshot before, after;
    AddFolder(kTarget, &before);
    Run("/install /target \"" + kTarget + "\"");
    Answer("Tonvista Install", {IDOK, IDOK});
    program->WaitEnd();
    AddFolder(kTarget, &after);
    after.erase(kTarget + "\\manual");
    EXPECT_EQ(Difference(before, after), "");
    CloseHandle(held);
}

TEST_F(SetupTest, WhereItCantBeWrittenTheUsersOwnFolderIsTaken) {
    const std::string trial = std::string(kProgramFolder) + "\\Tonvista.setup-trial";
    const std::string own = ShellFolder(CSIDL_LOCAL_APPDATA) + "\\Programs\\Tonvista\\tonvista.exe";
    CreateDirectoryA(trial.c_str(), nullptr); // in the way of the file by which it is tried
    Run("");
    EXPECT_EQ(Answer("Tonvista Install", {IDOK}), kDone);
    RemoveDirectoryA(trial.c_str());
    EXPECT_EQ(Text(kUserRoot, "Software\\Tonvista\\Saved", "Module"), own);
    EXPECT_EQ(SizeOf(own), SizeOf(ProgramPath()));
}

TEST_F(SetupTest, RegistrationsAloneInstallNothing) {
    Run("/reg");
    EXPECT_EQ(program->WaitEnd(), 0);
    EXPECT_EQ(Text(kMachineRoot, kAppPaths), ProgramPath());
    EXPECT_EQ(Text(kClassesRoot, ".cdp"), "Tonvista.CDPFile");
    EXPECT_FALSE(RegKeyExists(kUserRoot, kSettingsRoot)) << "the next start would not install";
    EXPECT_FALSE(RegKeyExists(kMachineRoot, kListed));
}

TEST_F(SetupTest, ARunningProgramIsClosedIfTheUserAgrees) {
    FreshSettings();
    Start();
    Process first("/install /target \"" + kTarget + "\"");
    EXPECT_EQ(Answer("Tonvista Install", {IDNO, IDOK}),
              "Tonvista is still running. Nothing was changed.");
    Answer("Tonvista Install", {IDOK});
    EXPECT_TRUE(program->Runs() && SizeOf(kTarget + "\\tonvista.exe") < 0);
    Process second("/install /target \"" + kTarget + "\"");
    EXPECT_EQ(Answer("Tonvista Install", {IDYES, IDOK}), kDone);
    EXPECT_EQ(program->WaitEnd(), 0);
    Uninstall(1, 1);
}

TEST_F(SetupTest, HelpOpensThePageBesideTheProgramOrSaysWhereItShouldBe) {
    const std::string page = std::string(kProgramFolder) + "\\manual\\index.html";
    FreshSettings();
    WriteRegString(kClassesRoot, ".html", "", "Trial.page");
    WriteRegString(kClassesRoot, "Trial.page\\shell\\open\\command", "",
                   "C:\\windows\\system32\\cmd.exe /c copy \"%1\" C:\\TonvistaSetup\\shown.html");
    Start();
    Command(FindConsole(), kConsoleHelp);
    EXPECT_TRUE(WaitUntil([] { return SizeOf(kRoot + "\\shown.html") == 4; }, 20000));
    DeleteFileA(page.c_str());
    Command(FindConsole(), kConsoleHelp);
    EXPECT_NE(Answer("Tonvista Help", {IDOK}).find(page), std::string::npos);
}
