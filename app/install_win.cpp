// Installation and the shell's registrations. See install_win.h.
#include "app/install_win.h"

#include "cd/engine_win.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "media/types_win.h"
#include "mixer/engine_win.h"
#include "resources/ids.h"
#include "ui/components.h"
#include "ui/look_win.h"
#include "waves/engine_win.h"

#include <cstring>

constexpr const char* kSavedKey = "Software\\Tonvista\\Saved";
constexpr const char* kAppPathsKey =
    "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\tonvista.exe";
constexpr const char* kUserClasses = "Software\\Classes\\";
constexpr const char* kDiscFileClass = "Tonvista.CDPFile";

// Full path of the executable; 0 when it is too long to be named in a registration.
static int ModulePath(char (&path)[MAX_PATH]) {
    const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    return length > 0 && length < MAX_PATH;
}

static int WriteMachineOrUser(const char* key, const char* name, const char* text) {
    return WriteRegString(kMachineRoot, key, name, text) ||
           WriteRegString(kUserRoot, key, name, text);
}

// A default value below HKEY_CLASSES_ROOT, or in the user's own classes.
static int WriteClass(const char* key, const char* text) {
    if (WriteRegString(kClassesRoot, key, "", text)) return 1;
    char user[MAX_PATH];
    FormatText(user, sizeof user, "%s%s", kUserClasses, key);
    return WriteRegString(kUserRoot, user, "", text);
}

int WriteShellRegistrations() {
    char module[MAX_PATH], folder[MAX_PATH], text[MAX_PATH + 16], key[MAX_PATH];
    if (!ModulePath(module)) return 0;
    CopyText(folder, module);
    char* name = std::strrchr(folder, '\\');
    if (name) *name = 0;
    int written = WriteMachineOrUser(kAppPathsKey, "", module);
    written &= WriteMachineOrUser(kAppPathsKey, "Path", folder);
    written &= WriteClass(".cdp", kDiscFileClass);
    written &= WriteClass(kDiscFileClass, "Tonvista CD Information");
    FormatText(text, sizeof text, "%s,0", module);
    FormatText(key, sizeof key, "%s\\DefaultIcon", kDiscFileClass);
    written &= WriteClass(key, text);
    FormatText(text, sizeof text, "\"%s\" \"%%1\"", module);
    FormatText(key, sizeof key, "%s\\shell\\open\\command", kDiscFileClass);
    written &= WriteClass(key, text);
    written &= WriteRegString(kUserRoot, kSavedKey, "Module", module);
    return written;
}

void RefreshShellRegistrations() {
    char module[MAX_PATH], saved[MAX_PATH] = "";
    ReadRegString(kUserRoot, kSavedKey, "Module", saved, sizeof saved);
    if (ModulePath(module) && !SameText(module, saved)) WriteShellRegistrations();
}

// Where the windows stand at first, by the screen's width: a column of one width, the CD player
// right above the console, above it the spectrum analyzer and the oscilloscope, the mixer on top.
struct FirstPlaces {
    int minScreenWidth;
    int x, width;
    int playerY, playerHeight, consoleY, consoleHeight;
    int mixerY, mixerHeight, soundY, soundHeight;
    int analyzerWidth; // the oscilloscope has the rest
    // Above the column, or left of it; on the smallest screen there is no free place, and it lies
    // over the mixer.
    int mediaX, mediaY, mediaWidth, mediaHeight;
};
static constexpr FirstPlaces kFirstPlaces[] = {
    {1024, 158, 742, 442, 172, 616, 114, 94, 172, 268, 172, 450, 158, 2, 742, 90},
    {800, 146, 653, 317, 132, 451, 117, 31, 142, 175, 140, 390, 0, 31, 144, 220},
    {0, 20, 616, 218, 121, 340, 110, 2, 94, 98, 118, 370, 20, 2, 616, 94},
};
constexpr int kPlaceGap = 2; // pixels between neighbours

static void SeedPlace(uint32_t windowId, int x, int y, int width, int height) {
    const struct {
        const char* name;
        int32_t value;
    } values[] = {{"X", x}, {"Y", y}, {"Width", width}, {"Height", height}};
    for (const auto& v : values)
        SeedWindowSetting(windowId, v.name, kRegBinary, sizeof v.value, &v.value);
}

static void SeedPlaces() {
    const FirstPlaces* p = kFirstPlaces;
    while (GetSystemMetrics(SM_CXSCREEN) < p->minScreenWidth)
        ++p;
    SeedPlace(kConsoleWindowId, p->x, p->consoleY, p->width, p->consoleHeight);
    SeedPlace(kCdPlayerWindowId, p->x, p->playerY, p->width, p->playerHeight);
    SeedPlace(kMixerWindowId, p->x, p->mixerY, p->width, p->mixerHeight);
    SeedPlace(kMediaWindowId, p->mediaX, p->mediaY, p->mediaWidth, p->mediaHeight);
    SeedPlace(kSpectrumWindowId, p->x, p->soundY, p->analyzerWidth, p->soundHeight);
    const int beside = p->analyzerWidth + kPlaceGap;
    SeedPlace(kScopeWindowId, p->x + beside, p->soundY, p->width - beside, p->soundHeight);
}

static int SeedConsole() {
    const uint32_t on = 1, off = 0;
    SeedWindowSetting(kConsoleWindowId, "Use3dLook", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "TaskBarIcon", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "PreventSS", kRegDword, 4, &off);
    SeedColors();
    SeedPlaces();
    return RegKeyExists(kUserRoot, kSettingsRoot);
}

static void ClaimMediaFiles() {
    char module[MAX_PATH], command[MAX_PATH + 2];
    if (!ModulePath(module)) return;
    FormatText(command, sizeof command, "\"%s\"", module);
    RegisterMediaTypes(command);
}

int InstallProgram(const StartRequest& request) {
    WriteLastOk(1);
    const int seeded = SeedConsole();
    const int registered = WriteShellRegistrations();
    SeedCdDefaults(nullptr, static_cast<int>(request.ClaimDefaultCDPlayer));
    if (request.ClaimDefaultMediaPlayer) ClaimMediaFiles();
    SeedWavesDefaults();
    SeedMixerDefaults();
    const int installed = seeded && registered;
    char text[kStringMax], caption[kStringMax];
    LoadText(installed ? IDS_INSTALL_DONE : IDS_INSTALL_FAILED, text);
    LoadText(IDS_INSTALL_CAPTION, caption);
    MessageBoxA(nullptr, text, caption, MB_OK | (installed ? MB_ICONINFORMATION : MB_ICONERROR));
    return installed;
}
