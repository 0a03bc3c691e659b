// Playlists in files: PLS through the profile functions, M3U as bytes. No window, no dialog.
#pragma once
#include "media/playlist.h"

// 0 when the file can't be opened or made.
int WritePlaylist(const Playlist& list, const std::string& path);
int ReadPlaylist(const std::string& path, Playlist* list);
// A playlist is read; any other file becomes the one entry of "Default.pls", written at once.
int OpenPlaylistFor(const std::string& path, Playlist* list);
// Songs of a folder, in the platform's order, inserted at index. How many; goes on while Progress
// (may be null) gives 1.
int AddFolder(const std::string& folder, Playlist* list, int index, int (*Progress)(void*),
              void* context);
