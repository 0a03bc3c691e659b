// See icon_menu_win.h. Transport and modes are called as the CD player's buttons.
#include "cd/icon_menu_win.h"

#include "cd/icon_win.h"
#include "cd/menu_win.h"
#include "cd/player_layout.h"
#include "cd/player_text.h"
#include "cdinfo/program.h"
#include "resources/ids.h"
#include "ui/menu_win.h"

#include <algorithm>

static const struct {
    UINT id;
    int label; // the player's button
    uint32_t flag;
} kModes[] = {{kCdIconRepeat, kPlayerRepeat, kPlayRepeat},
              {kCdIconRandom, kPlayerRandom, kPlayRandom},
              {kCdIconProgram, kPlayerProgram, kPlayProgrammed},
              {kCdIconIntro, kPlayerIntro, kPlayIntro}};

uint32_t CdIconMode(UINT id) {
    for (const auto& mode : kModes)
        if (mode.id == id) return mode.flag;
    return 0;
}

static void AppendLabel(HMENU menu, UINT id, int button, int checked = 0) {
    AppendMenuEntry(menu, id, static_cast<UINT>(IDS_CD_LABELS + button - kPlayerFirst), checked);
}

static void AppendProgram(HMENU menu, const CDInfoRecord& record, int current) {
    const int count = std::min<int>(record.programCount, kMaxSegments);
    for (int i = 0; i < count; ++i) {
        char text[kSegmentTextSize], shown[2 * kSegmentTextSize];
        SegmentText(record, record.program[i], text, sizeof text);
        MenuText(shown, sizeof shown, text);
        AppendMenuText(menu, static_cast<UINT>(kCdIconEntryFirst + i), shown, i == current);
    }
}

static void AppendTransport(HMENU menu, const CdSnapshot& now) {
    if (now.busy) {
        AppendLabel(menu, kCdIconStop, kPlayerStop);
        BeginMenuColumn(menu);
        AppendLabel(menu, kCdIconPause, kPlayerPause, now.paused);
        AppendLabel(menu, kCdIconForward, kPlayerForward);
        AppendLabel(menu, kCdIconBack, kPlayerBack);
    } else {
        AppendLabel(menu, kCdIconPlay, kPlayerPlay);
        BeginMenuColumn(menu);
        AppendLabel(menu, kCdIconEject, kPlayerEject);
    }
}

void ShowCdIconMenu(HWND window) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    CdSnapshot now;
    CDInfoRecord record;
    if (!GetCdSnapshot(&now, &record)) record.trackCount = record.programCount = 0;
    if (now.playFlags & kPlayProgrammed)
        AppendProgram(menu, record, now.listIndex);
    else
        AppendCdTracks(menu, kCdIconEntryFirst, record, now.busy ? now.track : 0);
    FoldMenu(menu);
    AppendTransport(menu, now);
    AppendMenuSeparator(menu);
    for (const auto& mode : kModes)
        AppendLabel(menu, mode.id, mode.label, (now.playFlags & mode.flag) != 0);
    AppendMenuSeparator(menu);
    AppendLabel(menu, kCdIconInfo, kPlayerInfo);
    AppendMenuEntry(menu, kCdIconConfigure, IDS_CD_ENGINE_CONFIGURE);
    AppendCdDrives(menu, kCdIconDriveFirst, now.drive);
    ShowMenuAtCursor(menu, window);
}
