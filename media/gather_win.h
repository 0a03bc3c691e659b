// Putting files into a playlist: from a folder, or as dropped on the editor. The disk is read on a
// thread of its own; while that takes long, a dialog shows how far it is and can break it off.
#pragma once
#include "core/platform.h"
#include "media/playlist.h"

// The songs of a folder. 0 when the user broke it off or the folder can't be read, which the user
// is told; *songs is then empty.
int GatherFolder(HWND owner, const std::string& folder, std::vector<std::string>* songs);
// What is there to play behind dropped paths: songs of folders, entries of playlists, all else as
// it is. 0 when the user broke it off.
int GatherDropped(HWND owner, const std::vector<std::string>& paths,
                  std::vector<std::string>* songs);
// Inserts at index, in order, and tells the user what had to be left out. How many.
int AddPaths(HWND owner, const std::vector<std::string>& paths, Playlist* list, int index);
// A box with a text and, where the text has a place for it, a number or a name.
void TellUser(HWND owner, UINT textId, int number = 0);
void TellUser(HWND owner, UINT textId, const std::string& name);
