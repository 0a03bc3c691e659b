// The dialog "Font": the installed families, each in its own letters, for the labels of all
// windows.
#include "ui/appearance_win.h"

#include "core/commands.h"
#include "core/component_win.h"
#include "core/settings.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"
#include "ui/look_win.h"

#include <cstring>
#include <map>
#include <windowsx.h>

constexpr int kRowHeight = 22, kRowMargin = 4; // pixels
constexpr int kLetterHeight = -15; // of the letters: some faces leave a lot of room above

namespace {
struct FontDialog {
    ModalDialog modal;
    HWND list;
    std::map<UINT, HFONT> faces; // of rows that have been seen
};
} // namespace

// ---- the list

// Vertical faces ("@") turn letters on their side. A family may be told once for each script; case
// does not tell families apart. A name with letters of a code page that is not this system's comes
// with question marks, and nothing would be found by it.
static int CALLBACK AddFamily(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM list) {
    const HWND box = reinterpret_cast<HWND>(list);
    const char* name = font->lfFaceName;
    if (name[0] && name[0] != '@' && !strchr(name, '?') &&
        ListBox_FindStringExact(box, -1, name) == LB_ERR)
        ListBox_SetItemData(box, ListBox_AddString(box, name), font->lfCharSet);
    return 1;
}

static void FillList(HWND list) {
    const HDC screen = GetDC(nullptr);
    EnumFontFamiliesA(screen, nullptr, AddFamily, reinterpret_cast<LPARAM>(list));
    ReleaseDC(nullptr, screen);
    const int current = ListBox_FindStringExact(list, -1, FontFaceName);
    ListBox_SetCurSel(list, current == LB_ERR ? 0 : current);
}

static HFONT FaceOf(FontDialog* dialog, UINT row, const char* name) {
    HFONT& face = dialog->faces[row];
    if (!face) face = CreateLabelFont(name, kLetterHeight, FW_NORMAL);
    return face;
}

// A face of signs would not let its own name be read.
static void DrawRow(FontDialog* dialog, const DRAWITEMSTRUCT& item) {
    char name[LF_FACESIZE] = "";
    if (item.itemID == static_cast<UINT>(-1) ||
        ListBox_GetTextLen(item.hwndItem, item.itemID) >= LF_FACESIZE)
        return;
    ListBox_GetText(item.hwndItem, item.itemID, name);
    const int selected = item.itemState & ODS_SELECTED;
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    SetBkMode(item.hDC, TRANSPARENT);
    const HGDIOBJ before = item.itemData == SYMBOL_CHARSET
                               ? nullptr
                               : SelectObject(item.hDC, FaceOf(dialog, item.itemID, name));
    RECT place = item.rcItem;
    place.left += kRowMargin;
    DrawTextA(item.hDC, name, -1, &place,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    if (before) SelectObject(item.hDC, before);
    if (item.itemState & ODS_FOCUS) DrawFocusRect(item.hDC, &item.rcItem);
}

// ---- the dialog

static void OnInitDialog(HWND window, FontDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    dialog->list = GetDlgItem(window, IDC_FONT_LIST);
    ListBox_SetItemHeight(dialog->list, 0, kRowHeight);
    FillList(dialog->list);
    PlaceOverOwner(window, dialog->modal.owner);
    SetFocus(dialog->list);
}

static void OnOk(FontDialog* dialog) {
    const int row = ListBox_GetCurSel(dialog->list);
    char face[LF_FACESIZE] = "";
    if (row < 0 || ListBox_GetTextLen(dialog->list, row) >= LF_FACESIZE) return;
    ListBox_GetText(dialog->list, row, face);
    CopyText(FontFaceName, face);
    WriteRegString(kUserRoot, kSettingsRoot, "FontFaceName", FontFaceName);
    SendMessageA(dialog->modal.owner, WM_COMMAND, kFontChanged, 0);
    EndModalDialog(&dialog->modal, IDOK);
}

static INT_PTR FontProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<FontDialog*>(lParam));
        return FALSE; // the list has the focus
    }
    auto* dialog = reinterpret_cast<FontDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case WM_DRAWITEM: DrawRow(dialog, *reinterpret_cast<DRAWITEMSTRUCT*>(lParam)); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || HIWORD(wParam) == LBN_DBLCLK) OnOk(dialog);
        if (LOWORD(wParam) == IDCANCEL) EndModalDialog(&dialog->modal, IDCANCEL);
        return TRUE;
    case WM_DESTROY: EndModalDialog(&dialog->modal, 0); return TRUE;
    default: return FALSE;
    }
}

int ShowFontDialog(HWND console) {
    FontDialog dialog = {};
    const int answer =
        RunModalDialog(&dialog.modal, console, IDD_FONT, GuardedDialog<FontProcedure>,
                       reinterpret_cast<LPARAM>(&dialog));
    for (const auto& [row, face] : dialog.faces)
        DeleteObject(face);
    return answer == IDOK;
}
