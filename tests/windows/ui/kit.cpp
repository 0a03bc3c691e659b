// See kit.h.
#include "kit.h"

static Recorder* s_recorder;

static LRESULT CALLBACK RecorderProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_MOUSEWHEEL: {
        const Note note = {message, wParam, lParam};
        s_recorder->notes.push_back(note);
        if (s_recorder->onNote) s_recorder->onNote(note);
        return s_recorder->answer;
    }
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

Recorder::Recorder() {
    s_recorder = this;
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = RecorderProc;
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = "RecorderWindow";
    RegisterClassA(&windowClass);
    window = CreateWindowExA(WS_EX_TOPMOST, "RecorderWindow", "Recorder",
                             WS_POPUP | WS_CLIPCHILDREN | WS_VISIBLE, 300, 300, 400, 300, nullptr,
                             nullptr, nullptr, nullptr);
    ParkPointer();
}

Recorder::~Recorder() {
    DestroyWindow(window);
    Pump();
    s_recorder = nullptr;
}

std::vector<int> Recorder::CodesOf(HWND control) const {
    std::vector<int> codes;
    for (const Note& note : notes)
        if (note.message == WM_COMMAND && note.lParam == reinterpret_cast<LPARAM>(control))
            codes.push_back(HIWORD(note.wParam));
    return codes;
}

std::vector<Note> Recorder::Commands(int id) const {
    std::vector<Note> found;
    for (const Note& note : notes)
        if (note.message == WM_COMMAND && LOWORD(note.wParam) == id) found.push_back(note);
    return found;
}

void Pump() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

bool PumpUntil(const std::function<bool()>& condition, DWORD waitMs) {
    for (const DWORD start = GetTickCount(); !condition();) {
        if (GetTickCount() - start >= waitMs) return false;
        Pump();
        Sleep(5);
    }
    return true;
}

void MovePointer(int x, int y) {
    SetCursorPos(x, y);
    for (int i = 0; i < 4; i++) {
        Pump();
        Sleep(10);
    }
}

void ParkPointer() {
    MovePointer(1270, 1010);
}

RECT ClientRect(HWND window) {
    RECT client;
    GetClientRect(window, &client);
    return client;
}

int CountPixels(HWND window, RECT area, COLORREF color) {
    UpdateWindow(window);
    HDC dc = GetDC(window);
    int count = 0;
    for (int y = area.top; y < area.bottom; y++)
        for (int x = area.left; x < area.right; x++)
            count += GetPixel(dc, x, y) == color;
    ReleaseDC(window, dc);
    return count;
}
