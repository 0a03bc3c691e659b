// TONVDisc.dll: the driver procedure. The system loads the DLL at the first open of "cdaudio",
// makes one instance (DRV_OPEN) for each open, and sends MCI commands to it from the thread that
// opened it. Parameter blocks come in their W forms.
//
// One command runs at a time. The trial manners that concern every command (stall, fail, log)
// have their one place here.
#include "discdrive/drive_win.h"

#include <cstdio>

extern "C" UINT APIENTRY mciDriverYield(MCIDEVICEID);

constexpr size_t kMaxOpens = 64;
constexpr DWORD_PTR kConfigOnly = 1; // the id of an instance that gets no commands
constexpr DWORD_PTR kFirstId = 2;
constexpr DWORD kSliceMs = 20;

static struct {
    SRWLOCK lock = SRWLOCK_INIT; // one command at a time; guards the opens
    DriveOpen opens[kMaxOpens];
    int pinned;
    volatile int exiting; // the process ends: other threads are gone, locks may be held for ever
} s_driver;

struct CommandLock {
    CommandLock() { AcquireSRWLockExclusive(&s_driver.lock); }
    ~CommandLock() { ReleaseSRWLockExclusive(&s_driver.lock); }
    CommandLock(const CommandLock&) = delete;
    CommandLock& operator=(const CommandLock&) = delete;
};

// A drive keeps its disc, and plays on, when the program that opened it leaves. So the DLL stays
// in the process once it has been opened, and a play's thread never loses its code.
static void PinModule() {
    HMODULE module;
    s_driver.pinned =
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<const wchar_t*>(&s_driver), &module);
}

static LRESULT OpenInstance(MCI_OPEN_DRIVER_PARMS* parms) {
    if (!parms) return kConfigOnly;
    CommandLock lock;
    if (!s_driver.pinned) PinModule();
    for (size_t i = 0; i < kMaxOpens; ++i) {
        DriveOpen& open = s_driver.opens[i];
        if (open.used) continue;
        open = {};
        open.used = 1;
        open.device = parms->wDeviceID;
        parms->wType = MCI_DEVTYPE_CD_AUDIO;
        parms->wCustomCommandTable = MCI_NO_COMMAND_TABLE;
        return static_cast<LRESULT>(kFirstId + i);
    }
    return 0;
}

static DriveOpen* FindOpen(DWORD_PTR id) {
    if (id < kFirstId || id - kFirstId >= kMaxOpens) return nullptr;
    DriveOpen& open = s_driver.opens[id - kFirstId];
    return open.used ? &open : nullptr;
}

static void CloseInstance(DWORD_PTR id) {
    CommandLock lock;
    if (DriveOpen* open = FindOpen(id)) {
        DetachDrive(*open);
        *open = {};
    }
}

// In slices, so that a long stall ends when the setting goes.
static void Stall() {
    const ULONGLONG start = GetTickCount64();
    while (GetTickCount64() - start < GetStallMs())
        Sleep(kSliceMs);
}

static const char* CommandName(UINT message) {
    switch (message) {
    case MCI_OPEN_DRIVER: return "open";
    case MCI_CLOSE_DRIVER: return "close";
    case MCI_PLAY: return "play";
    case MCI_SEEK: return "seek";
    case MCI_STOP: return "stop";
    case MCI_PAUSE: return "pause";
    case MCI_RESUME: return "resume";
    case MCI_SET: return "set";
    case MCI_STATUS: return "status";
    case MCI_INFO: return "info";
    case MCI_GETDEVCAPS: return "capability";
    }
    return "other";
}

static void LogCommand(const std::wstring& path, MCIDEVICEID device, UINT message, DWORD flags,
                       LPARAM lParam, LRESULT result) {
    unsigned long a = 0, b = 0;
    if (lParam && message == MCI_STATUS) {
        const auto* parms = reinterpret_cast<const MCI_STATUS_PARMS*>(lParam);
        a = parms->dwItem;
        b = (flags & MCI_TRACK) ? parms->dwTrack : 0;
    } else if (lParam && message == MCI_PLAY) {
        const auto* parms = reinterpret_cast<const MCI_PLAY_PARMS*>(lParam);
        a = (flags & MCI_FROM) ? parms->dwFrom : 0;
        b = (flags & MCI_TO) ? parms->dwTo : 0;
    }
    char line[160];
    const int n = snprintf(line, sizeof line, "%lu %lu %u %s flags=%08lx a=%lx b=%lx -> %lu\r\n",
                           GetTickCount(), GetCurrentThreadId(), device, CommandName(message),
                           flags, a, b, static_cast<unsigned long>(LOWORD(result)));
    const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written;
    WriteFile(file, line, static_cast<DWORD>(n), &written, nullptr);
    CloseHandle(file);
}

static LRESULT OpenDrive(DriveOpen& open, DWORD flags, const MCI_OPEN_PARMSW* parms) {
    const wchar_t* element = nullptr;
    if (flags & MCI_OPEN_ELEMENT) {
        if (flags & MCI_OPEN_ELEMENT_ID) return MCIERR_UNSUPPORTED_FUNCTION;
        if (!parms || !parms->lpstrElementName) return MCIERR_NULL_PARAMETER_BLOCK;
        element = parms->lpstrElementName;
    }
    return AttachDrive(open, element, (flags & MCI_OPEN_SHAREABLE) != 0);
}

static LRESULT Set(DriveOpen& open, DWORD flags, const MCI_SET_PARMS* parms) {
    const DWORD door = flags & (MCI_SET_DOOR_OPEN | MCI_SET_DOOR_CLOSED);
    if (door == (MCI_SET_DOOR_OPEN | MCI_SET_DOOR_CLOSED)) return MCIERR_FLAGS_NOT_COMPATIBLE;
    if (flags & (MCI_SET_AUDIO | MCI_SET_VIDEO)) return MCIERR_UNSUPPORTED_FUNCTION;
    if (flags & MCI_SET_TIME_FORMAT) {
        if (!parms) return MCIERR_NULL_PARAMETER_BLOCK;
        const DWORD format = parms->dwTimeFormat;
        if (format != kTimeMs && format != kTimeMsf && format != kTimeTmsf)
            return MCIERR_BAD_TIME_FORMAT;
        open.format = static_cast<TimeFormat>(format);
    } else if (!door) {
        return MCIERR_MISSING_PARAMETER;
    }
    if (door) SetDoor(door == MCI_SET_DOOR_OPEN);
    return 0;
}

static LRESULT Dispatch(DriveOpen& open, UINT message, DWORD flags, LPARAM lParam,
                        std::shared_ptr<Play>* running) {
    if (message == MCI_OPEN_DRIVER)
        return OpenDrive(open, flags, reinterpret_cast<const MCI_OPEN_PARMSW*>(lParam));
    if (!open.attached) return MCIERR_INVALID_DEVICE_ID;
    switch (message) {
    case MCI_CLOSE_DRIVER: DetachDrive(open); return 0;
    case MCI_PLAY:
        return PlayDisc(open, flags, reinterpret_cast<const MCI_PLAY_PARMS*>(lParam), running);
    case MCI_STOP: return StopDisc();
    case MCI_PAUSE: return PauseDisc(1);
    case MCI_RESUME: return PauseDisc(0);
    case MCI_SEEK: return SeekDisc(open, flags, reinterpret_cast<const MCI_SEEK_PARMS*>(lParam));
    case MCI_SET: return Set(open, flags, reinterpret_cast<const MCI_SET_PARMS*>(lParam));
    case MCI_STATUS: return AnswerStatus(open, flags, reinterpret_cast<MCI_STATUS_PARMS*>(lParam));
    case MCI_INFO: return AnswerInfo(flags, reinterpret_cast<MCI_INFO_PARMSW*>(lParam));
    case MCI_GETDEVCAPS:
        return AnswerCapabilities(flags, reinterpret_cast<MCI_GETDEVCAPS_PARMS*>(lParam));
    }
    return MCIERR_UNRECOGNIZED_COMMAND;
}

// Callers know opening and closing by other numbers than drivers do.
static int IsToFail(const DriveSettings& settings, UINT message) {
    const UINT asCalled = message == MCI_OPEN_DRIVER    ? MCI_OPEN
                          : message == MCI_CLOSE_DRIVER ? MCI_CLOSE
                                                        : message;
    return settings.failCommand && settings.failCommand == asCalled;
}

static LRESULT RunCommand(DWORD_PTR id, UINT message, DWORD flags, LPARAM lParam,
                          std::shared_ptr<Play>* running) {
    CommandLock lock;
    DriveOpen* const open = FindOpen(id);
    if (!open) return MCIERR_INVALID_DEVICE_ID;
    RefreshDrive();
    const DriveSettings settings = GetDriveSettings();
    LRESULT result;
    if (IsToFail(settings, message)) {
        result = settings.failError ? settings.failError : MCIERR_HARDWARE;
        if (message == MCI_CLOSE_DRIVER) DetachDrive(*open); // the instance goes all the same
    } else if ((flags & MCI_NOTIFY) && !lParam) {
        result = MCIERR_NULL_PARAMETER_BLOCK;
    } else {
        result = Dispatch(*open, message, flags, lParam, running);
        // A play tells its end later; everything else is done now.
        if ((flags & MCI_NOTIFY) && message != MCI_PLAY && !LOWORD(result)) {
            const auto* parms = reinterpret_cast<const MCI_GENERIC_PARMS*>(lParam);
            NotifySuccess(reinterpret_cast<HWND>(parms->dwCallback), open->device);
        }
    }
    if (!settings.logFile.empty())
        LogCommand(settings.logFile, open->device, message, flags, lParam, result);
    return result;
}

// The yield lets the program's break key end the wait, and its windows live.
static void WaitForEnd(const Play& play, MCIDEVICEID device) {
    while (WaitForSingleObject(play.thread, kSliceMs) == WAIT_TIMEOUT) {
        if (mciDriverYield(device)) return;
    }
}

static LRESULT HandleCommand(DWORD_PTR id, UINT message, DWORD flags, LPARAM lParam) {
    try {
        Stall();
        std::shared_ptr<Play> running;
        const LRESULT result = RunCommand(id, message, flags, lParam, &running);
        if (running && (flags & MCI_WAIT)) {
            const DriveOpen* const open = FindOpen(id);
            if (open) WaitForEnd(*running, open->device);
        }
        return result;
    } catch (...) { // out of memory; nothing may leave through the system's frames
        return MCIERR_OUT_OF_MEMORY;
    }
}

extern "C" __declspec(dllexport) LRESULT CALLBACK
    DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM lParam1, LPARAM lParam2) {
    if (s_driver.exiting) return 0;
    switch (message) {
    case DRV_LOAD:
    case DRV_ENABLE:
    case DRV_DISABLE:
    case DRV_FREE: return 1;
    case DRV_QUERYCONFIGURE: return 0;
    case DRV_INSTALL:
    case DRV_REMOVE: return DRVCNF_OK;
    case DRV_OPEN: return OpenInstance(reinterpret_cast<MCI_OPEN_DRIVER_PARMS*>(lParam2));
    case DRV_CLOSE: CloseInstance(id); return 1;
    }
    if (message < DRV_MCI_FIRST || message > DRV_MCI_LAST)
        return DefDriverProc(id, driver, message, lParam1, lParam2);
    return HandleCommand(id, message, static_cast<DWORD>(lParam1), lParam2);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
    if (reason == DLL_PROCESS_DETACH && reserved) s_driver.exiting = 1;
    return TRUE;
}
