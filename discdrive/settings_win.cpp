// See settings_win.h.
#include "discdrive/settings_win.h"

#include "core/disc_drive.h"

#include <vector>

constexpr uint32_t kMaxStallMs = 60000;
constexpr DWORD kMaxTextBytes = 64 * 1024;

static std::wstring Widen(const char* ascii) {
    return {ascii, ascii + strlen(ascii)};
}

static uint32_t ReadDword(HKEY key, const char* name) {
    DWORD type = 0, value = 0, size = sizeof value;
    const LSTATUS result = RegQueryValueExW(key, Widen(name).c_str(), nullptr, &type,
                                            reinterpret_cast<BYTE*>(&value), &size);
    return result == ERROR_SUCCESS && type == REG_DWORD && size == sizeof value ? value : 0;
}

static std::wstring ReadText(HKEY key, const char* name) {
    const std::wstring wide = Widen(name);
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key, wide.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        type != REG_SZ || size > kMaxTextBytes) {
        return {};
    }
    // One character more: a stored text need not end with a NUL, nor fill whole characters.
    std::vector<wchar_t> text(size / sizeof(wchar_t) + 2, 0);
    if (RegQueryValueExW(key, wide.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                         &size) != ERROR_SUCCESS) {
        return {};
    }
    text.back() = 0;
    return text.data();
}

static wchar_t ReadLetter(HKEY key) {
    const std::wstring text = ReadText(key, kDiscDriveLetter);
    wchar_t letter = text.empty() ? 0 : text[0];
    if (letter >= L'a' && letter <= L'z') letter = static_cast<wchar_t>(letter - 32);
    return letter >= L'A' && letter <= L'Z' ? letter : 0;
}

static void ReadAll(HKEY key, DriveSettings* settings) {
    DriveSettings s;
    s.letter = ReadLetter(key);
    s.image = ReadText(key, kDiscDriveImage);
    s.door = ReadDword(key, kDiscDriveDoor) != 0;
    s.stallMs = ReadDword(key, kDiscDriveStall);
    if (s.stallMs > kMaxStallMs) s.stallMs = kMaxStallMs;
    s.failCommand = ReadDword(key, kDiscDriveFailCommand);
    s.failError = ReadDword(key, kDiscDriveFailError);
    s.noNotify = ReadDword(key, kDiscDriveNoNotify) != 0;
    s.stayPlaying = ReadDword(key, kDiscDriveStayPlaying) != 0;
    s.pauseAsStopped = ReadDword(key, kDiscDrivePauseAsStopped) != 0;
    s.staleToc = ReadDword(key, kDiscDriveStaleToc) != 0;
    s.logFile = ReadText(key, kDiscDriveLogFile);
    *settings = s;
}

// Asks for the next change. It must be asked before reading, or a change between is never seen.
static int Arm(const SettingsWatch& watch) {
    return watch.key && RegNotifyChangeKeyValue(watch.key, FALSE, REG_NOTIFY_CHANGE_LAST_SET,
                                                watch.changed, TRUE) == ERROR_SUCCESS;
}

int RefreshSettings(SettingsWatch* watch, DriveSettings* settings) {
    if (!watch->changed) {
        watch->changed = CreateEventW(nullptr, FALSE, TRUE, nullptr);
        if (!watch->changed) return 0;
    }
    // The system also sets the event when the thread that asked has ended: a needless reading.
    if (WaitForSingleObject(watch->changed, 0) != WAIT_OBJECT_0) return 0;
    if (!Arm(*watch)) {
        // The first time, or the key was deleted meanwhile: then another stands in its place.
        if (watch->key) RegCloseKey(watch->key);
        watch->key = nullptr;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, Widen(kDiscDriveKey).c_str(), 0, nullptr, 0,
                            KEY_READ | KEY_SET_VALUE, nullptr, &watch->key,
                            nullptr) != ERROR_SUCCESS) {
            watch->key = nullptr;
        }
        Arm(*watch);
    }
    if (watch->key) {
        ReadAll(watch->key, settings);
    } else {
        *settings = {};
    }
    return 1;
}

int WriteDoor(const SettingsWatch& watch, int open) {
    const DWORD value = open ? 1 : 0;
    return watch.key &&
           RegSetValueExW(watch.key, Widen(kDiscDriveDoor).c_str(), 0, REG_DWORD,
                          reinterpret_cast<const BYTE*>(&value), sizeof value) == ERROR_SUCCESS;
}
