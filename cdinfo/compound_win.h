// Compound files in memory: a thin layer over the platform's structured storage. The bytes come
// from a file that was read whole and checked, and go back to one as a whole, so the platform
// never touches a file of ours.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "core/platform.h"
#include <objidl.h>

struct CompoundFile {
    ILockBytes* bytes = nullptr;
    IStorage* root = nullptr;
};

// Opens bytes that have passed the check for changes, taking them over; 1 or 0. Close it in every
// case.
int OpenCompound(std::vector<uint8_t>&& image, CompoundFile* file);
// A new, empty compound file, open for writing.
int CreateCompound(CompoundFile* file);
// Makes the platform write what it still keeps to itself into the bytes.
int FlushCompound(const CompoundFile& file);
// Ends the platform's use of it and, with `image`, gives the bytes back.
void CloseCompound(CompoundFile* file, std::vector<uint8_t>* image);

int SetCompoundClass(const CompoundFile& file, const CLSID& classId);

// Creates or replaces.
int WriteStream(const CompoundFile& file, const wchar_t* name, std::span<const uint8_t> bytes);
// Overwrites an existing stream from `offset` on and makes it end behind the last byte.
int RewriteStream(const CompoundFile& file, const wchar_t* name, uint32_t offset,
                  std::span<const uint8_t> bytes);
int RemoveStream(const CompoundFile& file, const wchar_t* name);
