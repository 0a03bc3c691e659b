// An installation by a user who may not write to the machine's registry: its calls are replaced by
// ones that refuse that. Where Windows would read the user's classes Wine does not, so they are
// seen as written only.
#include "app/setup_win.h"
#include "cd/engine_win.h"
#include "core/disc_drive.h"
#include "core/settings.h"
#include "core/text.h"
#include "media/types_win.h"

#include <gtest/gtest.h>

static int s_refusing; // writes to anything but the user's registry

using OpenKey = LSTATUS(WINAPI*)(HKEY, LPCSTR, DWORD, REGSAM, PHKEY);
using CreateKey = LSTATUS(WINAPI*)(HKEY, LPCSTR, DWORD, LPSTR, DWORD, REGSAM, LPSECURITY_ATTRIBUTES,
                                   PHKEY, LPDWORD);

template <typename Function> static Function Real(const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("advapi32.dll"), name)));
}

static int IsRefused(HKEY root, REGSAM access) {
    return s_refusing && (root == HKEY_LOCAL_MACHINE || root == HKEY_CLASSES_ROOT) &&
           (access & KEY_SET_VALUE);
}

static LSTATUS WINAPI FakeOpen(HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) {
    if (IsRefused(root, access)) return ERROR_ACCESS_DENIED;
    return Real<OpenKey>("RegOpenKeyExA")(root, path, options, access, key);
}

static LSTATUS WINAPI FakeCreate(HKEY root, LPCSTR path, DWORD reserved, LPSTR kind, DWORD options,
                                 REGSAM access, LPSECURITY_ATTRIBUTES security, PHKEY key,
                                 LPDWORD made) {
    if (IsRefused(root, access)) return ERROR_ACCESS_DENIED;
    return Real<CreateKey>("RegCreateKeyExA")(root, path, reserved, kind, options, access, security,
                                              key, made);
}

#define REPLACE(function, bytes, mine)                                         \
    extern "C" void* const imp_##function asm("__imp__" #function "@" #bytes); \
    void* const imp_##function = reinterpret_cast<void*>(mine)
REPLACE(RegOpenKeyExA, 20, FakeOpen);
REPLACE(RegCreateKeyExA, 36, FakeCreate);

static std::string Text(RegRoot root, const char* key, const char* name = "") {
    char text[600] = "-";
    ReadRegString(root, key, name, text, sizeof text);
    return text;
}

TEST(Rights, TheUsersPlacesAreWrittenAndTakenBack) {
    const char* const drivers = "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI";
    const char* const listed = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tonvista";
    const char* const paths =
        "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\tonvista.exe";
    // Without any CD drive a box would wait for a user.
    WriteRegString(kMachineRoot, drivers, "cdaudio", "C:\\x\\TONVDisc.dll");
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, "D");
    WriteRegString(kUserRoot, "Software\\Classes\\.wav", "", "My.sound");
    SetupChoices choices = UsualChoices();
    CopyText(choices.folder, "C:\\TonvistaRights");
    s_refusing = 1;
    EXPECT_EQ(Install(choices, {}), 1);
    const std::string program = "C:\\TonvistaRights\\tonvista.exe";
    EXPECT_EQ(Text(kUserRoot, paths), program);
    EXPECT_EQ(Text(kUserRoot, listed, "UninstallString"), "\"" + program + "\" /uninstall");
    EXPECT_EQ(Text(kUserRoot, "Software\\Classes\\.cdp"), "Tonvista.CDPFile");
    EXPECT_EQ(Text(kUserRoot, "Software\\Classes\\.wav"), "Tonvue.wav");
    EXPECT_EQ(Text(kUserRoot, "Software\\Classes\\Tonvue.mp3\\shell\\Open\\command"),
              "\"" + program + "\" %1");
    EXPECT_EQ(Text(kUserRoot, "Software\\Classes\\AudioCD\\shell\\play\\command"),
              program + " /play %1");
    EXPECT_EQ(ReadLastOk(), 1u);
    EXPECT_FALSE(RegKeyExists(kMachineRoot, kSettingsRoot) || RegKeyExists(kMachineRoot, listed) ||
                 RegKeyExists(kClassesRoot, "Tonvue.mp3"));
    EXPECT_FALSE(RegisterDiscDrive(choices.folder));
    GiveBackCdPlayer(program.c_str());
    UnregisterMediaTypes();
    TakeBackShell();
    UnlistProgram();
    RemoveFromStartMenu();
    EXPECT_EQ(Text(kUserRoot, "Software\\Classes\\.wav"), "My.sound");
    for (const char* key : {paths, listed, "Software\\Classes\\.cdp", "Software\\Classes\\.mp3",
                            "Software\\Classes\\Tonvue.mp3", "Software\\Classes\\AudioCD"})
        EXPECT_FALSE(RegKeyExists(kUserRoot, key)) << key;
    DeleteRegTree(kUserRoot, "Software\\Classes\\.wav");
    s_refusing = 0;
}
