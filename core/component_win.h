// Component threads: the one protocol by which every component (engine, window, icon) is started
// and stopped, and the guard that keeps a fault inside it.
//
// The console's thread alone starts and stops. A start blocks until the new thread reports; while
// the console waits, messages that other threads send to it are answered, so that a component may
// SendMessage to its owner at any time. Faults: the thread's body and every callback that the
// system calls run in GuardCall. After one, "LastException" is written, the component's code is
// called no more but for its clean-up (Close, WM_DESTROY), and the thread ends as if stopped.
#pragma once
#include "core/platform.h"

#include <cstdint>

struct ComponentThread {
    // What the module fills in once.
    const char* title;                // the window's title; what "LastException" names
    uint16_t windowId;                // component window id, 0 for engines and icons
    int isEngine;                     // above-normal priority, Running, the shared block's bit
    uint32_t runningBit;              // SharedRunningBit, 0 none
    DWORD stopWaitMs;                 // 0 means kStopWaitMs
    int (*Open)(ComponentThread*);    // on the thread: make everything, set Window; 1 when ready
    void (*Opened)(ComponentThread*); // on the thread, after the starter was told; may be null
    void (*Close)(ComponentThread*);  // after the loop, and after any fault; may be null
    // On the console's thread, when the thread was killed or its clean-up may have been cut off by
    // a fault: clear the module's globals. May be null.
    void (*Forget)(ComponentThread*);

    // The start record.
    HINSTANCE Instance;
    HWND Owner;
    HANDLE StartedEvent;
    HANDLE Thread;
    DWORD threadId;
    HWND Window;
    volatile LONG Running; // 1 from a successful Open until Close
    volatile LONG Ending;  // 1 once the loop is over
    volatile LONG Failed;  // a fault was caught
    volatile LONG Told;    // the starter knows how Open ended
};

constexpr DWORD kStopWaitMs = 2000;

// 1 when the component runs afterwards; 0 for a failed start and for one that already runs.
int StartComponentThread(ComponentThread* component, HINSTANCE instance, HWND owner);
// Posts WM_CLOSE, waits stopWaitMs, terminates the thread if it has not ended. Always 1.
int StopComponentThread(ComponentThread* component);
// 1 when the thread was started, not stopped, and has ended or is about to: what makes a
// component-closed notice count.
int ComponentThreadEnded(const ComponentThread* component);
// 1 while the component is on.
int ComponentIsOn(const ComponentThread* component);

// A hidden message window for an engine: overlapped, at 0,0, 1 by 1.
HWND CreateHiddenWindow(HINSTANCE instance, const char* className, const char* title,
                        WNDPROC procedure);

// ---- guarded callbacks: GuardedProc<Proc> is what is handed to the system in Proc's place. On a
// thread that belongs to no component (the console's) Proc is simply called, but a dialog's fault
// ends the dialog there, as if it were cancelled.
using PlainProc = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);
using PlainDialogProc = INT_PTR (*)(HWND, UINT, WPARAM, LPARAM);
LRESULT GuardedCallback(PlainProc procedure, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam);
INT_PTR GuardedDialogCallback(PlainDialogProc procedure, HWND window, UINT message, WPARAM wParam,
                              LPARAM lParam);
template <PlainProc Procedure>
LRESULT CALLBACK GuardedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return GuardedCallback(Procedure, window, message, wParam, lParam);
}
template <PlainDialogProc Procedure>
INT_PTR CALLBACK GuardedDialog(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return GuardedDialogCallback(Procedure, window, message, wParam, lParam);
}

// The component whose thread this is, or null.
ComponentThread* CurrentComponent();
