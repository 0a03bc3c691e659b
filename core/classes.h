// What the shell opens files and discs with: default values of keys below HKEY_CLASSES_ROOT. They
// are written for the machine, or, where that is refused, into the user's own classes, which count
// before the machine's.
#pragma once
#include <cstdint>

// 1 when it was written at either place.
int WriteClass(const char* key, const char* text);
// The user's, else the machine's, else an empty text.
void ReadClass(const char* key, char* text, uint32_t size);
// A key of our own with all that is below it, at both places.
void DeleteClass(const char* key);

// ---- entries that other programs have, too

struct ClassOwner {
    int (*IsOurs)(const char* text, const char* program); // ignores what it has no use for
    const char* program;                                  // full path of our executable
};
// WriteClass that remembers beside the value what stood there, unless that was ours.
int ClaimClass(const char* key, const char* text, const ClassOwner& owner);
// Where it is ours it becomes `text` (null: it goes), at either place.
void ReplaceOwnClass(const char* key, const char* text, const ClassOwner& owner);
// Where it is ours it becomes what was remembered, or goes, with the keys that are empty then. What
// another program has put there since stays.
void GiveBackClass(const char* key, const ClassOwner& owner);
