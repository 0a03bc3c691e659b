// Lengths of files, read one after the other on a thread of its own, which no dialog ever waits
// for: a file may take seconds, one on a lost network drive minutes.
#pragma once
#include "core/platform.h"

#include <string>
#include <vector>

struct LengthReader;
struct FileLength {
    std::string path;
    double seconds; // 0 for what can't be played
};

// `message` is posted to the window whenever lengths wait to be taken. Null without memory.
LengthReader* StartLengthReader(HWND window, UINT message);
// What is to be read from now on; files that waited before are forgotten.
void AskForLengths(LengthReader* reader, const std::vector<std::string>& paths);
std::vector<FileLength> TakeLengths(LengthReader* reader);
// The thread ends by itself after the file that it is reading. Null is allowed.
void EndLengthReader(LengthReader* reader);
