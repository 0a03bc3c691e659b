// The command line: switches and a media file name, read word by word.
#pragma once
#include <cstdint>

struct StartRequest {
    uint32_t PlayRequested;
    char PlayDriveLetter; // '-' leaves the choice to the engine
    uint32_t PPlay;       // play without showing the user interface
    uint32_t TargetGiven;
    char TargetPath[260];
    uint32_t InstallRequested;
    uint32_t InstallUIRequested;
    uint32_t UninstallRequested;
    uint32_t RegisterShellRequested;
    uint32_t ClaimDefaultCDPlayer;    // 1 unless "/nodefcd"
    uint32_t ClaimDefaultMediaPlayer; // 1 unless "/nodefmed"
    uint32_t NoEngines;
    uint32_t MediaFileGiven;
    char MediaFilePath[260]; // lower-cased
};

// The request of an empty command line.
StartRequest EmptyStartRequest();

// Reads words[0..count); words may be of any length. Null words are skipped.
void ParseWords(int count, const char* const* words, StartRequest* request);

// The shell puts a file's name behind the program's as it is, so that one with blanks comes in
// several words. Where words in a row, joined by blanks, name a media file that Exists, it is the
// one that is meant; the longest such row counts.
void JoinMediaWords(int count, const char* const* words, int (*Exists)(const char* path),
                    StartRequest* request);

// "Feb  4 2006" -> 2006 and 204 (month * 100 + day). Anything that is no such date gives 0 and 0.
void ParseBuildDate(const char* date, uint16_t* year, uint16_t* monthDay);
