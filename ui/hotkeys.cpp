// See hotkeys.h.
#include "ui/hotkeys.h"

#include "core/commands.h"
#include "core/text.h"
#include "resources/ids.h"

#include <cstring>

const HotkeyKind kHotkeyKinds[kHotkeys] = {
    {"HKPlay", kConsoleFirstHotkey, IDC_HOTKEY_PLAY, IDC_HOTKEY_PLAY_TEXT, IDC_HOTKEY_PLAY_SET},
    {"HKFwd", kConsoleFirstHotkey + 1, IDC_HOTKEY_FORWARD, IDC_HOTKEY_FORWARD_TEXT,
     IDC_HOTKEY_FORWARD_SET},
    {"HKBkwd", kConsoleFirstHotkey + 2, IDC_HOTKEY_BACK, IDC_HOTKEY_BACK_TEXT, IDC_HOTKEY_BACK_SET},
    {"HKStop", kConsoleFirstHotkey + 3, IDC_HOTKEY_STOP, IDC_HOTKEY_STOP_TEXT, IDC_HOTKEY_STOP_SET},
    {"HKPause", kConsoleFirstHotkey + 4, IDC_HOTKEY_PAUSE, IDC_HOTKEY_PAUSE_TEXT,
     IDC_HOTKEY_PAUSE_SET},
    {"HKEject", kConsoleFirstHotkey + 5, IDC_HOTKEY_EJECT, IDC_HOTKEY_EJECT_TEXT,
     IDC_HOTKEY_EJECT_SET},
    {"HKMute", kConsoleFirstHotkey + 6, IDC_HOTKEY_MUTE, IDC_HOTKEY_MUTE_TEXT, IDC_HOTKEY_MUTE_SET},
    {"HKMP3Play", kConsoleFirstHotkey + 7, IDC_HOTKEY_MEDIA_PLAY, IDC_HOTKEY_MEDIA_PLAY_TEXT,
     IDC_HOTKEY_MEDIA_PLAY_SET},
    {"HKMP3Stop", kConsoleFirstHotkey + 8, IDC_HOTKEY_MEDIA_STOP, IDC_HOTKEY_MEDIA_STOP_TEXT,
     IDC_HOTKEY_MEDIA_STOP_SET},
    {"HKMP3Pause", kConsoleFirstHotkey + 9, IDC_HOTKEY_MEDIA_PAUSE, IDC_HOTKEY_MEDIA_PAUSE_TEXT,
     IDC_HOTKEY_MEDIA_PAUSE_SET},
};

// Rows of sixteen keys.
static const char kKeyNames[16][16 * 4 + 1] = {
    "    lmb rmb brk mmb xb1 xb2     bksptab         clr retn        ",
    "shftctrlalt pauscapskana    junjfinlhanj    esc convncnvacptmode",
    "spc pguppgdnend homeleftup  rghtdownsel prntexecsnapins del help",
    "0   1   2   3   4   5   6   7   8   9                           ",
    "    A   B   C   D   E   F   G   H   I   J   K   L   M   N   O   ",
    "P   Q   R   S   T   U   V   W   X   Y   Z   lwinrwinapps    slep",
    "pad0pad1pad2pad3pad4pad5pad6pad7pad8pad9pad*pad+sep pad-pad.pad/",
    "F1  F2  F3  F4  F5  F6  F7  F8  F9  F10 F11 F12 F13 F14 F15 F16 ",
    "F17 F18 F19 F20 F21 F22 F23 F24                                 ",
    "num scrloem oem oem oem oem                                     ",
    "lsftrsftlctlrctllaltraltbackfwd rfshstopsrchfavsweb mutevol-vol+",
    "nextprevmstpmplymailmediapp1app2        oem oem oem oem oem oem ",
    "oem                                                             ",
    "                                            oem oem oem oem oem ",
    "    oem oem oem oem procoem pckt    oem oem oem oem oem oem oem ",
    "oem oem oem oem oem oem attncrslexsleeofplayzoom    pa1 oclr    ",
};
constexpr size_t kNameLength = 4;

void FixHotkey(int place, HotkeyRecord* record) {
    const HotkeyKind& kind = kHotkeyKinds[place];
    record->Enabled = record->Enabled != 0;
    if (record->VirtualKey > kMostVirtualKey) record->VirtualKey = 0;
    record->TextControlId = kind.textId;
    record->CheckControlId = kind.checkId;
    record->HotkeyId = kind.hotkeyId;
    record->reserved = 0;
}

void ClearHotkey(HotkeyRecord* record) {
    record->Alt = record->Ctrl = record->Shift = record->VirtualKey = 0;
}

void FormatHotkey(const HotkeyRecord& record, char (&text)[kHotkeyTextMax]) {
    const uint32_t key = record.VirtualKey > kMostVirtualKey ? 0 : record.VirtualKey;
    char name[kNameLength + 1] = "";
    std::memcpy(name, kKeyNames[key / 16] + key % 16 * kNameLength, kNameLength);
    text[0] = 0;
    if (record.Alt) AppendText(text, sizeof text, "<alt>");
    if (record.Shift) AppendText(text, sizeof text, "<shift>");
    if (record.Ctrl) AppendText(text, sizeof text, "<ctrl>");
    AppendText(text, sizeof text, name);
}
