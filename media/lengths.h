// What the playlist's dialogs show of lengths and names, and what a file dialog's answer holds.
#pragma once
#include "media/playlist.h"

// "PlayList: 04:05", or in seconds below a minute.
std::string TotalText(long long seconds);
// "4:05"; "" when the length is not known yet (below 0), "-" for a file that has none.
std::string LengthText(double seconds);
// Whole seconds of a length as it was measured; 0 for what is no length.
int WholeSeconds(double seconds);

// File and folder of a path; the folder is "" when the path has none.
std::string FileOf(const std::string& path);
std::string FolderOf(const std::string& path);
std::string PlainTitle(const std::string& path); // the file without its extension
int EndsInPls(const std::string& name);

// The paths in a file dialog's answer, the folder without its last backslash. The answer may lack
// its NULs at the end.
std::vector<std::string> ChosenFiles(const char* answer, size_t size, std::string* folder);
