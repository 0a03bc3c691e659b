// The media player's dialogs. All are modal to owner, and the owner's timer goes on behind them.
#pragma once
#include "core/platform.h"
#include "media/playlist.h"

// The open dialog of the player; 1 and the path when a file was chosen.
int AskMediaFile(HWND owner, std::string* path);
int AskSavePath(HWND owner, const Playlist& list, std::string* path);
int AddFilesByDialog(HWND owner, Playlist* list, int index);
int AddFolderByDialog(HWND owner, Playlist* list, int index);
// The editor works on a copy; 1 when *list was changed by OK.
int EditPlaylist(HWND owner, Playlist* list);
// 1 and the path when the user chose one to play.
int ShowHistory(HWND owner, std::string* path);
