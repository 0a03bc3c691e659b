// See progress_win.h.
#include "cdinfo/progress_win.h"

#include "core/strings_win.h"
#include "resources/ids.h"

static INT_PTR CALLBACK OnProgressMessage(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

HWND ShowProgress(HWND owner, UINT textId, size_t range, int step) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    const HWND window =
        CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_READ_PROGRESS), owner,
                           OnProgressMessage, 0);
    if (!window) return nullptr;
    char text[kStringMax];
    if (textId && LoadText(textId, text)) SetDlgItemTextA(window, IDC_READ_TEXT, text);
    const HWND bar = GetDlgItem(window, IDC_READ_BAR);
    SendMessageA(bar, PBM_SETRANGE32, 0, static_cast<LPARAM>(range));
    SendMessageA(bar, PBM_SETSTEP, static_cast<WPARAM>(step), 0);
    SendMessageA(bar, PBM_SETPOS, 0, 0);
    ShowWindow(window, SW_SHOW);
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return window;
}

void StepProgress(HWND progress) {
    if (!progress) return;
    const HWND bar = GetDlgItem(progress, IDC_READ_BAR);
    SendMessageA(bar, PBM_STEPIT, 0, 0);
    UpdateWindow(bar);
}

void CloseProgress(HWND progress) {
    if (progress) DestroyWindow(progress);
}
