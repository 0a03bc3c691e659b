// Bitmap files are read by threads of their own, since a dead network path can hold one for
// minutes. Only ui/ appearance files and their tests include this.
//
// The table of what is being read is guarded by its user: "locked" means that the caller holds that
// lock. A thread that hangs is left to hang, one for each path and kMostReadings in all; the end of
// the program does not wait for it.
#pragma once
#include "ui/picture_win.h"

constexpr int kMostReadings = 8;

struct PictureReading {
    char path[MAX_PATH];
    HANDLE ended;  // event: the file is read, or is no bitmap
    DWORD started; // tick
    int running;   // its thread has not come back yet
    int waiting;   // callers that have begun it and not let go of it
    Picture* picture;
    void (*Arrived)(PictureReading* reading, Picture* picture);
};

// Seam for tests: how a file is read, and for how long one waits for it before going on without.
struct PictureReader {
    Picture* (*Read)(const char* path);
    DWORD waitMs;
};
extern PictureReader PictureFiles;

// Locked. The file's reading, which is a running one when there is one of that path. Null when too
// many hang or no thread can be had. Arrived is called on the reading thread, not locked, and has
// to call EndPictureReading.
PictureReading* BeginPictureReading(const char* path,
                                    void (*Arrived)(PictureReading* reading, Picture* picture));
// Not locked. Returns when the reading has ended or has taken longer than usual files do.
void AwaitPictureReading(const PictureReading& reading);
// Locked, by Arrived: the picture, null for none, goes to the ones who wait.
void EndPictureReading(PictureReading* reading, Picture* picture);
// Locked, once for each BeginPictureReading; `picture` may be used no more unless its users were
// counted up before.
void LetGoOfPictureReading(PictureReading* reading);
