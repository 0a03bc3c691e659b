// The context menu of the CD player window, and the dialog that puts an image into the disc drive.
#include "cd/player_state_win.h"

#include <commdlg.h>
#include <cstring>

#include "core/commands.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

static void AppendEntry(HMENU menu, UINT id, const char* text, int checked = 0) {
    AppendMenuA(menu, MF_STRING | (checked ? MF_CHECKED : 0), id, text);
}

static void AppendSeparator(HMENU menu) {
    if (GetMenuItemCount(menu) > 0) AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
}

static void AppendDrives(HMENU menu, char current) {
    char text[kStringMax];
    const HMENU drives = CreatePopupMenu();
    const uint32_t mask = CdDriveMask();
    for (int k = 0; k < 26; ++k) {
        if (!(mask >> k & 1)) continue;
        FormatText(text, sizeof text, "%c:", 'A' + k);
        AppendEntry(drives, kPlayerDriveFirst + k, text, current == 'A' + k);
    }
    LoadText(IDS_CD_MENU_DRIVE, text);
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(drives), text);
}

// Only where the drive in use plays images.
static void AppendDiscImage(HMENU menu, char drive) {
    char text[kStringMax], image[MAX_PATH] = "";
    if (DiscImageDrive() != drive) return;
    LoadText(IDS_CD_MENU_IMAGE, text);
    AppendEntry(menu, kPlayerDiscImage, text);
    LoadText(IDS_CD_MENU_EJECT_IMAGE, text);
    AppendEntry(menu, kPlayerEjectImage, text);
    if (!GetDiscImage(image, sizeof image) || !image[0])
        EnableMenuItem(menu, kPlayerEjectImage, MF_BYCOMMAND | MF_GRAYED);
}

static void AppendTracks(HMENU menu, const CdSnapshot& now, const CDInfoRecord& record) {
    if (!record.trackCount) return;
    AppendSeparator(menu);
    for (int track = 1; track <= record.trackCount; ++track) {
        char text[2 * kTextSize];
        MenuText(text, sizeof text, record.trackTitles[track - 1]);
        AppendEntry(menu, kPlayerTrackFirst + track, text, now.busy && now.track == track);
    }
}

void ShowPlayerMenu(HWND window, POINT at, const CdSnapshot& now, const CDInfoRecord& record) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendDrives(menu, now.drive);
    AppendDiscImage(menu, now.drive);
    AppendTracks(menu, now, record);
    SetForegroundWindow(window); // a menu of a window behind others would not close by itself
    TrackPopupMenu(menu, TPM_CENTERALIGN | TPM_VCENTERALIGN | TPM_RIGHTBUTTON, at.x, at.y, 0,
                   window, nullptr);
    DestroyMenu(menu);
}

// A WAV file stands for the folder that it lies in: the common dialog chooses files only.
static void ImageFromFile(char* path) {
    const size_t length = strlen(path);
    char* name = strrchr(path, '\\');
    if (length > 4 && SameText(path + length - 4, ".wav") && name) *name = 0;
}

void ChooseDiscImage(HWND window) {
    char path[MAX_PATH] = "", folder[MAX_PATH] = "", caption[kStringMax], filter[kStringMax];
    LoadText(IDS_CD_IMAGE_CAPTION, caption);
    LoadText(IDS_CD_IMAGE_FILTER, filter);
    for (char* c = filter; *c; ++c)
        if (*c == '|') *c = 0;
    if (GetDiscImage(folder, sizeof folder))
        if (char* name = strrchr(folder, '\\')) *name = 0;
    OPENFILENAMEA choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = window;
    choice.lpstrFilter = filter;
    choice.lpstrFile = path;
    choice.nMaxFile = sizeof path;
    choice.lpstrInitialDir = folder[0] ? folder : nullptr;
    choice.lpstrTitle = caption;
    choice.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameA(&choice)) return;
    ImageFromFile(path);
    if (PutDiscImage(path)) return;
    LoadText(IDS_CD_IMAGE_FAILED, filter);
    MessageBoxA(IsWindow(window) ? window : nullptr, filter, caption, MB_ICONWARNING);
}
