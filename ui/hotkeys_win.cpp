// The hotkeys' settings and their registration. See hotkeys_win.h.
#include "ui/hotkeys_win.h"

#include "core/commands.h"
#include "core/settings.h"
#include "ui/components.h"

static struct {
    HWND console;
    int refused[kHotkeys];
} s_hotkeys;

int HotkeyOf(WPARAM id) {
    const auto place = static_cast<int>(id) - kConsoleFirstHotkey;
    return place >= 0 && place < kHotkeys ? place : -1;
}

void LoadHotkeys(HotkeyRecord (&records)[kHotkeys]) {
    for (int i = 0; i < kHotkeys; ++i) {
        records[i] = {};
        if (!ReadWindowSetting(kConsoleWindowId, kHotkeyKinds[i].valueName, kRegBinary,
                               sizeof records[i], &records[i]))
            records[i] = {};
        FixHotkey(i, &records[i]);
    }
}

void SaveHotkeys(const HotkeyRecord (&records)[kHotkeys]) {
    for (int i = 0; i < kHotkeys; ++i)
        WriteWindowSetting(kConsoleWindowId, kHotkeyKinds[i].valueName, kRegBinary,
                           sizeof records[i], &records[i]);
}

int ApplyHotkey(const HotkeyRecord& record, int enable) {
    int& refused = s_hotkeys.refused[HotkeyOf(record.HotkeyId)];
    refused = 0;
    if (!enable) {
        UnregisterHotKey(s_hotkeys.console, record.HotkeyId);
        return 1;
    }
    const UINT modifiers = (record.Alt ? MOD_ALT : 0u) | (record.Ctrl ? MOD_CONTROL : 0u) |
                           (record.Shift ? MOD_SHIFT : 0u);
    refused = !RegisterHotKey(s_hotkeys.console, record.HotkeyId, modifiers, record.VirtualKey);
    return !refused;
}

int HotkeyWasRefused(int place) {
    return s_hotkeys.refused[place];
}

void RegisterAllHotkeys(HWND console) {
    HotkeyRecord records[kHotkeys];
    s_hotkeys.console = console;
    LoadHotkeys(records);
    for (const HotkeyRecord& record : records)
        ApplyHotkey(record, static_cast<int>(record.Enabled));
}
