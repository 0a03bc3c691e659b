// What installation knows of names and paths: the program's files, a folder as a user types it, the
// version as a text.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr size_t kPathSize = 260; // characters with the NUL, the longest that a path may have
constexpr const char* kProgramFile = "tonvista.exe";
// What stands beside it, each where the build has it.
constexpr int kLibraryCount = 3;
extern const char* const kLibraryFiles[kLibraryCount];
constexpr const char* kDatabaseFile = "CDInfo.CDP";
constexpr const char* kManualFolder = "manual";

// A page of this program's manual or its style sheet. Others in a folder of that name are not ours.
int IsManualFile(const char* name);
// The disc database, or what it makes beside itself. A copy that the user made is neither.
int IsDatabaseFile(const char* name);

// "C:\" and "C:\dir" from "C:\dir\name": without the last part. A root keeps its backslash.
void FolderOfPath(const char* path, char (&folder)[kPathSize]);
// 0 when it is too long; `path` is then empty.
int JoinPath(const char* folder, const char* name, char (&path)[kPathSize]);

// Begins with a drive's root or with a share.
int IsFullPath(const char* path);

// A folder as it was typed: without blanks and quotes around it, with backslashes, without one at
// its end. 0 when it is no full path ("C:\..." or "\\server\share...") that leaves room for the
// names below it.
int ReadFolder(const char* text, char (&folder)[kPathSize]);
// A folder that was chosen as the place for the program's: one of the program's own name in it.
void OwnFolderIn(const char* chosen, char (&folder)[kPathSize]);

// "1.0.0" from a version resource, or an empty text.
void ReadVersion(const uint8_t* resource, size_t size, char (&text)[32]);
