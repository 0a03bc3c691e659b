// The component threads' protocol. See component_win.h.
#include "core/component_win.h"

#include "core/commands.h"
#include "core/guard_win.h"
#include "core/settings.h"
#include "core/shared_block.h"

#include <process.h>

// Which component a thread belongs to.
static const DWORD s_slot = TlsAlloc();

ComponentThread* CurrentComponent() {
    return static_cast<ComponentThread*>(TlsGetValue(s_slot));
}

// After a fault the thread ends as by WM_QUIT, so that its clean-up runs where its objects live.
static void NoteFault(ComponentThread* component) {
    if (InterlockedExchange(&component->Failed, 1)) return;
    WriteRegString(kUserRoot, kSettingsRoot, "LastException", component->title);
    PostQuitMessage(0);
}

static void CallGuarded(ComponentThread* component, void (*function)(ComponentThread*)) {
    struct Call {
        ComponentThread* component;
        void (*function)(ComponentThread*);
    } call = {component, function};
    const int result = GuardCall(
        [](void* argument) {
            auto* c = static_cast<Call*>(argument);
            c->function(c->component);
        },
        &call, nullptr);
    if (result != kGuardNormal) NoteFault(component);
}

namespace {
template <class Procedure, class Result> struct CallbackCall {
    Procedure procedure;
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    Result result;
};
} // namespace

// A component that has faulted still hears of its windows' end, to free what they own.
static int MayCall(const ComponentThread* component, UINT message) {
    return !component->Failed || message == WM_DESTROY || message == WM_NCDESTROY;
}

// `component` is null on the console's thread.
template <class Procedure, class Result>
static int RunCallback(ComponentThread* component, CallbackCall<Procedure, Result>* call) {
    const int result = GuardCall(
        [](void* argument) {
            auto* c = static_cast<CallbackCall<Procedure, Result>*>(argument);
            c->result = c->procedure(c->window, c->message, c->wParam, c->lParam);
        },
        call, nullptr);
    if (result == kGuardNormal) return 1;
    if (component) NoteFault(component);
    return 0;
}

LRESULT GuardedCallback(PlainProc procedure, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam) {
    ComponentThread* component = CurrentComponent();
    if (!component) return procedure(window, message, wParam, lParam);
    if (!MayCall(component, message)) return DefWindowProcA(window, message, wParam, lParam);
    CallbackCall<PlainProc, LRESULT> call = {procedure, window, message, wParam, lParam, 0};
    if (RunCallback(component, &call)) return call.result;
    if (message == WM_PAINT) ValidateRect(window, nullptr); // or it would be asked for ever
    return message == WM_CREATE ? -1 : 0;
}

INT_PTR GuardedDialogCallback(PlainDialogProc procedure, HWND window, UINT message, WPARAM wParam,
                              LPARAM lParam) {
    ComponentThread* component = CurrentComponent();
    if (component && !MayCall(component, message)) return FALSE;
    CallbackCall<PlainDialogProc, INT_PTR> call = {procedure, window, message, wParam, lParam, 0};
    if (RunCallback(component, &call)) return call.result;
    if (!component) EndDialog(window, IDCANCEL); // the console goes on without it
    return FALSE;
}

static void RunLoop(ComponentThread*) {
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

// Once only: the starter closes the event as soon as it has been told.
static void TellStarter(ComponentThread* component) {
    if (!InterlockedExchange(&component->Told, 1)) SetEvent(component->StartedEvent);
}

static void RunBody(ComponentThread* component) {
    if (!component->Open(component)) return;
    InterlockedExchange(&component->Running, 1);
    TellStarter(component);
    if (component->Opened) component->Opened(component);
    RunLoop(component);
}

static void CleanUp(ComponentThread* component) {
    if (component->Close) component->Close(component);
    if (component->Window && IsWindow(component->Window)) DestroyWindow(component->Window);
}

static unsigned __stdcall ThreadMain(void* argument) {
    auto* component = static_cast<ComponentThread*>(argument);
    TlsSetValue(s_slot, component);
    CallGuarded(component, RunBody);
    const LONG ran = InterlockedExchange(&component->Running, 0);
    InterlockedExchange(&component->Ending, 1);
    if (!ran) {
        if (component->Failed) CallGuarded(component, CleanUp); // of a half-made one
        component->Window = nullptr;
        TellStarter(component);
        return 0;
    }
    CallGuarded(component, CleanUp);
    component->Window = nullptr;
    if (component->windowId && component->Owner)
        PostMessageA(component->Owner, WM_COMMAND, kComponentClosed, component->windowId);
    return 0;
}

// Waits for a handle and answers messages that other threads send meanwhile: a component may be
// asking the console something while the console waits for it. Posted messages stay queued.
static int WaitAnswering(HANDLE handle, DWORD waitMs) {
    const DWORD start = GetTickCount();
    for (;;) {
        const DWORD passed = GetTickCount() - start;
        if (waitMs != INFINITE && passed >= waitMs)
            return WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
        const DWORD left = waitMs == INFINITE ? INFINITE : waitMs - passed;
        const DWORD result = MsgWaitForMultipleObjects(1, &handle, FALSE, left, QS_SENDMESSAGE);
        if (result == WAIT_OBJECT_0) return 1;
        if (result == WAIT_TIMEOUT) return 0;
        if (result != WAIT_OBJECT_0 + 1) return WaitForSingleObject(handle, left) == WAIT_OBJECT_0;
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

static void ForgetThread(ComponentThread* component) {
    if (component->Thread) CloseHandle(component->Thread);
    component->Thread = nullptr;
    component->threadId = 0;
    component->Window = nullptr;
    InterlockedExchange(&component->Running, 0);
    if (component->runningBit) ClearSharedBits(SHARED_FIELD(RunningFlags), component->runningBit);
}

int StartComponentThread(ComponentThread* component, HINSTANCE instance, HWND owner) {
    if (component->Thread) return 0;
    component->Instance = instance;
    component->Owner = owner;
    component->Window = nullptr;
    component->Running = 0;
    component->Ending = 0;
    component->Failed = 0;
    component->Told = 0;
    component->StartedEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (!component->StartedEvent) return 0;
    unsigned id = 0;
    component->Thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, ThreadMain, component, 0, &id));
    if (component->Thread) {
        component->threadId = id;
        if (component->isEngine) SetThreadPriority(component->Thread, THREAD_PRIORITY_ABOVE_NORMAL);
        WaitAnswering(component->StartedEvent, INFINITE);
    }
    CloseHandle(component->StartedEvent);
    component->StartedEvent = nullptr;
    if (!component->Running) { // no thread, a failed Open, or a fault right after it
        StopComponentThread(component);
        return 0;
    }
    if (component->runningBit) SetSharedBits(SHARED_FIELD(RunningFlags), component->runningBit);
    return 1;
}

int StopComponentThread(ComponentThread* component) {
    if (!component->Thread) return 1;
    const HWND window = component->Window;
    if (window && !component->Ending) PostMessageA(window, WM_CLOSE, 0, 0);
    const DWORD waitMs = component->stopWaitMs ? component->stopWaitMs : kStopWaitMs;
    const int ended = WaitAnswering(component->Thread, waitMs);
    if (!ended) {
        TerminateThread(component->Thread, 0);
        WaitForSingleObject(component->Thread, 100);
    }
    const int cleanedUp = ended && component->Ending && !component->Failed;
    if (component->Forget && !cleanedUp) component->Forget(component);
    ForgetThread(component);
    return 1;
}

int ComponentThreadEnded(const ComponentThread* component) {
    return component->Thread &&
           (component->Ending || WaitForSingleObject(component->Thread, 0) == WAIT_OBJECT_0);
}

int ComponentIsOn(const ComponentThread* component) {
    return component->Thread && component->Running && !component->Ending;
}

HWND CreateHiddenWindow(HINSTANCE instance, const char* className, const char* title,
                        WNDPROC procedure) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = className;
    RegisterClassA(&windowClass); // fails harmlessly when it is registered already
    HWND window = CreateWindowExA(0, className, title, WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr,
                                  nullptr, instance, nullptr);
    if (window) ShowWindow(window, SW_HIDE);
    return window;
}
