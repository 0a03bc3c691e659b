// The file types dialog, and the box shown where the platform plays no media.
#include "core/component_win.h"
#include "core/extractor.h"
#include "core/strings_win.h"
#include "media/graph_win.h"
#include "media/icon_dialog_win.h"
#include "media/types_parts_win.h"
#include "media/types_win.h"
#include "resources/ids.h"

#include <windowsx.h>

constexpr int kRowCount = 3;

namespace {
// A tick and an icon, for one extension or two.
struct TypeRow {
    const char* extensions[2];
    char iconFile[MAX_PATH];
    int iconIndex;
    int iconChosen;
    HICON icon;
};
struct TypesDialog {
    HWND window; // one at a time, whoever asks
    TypeRow rows[kRowCount];
};
} // namespace
static TypesDialog s_dialog;

// ---- icons

static void ShowIcon(int row) {
    TypeRow& r = s_dialog.rows[row];
    HICON icon = nullptr;
    ExtractIconExA(r.iconFile, r.iconIndex, &icon, nullptr, 1);
    Static_SetIcon(GetDlgItem(s_dialog.window, IDC_TYPE_ICON + row), icon);
    if (r.icon) DestroyIcon(r.icon);
    r.icon = icon;
}

static void OnChoose(int row) {
    TypeRow& r = s_dialog.rows[row];
    if (!ChooseIcon(s_dialog.window, IDS_CHOOSE_ICON + row, r.iconFile, &r.iconIndex)) return;
    r.iconChosen = 1;
    ShowIcon(row);
}

// ---- the dialog

static void FillDialog() {
    char text[kStringMax];
    for (int i = 0; i < kRowCount; ++i) {
        TypeRow& r = s_dialog.rows[i];
        int ours = 1;
        for (const char* extension : r.extensions)
            if (extension) ours &= IsMediaTypeOurs(extension);
        CheckDlgButton(s_dialog.window, IDC_TYPE_TICK + i, ours ? BST_CHECKED : BST_UNCHECKED);
        LoadText(IDS_CHOOSE_ICON + i, text);
        SetDlgItemTextA(s_dialog.window, IDC_TYPE_CHOOSE + i, text);
        ReadMediaIcon(r.extensions[0], r.iconFile, &r.iconIndex);
        ShowIcon(i);
    }
}

static void StoreRow(int row) {
    const TypeRow& r = s_dialog.rows[row];
    const int ticked = IsDlgButtonChecked(s_dialog.window, IDC_TYPE_TICK + row) == BST_CHECKED;
    for (const char* extension : r.extensions) {
        if (!extension) continue;
        if (ticked)
            ClaimMediaType(extension);
        else
            GiveUpMediaType(extension);
        // Nobody's registry gets icons for types that were never ours.
        if (ticked || r.iconChosen) StoreMediaIcon(extension, r.iconFile, r.iconIndex);
    }
}

static void OnOk() {
    for (int i = 0; i < kRowCount; ++i)
        StoreRow(i);
    char extractor[MAX_PATH];
    if (PathBesideProgram(kExtractorFile, extractor)) RegisterExtractor(extractor);
    RefreshMediaIcons();
    EndDialog(s_dialog.window, IDOK);
}

static void OnTypesCommand(int id) {
    if (id == IDOK) OnOk();
    if (id == IDCANCEL) EndDialog(s_dialog.window, IDCANCEL);
    if (id >= IDC_TYPE_CHOOSE && id < IDC_TYPE_CHOOSE + kRowCount) OnChoose(id - IDC_TYPE_CHOOSE);
}

static INT_PTR TypesDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG:
        s_dialog.window = dialog;
        FillDialog();
        return TRUE;
    case WM_COMMAND: OnTypesCommand(LOWORD(wParam)); return TRUE;
    default: return FALSE;
    }
}

void ShowFileTypes(HWND owner) {
    if (IsWindow(s_dialog.window)) {
        SetForegroundWindow(s_dialog.window);
        return;
    }
    s_dialog = {};
    s_dialog.rows[0].extensions[0] = ".mp3";
    s_dialog.rows[1].extensions[0] = ".wav";
    s_dialog.rows[2].extensions[0] = ".pls";
    s_dialog.rows[2].extensions[1] = ".m3u";
    DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_FILE_TYPES), owner,
                    GuardedDialog<TypesDialogProc>, 0);
    for (TypeRow& row : s_dialog.rows)
        if (row.icon) DestroyIcon(row.icon);
    s_dialog = {};
}

// ---- "MediaPlayer Required!"

static INT_PTR RequiredDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) return TRUE;
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(wParam);
    if (id == IDC_VENDOR_PAGE) {
        char address[kStringMax];
        LoadText(IDS_VENDOR_PAGE, address);
        ShellExecuteA(dialog, "open", address, nullptr, nullptr, SW_SHOWNORMAL);
    }
    if (id == IDOK || id == IDCANCEL || id == IDC_VENDOR_PAGE) EndDialog(dialog, id);
    return TRUE;
}

void ShowMediaPlayerRequired(HWND owner) {
    DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_MEDIA_REQUIRED), owner,
                    GuardedDialog<RequiredDialogProc>, 0);
}
