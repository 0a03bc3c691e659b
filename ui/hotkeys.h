// The ten hotkeys: their stored records, the texts that show them, and what each is for.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr int kHotkeys = 10;
constexpr uint32_t kMostVirtualKey = 255;

// As stored, 28 bytes.
struct HotkeyRecord {
    uint32_t Enabled;          // 1 if registered
    uint32_t Alt, Ctrl, Shift; // not 0: part of the combination
    uint32_t VirtualKey;       // 0: none
    uint16_t TextControlId;    // from here on the program's own, whatever was stored
    uint16_t CheckControlId;
    uint16_t HotkeyId;
    uint16_t reserved;
};
static_assert(sizeof(HotkeyRecord) == 28);

// In the order of storage.
struct HotkeyKind {
    const char* valueName;
    uint16_t hotkeyId, checkId, textId, setId; // the last three are the dialog's controls
};
extern const HotkeyKind kHotkeyKinds[kHotkeys];

// Puts the fixed ids into a record that was read, and takes out what no key has.
void FixHotkey(int place, HotkeyRecord* record);
// Neither modifiers nor key.
void ClearHotkey(HotkeyRecord* record);

// "<alt><shift><ctrl>", those that belong to it, then the key's name: always four characters,
// blanks for a key without one.
constexpr size_t kHotkeyTextMax = 32;
void FormatHotkey(const HotkeyRecord& record, char (&text)[kHotkeyTextMax]);
