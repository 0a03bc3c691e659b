// Defaults of the console, of the looks, of the layouts and of the CD icon's tooltip, as an
// installation leaves them: only where the user has no value. See setup_win.h.
#include "app/setup_win.h"
#include "cd/icon_text.h"
#include "cd/icon_win.h"
#include "core/settings.h"
#include "ui/appearance_win.h"
#include "ui/components.h"
#include "ui/layouts_win.h"

int SeedDefaults() {
    const uint32_t on = 1, off = 0;
    SeedWindowSetting(kConsoleWindowId, "Use3dLook", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "TaskBarIcon", kRegDword, 4, &on);
    SeedWindowSetting(kConsoleWindowId, "PreventSS", kRegDword, 4, &off);
    if (!RegValueExists(kUserRoot, kSettingsRoot, kCdIconOptionsValue))
        CdIconOptions(kCdIconOptions);
    SeedAppearance(); // the colours with it
    SeedLayouts(0);
    return RegKeyExists(kUserRoot, kSettingsRoot);
}
