// The dialog "Colors and Background": what is chosen is seen on all windows at once, and stored by
// OK; anything else brings back what was in force.
#include "ui/appearance_win.h"

#include "core/commands.h"
#include "core/component_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"
#include "ui/look_win.h"
#include "ui/swatch_win.h"

#include <algorithm>
#include <commdlg.h>
#include <cstring>
#include <windowsx.h>

namespace {
// Controls of a bitmap, as distances from the first.
enum BitmapControl {
    kUse = 0,
    kBuiltIn = IDC_BACKGROUND_BUILT_IN - IDC_BACKGROUND_USE,
    kFile = IDC_BACKGROUND_FILE - IDC_BACKGROUND_USE,
    kPath = IDC_BACKGROUND_PATH - IDC_BACKGROUND_USE,
    kChoose = IDC_BACKGROUND_CHOOSE - IDC_BACKGROUND_USE,
    kStretch = IDC_BACKGROUND_STRETCH - IDC_BACKGROUND_USE,
    kAlignText = IDC_BACKGROUND_ALIGN_TEXT - IDC_BACKGROUND_USE,
    kAlign = IDC_BACKGROUND_ALIGN - IDC_BACKGROUND_USE
};
static_assert(IDC_FACE_ALIGN - IDC_FACE_USE == kAlign);
constexpr int kAlignments = kAlignScreen + 1;

struct BitmapSection {
    int first; // control id
    UINT fileTitle;
    void (*Read)(BitmapSettings* settings);
    void (*Use)(const BitmapSettings& settings);
    int (*Save)(const BitmapSettings& settings, int force);
};
constexpr BitmapSection kSections[] = {
    {IDC_BACKGROUND_USE, IDS_BACKGROUND_FILE, ReadBackgroundSettings, UseBackground,
     SaveBackgroundSettings},
    {IDC_FACE_USE, IDS_BUTTON_FACE_FILE, ReadButtonFaceSettings, UseButtonFace,
     SaveButtonFaceSettings},
};
constexpr int kSectionCount = 2;

struct ColorsDialog {
    ModalDialog modal;
    ColorSet before;
    BitmapSettings stored[kSectionCount], chosen[kSectionCount];
    int kept; // OK was pressed
};
} // namespace

int PickBitmapFile(HWND owner, const char* title, char* path) {
    char filter[kStringMax], folder[MAX_PATH], file[MAX_PATH] = "";
    std::replace(filter, filter + LoadText(IDS_BITMAP_FILTER, filter), '|', '\0');
    CopyText(folder, path);
    char* const name = strrchr(folder, '\\');
    if (name) *name = 0;
    OPENFILENAMEA choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.lpstrTitle = title;
    choice.lpstrFilter = filter;
    choice.lpstrInitialDir = name ? folder : nullptr;
    choice.lpstrFile = file;
    choice.nMaxFile = sizeof file;
    choice.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameA(&choice)) return 0;
    memcpy(path, file, sizeof file);
    return 1;
}

// ---- what is shown

static void TellWindows(const ColorsDialog& dialog) {
    SendMessageA(dialog.modal.owner, WM_COMMAND, kColorsChanged, 0);
}

static void EnableSection(HWND window, const BitmapSection& section,
                          const BitmapSettings& settings) {
    const int tiled = settings.UseBitmap && !settings.Stretch;
    for (const int control : {kBuiltIn, kFile, kChoose, kStretch})
        EnableDialogButton(window, section.first + control, settings.UseBitmap != 0, section.first);
    EnableWindow(GetDlgItem(window, section.first + kPath), settings.UseBitmap != 0);
    EnableWindow(GetDlgItem(window, section.first + kAlignText), tiled);
    EnableWindow(GetDlgItem(window, section.first + kAlign), tiled);
}

static void ShowSection(HWND window, const BitmapSection& section, const BitmapSettings& settings) {
    const int first = section.first;
    CheckDlgButton(window, first + kUse, settings.UseBitmap ? BST_CHECKED : BST_UNCHECKED);
    CheckRadioButton(window, first + kBuiltIn, first + kFile,
                     first + (settings.UseDefault ? kBuiltIn : kFile));
    SetDlgItemTextA(window, first + kPath, settings.FileName);
    CheckDlgButton(window, first + kStretch, settings.Stretch ? BST_CHECKED : BST_UNCHECKED);
    ComboBox_SetCurSel(GetDlgItem(window, first + kAlign), settings.Align);
    EnableSection(window, section, settings);
}

static void FillAlignments(HWND combo) {
    for (UINT i = 0; i < kAlignments; ++i) {
        char text[kStringMax];
        LoadText(IDS_ALIGNMENTS + i, text);
        ComboBox_AddString(combo, text);
    }
}

static void OnInitDialog(HWND window, ColorsDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    dialog->before = Colors;
    for (int i = 0; i < kSectionCount; ++i) {
        BitmapSettings& settings = dialog->chosen[i];
        kSections[i].Read(&settings);
        dialog->stored[i] = settings;
        if (!settings.FileName[0]) settings.UseDefault = 1; // what it comes to
        if (settings.Align >= kAlignments) settings.Align = kAlignObject;
        FillAlignments(GetDlgItem(window, kSections[i].first + kAlign));
        ShowSection(window, kSections[i], settings);
    }
    PlaceOverOwner(window, dialog->modal.owner);
}

// ---- what is chosen

// The chooser runs a loop of its own, at whose end the dialog may be gone with its owner.
static void OnSwatch(ColorsDialog* dialog, int id) {
    const int place = id - IDC_COLORS_SWATCH;
    COLORREF color = Colors.*kColorValues[place].field;
    if (!OnSwatchClick(dialog->modal.window, id, &color) || dialog->modal.done) return;
    Colors.*kColorValues[place].field = color;
    TellWindows(*dialog);
}

static void OnDefaults(ColorsDialog* dialog) {
    InitColors();
    for (int i = 0; i < kColorCount; ++i)
        InvalidateRect(GetDlgItem(dialog->modal.window, IDC_COLORS_SWATCH + i), nullptr, FALSE);
    TellWindows(*dialog);
}

static void ChooseFile(ColorsDialog* dialog, int i) {
    char title[kStringMax], path[MAX_PATH];
    LoadText(kSections[i].fileTitle, title);
    CopyText(path, dialog->chosen[i].FileName);
    if (!PickBitmapFile(dialog->modal.window, title, path) || dialog->modal.done) return;
    CopyText(dialog->chosen[i].FileName, path);
    dialog->chosen[i].UseDefault = 0;
}

static void OnSection(ColorsDialog* dialog, int i, int control) {
    const HWND window = dialog->modal.window;
    const int first = kSections[i].first;
    BitmapSettings& settings = dialog->chosen[i];
    switch (control) {
    case kUse: settings.UseBitmap = IsDlgButtonChecked(window, first + kUse); break;
    case kStretch: settings.Stretch = IsDlgButtonChecked(window, first + kStretch); break;
    case kBuiltIn: settings.UseDefault = 1; break;
    case kFile:
        if (settings.FileName[0])
            settings.UseDefault = 0;
        else
            ChooseFile(dialog, i);
        break;
    case kChoose: ChooseFile(dialog, i); break;
    case kAlign:
        settings.Align = static_cast<uint32_t>(
            std::clamp(ComboBox_GetCurSel(GetDlgItem(window, first + kAlign)), 0, kAlignments - 1));
        break;
    default: return;
    }
    if (dialog->modal.done) return;
    ShowSection(window, kSections[i], settings);
    kSections[i].Use(settings);
    TellWindows(*dialog);
}

static void OnOk(ColorsDialog* dialog) {
    dialog->kept = 1;
    SaveColors();
    for (int i = 0; i < kSectionCount; ++i)
        kSections[i].Save(dialog->chosen[i], 1);
    TellWindows(*dialog);
    EndModalDialog(&dialog->modal, IDOK);
}

static void OnDestroy(ColorsDialog* dialog) {
    EndModalDialog(&dialog->modal, 0);
    if (dialog->kept) return;
    Colors = dialog->before;
    for (int i = 0; i < kSectionCount; ++i)
        kSections[i].Use(dialog->stored[i]);
    TellWindows(*dialog);
}

static void OnCommand(ColorsDialog* dialog, int id, int code) {
    if (code != BN_CLICKED) { // of all others only a choice of alignment
        for (int i = 0; i < kSectionCount; ++i)
            if (id == kSections[i].first + kAlign && code == CBN_SELCHANGE)
                OnSection(dialog, i, kAlign);
        return;
    }
    switch (id) {
    case IDOK: OnOk(dialog); return;
    case IDCANCEL: EndModalDialog(&dialog->modal, IDCANCEL); return;
    case IDC_COLORS_DEFAULTS: OnDefaults(dialog); return;
    default: break;
    }
    if (id >= IDC_COLORS_SWATCH && id < IDC_COLORS_SWATCH + kColorCount) OnSwatch(dialog, id);
    for (int i = 0; i < kSectionCount; ++i)
        if (id >= kSections[i].first && id < kSections[i].first + kAlign)
            OnSection(dialog, i, id - kSections[i].first);
}

static INT_PTR ColorsProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<ColorsDialog*>(lParam));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<ColorsDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<DRAWITEMSTRUCT*>(lParam);
        const UINT place = item.CtlID - IDC_COLORS_SWATCH;
        if (place < kColorCount) DrawSwatch(item, Colors.*kColorValues[place].field);
        return TRUE;
    }
    case WM_COMMAND: OnCommand(dialog, LOWORD(wParam), HIWORD(wParam)); return TRUE;
    case WM_DESTROY: OnDestroy(dialog); return TRUE;
    default: return FALSE;
    }
}

int ShowColorsDialog(HWND console) {
    ColorsDialog dialog = {};
    return RunModalDialog(&dialog.modal, console, IDD_COLORS, GuardedDialog<ColorsProcedure>,
                          reinterpret_cast<LPARAM>(&dialog)) == IDOK;
}
