// The context menu of the CD player window, and the dialog that puts an image into the disc drive.
#include "cd/menu_win.h"
#include "cd/player_state_win.h"

#include <commdlg.h>
#include <cstring>

#include "core/commands.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/layouts_win.h"
#include "ui/menu_win.h"

// Only where the drive in use plays images.
static void AppendDiscImage(HMENU menu, char drive) {
    char image[MAX_PATH] = "";
    if (DiscImageDrive() != drive) return;
    AppendMenuEntry(menu, kPlayerDiscImage, IDS_CD_MENU_IMAGE);
    AppendMenuEntry(menu, kPlayerEjectImage, IDS_CD_MENU_EJECT_IMAGE);
    if (!GetDiscImage(image, sizeof image) || !image[0])
        EnableMenuItem(menu, kPlayerEjectImage, MF_BYCOMMAND | MF_GRAYED);
}

void ShowPlayerMenu(HWND window, POINT at, const CdSnapshot& now, const CDInfoRecord& record) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendMenuEntry(menu, kPlayerConfigure, IDS_CD_ENGINE_CONFIGURE);
    AppendMenuSeparator(menu);
    AppendCdDrives(menu, kPlayerDriveFirst, now.drive);
    AppendDiscImage(menu, now.drive);
    AppendMenuSeparator(menu);
    AppendLayoutsMenu(menu);
    if (record.trackCount) AppendMenuSeparator(menu);
    AppendCdTracks(menu, kPlayerTrackFirst + 1, record, now.busy ? now.track : 0);
    ShowMenu(menu, window, at, TPM_CENTERALIGN | TPM_VCENTERALIGN);
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
