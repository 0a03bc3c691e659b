// The check of compound files, on one built here by hand so that every field can be spoilt.
#include "cdinfo/compound.h"

#include <gtest/gtest.h>

#include <cstring>

using Bytes = std::vector<uint8_t>;
constexpr uint32_t kEnd = 0xFFFFFFFE, kFree = 0xFFFFFFFF, kFatMark = 0xFFFFFFFD;

// Sector 0 FAT, 1-2 directory, 3 mini FAT, 4-5 mini stream, 6-14 a large stream; the last is free.
constexpr size_t kFat = 512, kDirectory = 1024, kMiniFat = 2048;

static void Put(Bytes& file, size_t at, uint32_t value, size_t width = 4) {
    for (size_t i = 0; i < width; ++i)
        file[at + i] = static_cast<uint8_t>(value >> (8 * i));
}

static size_t EntryAt(int id) {
    return kDirectory + static_cast<size_t>(id) * 128;
}

static void PutEntry(Bytes& file, int id, const char* name, uint8_t type, uint32_t start,
                     uint32_t size) {
    const size_t at = EntryAt(id);
    for (size_t i = 0; name[i]; ++i)
        Put(file, at + 2 * i, static_cast<uint8_t>(name[i]), 2);
    Put(file, at + 64, static_cast<uint32_t>(2 * std::strlen(name) + 2), 2);
    file[at + 66] = type;
    for (const size_t link : {68, 72, 76})
        Put(file, at + link, kFree);
    Put(file, at + 116, start);
    Put(file, at + 120, size);
}

// "Mappings" at the top; to its left the shorter "Large", of which "Small" is to the right.
static Bytes MakeFile() {
    Bytes file(512 * 17);
    const uint8_t signature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    std::memcpy(file.data(), signature, sizeof signature);
    const uint32_t header[][3] = {{24, 0x3E, 2}, {26, 3, 2}, {28, 0xFFFE, 2}, {30, 9, 2},
                                  {32, 6, 2},    {44, 1, 4}, {48, 1, 4},      {56, 4096, 4},
                                  {60, 3, 4},    {64, 1, 4}, {68, kEnd, 4}};
    for (const auto& field : header)
        Put(file, field[0], field[1], field[2]);
    std::memset(file.data() + 76, 0xFF, 512 - 76);
    Put(file, 76, 0);
    std::memset(file.data() + kFat, 0xFF, 512);
    const uint32_t fat[] = {kFatMark, 2, kEnd, kEnd, 5, kEnd, 7, 8, 9, 10, 11, 12, 13, 14, kEnd};
    for (size_t i = 0; i < 15; ++i)
        Put(file, kFat + 4 * i, fat[i]);
    std::memset(file.data() + kMiniFat, 0xFF, 512);
    const uint32_t mini[] = {kEnd, 3, kFree, 4, kEnd};
    for (size_t i = 0; i < 5; ++i)
        Put(file, kMiniFat + 4 * i, mini[i]);
    PutEntry(file, 0, "Root Entry", 5, 4, 5 * 64);
    Put(file, EntryAt(0) + 76, 1);
    PutEntry(file, 1, "Mappings", 2, 0, 16);
    Put(file, EntryAt(1) + 68, 2);
    PutEntry(file, 2, "Large", 2, 6, 4500);
    Put(file, EntryAt(2) + 72, 3);
    PutEntry(file, 3, "Small", 2, 1, 150);
    return file;
}

static CompoundState Check(const Bytes& file) {
    CompoundView view;
    return CheckCompound(file, &view);
}

TEST(Compound, WhatIsNone) {
    EXPECT_EQ(kNotCompound, Check({}));
    EXPECT_EQ(kNotCompound, Check(Bytes(4096, 'x')));
    for (const size_t size : {7, 8, 512, 1535, 8703}) {
        Bytes file = MakeFile();
        file.resize(size);
        EXPECT_EQ(size < 8 ? kNotCompound : kCompoundDamaged, Check(file)) << size;
    }
}

TEST(Compound, EverySpoiltFieldIsSeen) {
    const struct {
        const char* what;
        size_t at;
        uint32_t value;
        size_t width;
        CompoundState state = kCompoundDamaged;
    } cases[] = {
        {"sector shift", 30, 12, 2},
        {"FAT larger than the file", 44, 0x7FFFFFFF, 4},
        {"mini FAT shared with the directory", 60, 1, 4},
        {"directory chain in a circle", kFat + 4 * 2, 1, 4},
        {"stream chain in a circle", kFat + 4 * 14, 6, 4},
        {"mini chain beyond the root's stream", kMiniFat + 4 * 4, 5, 4},
        {"root's stream too small", EntryAt(0) + 120, 4 * 64, 4},
        {"tree in a circle", EntryAt(3) + 68, 1, 4},
        {"name length", EntryAt(3) + 64, 66, 2},
        {"names out of order", EntryAt(3), 'K', 1},
        {"size beyond 4 GB", EntryAt(2) + 124, 1, 4},
        {"size beyond the chain", EntryAt(2) + 120, 9 * 512 + 1, 4},
        // Oddities of other makers that do no harm.
        {"a chain longer than its stream", EntryAt(2) + 120, 4097, 4, kCompoundGood},
        {"an entry that nobody points at", EntryAt(6) + 66, 2, 1, kCompoundGood},
    };
    for (const auto& c : cases) {
        Bytes file = MakeFile();
        Put(file, c.at, c.value, c.width);
        EXPECT_EQ(c.state, Check(file)) << c.what;
    }
}

// What a file laid out anew would lose makes it one that is not.
TEST(Compound, OnlyBareStreamsAreFlat) {
    const struct {
        size_t at;
        uint32_t value;
        size_t width;
        int isFlat;
    } cases[] = {
        {EntryAt(0) + 100, 1, 4, 1},  // a time of the root is carried over
        {EntryAt(2) + 80, 1, 4, 0},   // a class,
        {EntryAt(2) + 112, 1, 4, 0},  // a time of a stream
        {EntryAt(3) + 2, 0xE9, 2, 0}, // a name whose order is not known
        {EntryAt(3) + 66, 1, 1, 0},   // a storage
        {EntryAt(6) + 66, 2, 1, 0},   // an entry that nobody points at
    };
    for (const auto& c : cases) {
        Bytes file = MakeFile();
        Put(file, c.at, c.value, c.width);
        CompoundView view;
        ASSERT_EQ(kCompoundGood, CheckCompound(file, &view)) << c.at;
        EXPECT_EQ(c.isFlat, view.isFlat) << c.at;
    }
}
