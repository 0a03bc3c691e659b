// Defaults of the console, of the looks and of the windows' places, as an installation leaves them:
// only where the user has no value. See setup_win.h.
#include "app/setup_win.h"
#include "core/settings.h"
#include "ui/appearance_win.h"
#include "ui/components.h"
#include "ui/look_win.h"

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

int SeedDefaults() {
    const uint32_t on = 1, off = 0;
    SeedWindowSetting(kConsoleWindowId, "Use3dLook", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "TaskBarIcon", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "PreventSS", kRegDword, 4, &off);
    SeedColors();
    SeedAppearance();
    SeedPlaces();
    return RegKeyExists(kUserRoot, kSettingsRoot);
}
