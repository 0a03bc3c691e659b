// See menu_win.h.
#include "cd/menu_win.h"

#include "cd/player_text.h"
#include "cdinfo/editor.h"
#include "cdinfo/editor_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/menu_win.h"

void AppendCdDrives(HMENU menu, UINT firstId, char current) {
    char text[8];
    const HMENU drives = CreatePopupMenu();
    const uint32_t mask = CdDriveMask();
    for (UINT k = 0; k < 26; ++k) {
        if (!(mask >> k & 1)) continue;
        const char letter = static_cast<char>('A' + k);
        FormatText(text, sizeof text, "%c:", letter);
        AppendMenuText(drives, firstId + k, text, current == letter);
    }
    AppendSubmenu(menu, drives, IDS_CD_MENU_DRIVE);
}

void AppendCdTracks(HMENU menu, UINT firstId, const CDInfoRecord& record, int checked) {
    for (int track = 1; track <= record.trackCount; ++track) {
        char text[2 * kTextSize];
        MenuText(text, sizeof text, record.trackTitles[track - 1]);
        AppendMenuText(menu, firstId + static_cast<UINT>(track) - 1, text, track == checked);
    }
}

// The editor's record is its own: window and engine may be gone when it returns.
void EditDiscInformation(HWND window) {
    CDInfoRecord before, record;
    if (!GetCdRecord(&before)) return;
    record = before;
    if (!EditCdInformation(window, &record)) return;
    // The same disc may have been edited elsewhere meanwhile.
    CDInfoRecord now;
    if (GetCdRecord(&now) && now.identity == record.identity) {
        MergeEdit(before, record, &now);
        record = now;
    }
    SetCdRecord(record);
}
