// What the file types dialog changes: the association and the icon of one extension each.
#pragma once
#include "core/platform.h"

int IsMediaTypeOurs(const char* extension);
void ClaimMediaType(const char* extension);
// ".wav" goes back to the system's recorder whoever has it; of the others only what is ours goes.
void GiveUpMediaType(const char* extension);
// The icon of our class; the program's own where none was chosen.
void ReadMediaIcon(const char* extension, char (&file)[MAX_PATH], int* index);
void StoreMediaIcon(const char* extension, const char* file, int index);
