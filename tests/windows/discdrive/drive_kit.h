// What the drive's tests share: discs made on the spot, the drive's settings, MCI calls, and a
// window that notifications come to.
#pragma once
#include "core/disc_drive.h"
#include "core/platform.h"

#include <mmsystem.h>

#include <fstream>
#include <string>

constexpr DWORD kSectorBytes = 2352;

inline std::string TempFolder() {
    char path[MAX_PATH];
    GetTempPathA(MAX_PATH, path);
    const std::string folder = std::string(path) + "discdrive-test";
    CreateDirectoryA(folder.c_str(), nullptr);
    return folder;
}

inline void PutFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// Quiet noise: no stretch of it comes twice.
inline std::string Noise(DWORD frames, uint32_t seed) {
    std::string bytes(frames * kSectorBytes, '\0');
    for (size_t i = 0; i < bytes.size(); i += 2) {
        seed = seed * 1664525 + 1013904223;
        const auto sample = static_cast<int16_t>(static_cast<int32_t>(seed) >> 19);
        bytes[i] = static_cast<char>(sample);
        bytes[i + 1] = static_cast<char>(sample >> 8);
    }
    return bytes;
}

inline std::string Little(DWORD value, size_t width) {
    return {reinterpret_cast<const char*>(&value), width};
}

inline std::string Wav(const std::string& samples, DWORD rate = 44100) {
    const auto bytes = static_cast<DWORD>(samples.size());
    return "RIFF" + Little(36 + bytes, 4) + "WAVEfmt " + Little(16, 4) + Little(1, 2) +
           Little(2, 2) + Little(rate, 4) + Little(rate * 4, 4) + Little(4, 2) + Little(16, 2) +
           "data" + Little(bytes, 4) + samples;
}

inline void SetText(const char* name, const std::string& text) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kDiscDriveKey, name, REG_SZ, text.c_str(),
                    static_cast<DWORD>(text.size() + 1));
}

inline void SetNumber(const char* name, DWORD value) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kDiscDriveKey, name, REG_DWORD, &value, sizeof value);
}

inline DWORD GetNumber(const char* name) {
    DWORD value = 0, size = sizeof value;
    RegGetValueA(HKEY_CURRENT_USER, kDiscDriveKey, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return value;
}

// The driver under test: named by the environment, or beside the tests' folder. MCI wants a path
// without blanks.
inline int InstallDriver() {
    char path[MAX_PATH];
    if (!GetEnvironmentVariableA("TONVISTA_DRIVE_DLL", path, MAX_PATH)) {
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        *strrchr(path, '\\') = 0;
        char* const folder = strrchr(path, '\\');
        lstrcpyA(folder ? folder : path, "\\TONVDisc.dll");
    }
    const char* const at = "C:\\windows\\temp\\TONVDisc.dll";
    if (!CopyFileA(path, at, FALSE)) return 0;
    return RegSetKeyValueA(HKEY_LOCAL_MACHINE,
                           "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI", "cdaudio",
                           REG_SZ, at, lstrlenA(at) + 1) == ERROR_SUCCESS;
}

constexpr DWORD kNoDevice = 0;
inline DWORD s_openError;

inline MCIDEVICEID OpenDevice(const char* element, DWORD flags = MCI_OPEN_SHAREABLE,
                              const char* alias = nullptr) {
    MCI_OPEN_PARMSA parms = {};
    parms.lpstrDeviceType = reinterpret_cast<LPCSTR>(MCI_DEVTYPE_CD_AUDIO);
    parms.lpstrElementName = element;
    parms.lpstrAlias = alias;
    flags |= MCI_WAIT | MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID | (element ? MCI_OPEN_ELEMENT : 0) |
             (alias ? MCI_OPEN_ALIAS : 0);
    s_openError = mciSendCommandA(0, MCI_OPEN, flags, reinterpret_cast<DWORD_PTR>(&parms));
    return s_openError ? kNoDevice : parms.wDeviceID;
}

inline DWORD CloseDevice(MCIDEVICEID device) {
    return mciSendCommandA(device, MCI_CLOSE, MCI_WAIT, 0);
}

// The answer, or the error with the top bit set.
inline DWORD Status(MCIDEVICEID device, DWORD item, DWORD flags = 0, DWORD track = 0) {
    MCI_STATUS_PARMS parms = {};
    parms.dwItem = item;
    parms.dwTrack = track;
    const DWORD error = mciSendCommandA(device, MCI_STATUS, MCI_WAIT | MCI_STATUS_ITEM | flags,
                                        reinterpret_cast<DWORD_PTR>(&parms));
    return error ? error | 0x80000000 : static_cast<DWORD>(parms.dwReturn);
}
inline DWORD Mode(MCIDEVICEID device) {
    return Status(device, MCI_STATUS_MODE);
}

inline DWORD SetDevice(MCIDEVICEID device, DWORD flags, DWORD format = 0) {
    MCI_SET_PARMS parms = {};
    parms.dwTimeFormat = format;
    return mciSendCommandA(device, MCI_SET, flags, reinterpret_cast<DWORD_PTR>(&parms));
}

inline HWND NotifyWindow() {
    static const HWND s_window =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    return s_window;
}

inline DWORD PlayRange(MCIDEVICEID device, DWORD flags, DWORD from = 0, DWORD to = 0) {
    MCI_PLAY_PARMS parms = {reinterpret_cast<DWORD_PTR>(NotifyWindow()), from, to};
    return mciSendCommandA(device, MCI_PLAY, flags, reinterpret_cast<DWORD_PTR>(&parms));
}

inline DWORD Send(MCIDEVICEID device, UINT message, DWORD flags = MCI_WAIT) {
    MCI_GENERIC_PARMS parms = {reinterpret_cast<DWORD_PTR>(NotifyWindow())};
    return mciSendCommandA(device, message, flags, reinterpret_cast<DWORD_PTR>(&parms));
}

// The code of the next notification, or 0 when none comes in time.
inline DWORD NextNotify(DWORD waitMs) {
    const ULONGLONG until = GetTickCount64() + waitMs;
    MSG msg;
    do {
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (msg.message == MM_MCINOTIFY) return static_cast<DWORD>(msg.wParam);
            DispatchMessageA(&msg);
        }
        Sleep(5);
    } while (GetTickCount64() < until);
    return 0;
}

inline int WaitForMode(MCIDEVICEID device, DWORD mode, DWORD waitMs = 5000) {
    const ULONGLONG until = GetTickCount64() + waitMs;
    while (Mode(device) != mode) {
        if (GetTickCount64() > until) return 0;
        Sleep(10);
    }
    return 1;
}
