// A compound file that is only ever replaced as a whole. A change is written beside it, flushed,
// read back, and put in place by a replace that keeps the old file under a third name until the
// new one has been looked at. So whatever stops us, the old or the new file is whole; which one
// counts is decided when the file is next opened.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "cdinfo/compound.h"
#include "cdinfo/file_layer.h"

// Names beside the file, made by appending.
constexpr wchar_t kNewSuffix[] = L".store-new"; // the change, until it is in place
constexpr wchar_t kOldSuffix[] = L".store-old"; // what it replaces, until it has been checked
constexpr wchar_t kBadSuffix[] = L".bad";       // a damaged database; then ".bad2", ".bad3", ...

enum LoadState {
    kLoadGood,       // read whole and sound
    kLoadAbsent,     // there is no file
    kLoadForeign,    // read whole: no compound file
    kLoadDamaged,    // read whole: a compound file that is not sound
    kLoadUnreadable, // in use, no rights, or a read error: nothing is known about it
};

struct SafeFile {
    const FileLayer* files = nullptr;
    std::wstring path;
    int keepsBad = 0; // what is no sound compound file is moved aside, not overwritten
    LoadState state = kLoadUnreadable;
    std::vector<uint8_t> bytes; // when good
    CompoundView view;          // of them
    void* lock = nullptr;       // during a change
    std::vector<uint8_t> readBack;
};

// Reads and checks the file. A broken replace is settled on the way.
LoadState LoadSafeFile(SafeFile* file);

// Locks the path, settles left-overs, holds the file against other writers and loads it. 1 when
// a new image may take its place: the file is good or absent, or foreign or damaged in a place
// where that is allowed. End the change in every case.
int BeginChange(SafeFile* file);

// 1 when the image stands in the file's place. 0: the file is as it was, a bad one perhaps moved
// aside; or, after a replace that broke half-way and could not be taken back, the next opening
// puts the old or the new one in place, whole. The file's bytes and view stay valid.
int PutInPlace(SafeFile* file, std::span<const uint8_t> image);

void EndChange(SafeFile* file);
