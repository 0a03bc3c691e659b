// The few things that the database does to files, in one table, so that a test can stop or fail
// any of them. Paths are full paths of 16-bit characters; every call opens what it needs and
// leaves nothing open, except a held file.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

enum FileResult {
    kFileOk = 0,
    kFileMissing, // no such file or folder
    kFileBusy,    // somebody has it open in a way that excludes us
    kFileDenied,  // no rights, or write-protected
    kFileFailed,  // read or write error, disk full, too large: anything else
};

// Larger files are not read: they would not fit twice into a 32-bit process.
constexpr uint64_t kMaxFileSize = 256u << 20;

struct FileLayer {
    // The whole file; at most kMaxFileSize bytes.
    FileResult (*read)(const wchar_t* path, std::vector<uint8_t>* bytes);
    // Creates or overwrites. After a failure part of it may stand there.
    FileResult (*write)(const wchar_t* path, std::span<const uint8_t> bytes);
    // Returns when the file's bytes are on the disk.
    FileResult (*flush)(const wchar_t* path);
    FileResult (*size)(const wchar_t* path, uint64_t* bytes);
    // `path` becomes what `replacement` was, and `backup` what `path` was. A crash may leave any
    // of the steps between: `path` still there, `path` missing beside both others, `path` new.
    FileResult (*replace)(const wchar_t* path, const wchar_t* replacement, const wchar_t* backup);
    // Never over an existing file (kFileFailed).
    FileResult (*move)(const wchar_t* from, const wchar_t* to);
    FileResult (*remove)(const wchar_t* path);
    // The one lock of a path among all processes of the machine; kFileBusy when it can't be had
    // at once, or when this thread has it already. It ends with its owner, thread or process.
    FileResult (*lock)(const wchar_t* path, void** lock);
    void (*unlock)(void* lock);
    // Keeps others from writing to the file until it is let go, at the latest with the lock;
    // replace and move still work.
    FileResult (*hold)(void* lock, const wchar_t* path);
    void (*letGo)(void* lock);
};

const FileLayer& SystemFiles();

// The whole file, which nobody else may have open. *isOpen tells a file that could not be opened
// from one that could not be read.
FileResult ReadUnshared(const wchar_t* path, std::vector<uint8_t>* bytes, int* isOpen);
