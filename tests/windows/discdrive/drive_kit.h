// What the drive's tests use beside tests/support: MCI calls, and a window for notifications.
#pragma once
#include "tests/support/driver_win.h"

#include <mmsystem.h>

inline DWORD s_openError;

// 0 when it does not open.
inline MCIDEVICEID OpenDevice(const char* element) {
    MCI_OPEN_PARMSA parms = {};
    parms.lpstrDeviceType = reinterpret_cast<LPCSTR>(MCI_DEVTYPE_CD_AUDIO);
    parms.lpstrElementName = element;
    constexpr DWORD kFlags =
        MCI_OPEN_SHAREABLE | MCI_WAIT | MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID | MCI_OPEN_ELEMENT;
    s_openError = mciSendCommandA(0, MCI_OPEN, kFlags, reinterpret_cast<DWORD_PTR>(&parms));
    return s_openError ? 0 : parms.wDeviceID;
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
    MSG message = {};
    WaitUntil(
        [&] { return PeekMessageA(&message, nullptr, MM_MCINOTIFY, MM_MCINOTIFY, PM_REMOVE); },
        waitMs);
    return message.message == MM_MCINOTIFY ? static_cast<DWORD>(message.wParam) : 0;
}
