// The file dialogs of import and export, with the choices that the system's own don't have: a
// template of ours stands below their controls. See transfer_win.h.
#include "archive/transfer_win.h"

#include "core/component_win.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

#include <algorithm>
#include <commdlg.h>
#include <cstring>
#include <dlgs.h>

constexpr const char* kSection = "Software\\Tonvista\\CDInfoUI";
constexpr const char* kFolderValue = "ExportFolder";
constexpr const char* kIniName = "CDPlayer.ini";
constexpr size_t kMessageMax = kStringMax + MAX_PATH;

namespace {
// A type in the dialog's list.
struct FileType {
    ExchangeForm form;
    const char* extension; // also that by which a file tells its form; null: files have none
    UINT hintId;
    int isFolder; // one file for each disc
};

struct TransferDialog {
    OPENFILENAMEA open = {};
    char filter[kStringMax], caption[kStringMax];
    char file[MAX_PATH] = "", folder[MAX_PATH] = "";
    const FileType* types;
    int typeCount;
    HWND window = nullptr;     // of our template; its parent is the dialog
    char typed[MAX_PATH] = ""; // what stood there before the box was ticked
    int isIni = 0, isTab = 0, isWholeFolder = 0;
};
} // namespace

// In the order of the filters.
static constexpr FileType kImportTypes[] = {
    {kCdpForm, ".cdp", IDS_IMPORT_CDP_HINT, 0},
    {kCddbForm, nullptr, IDS_IMPORT_CDDB_HINT, 1},
    {kCueForm, ".cue", IDS_IMPORT_CUE_HINT, 1},
};
static constexpr FileType kExportTypes[] = {
    {kTextForm, ".txt", IDS_EXPORT_NEW_HINT, 0},
    {kDelimitedForm, ".csv", IDS_EXPORT_NEW_HINT, 0},
    {kCdpForm, ".cdp", IDS_EXPORT_CDP_HINT, 0},
    {kCddbForm, nullptr, IDS_EXPORT_FOLDER_HINT, 1},
    {kCueForm, nullptr, IDS_EXPORT_FOLDER_HINT, 1},
};

static int IsFolder(const char* path) {
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// ---- what the dialog shows

static HWND FrameOf(const TransferDialog* dialog) {
    return GetParent(dialog->window);
}

// Its number depends on the system.
static HWND NameField(const TransferDialog* dialog) {
    const HWND field = GetDlgItem(FrameOf(dialog), cmb13);
    return field ? field : GetDlgItem(FrameOf(dialog), edt1);
}

static const FileType& ChosenType(const TransferDialog* dialog) {
    const int at = static_cast<int>(dialog->open.nFilterIndex) - 1;
    return dialog->types[std::clamp(at, 0, dialog->typeCount - 1)];
}

static void EnableControl(const TransferDialog* dialog, int id, int enable) {
    const HWND control = GetDlgItem(dialog->window, id);
    if (control) EnableWindow(control, enable);
}

static void ShowChoices(const TransferDialog* dialog) {
    char hint[kStringMax];
    const FileType& type = ChosenType(dialog);
    LoadText(dialog->isIni ? IDS_TRANSFER_INI_HINT : type.hintId, hint);
    SetDlgItemTextA(dialog->window, IDC_TRANSFER_HINT, hint);
    const int isDelimited = !dialog->isIni && type.form == kDelimitedForm;
    for (const int id : {IDC_EXPORT_SEPARATOR, IDC_EXPORT_COMMA, IDC_EXPORT_TAB})
        EnableControl(dialog, id, isDelimited);
    EnableControl(dialog, IDC_IMPORT_FOLDER, !dialog->isIni && type.isFolder);
    const HWND types = GetDlgItem(FrameOf(dialog), cmb1);
    if (types) EnableWindow(types, !dialog->isIni);
}

// ---- what the user does

// The name field then holds the file that is meant, so that the dialog's own button takes it.
static void OnIniTicked(TransferDialog* dialog) {
    char path[MAX_PATH] = "";
    dialog->isIni = IsDlgButtonChecked(dialog->window, IDC_TRANSFER_INI) == BST_CHECKED;
    if (dialog->isIni) {
        GetWindowTextA(NameField(dialog), dialog->typed, sizeof dialog->typed);
        GetWindowsDirectoryA(path, sizeof path);
        AppendText(path, sizeof path, "\\");
        AppendText(path, sizeof path, kIniName);
        SetWindowTextA(NameField(dialog), path);
    } else {
        SetWindowTextA(NameField(dialog), dialog->typed);
    }
    ShowChoices(dialog);
}

static void OnWholeFolder(TransferDialog* dialog) {
    const LRESULT length = SendMessageA(FrameOf(dialog), CDM_GETFOLDERPATH, sizeof dialog->file,
                                        reinterpret_cast<LPARAM>(dialog->file));
    // "Computer" and its like are no folders of files.
    if (length <= 1 || !IsFolder(dialog->file)) {
        MessageBeep(MB_ICONEXCLAMATION);
        return;
    }
    dialog->isWholeFolder = 1;
    PostMessageA(FrameOf(dialog), WM_COMMAND, IDCANCEL, 0);
}

static int EndsIn(const char* path, const char* extension) {
    const size_t length = strlen(path), tail = strlen(extension);
    return length > tail && SameText(path + length - tail, extension);
}

static void CompleteName(TransferDialog* dialog) {
    const FileType& type = ChosenType(dialog);
    const char* name = dialog->file + dialog->open.nFileOffset;
    if (!dialog->isIni && type.extension && !strchr(name, '.'))
        AppendText(dialog->file, sizeof dialog->file, type.extension);
}

// 1 when the file may be written: those that are begun anew are asked about.
static int MayWrite(const TransferDialog* dialog) {
    const ExchangeForm form = ChosenType(dialog).form;
    if (dialog->isIni || (form != kTextForm && form != kDelimitedForm)) return 1;
    if (GetFileAttributesA(dialog->file) == INVALID_FILE_ATTRIBUTES) return 1;
    char format[kStringMax], text[kMessageMax];
    LoadText(IDS_EXPORT_REPLACE, format);
    FormatText(text, sizeof text, format, dialog->file);
    return MessageBoxA(FrameOf(dialog), text, dialog->caption, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

// 1 keeps the dialog open.
static int OnFileChosen(TransferDialog* dialog) {
    dialog->isTab = IsDlgButtonChecked(dialog->window, IDC_EXPORT_TAB) == BST_CHECKED;
    if (dialog->types != kExportTypes) return 0;
    CompleteName(dialog);
    return !MayWrite(dialog);
}

static INT_PTR OnNotify(TransferDialog* dialog, const NMHDR* header) {
    switch (header->code) {
    case CDN_INITDONE:
    case CDN_TYPECHANGE: ShowChoices(dialog); break;
    case CDN_FILEOK:
        SetWindowLongPtrA(dialog->window, DWLP_MSGRESULT, OnFileChosen(dialog));
        return 1;
    }
    return 0;
}

static INT_PTR TransferProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const auto* open = reinterpret_cast<const OPENFILENAMEA*>(lParam);
        auto* made = reinterpret_cast<TransferDialog*>(open->lCustData);
        SetWindowLongPtrA(window, DWLP_USER, open->lCustData);
        made->window = window;
        CheckRadioButton(window, IDC_EXPORT_COMMA, IDC_EXPORT_TAB, IDC_EXPORT_COMMA);
        return TRUE;
    }
    auto* dialog = reinterpret_cast<TransferDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    if (message == WM_NOTIFY) return OnNotify(dialog, reinterpret_cast<const NMHDR*>(lParam));
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(wParam)) {
    case IDC_TRANSFER_INI: OnIniTicked(dialog); return TRUE;
    case IDC_IMPORT_FOLDER: OnWholeFolder(dialog); return TRUE;
    }
    return FALSE;
}

// The system's type for hooks differs in the sign of the result alone.
static UINT_PTR CALLBACK TransferHook(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return static_cast<UINT_PTR>(
        GuardedDialogCallback(TransferProcedure, window, message, wParam, lParam));
}

// ---- the two dialogs

static void SetUp(TransferDialog* dialog, HWND owner, UINT captionId, UINT filterId,
                  UINT templateId) {
    LoadText(captionId, dialog->caption);
    LoadText(filterId, dialog->filter);
    std::replace(dialog->filter, dialog->filter + strlen(dialog->filter), '|', '\0');
    GetWindowsDirectoryA(dialog->folder, sizeof dialog->folder);
    OPENFILENAMEA* open = &dialog->open;
    open->lStructSize = sizeof *open;
    open->hwndOwner = owner;
    open->hInstance = GetModuleHandleA(nullptr);
    open->lpstrFilter = dialog->filter;
    open->nFilterIndex = 1;
    open->lpstrFile = dialog->file;
    open->nMaxFile = sizeof dialog->file;
    open->lpstrInitialDir = dialog->folder;
    open->lpstrTitle = dialog->caption;
    open->lCustData = reinterpret_cast<LPARAM>(dialog);
    open->lpfnHook = TransferHook;
    open->lpTemplateName = MAKEINTRESOURCEA(templateId);
    open->Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST |
                  OFN_ENABLEHOOK | OFN_ENABLETEMPLATE | OFN_ENABLESIZING;
}

// A file's name says more than the type under which it was found.
static ExchangeForm ImportForm(const TransferDialog& dialog) {
    if (dialog.isIni) return kIniForm;
    for (const FileType& type : kImportTypes) {
        if (type.extension && EndsIn(dialog.file, type.extension)) return type.form;
    }
    return ChosenType(&dialog).form;
}

int ChooseImport(HWND owner, TransferChoice* choice) {
    TransferDialog dialog;
    dialog.types = kImportTypes;
    dialog.typeCount = static_cast<int>(std::size(kImportTypes));
    SetUp(&dialog, owner, IDS_IMPORT_CAPTION, IDS_IMPORT_FILTER, IDD_IMPORT);
    dialog.open.Flags |= OFN_FILEMUSTEXIST;
    if (GetOpenFileNameA(&dialog.open))
        choice->form = ImportForm(dialog);
    else if (dialog.isWholeFolder)
        choice->form = ChosenType(&dialog).form;
    else
        return 0;
    choice->path = dialog.file;
    return 1;
}

static void ReadFolder(char (&folder)[MAX_PATH]) {
    char stored[MAX_PATH] = "";
    if (!ReadRegString(kUserRoot, kSection, kFolderValue, stored, sizeof stored)) return;
    if (IsFolder(stored)) CopyText(folder, stored);
}

int ChooseExport(HWND owner, TransferChoice* choice) {
    TransferDialog dialog;
    dialog.types = kExportTypes;
    dialog.typeCount = static_cast<int>(std::size(kExportTypes));
    SetUp(&dialog, owner, IDS_EXPORT_CAPTION, IDS_EXPORT_FILTER, IDD_EXPORT);
    ReadFolder(dialog.folder);
    LoadText(IDS_EXPORT_NAME, dialog.file);
    if (!GetSaveFileNameA(&dialog.open)) return 0;
    const FileType& type = ChosenType(&dialog);
    std::string folder(dialog.file, dialog.open.nFileOffset);
    if (folder.size() > strlen("C:\\")) folder.pop_back(); // its backslash
    choice->form = dialog.isIni ? kIniForm : type.form;
    choice->separator = dialog.isTab ? '\t' : ',';
    choice->path = !dialog.isIni && type.isFolder ? folder : dialog.file;
    if (!dialog.isIni) WriteRegString(kUserRoot, kSection, kFolderValue, folder.c_str());
    return 1;
}
