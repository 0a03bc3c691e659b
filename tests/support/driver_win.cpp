// See driver_win.h.
#include "tests/support/driver_win.h"

#include "core/extractor.h"
#include "core/placement.h"
#include "ui/components.h"

#include <cstdio>

static std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('\\'));
}

std::string ProgramPath() {
    return std::string(kProgramFolder) + "\\tonvista.exe";
}
std::string DatabasePath() {
    return std::string(kProgramFolder) + "\\CDInfo.CDP";
}

bool WaitUntil(const std::function<bool()>& condition, DWORD waitMs) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > waitMs) return false;
        Sleep(20);
    }
    return true;
}

// ---- set-up

std::string BuildFolder() {
    char self[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    return FolderOf(FolderOf(self));
}

static bool Install(const std::string& build, const char* name) {
    CreateDirectoryA(kProgramFolder, nullptr);
    const std::string to = std::string(kProgramFolder) + "\\" + name;
    return CopyFileA((build + "\\" + name).c_str(), to.c_str(), FALSE);
}

bool InstallProgram(const std::string& build) {
    return Install(build, "tonvista.exe") && Install(build, kExtractorFile) && InstallDrive(build);
}

bool InstallDrive(const std::string& build) {
    if (!Install(build, "TONVDisc.dll")) return false;
    const std::string driver = std::string(kProgramFolder) + "\\TONVDisc.dll";
    return WriteRegString(kMachineRoot, "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI",
                          "cdaudio", driver.c_str()) != 0;
}

static void DeleteDatabaseFiles() {
    WIN32_FIND_DATAA found;
    const std::string pattern = std::string(kProgramFolder) + "\\CDInfo*";
    HANDLE search = FindFirstFileA(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do
        DeleteFileA((std::string(kProgramFolder) + "\\" + found.cFileName).c_str());
    while (FindNextFileA(search, &found));
    FindClose(search);
}

// No window covers another one, of which a test may read the pixels or click into it.
static void PlaceWindowsApart() {
    constexpr int kColumns = 2, kWidth = 510, kHeight = 210;
    int place = 0;
    for (const uint16_t id : {kConsoleWindowId, kCdPlayerWindowId, kSpectrumWindowId,
                              kMixerWindowId, kScopeWindowId, kMediaWindowId}) {
        WindowPlacement placement = DefaultPlacement(id);
        placement.X += place % kColumns * kWidth;
        placement.Y += place++ / kColumns * kHeight;
        WriteWindowPlacement(placement);
    }
}

void FreshSettings() {
    DeleteRegTree(kUserRoot, kSettingsRoot);
    DeleteRegTree(kMachineRoot, kSettingsRoot);
    DeleteRegTree(kUserRoot, kDiscDriveKey);
    WriteRegString(kUserRoot, "Software\\Tonvista\\Saved", "Module", ProgramPath().c_str());
    WriteLastOk(1);
    PlaceWindowsApart();
    const char* const engine = "Software\\Tonvista\\CDEngine";
    WriteRegDword(kUserRoot, engine, "Drive", kRegDword, 'D');
    WriteRegDword(kUserRoot, engine, "IntroLength", kRegDword, 10);
    WriteRegDword(kUserRoot, engine, "AutoRun", kRegDword, 0);
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "D");
    DeleteDatabaseFiles();
}

void SwitchOn(const char* onOffValue) {
    WriteWindowDword(1, onOffValue, 1);
}

void PutImage(const std::string& path) {
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveImage, path.c_str());
}

void SetDrive(const char* name, uint32_t value) {
    WriteRegDword(kUserRoot, kDiscDriveKey, name, kRegDword, value);
}

void CalmDrive() {
    for (const char* name :
         {kDiscDriveDoor, kDiscDriveStall, kDiscDriveFailCommand, kDiscDriveFailError,
          kDiscDriveNoNotify, kDiscDriveStayPlaying, kDiscDrivePauseAsStopped, kDiscDriveStaleToc})
        SetDrive(name, 0);
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLogFile, "");
}

// ---- windows

HWND FindConsole() {
    return FindWindowA(kWindowClass, "Tonvista");
}
HWND FindComponent(const char* title) {
    return FindWindowA(kWindowClass, title);
}
HWND FindCdEngine() {
    return FindWindowA(kCdEngineClass, nullptr);
}
HWND Child(HWND window, int id) {
    return GetDlgItem(window, id);
}

bool Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* answer) {
    DWORD_PTR result = 0;
    const LRESULT sent =
        SendMessageTimeoutA(window, message, wParam, lParam, SMTO_NORMAL, kPatienceMs, &result);
    if (answer) *answer = static_cast<LRESULT>(result);
    return sent != 0;
}

std::string TextOf(HWND window) {
    char text[1024] = "";
    Ask(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

std::string ChildText(HWND window, int id) {
    return TextOf(Child(window, id));
}

RECT PlaceOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

void Command(HWND window, UINT id, LPARAM lParam) {
    PostMessageA(window, WM_COMMAND, id, lParam);
}

DWORD AnswerTime(HWND window) {
    const DWORD start = GetTickCount();
    return Ask(window, WM_NULL, 0, 0) ? GetTickCount() - start : kPatienceMs;
}

bool AnswerBox(const char* caption, int button, std::string* text) {
    constexpr int kMessageText = 65535;
    HWND box = nullptr;
    if (!WaitUntil([&] { return (box = FindWindowA("#32770", caption)) && Child(box, button); }))
        return false;
    if (text) *text = ChildText(box, kMessageText);
    Command(box, static_cast<UINT>(button));
    return WaitUntil([&] { return !IsWindow(box); });
}

// ---- processes

Process::Process(const std::string& arguments, const std::string& program) {
    std::string line = "\"" + program + "\" " + arguments;
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info = {};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, kProgramFolder,
                        &startup, &info))
        return;
    CloseHandle(info.hThread);
    handle = info.hProcess;
    id = info.dwProcessId;
}

Process::~Process() {
    if (Runs()) Kill();
    if (handle) CloseHandle(handle);
}

bool Process::Runs() const {
    return handle && WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
}

void Process::Kill() {
    TerminateProcess(handle, 99);
    WaitForSingleObject(handle, 5000);
}

int Process::WaitEnd(DWORD waitMs) {
    if (!handle || WaitForSingleObject(handle, waitMs) != WAIT_OBJECT_0) return -1;
    DWORD code = 0;
    GetExitCodeProcess(handle, &code);
    return static_cast<int>(code);
}

SharedPeer::SharedPeer() {
    mapping = OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, kSharedBlockName);
    if (mapping)
        block = static_cast<SharedControlBlock*>(
            MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, kSharedBlockSize));
}

SharedPeer::~SharedPeer() {
    if (block) UnmapViewOfFile(block);
    if (mapping) CloseHandle(mapping);
}
