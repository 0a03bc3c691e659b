// The context menu of the media player window: everything that has a button, what has none, and the
// entries of the playlist.
#include "media/player_state_win.h"

#include "resources/ids.h"
#include "ui/menu_win.h"

// In the menu's order; a line of zeros parts them.
static const struct {
    int id;
    UINT text;
    int MediaPlayer::*flag; // null: never checked
} kEntries[] = {{kMediaOpen, IDS_MEDIA_MENU_OPEN, nullptr},
                {kMediaSave, IDS_MEDIA_MENU_SAVE, nullptr},
                {kMediaEditor, IDS_MEDIA_MENU_EDITOR, nullptr},
                {kMediaHistory, IDS_MEDIA_MENU_HISTORY, nullptr},
                {},
                {kMediaPlay, IDS_MEDIA_MENU_PLAY, &MediaPlayer::playing},
                {kMediaPause, IDS_MEDIA_MENU_PAUSE, &MediaPlayer::paused},
                {kMediaStop, IDS_MEDIA_MENU_STOP, nullptr},
                {kMediaPrevious, IDS_MEDIA_MENU_PREVIOUS, nullptr},
                {kMediaNext, IDS_MEDIA_MENU_NEXT, nullptr},
                {kMediaRepeat, IDS_MEDIA_MENU_REPEAT, &MediaPlayer::Repeat},
                {kMediaRandom, IDS_MEDIA_MENU_RANDOM, &MediaPlayer::Random},
                {},
                {kMediaFileTypes, IDS_MEDIA_MENU_FILE_TYPES, nullptr},
                {kMediaTouchFiles, IDS_MEDIA_MENU_TOUCH_FILES, &MediaPlayer::TouchFiles},
                {kMediaPower, IDS_MEDIA_MENU_POWER, nullptr}};

void ShowMediaMenu(const MediaPlayer& player, LPARAM lParam) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    for (const auto& entry : kEntries)
        if (entry.id)
            AppendMenuEntry(menu, static_cast<UINT>(entry.id), entry.text,
                            entry.flag && player.*entry.flag);
        else
            AppendMenuSeparator(menu);
    const Playlist& list = player.list;
    if (!list.entries.empty()) AppendMenuSeparator(menu);
    for (size_t i = 0; i < list.entries.size() && i < kPlaylistMax; ++i)
        AppendMenuText(menu, static_cast<UINT>(kMediaEntryFirst + i),
                       MediaMenuText(static_cast<int>(i), list.entries[i]).c_str(),
                       i == list.position);
    ShowMenu(menu, player.window, ContextMenuPlace(player.window, lParam));
}
