// What the shell knows of the program: where it is, that it opens ".cdp" files, and that it is
// installed. See setup_win.h.
#include "app/setup_win.h"
#include "core/classes.h"
#include "core/settings.h"
#include "core/text.h"

#include <initializer_list>

constexpr const char* kSavedKey = "Software\\Tonvista\\Saved";
constexpr const char* kAppPathsKey =
    "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\tonvista.exe";
constexpr const char* kListKey =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tonvista";
constexpr const char* kDiscFile = ".cdp";
constexpr const char* kDiscFileClass = "Tonvista.CDPFile";

static int IsDiscFileClass(const char* text, const char*) {
    return SameText(text, kDiscFileClass);
}
static const ClassOwner kOwner = {IsDiscFileClass, nullptr};

static int WriteMachineOrUser(const char* key, const char* name, const char* text) {
    return WriteRegString(kMachineRoot, key, name, text) ||
           WriteRegString(kUserRoot, key, name, text);
}

static int WriteDiscFileClass(const char* below, const char* text) {
    char key[MAX_PATH];
    FormatText(key, sizeof key, "%s%s", kDiscFileClass, below);
    return WriteClass(key, text);
}

int RegisterShell(const char* program) {
    char folder[kPathSize], text[MAX_PATH + 16];
    FolderOfPath(program, folder);
    int written = WriteMachineOrUser(kAppPathsKey, "", program);
    written &= WriteMachineOrUser(kAppPathsKey, "Path", folder);
    written &= ClaimClass(kDiscFile, kDiscFileClass, kOwner);
    written &= WriteDiscFileClass("", "Tonvista CD Information");
    FormatText(text, sizeof text, "%s,0", program);
    written &= WriteDiscFileClass("\\DefaultIcon", text);
    FormatText(text, sizeof text, "\"%s\" \"%%1\"", program);
    written &= WriteDiscFileClass("\\shell\\open\\command", text);
    return written;
}

int NoteProgram(const char* program) {
    return WriteRegString(kUserRoot, kSavedKey, "Module", program);
}

int InstalledProgram(char (&path)[kPathSize]) {
    path[0] = 0;
    ReadRegString(kUserRoot, kSavedKey, "Module", path, sizeof path);
    // A name without a folder would be looked for in the current one.
    return IsFullPath(path) && GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

void TakeBackShell() {
    GiveBackClass(kDiscFile, kOwner);
    DeleteClass(kDiscFileClass);
    for (const RegRoot root : {kMachineRoot, kUserRoot})
        DeleteRegTree(root, kAppPathsKey);
    DeleteRegTree(kUserRoot, kSavedKey);
}

// ---- the list of installed programs

static void OwnVersion(char (&text)[32]) {
    const HRSRC found = FindResourceA(nullptr, MAKEINTRESOURCEA(1), RT_VERSION);
    const HGLOBAL loaded = found ? LoadResource(nullptr, found) : nullptr;
    const auto* bytes = loaded ? static_cast<const uint8_t*>(LockResource(loaded)) : nullptr;
    ReadVersion(bytes, bytes ? SizeofResource(nullptr, found) : 0, text);
}

static void TodayText(char (&text)[16]) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    FormatText(text, sizeof text, "%04u%02u%02u", now.wYear, now.wMonth, now.wDay);
}

int ListProgram(const char* program) {
    char folder[kPathSize], icon[MAX_PATH + 4], command[MAX_PATH + 16], version[32], today[16];
    FolderOfPath(program, folder);
    FormatText(icon, sizeof icon, "%s,0", program);
    FormatText(command, sizeof command, "\"%s\" /uninstall", program);
    OwnVersion(version);
    TodayText(today);
    const struct {
        const char *name, *text;
    } texts[] = {{"DisplayName", "Tonvista"}, {"DisplayIcon", icon},
                 {"DisplayVersion", version}, {"Publisher", "Tonvista developers"},
                 {"InstallLocation", folder}, {"InstallDate", today},
                 {"UninstallString", command}};
    const struct {
        const char* name;
        uint32_t value;
    } numbers[] = {{"EstimatedSize", ProgramKilobytes(folder)}, {"NoModify", 1}, {"NoRepair", 1}};
    for (const RegRoot root : {kMachineRoot, kUserRoot}) {
        int written = 1;
        for (const auto& v : texts)
            written = written && WriteRegString(root, kListKey, v.name, v.text);
        for (const auto& v : numbers)
            written = written && WriteRegDword(root, kListKey, v.name, kRegDword, v.value);
        if (written) return 1;
    }
    return 0;
}

int IsListed() {
    return RegKeyExists(kMachineRoot, kListKey) || RegKeyExists(kUserRoot, kListKey);
}

void UnlistProgram() {
    for (const RegRoot root : {kMachineRoot, kUserRoot})
        DeleteRegTree(root, kListKey);
}
