// Databases of any size in an instant, for tests and benchmarks.
//
//   const std::vector<uint8_t> file = BigArchive(10000); // 0.2 s; write it as CDInfo.CDP
//   auto record = BigRecord(n); // disc n of it, 1 to 10000
//
// The same number always gives the same bytes.
#pragma once
#include "cdinfo/compound_write.h"
#include "cdinfo/index.h"
#include "cdinfo/record.h"
#include "core/bytes.h"
#include "core/text.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

// Bijective and never 0 for n > 0, without an order.
inline uint32_t BigIdentity(uint32_t n) {
    return n * 2654435761u;
}

inline std::string BigWords(uint32_t seed, uint32_t count) {
    static constexpr const char* kWords[] = {
        "Night", "river",    "Blue",  "of the", "Sun",     "winter", "House",
        "dance", "Silver",   "train", "and",    "Morning", "Road",   "lights",
        "for a", "Stranger", "Café",  "Rain",   "garden",  "slow",   "Machine",
        "Heart", "golden",   "Señor", "Wind",   "shadow",  "Königin"};
    std::string text;
    for (uint32_t i = 0; i < count; ++i) {
        seed = seed * 1664525u + 1013904223u;
        if (i) text += ' ';
        for (const char* c = kWords[(seed >> 8) % std::size(kWords)]; *c; ++c) {
            // Single-byte texts: the two bytes of an accented letter here are one there.
            if (static_cast<uint8_t>(*c) == 0xC3)
                text += static_cast<char>(*++c + 0x40);
            else
                text += *c;
        }
    }
    return text;
}

inline std::unique_ptr<CDInfoRecord> BigRecord(uint32_t n, uint16_t tracks = 12) {
    auto record = std::make_unique<CDInfoRecord>();
    SetIdentity(record.get(), BigIdentity(n));
    record->revision = static_cast<uint16_t>(n % 5);
    record->trackCount = tracks;
    FormatText(record->title, kTextSize, "%s %u", BigWords(n, 2 + n % 3).c_str(), n % 977);
    if (n % 3 == 0) CopyText(record->comment, BigWords(n * 7, 6).c_str());
    const int sampler = n % 10 == 9;
    uint32_t at = 150;
    for (uint32_t i = 0; i < tracks; ++i) {
        const uint32_t seed = n * 131 + i;
        // Some five discs an artist.
        FormatText(record->trackArtists[i], kTextSize, "The %s %u",
                   BigWords((sampler ? seed : n) % 6007, 2).c_str(), (sampler ? seed : n) % 6007);
        FormatText(record->trackTitles[i], kTextSize, "%s %u", BigWords(seed, 3).c_str(),
                   seed % 1009);
        if (seed % 40 == 0) CopyText(record->trackComments[i], BigWords(seed * 3, 4).c_str());
        record->trackStarts[i] = at;
        at += 75 * (120 + seed * 37 % 240);
    }
    record->trackStarts[tracks] = at;
    DeriveTrackSeconds(record.get());
    DeriveTotalTime(record.get());
    DeriveDiscArtist(record.get());
    return record;
}

inline std::vector<uint8_t> BigArchive(uint32_t discs, uint16_t tracks = 12) {
    static constexpr CompoundStamps kRoot = {{0x70, 0x06, 0x9D, 0xC0, 0x7E, 0xBA, 0xD0, 0x11, 0xAA,
                                              0x01, 0x00, 0xAA, 0x00, 0xBF, 0x03, 0x89},
                                             {}};
    std::vector<std::vector<uint8_t>> packed(discs + 1);
    std::vector<CompoundPart> parts;
    std::vector<IndexPair> pairs = {{0, 0}};
    const auto buffer = std::make_unique<uint8_t[][kMaxPackedEntry]>(1);
    for (uint32_t n = 0; n <= discs; ++n) {
        std::string name = kIndexName; // behind the last disc
        if (n < discs) {
            const auto record = BigRecord(n + 1, tracks);
            size_t length;
            PackRecord(*record, buffer[0], &length);
            packed[n].assign(buffer[0], buffer[0] + length);
            pairs.push_back({record->identity, record->identity});
            name = record->identityText;
        } else {
            packed[n] = PackIndex(pairs);
        }
        parts.push_back(MakePart(name, packed[n]));
    }
    std::vector<uint8_t> image;
    BuildCompound(kRoot, std::move(parts), &image);
    return image;
}
