// Defaults of the console, of the looks, of the layouts and of the CD icon's tooltip, as an
// installation leaves them: only where the user has no value. See setup_win.h.
#include "app/setup_win.h"
#include "cd/icon_text.h"
#include "cd/icon_win.h"
#include "core/settings.h"
#include "ui/appearance_win.h"
#include "ui/components.h"
#include "ui/layouts_win.h"

// No layout has a place for the database manager: it gets one that shows a list worth the name, in
// the screen's middle and above the console.
static void SeedManagerPlace() {
    const int screenWidth = GetSystemMetrics(SM_CXSCREEN);
    const int screenHeight = GetSystemMetrics(SM_CYSCREEN);
    const int32_t width = screenWidth * 2 / 3, height = screenHeight / 2;
    const struct {
        const char* name;
        int32_t value;
    } values[] = {{"X", (screenWidth - width) / 2},
                  {"Y", (screenHeight - height) / 4},
                  {"Width", width},
                  {"Height", height}};
    for (const auto& v : values)
        SeedWindowSetting(kDatabaseWindowId, v.name, kRegBinary, sizeof v.value, &v.value);
}

int SeedDefaults() {
    const uint32_t on = 1, off = 0;
    SeedWindowSetting(kConsoleWindowId, "Use3dLook", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "TaskBarIcon", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "PreventSS", kRegDword, 4, &off);
    if (!RegValueExists(kUserRoot, kSettingsRoot, kCdIconOptionsValue))
        CdIconOptions(kCdIconOptions);
    SeedAppearance(); // the colours with it
    SeedLayouts(0);
    SeedManagerPlace();
    return RegKeyExists(kUserRoot, kSettingsRoot);
}
