// See settings_win.h.
#include "discdrive/settings_win.h"

#include "core/disc_drive.h"

#include <vector>

constexpr ULONGLONG kLookAfterKeyMs = 500;
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

// The key anew each time: it may have been deleted, and a handle of a deleted key tells nothing of
// the one that stands in its place.
static void OpenKey(SettingsWatch* watch) {
    if (watch->key) RegCloseKey(watch->key);
    if (RegCreateKeyExW(HKEY_CURRENT_USER, Widen(kDiscDriveKey).c_str(), 0, nullptr, 0,
                        KEY_READ | KEY_SET_VALUE, nullptr, &watch->key, nullptr) != ERROR_SUCCESS) {
        watch->key = nullptr;
    }
}

// Nobody is told when the key itself is deleted, so it is looked after now and then.
static int IsKeyLost(SettingsWatch* watch) {
    const ULONGLONG now = GetTickCount64();
    if (now - watch->lookedAt < kLookAfterKeyMs) return 0;
    watch->lookedAt = now;
    return !watch->key ||
           RegQueryInfoKeyW(watch->key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS;
}

int RefreshSettings(SettingsWatch* watch, DriveSettings* settings) {
    if (!watch->changed) {
        watch->changed = CreateEventW(nullptr, FALSE, TRUE, nullptr);
        if (!watch->changed) return 0;
    }
    // The system also sets the event when the thread that asked has ended: a needless reading.
    if (WaitForSingleObject(watch->changed, 0) != WAIT_OBJECT_0 && !IsKeyLost(watch)) return 0;
    OpenKey(watch);
    *settings = {};
    if (!watch->key) return 1;
    // Asked for before reading, or a change between the two is never seen.
    RegNotifyChangeKeyValue(watch->key, FALSE, REG_NOTIFY_CHANGE_LAST_SET, watch->changed, TRUE);
    ReadAll(watch->key, settings);
    return 1;
}

int WriteDoor(const SettingsWatch& watch, int open) {
    const DWORD value = open ? 1 : 0;
    return watch.key &&
           RegSetValueExW(watch.key, Widen(kDiscDriveDoor).c_str(), 0, REG_DWORD,
                          reinterpret_cast<const BYTE*>(&value), sizeof value) == ERROR_SUCCESS;
}
