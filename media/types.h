// The file types that the program plays, as the shell's registrations name them.
#pragma once
#include <cstddef>

constexpr int kMediaTypeCount = 4;
extern const char* const kMediaExtensions[kMediaTypeCount]; // ".mp3" and so on

// The class of an extension: "Tonvue.mp3".
void MediaClass(const char* extension, char* text, size_t size);
// Any class of ours, of whatever version.
int IsOwnClass(const char* text);
// "file,index", as the shell stores an icon's place; the file may be in quotes, the index missing.
void SplitIconPlace(const char* text, char* file, size_t size, int* index);
