// See hotkey_field_win.h. The loop hands the keyboard to the field itself: a child of a disabled
// dialog can't have the focus.
#include "ui/hotkey_field_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/control_win.h"
#include "ui/look_win.h"
#include "ui/paint_win.h"

constexpr int kFieldWidth = 200; // pixels
constexpr int kAir = 8;          // above and below the letters

namespace {
struct FieldData {
    HFONT font;
    int alt, shift, control; // held
    uint32_t key;            // the one that ended it
    int done;
};
} // namespace

static FieldData* Data(HWND field) {
    return ControlData<FieldData>(field);
}

static void TakeModifiers(HWND field) {
    FieldData* data = Data(field);
    data->alt = GetKeyState(VK_MENU) < 0;
    data->shift = GetKeyState(VK_SHIFT) < 0;
    data->control = GetKeyState(VK_CONTROL) < 0;
    InvalidateRect(field, nullptr, FALSE);
}

static int IsModifier(WPARAM key) {
    return key == VK_MENU || key == VK_SHIFT || key == VK_CONTROL;
}

static void TakeKey(HWND field, WPARAM key) {
    FieldData* data = Data(field);
    data->key = key == VK_ESCAPE ? 0 : static_cast<uint32_t>(key & kMostVirtualKey);
    data->done = 1;
}

// Keys that stand for what an input method has taken have no combination of their own. A key that
// was held before is the one that opened the field.
static void OnKeyDown(HWND field, WPARAM key, LPARAM flags) {
    TakeModifiers(field);
    if (IsModifier(key) || (flags & kKeyRepeated) || key == VK_PROCESSKEY || key == VK_PACKET)
        return;
    TakeKey(field, key);
}

// Of Print Screen, Windows tells the release alone.
static void OnKeyUp(HWND field, WPARAM key) {
    TakeModifiers(field);
    if (key == VK_SNAPSHOT) TakeKey(field, key);
}

static void OnPaint(HWND field) {
    const FieldData& data = *Data(field);
    char text[kStringMax] = "";
    const auto append = [&](int held, const char* name) {
        if (held && text[0]) AppendText(text, sizeof text, " ");
        if (held) AppendText(text, sizeof text, name);
    };
    append(data.alt, "ALT");
    append(data.shift, "SHFT");
    append(data.control, "CTL");
    const int held = text[0] != 0;
    if (!held) LoadText(IDS_HOTKEY_PROMPT, text);
    MemoryPaint paint;
    BeginMemoryPaint(field, &paint);
    FillArea(paint.dc, paint.client, Colors.BtnFaceClr);
    const HGDIOBJ before = SelectObject(paint.dc, data.font);
    SetBkMode(paint.dc, TRANSPARENT);
    SetTextColor(paint.dc, held ? Colors.BtnLtClr : Colors.BtnDrkClr);
    DrawTextA(paint.dc, text, -1, &paint.client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(paint.dc, before);
    EndMemoryPaint(&paint);
}

static LRESULT FieldProc(HWND field, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return CreateControlData<FieldData>(field) ? 0 : -1;
    if (!Data(field)) return DefWindowProcA(field, message, wParam, lParam);
    switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: OnKeyDown(field, wParam, lParam); return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP: OnKeyUp(field, wParam); return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_CANCELMODE: Data(field)->done = 1; return 0;
    case WM_ERASEBKGND: return 1;
    case WM_PAINT: OnPaint(field); return 0;
    case WM_DESTROY: FreeControlData<FieldData>(field); return 0;
    default: return DefWindowProcA(field, message, wParam, lParam);
    }
}

static HWND MakeField(HWND dialog) {
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    RegisterControlClass(instance, kHotkeyFieldClass, GuardedProc<FieldProc>, nullptr);
    const auto font = reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0));
    TEXTMETRICA letters = {};
    const HDC dc = GetDC(dialog);
    const HGDIOBJ before = SelectObject(dc, font);
    GetTextMetricsA(dc, &letters);
    SelectObject(dc, before);
    ReleaseDC(dialog, dc);
    RECT client;
    GetClientRect(dialog, &client);
    const int height = letters.tmHeight + 2 * kAir;
    const HWND field =
        CreateControl(kHotkeyFieldClass, "", WS_BORDER, (client.right - kFieldWidth) / 2,
                      (client.bottom - height) / 2, kFieldWidth, height, dialog, 0, instance);
    if (field) Data(field)->font = font;
    return field;
}

// The field's block goes with its window, which may be at any message.
static void RunLoop(HWND field) {
    MSG message;
    while (Data(field) && !Data(field)->done) {
        if (GetMessageA(&message, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST)
            SendMessageA(field, message.message, message.wParam, message.lParam);
        else
            DispatchMessageA(&message);
    }
}

int CaptureHotkey(HWND dialog, HotkeyRecord* record) {
    const HWND field = MakeField(dialog);
    if (!field) return 0;
    EnableWindow(dialog, FALSE);
    SetWindowPos(field, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    SetCapture(field); // a click anywhere ends it
    TakeModifiers(field);
    RunLoop(field);
    FieldData taken = {};
    if (Data(field)) taken = *Data(field);
    if (IsWindow(dialog)) EnableWindow(dialog, TRUE);
    if (IsWindow(field)) DestroyWindow(field);
    if (!taken.key) return 0;
    record->Alt = static_cast<uint32_t>(taken.alt);
    record->Shift = static_cast<uint32_t>(taken.shift);
    record->Ctrl = static_cast<uint32_t>(taken.control);
    record->VirtualKey = taken.key;
    return 1;
}
