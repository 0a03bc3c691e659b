// Taking an installation back. See install_win.h.
#include "app/install_win.h"
#include "app/setup_win.h"
#include "cd/engine_win.h"
#include "core/component_win.h"
#include "core/disc_drive.h"
#include "core/extractor.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "media/types_win.h"
#include "resources/ids.h"

#include <commctrl.h>

namespace {
struct Removal {
    char program[kPathSize], folder[kPathSize];
    int database, settings; // of the user's: only what he ticks
};
} // namespace
static Removal s_removal;

// ---- what is asked

static INT_PTR RemoveDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) {
        char format[kStringMax], text[kStringMax + MAX_PATH];
        LoadText(IDS_UNINSTALL_TEXT, format);
        FormatText(text, sizeof text, format, s_removal.folder);
        SetDlgItemTextA(dialog, IDC_UNINSTALL_TEXT, text);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(wParam);
    if (id != IDOK && id != IDCANCEL) return FALSE;
    s_removal.database = IsDlgButtonChecked(dialog, IDC_UNINSTALL_DATABASE) == BST_CHECKED;
    s_removal.settings = IsDlgButtonChecked(dialog, IDC_UNINSTALL_SETTINGS) == BST_CHECKED;
    EndDialog(dialog, id);
    return TRUE;
}

// The installed program, whichever copy of it was asked to remove it.
static int FindProgram() {
    if (!InstalledProgram(s_removal.program) && !OwnProgram(s_removal.program)) return 0;
    FolderOfPath(s_removal.program, s_removal.folder);
    return 1;
}

// ---- taking it back

// Before the files: two registrations are taken back with their help.
static void TakeBackRegistrations() {
    char extractor[kPathSize];
    GiveBackCdPlayer(s_removal.program);
    UnregisterMediaTypes();
    if (JoinPath(s_removal.folder, kExtractorFile, extractor)) UnregisterExtractor(extractor);
    TakeBackDiscDrive(s_removal.folder);
    TakeBackShell();
    RemoveFromStartMenu();
    UnlistProgram();
    RefreshMediaIcons();
}

static void DeleteSettings() {
    DeleteRegTree(kUserRoot, kSettingsRoot);
    DeleteRegTree(kMachineRoot, kSettingsRoot);
    DeleteRegTree(kUserRoot, kDiscDriveKey);
}

static void Remove() {
    char own[kPathSize] = "";
    TakeBackRegistrations();
    if (s_removal.settings) DeleteSettings();
    int deleted = !s_removal.database || DeleteDatabase(s_removal.folder);
    deleted &= DeleteProgram(s_removal.folder);
    const int itself = OwnProgram(own) && SameFile(own, s_removal.program);
    SetupBox(nullptr, IDS_UNINSTALL_CAPTION, deleted ? IDS_UNINSTALL_DONE : IDS_UNINSTALL_LEFT,
             s_removal.folder, MB_OK | MB_ICONINFORMATION);
    if (itself) DeleteOwnProgramLater(); // the last thing that this process does
}

void UninstallProgram() {
    InitCommonControls();
    if (!FindProgram()) return;
    if (DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_UNINSTALL), nullptr,
                        GuardedDialog<RemoveDialogProc>, 0) != IDOK)
        return;
    if (CloseRunningProgram(nullptr, IDS_UNINSTALL_CAPTION))
        Remove();
    else
        SetupBox(nullptr, IDS_UNINSTALL_CAPTION, IDS_SETUP_STILL_RUNNING, nullptr,
                 MB_OK | MB_ICONEXCLAMATION);
}
