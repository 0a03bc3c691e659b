// What the four file types open, their icons, and what the shell shows of them. The dialog is in
// types_dialog_win.cpp. See types_win.h.
#include "media/types_win.h"

#include "core/classes.h"
#include "core/extractor.h"
#include "core/settings.h"
#include "core/text.h"
#include "media/graph_win.h"
#include "media/types.h"
#include "media/types_parts_win.h"

#include <shlobj.h>

#include <cstring>

constexpr const char* kRecorderClass = "soundrec"; // the system's own for .wav
constexpr const char* kTempFile = "TNV~Temp.xxx";

static int IsOwn(const char* text, const char*) {
    return IsOwnClass(text);
}
static const ClassOwner kOwner = {IsOwn, nullptr};

static void ClassKey(const char* extension, const char* below, char (&key)[MAX_PATH]) {
    MediaClass(extension, key, sizeof key);
    AppendText(key, sizeof key, below);
}

// ---- associations

static void Associate(const char* extension, const char* commandLine) {
    char key[MAX_PATH], command[2 * MAX_PATH];
    ClassKey(extension, "", key);
    ClaimClass(extension, key, kOwner);
    FormatText(command, sizeof command, "%s %%1", commandLine);
    ClassKey(extension, "\\shell\\Open\\command", key);
    WriteClass(key, command);
}

int RegisterMediaTypes(const char* commandLine) {
    for (const char* extension : kMediaExtensions)
        Associate(extension, commandLine);
    return 1;
}

int IsMediaTypeOurs(const char* extension) {
    char current[MAX_PATH], own[MAX_PATH];
    ReadClass(extension, current, sizeof current);
    ClassKey(extension, "", own);
    return SameText(current, own);
}

void ClaimMediaType(const char* extension) {
    char module[MAX_PATH], command[MAX_PATH + 4];
    GetModuleFileNameA(nullptr, module, sizeof module);
    module[sizeof module - 1] = 0;
    FormatText(command, sizeof command, "\"%s\"", module);
    Associate(extension, command);
}

void GiveUpMediaType(const char* extension) {
    if (SameText(extension, ".wav")) {
        WriteClass(extension, kRecorderClass);
        return;
    }
    ReplaceOwnClass(extension, nullptr, kOwner);
}

void UnregisterMediaTypes() {
    char key[MAX_PATH];
    for (const char* extension : kMediaExtensions) {
        GiveBackClass(extension, kOwner);
        ClassKey(extension, "", key);
        DeleteClass(key);
    }
}

// ---- icons

void ReadMediaIcon(const char* extension, char (&file)[MAX_PATH], int* index) {
    char key[MAX_PATH], place[MAX_PATH + 16];
    ClassKey(extension, "\\DefaultIcon", key);
    ReadClass(key, place, sizeof place);
    SplitIconPlace(place, file, sizeof file, index);
    if (*file) return;
    GetModuleFileNameA(nullptr, file, sizeof file);
    file[sizeof file - 1] = 0;
    *index = 0;
}

void StoreMediaIcon(const char* extension, const char* file, int index) {
    char key[MAX_PATH], place[MAX_PATH + 16];
    ClassKey(extension, "\\DefaultIcon", key);
    FormatText(place, sizeof place, "%s,%d", file, index);
    WriteClass(key, place);
}

// The shell keeps the images of a type; told that one has changed, it fetches it anew. Its number
// can only be had by a file of that type.
static void RefreshIcon(const char* extension) {
    char path[MAX_PATH];
    const DWORD length = GetTempPathA(sizeof path, path);
    if (!length || length + std::strlen(kTempFile) >= sizeof path) return;
    AppendText(path, sizeof path, kTempFile);
    CopyText(path + std::strlen(path) - 4, 5, extension);
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_TEMPORARY, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    CloseHandle(file);
    SHFILEINFOA info = {};
    if (SHGetFileInfoA(path, 0, &info, sizeof info, SHGFI_SYSICONINDEX))
        SHChangeNotify(SHCNE_UPDATEIMAGE, SHCNF_DWORD | SHCNF_FLUSH,
                       reinterpret_cast<void*>(static_cast<INT_PTR>(info.iIcon)), nullptr);
    DeleteFileA(path);
}

void RefreshMediaIcons() {
    const ComScope com; // the shell's icons want it
    for (const char* extension : kMediaExtensions)
        RefreshIcon(extension);
}

// ---- the extractor's registration

static int CallServer(const char* path, const char* function) {
    const HMODULE module = LoadLibraryA(path);
    if (!module) return 0;
    using Registration = HRESULT(STDAPICALLTYPE*)();
    const auto Call =
        reinterpret_cast<Registration>(reinterpret_cast<void*>(GetProcAddress(module, function)));
    const int done = Call && SUCCEEDED(Call());
    FreeLibrary(module);
    return done;
}

int RegisterExtractor(const char* path) {
    return CallServer(path, "DllRegisterServer");
}

int UnregisterExtractor(const char* path) {
    return CallServer(path, "DllUnregisterServer");
}
