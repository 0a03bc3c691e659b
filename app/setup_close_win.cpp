// Closing the program that runs, before its files are replaced or deleted. See setup_win.h.
#include "app/setup_win.h"
#include "resources/ids.h"
#include "ui/framework_win.h"

constexpr DWORD kPatienceMs = 15000; // components that hang are ended by force before that

// By a handle to its process: the files are free when that is gone, not when the window is.
static int CloseAndWait(HWND console) {
    DWORD id = 0;
    GetWindowThreadProcessId(console, &id);
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, id);
    PostMessageA(console, WM_CLOSE, 0, 0);
    if (!process) return 0;
    const DWORD waited = WaitForSingleObject(process, kPatienceMs);
    CloseHandle(process);
    return waited == WAIT_OBJECT_0;
}

int CloseRunningProgram(HWND owner, UINT captionId) {
    const HWND console = FindWindowA(kUIWindowClass, "Tonvista");
    if (!console) return 1;
    return SetupBox(owner, captionId, IDS_SETUP_RUNNING, nullptr, MB_YESNO | MB_ICONQUESTION) ==
               IDYES &&
           CloseAndWait(console);
}
