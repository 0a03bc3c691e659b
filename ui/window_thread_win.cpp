// The shared life of component windows. See window_thread_win.h.
#include "ui/window_thread_win.h"

#include "core/commands.h"
#include "ui/look_win.h"

#include <cstddef>

static ComponentWindow* ComponentOf(ComponentThread* thread) {
    return reinterpret_cast<ComponentWindow*>(reinterpret_cast<char*>(thread) -
                                              offsetof(ComponentWindow, thread));
}

static void LayOut(const ComponentWindow& component, HWND window) {
    RECT client;
    if (!component.OnLayout || !GetClientRect(window, &client)) return;
    if (client.right > 0 && client.bottom > 0) // not while minimized
        component.OnLayout(window, client.right, client.bottom);
}

static int OpenWindow(ComponentThread* thread) {
    ComponentWindow* component = ComponentOf(thread);
    InitCommonControls();
    HWND window =
        CreateUIWindow(thread->Instance, component->windowId, component->title, 0, thread->Owner);
    if (!window) return 0;
    thread->Window = window;
    SubclassUIWindow(window, component->procedure);
    SetWindowBkColor(window, Colors.CmpntBkClr);
    if (!component->OnCreateControls(window)) {
        DestroyWindow(window);
        thread->Window = nullptr;
        return 0;
    }
    LayOut(*component, window);
    return 1;
}

// After a fault the window is still there and what the component holds may be half-changed: the
// window goes, nothing is saved.
static void CloseWindowThread(ComponentThread* thread) {
    ComponentWindow* component = ComponentOf(thread);
    if (component->OnSave && !thread->Failed) component->OnSave();
}

static void ForgetWindowThread(ComponentThread* thread) {
    ComponentWindow* component = ComponentOf(thread);
    if (component->Forget) component->Forget();
}

ComponentThread* ComponentThreadOf(ComponentWindow* component) {
    ComponentThread* thread = &component->thread;
    thread->title = component->title;
    thread->windowId = component->windowId;
    thread->Open = OpenWindow;
    thread->Close = CloseWindowThread;
    thread->Forget = ForgetWindowThread;
    return thread;
}

int SubclassUIWindow(HWND window, WNDPROC procedure) {
    const LONG_PTR kept = GetWindowLongPtrA(window, GWLP_WNDPROC);
    SetWindowLongPtrA(window, GWLP_USERDATA, kept);
    return SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)) != 0;
}

LRESULT CallKeptProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto kept = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (!kept) return DefWindowProcA(window, message, wParam, lParam);
    return CallWindowProcA(kept, window, message, wParam, lParam);
}

static int IsHeldOffSaver(WPARAM command) {
    return (command & 0xFFF0) == SC_SCREENSAVE && UIOptions.PreventSS;
}

LRESULT PassOnMessage(ComponentWindow* component, HWND window, UINT message, WPARAM wParam,
                      LPARAM lParam) {
    switch (message) {
    case WM_SIZE: LayOut(*component, window); break;
    case WM_COMMAND:
        if (LOWORD(wParam) >= kLayoutFirst && LOWORD(wParam) <= kLayoutLast) {
            PostMessageA(component->thread.Owner, WM_COMMAND, wParam, lParam);
            return 0;
        }
        if (LOWORD(wParam) == kColorsChanged) {
            SetWindowBkColor(window, Colors.CmpntBkClr); // components take panels' shades from it
            LayOut(*component, window);
        } else if (LOWORD(wParam) == kLookChanged || LOWORD(wParam) == kFontChanged) {
            LayOut(*component, window);
            RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        }
        break;
    case WM_SYSCOMMAND:
        if (IsHeldOffSaver(wParam)) return 0;
        break;
    case WM_CLOSE: DestroyWindow(window); return 0;
    case WM_DESTROY:
        if (component->OnDestroy) component->OnDestroy(window);
        PostQuitMessage(0);
        break;
    default: break;
    }
    return CallKeptProcedure(window, message, wParam, lParam);
}

void PlaceControls(HWND window, const ControlPlace* places, int count) {
    HDWP moves = BeginDeferWindowPos(count);
    for (int i = 0; i < count && moves; i++) {
        HWND control = GetDlgItem(window, places[i].id);
        const Box& box = places[i].box;
        if (control)
            moves = DeferWindowPos(moves, control, nullptr, box.left, box.top, box.width,
                                   box.height, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (moves) EndDeferWindowPos(moves);
}
