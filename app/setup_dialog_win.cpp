// The installation's dialog: folder, choices, progress. See setup_win.h.
#include "app/setup_win.h"
#include "core/component_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

#include <commctrl.h>
#include <shlobj.h>

#include <initializer_list>

static struct {
    HWND window;
    SetupChoices choices;
} s_dialog;

// ---- the folder

static int CALLBACK OnBrowse(HWND browser, UINT message, LPARAM, LPARAM start) {
    if (message == BFFM_INITIALIZED) SendMessageA(browser, BFFM_SETSELECTIONA, TRUE, start);
    return 0;
}

static void Browse() {
    char title[kStringMax], typed[kPathSize] = "", folder[kPathSize], above[kPathSize],
                            chosen[MAX_PATH] = "";
    LoadText(IDS_SETUP_BROWSE, title);
    GetDlgItemTextA(s_dialog.window, IDC_INSTALL_FOLDER, typed, sizeof typed);
    CopyText(folder, typed);
    // The nearest one that is there already.
    while (*folder && GetFileAttributesA(folder) == INVALID_FILE_ATTRIBUTES) {
        FolderOfPath(folder, above);
        if (SameText(folder, above)) break;
        CopyText(folder, above);
    }
    BROWSEINFOA browse = {};
    browse.hwndOwner = s_dialog.window;
    browse.lpszTitle = title;
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    browse.lpfn = OnBrowse;
    browse.lParam = reinterpret_cast<LPARAM>(folder);
    const LPITEMIDLIST list = SHBrowseForFolderA(&browse);
    if (!list) return;
    if (SHGetPathFromIDListA(list, chosen)) {
        OwnFolderIn(chosen, folder);
        SetDlgItemTextA(s_dialog.window, IDC_INSTALL_FOLDER, folder);
    }
    CoTaskMemFree(list);
}

// ---- choices

static void FillDialog() {
    const SetupChoices& c = s_dialog.choices;
    SetDlgItemTextA(s_dialog.window, IDC_INSTALL_FOLDER, c.folder);
    SendDlgItemMessageA(s_dialog.window, IDC_INSTALL_FOLDER, EM_LIMITTEXT, kPathSize - 1, 0);
    const struct {
        int id, on;
    } boxes[] = {{IDC_INSTALL_CD, c.claimCd},
                 {IDC_INSTALL_MEDIA, c.claimMedia},
                 {IDC_INSTALL_MENU, c.startMenu},
                 {IDC_INSTALL_DRIVE, c.discDrive}};
    for (const auto& box : boxes)
        CheckDlgButton(s_dialog.window, box.id, box.on ? BST_CHECKED : BST_UNCHECKED);
    if (IsDiscDriveWanted()) return;
    for (const int id : {IDC_INSTALL_DRIVE, IDC_INSTALL_DRIVE_HINT})
        ShowWindow(GetDlgItem(s_dialog.window, id), SW_HIDE);
}

static int IsTicked(int id) {
    return IsDlgButtonChecked(s_dialog.window, id) == BST_CHECKED;
}

// 0, and says so, when the folder is none.
static int ReadChoices() {
    char typed[kPathSize] = "";
    SetupChoices& c = s_dialog.choices;
    GetDlgItemTextA(s_dialog.window, IDC_INSTALL_FOLDER, typed, sizeof typed);
    if (!ReadFolder(typed, c.folder)) {
        SetupBox(s_dialog.window, IDS_INSTALL_CAPTION, IDS_SETUP_BAD_FOLDER, typed,
                 MB_OK | MB_ICONEXCLAMATION);
        return 0;
    }
    c.claimCd = IsTicked(IDC_INSTALL_CD);
    c.claimMedia = IsTicked(IDC_INSTALL_MEDIA);
    c.startMenu = IsTicked(IDC_INSTALL_MENU);
    c.discDrive = IsDiscDriveWanted() && IsTicked(IDC_INSTALL_DRIVE);
    return 1;
}

// ---- installing

static void ShowProgress(HWND dialog, int done, int total) {
    const HWND bar = GetDlgItem(dialog, IDC_INSTALL_BAR);
    SendMessageA(bar, PBM_SETRANGE32, 0, total);
    SendMessageA(bar, PBM_SETPOS, static_cast<WPARAM>(done), 0);
    UpdateWindow(bar);
}

static void EnableChoices(int enable) {
    for (const int id : {IDC_INSTALL_FOLDER, IDC_INSTALL_BROWSE, IDC_INSTALL_CD, IDC_INSTALL_MEDIA,
                         IDC_INSTALL_MENU, IDC_INSTALL_DRIVE, IDOK, IDCANCEL})
        EnableWindow(GetDlgItem(s_dialog.window, id), enable);
}

// A folder that can't be had leaves the dialog open for another one.
static void OnInstall() {
    if (!ReadChoices()) return;
    EnableChoices(0);
    const int known = PrepareFolder(s_dialog.choices.folder);
    const int installed = known && Install(s_dialog.choices, {s_dialog.window, ShowProgress});
    if (!known)
        SetupBox(s_dialog.window, IDS_INSTALL_CAPTION, IDS_SETUP_NOT_WRITABLE,
                 s_dialog.choices.folder, MB_OK | MB_ICONEXCLAMATION);
    else
        SayHowItWent(s_dialog.window, installed);
    if (known) {
        EndDialog(s_dialog.window, IDOK);
        return;
    }
    EnableChoices(1);
    SetFocus(GetDlgItem(s_dialog.window, IDC_INSTALL_FOLDER));
}

static INT_PTR InstallDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG:
        s_dialog.window = dialog;
        FillDialog();
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_INSTALL_BROWSE: Browse(); return TRUE;
        case IDOK: OnInstall(); return TRUE;
        case IDCANCEL: EndDialog(dialog, IDCANCEL); return TRUE;
        default: return FALSE;
        }
    default: return FALSE;
    }
}

void InstallByDialog(const SetupChoices& proposed) {
    s_dialog = {};
    s_dialog.choices = proposed;
    DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_INSTALL), nullptr,
                    GuardedDialog<InstallDialogProc>, 0);
}
