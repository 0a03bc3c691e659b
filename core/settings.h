// The settings store: the Windows registry, a value at a time. Every operation opens the key, does
// one thing and closes it; nothing is kept, so any thread may call at any time. Results are 1 and
// 0; a failed read leaves the caller's buffer as it was, so the default is put there first.
#pragma once
#include <cstdint>

enum RegRoot { kUserRoot, kMachineRoot, kClassesRoot };
enum RegType : uint32_t { kRegSz = 1, kRegBinary = 3, kRegDword = 4 };

// HKEY_CURRENT_USER\Software\Tonvista holds everything but "LastOK".
constexpr const char* kSettingsRoot = "Software\\Tonvista";

// Reads exactly `size` bytes (REG_DWORD and REG_BINARY stand for each other: a 4-byte value of
// either type is read), or, for kRegSz, a string that fits with its NUL.
int ReadRegValue(RegRoot root, const char* path, const char* name, RegType type, void* buffer,
                 uint32_t size);
// Creates the key when it is missing.
int WriteRegValue(RegRoot root, const char* path, const char* name, RegType type, const void* data,
                  uint32_t size);
// By enumeration of the key's values, ignoring case; creates nothing.
int RegValueExists(RegRoot root, const char* path, const char* name);
int RegKeyExists(RegRoot root, const char* path);
int ReadRegString(RegRoot root, const char* path, const char* name, char* buffer, uint32_t size);
int WriteRegString(RegRoot root, const char* path, const char* name, const char* text);
// The DWORD, or 0; a missing key is created on the way.
uint32_t ReadRegDword(RegRoot root, const char* path, const char* name);
int WriteRegDword(RegRoot root, const char* path, const char* name, RegType type, uint32_t value);
int DeleteRegValue(RegRoot root, const char* path, const char* name);
// 1 when the key had neither values nor subkeys and is gone.
int DeleteEmptyRegKey(RegRoot root, const char* path);
// Deletes a key with its subkeys, deepest first; 0, or the first registry error (1010 for an empty
// path).
uint32_t DeleteRegTree(RegRoot root, const char* path);

// ---- a component window's section, Software\Tonvista\UIWindow<id> of the current user
int ReadWindowSetting(uint32_t windowId, const char* name, RegType type, uint32_t size,
                      void* buffer);
int WriteWindowSetting(uint32_t windowId, const char* name, RegType type, uint32_t size,
                       const void* data);
// Writes only where the value is absent: defaults never replace what the user chose.
int SeedWindowSetting(uint32_t windowId, const char* name, RegType type, uint32_t size,
                      const void* data);
// A DWORD of the section, or `fallback` when it is missing; and its writing.
uint32_t ReadWindowDword(uint32_t windowId, const char* name, uint32_t fallback);
int WriteWindowDword(uint32_t windowId, const char* name, uint32_t value);

// ---- "LastOK": 0 while components are being started, so that a run which dies there is noticed.
// Kept machine-wide; where that is refused, with the user, whose value then counts first.
uint32_t ReadLastOk();
void WriteLastOk(uint32_t value);

// ---- placements
struct WindowPlacement {
    int32_t X, Y, Width, Height; // outer rectangle in screen pixels
    uint32_t BkColor;            // 0x00BBGGRR
    uint32_t WindowId;
};
// Fills defaults, reads the five values, moves the rectangle so that 20 pixels stay in sight.
int LoadWindowPlacement(uint32_t windowId, WindowPlacement* placement);
int WriteWindowPlacement(const WindowPlacement& placement);
// The same move alone.
void KeepPlacementInSight(WindowPlacement* placement);
