// Discs for the tests of the exchange forms: made of a seed, so that many differ in everything.
#pragma once
#include "archive/exchange.h"
#include "core/text.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <random>

using RecordPointer = std::unique_ptr<CDInfoRecord>;

// A disc as the database gives it back: timing, artists, titles, no comments.
inline RecordPointer MakeDisc(uint32_t identity, uint16_t tracks, const char* title = "A title",
                              const char* artist = "Somebody") {
    auto record = std::make_unique<CDInfoRecord>();
    record->trackCount = tracks;
    CopyText(record->title, title);
    for (uint32_t i = 0; i <= tracks; ++i)
        record->trackStarts[i] = 150 + i * 15000;
    for (uint32_t i = 0; i < tracks; ++i) {
        CopyText(record->trackArtists[i], artist);
        DefaultTrackTitle(record->trackTitles[i], i + 1);
    }
    SetIdentity(record.get(), identity);
    CompleteRecord(record.get());
    return record;
}

// Texts of any length with all that means something in one of the forms, but quotes and blanks at
// the ends, which some can't carry.
inline void FillText(std::mt19937& random, char* text, size_t size, const char* usual) {
    static const char* const kPieces[] = {"a", "Z", "\\", "\\n", "=",   ";", "[",  "]",
                                          "#", "'", " x", "/",   " /z", ",", "%s", "\xE9"};
    if (random() % 8 == 0) return CopyText(text, size, usual);
    text[0] = 0;
    for (size_t n = 1 + random() % size; n; --n) {
        const char* piece = kPieces[random() % (sizeof kPieces / sizeof *kPieces)];
        if (std::strlen(text) + std::strlen(piece) < size) AppendText(text, size, piece);
    }
    TrimText(text, size);
    if (!text[0]) CopyText(text, size, usual);
}

inline RecordPointer RandomDisc(uint32_t seed, uint16_t maxTracks) {
    std::mt19937 random(seed);
    const auto tracks = static_cast<uint16_t>(1 + random() % maxTracks);
    auto record = MakeDisc(random() | 1, tracks);
    FillText(random, record->title, kTextSize, kUnknownTitle);
    FillText(random, record->comment, kCommentSize - 1, "");
    for (uint32_t i = 0; i < tracks; ++i) {
        char usual[kTextSize];
        DefaultTrackTitle(usual, i + 1);
        if (seed % 2 || !i) FillText(random, record->trackArtists[i], kTextSize, kDefaultArtist);
        if (seed % 2 == 0) CopyText(record->trackArtists[i], record->trackArtists[0]);
        FillText(random, record->trackTitles[i], kTextSize, usual);
        FillText(random, record->trackComments[i], kCommentSize - 1, "");
        record->trackStarts[i + 1] = record->trackStarts[i] + 1 + random() % 6000;
    }
    if (seed % 3) {
        record->programCount = static_cast<uint16_t>(1 + random() % kMaxSegments);
        for (uint32_t i = 0; i < record->programCount; ++i)
            record->program[i] = WholeTrackSegment(*record, 1 + random() % tracks);
    }
    record->revision = static_cast<uint16_t>(random());
    CompleteRecord(record.get());
    return record;
}

// What an entry would hold of the record, identity included; without the program and the revision
// on demand. So records are compared as a user would find them again.
inline std::string PackedDisc(const CDInfoRecord& record, int program = 1) {
    auto copy = std::make_unique<CDInfoRecord>(record);
    if (!program) copy->programCount = copy->revision = 0;
    auto buffer = std::make_unique<uint8_t[][kMaxPackedEntry]>(1);
    size_t length = 0;
    PackRecord(*copy, buffer[0], &length);
    return std::string(copy->identityText) + copy->discArtist +
           std::string(reinterpret_cast<const char*>(buffer[0]), length);
}
