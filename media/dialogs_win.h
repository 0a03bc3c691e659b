// The media player's dialogs. All are modal to owner, and the owner's timer goes on behind them.
#pragma once
#include "core/platform.h"
#include "media/playlist.h"

// The open dialog of the player; 1 and the path when a file was chosen.
int AskMediaFile(HWND owner, std::string* path);
int AskSavePath(HWND owner, const Playlist& list, std::string* path);
// Asks, writes, and gives the list its new name; entries relative to another folder become whole.
// The user is told when it can't be written.
int SavePlaylistByDialog(HWND owner, Playlist* list);
// How many entries were added at index (below 0: at the end). What had to be left out the user is
// told.
int AddFilesByDialog(HWND owner, Playlist* list, int index);
int AddFolderByDialog(HWND owner, Playlist* list, int index);
// The editor works on a copy; 1 when *list was changed by OK. When the owner goes down meanwhile
// it is as if cancelled.
int EditPlaylist(HWND owner, Playlist* list);
// 1 and the path when the user chose one to play.
int ShowHistory(HWND owner, std::string* path);
