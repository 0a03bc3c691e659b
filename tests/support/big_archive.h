// Databases of any size in an instant, for tests and benchmarks: the platform's own structured
// storage takes minutes for tens of thousands of discs, so the file is laid out here, in one pass.
//
//   const std::vector<uint8_t> file = BigArchive(10000); // 0.2 s; write it as CDInfo.CDP
//   auto record = BigRecord(n); // disc n of it, 1 to 10000
//
// The same number always gives the same bytes.
#pragma once
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

// ---- the compound file

struct BigFile {
    static constexpr size_t kSector = 512, kMiniSector = 64, kSmall = 4096;
    static constexpr uint32_t kEnd = 0xFFFFFFFEu, kFree = 0xFFFFFFFFu;
    static constexpr uint32_t kFatSector = 0xFFFFFFFDu, kDifatSector = 0xFFFFFFFCu;
    struct Stream {
        std::string name;
        std::vector<uint8_t> bytes;
        uint32_t start = kEnd;
        uint32_t sibling[2] = {kFree, kFree};
        int red = 0;
    };
    std::vector<Stream> streams; // by name, all names of one length
    std::vector<uint8_t> sectors, mini;
    std::vector<uint32_t> fat, miniFat;

    // Appends bytes as a chain and gives its first link.
    static uint32_t Chain(const std::vector<uint8_t>& bytes, size_t size, std::vector<uint8_t>* to,
                          std::vector<uint32_t>* table) {
        if (bytes.empty()) return kEnd;
        const auto first = static_cast<uint32_t>(table->size());
        to->insert(to->end(), bytes.begin(), bytes.end());
        to->resize((to->size() + size - 1) / size * size);
        while (table->size() * size < to->size())
            table->push_back(static_cast<uint32_t>(table->size() + 1));
        table->back() = kEnd;
        return first;
    }
    uint32_t Put(const std::vector<uint8_t>& bytes) {
        return Chain(bytes, kSector, &sectors, &fat);
    }
    static void Word(std::vector<uint8_t>* to, uint32_t value, size_t width = 4) {
        for (size_t i = 0; i < width; ++i)
            to->push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    static std::vector<uint8_t> Table(const std::vector<uint32_t>& entries) {
        std::vector<uint8_t> bytes;
        for (const uint32_t entry : entries)
            Word(&bytes, entry);
        bytes.resize((bytes.size() + kSector - 1) / kSector * kSector, 0xFF);
        return bytes;
    }
    // A balanced tree over streams from..to; directory entry i + 1 is stream i. All its levels but
    // the last are full, so the last one is red and the others black.
    uint32_t Tree(size_t from, size_t to, int levels) {
        if (from == to) return kFree;
        const size_t middle = from + (to - from) / 2;
        streams[middle].red = levels == 1;
        streams[middle].sibling[0] = Tree(from, middle, levels - 1);
        streams[middle].sibling[1] = Tree(middle + 1, to, levels - 1);
        return static_cast<uint32_t>(middle + 1);
    }
    static void Entry(std::vector<uint8_t>* to, const std::string& name, uint8_t type, int red,
                      const uint32_t (&links)[3], uint32_t start, size_t size) {
        static constexpr uint8_t kClass[] = {0x70, 0x06, 0x9D, 0xC0, 0x7E, 0xBA, 0xD0, 0x11,
                                             0xAA, 0x01, 0x00, 0xAA, 0x00, 0xBF, 0x03, 0x89};
        const size_t from = to->size();
        for (const char c : name)
            Word(to, static_cast<uint8_t>(c), 2);
        to->resize(from + 64);
        Word(to, static_cast<uint32_t>(2 * (name.size() + 1)), 2);
        Word(to, type, 1);
        Word(to, red ? 0 : 1, 1);
        for (const uint32_t link : links)
            Word(to, link);
        if (type == 5) to->insert(to->end(), kClass, kClass + 16);
        to->resize(from + 116);
        Word(to, start);
        Word(to, static_cast<uint32_t>(size));
        to->resize(from + 128);
    }
    std::vector<uint8_t> Directory(uint32_t miniStart) {
        int levels = 0;
        while (streams.size() >> levels)
            ++levels;
        const uint32_t top = Tree(0, streams.size(), levels);
        std::vector<uint8_t> bytes;
        Entry(&bytes, "Root Entry", 5, 0, {kFree, kFree, top}, miniStart, mini.size());
        for (const Stream& s : streams)
            Entry(&bytes, s.name, 2, s.red, {s.sibling[0], s.sibling[1], kFree}, s.start,
                  s.bytes.size());
        while (bytes.size() % kSector)
            Entry(&bytes, "", 0, 0, {kFree, kFree, kFree}, 0, 0);
        return bytes;
    }
    std::vector<uint8_t> Image() {
        std::sort(streams.begin(), streams.end(), [](auto& a, auto& b) { return a.name < b.name; });
        for (Stream& s : streams)
            s.start = s.bytes.size() < kSmall ? Chain(s.bytes, kMiniSector, &mini, &miniFat)
                                              : Put(s.bytes);
        const uint32_t miniStart = Put(mini);
        const uint32_t directory = Put(Directory(miniStart));
        const auto miniTable = Table(miniFat);
        const uint32_t miniTableStart = Put(miniTable);
        // The table of sectors lists its own sectors, too.
        size_t own = 0, more = 0;
        for (size_t before = 1; before != own + more;) {
            before = own + more;
            own = (fat.size() + before) / 128 + 1;
            more = own > 109 ? (own - 109 + 126) / 127 : 0;
        }
        const auto fatStart = static_cast<uint32_t>(fat.size());
        const auto moreStart = static_cast<uint32_t>(fatStart + own);
        fat.insert(fat.end(), own, uint32_t{kFatSector});
        fat.insert(fat.end(), more, uint32_t{kDifatSector});
        std::vector<uint8_t> head = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
        head.resize(24);
        for (const uint32_t value : {0x3Eu, 3u, 0xFFFEu, 9u, 6u})
            Word(&head, value, 2);
        head.resize(44);
        for (const uint32_t value :
             {static_cast<uint32_t>(own), directory, 0u, uint32_t{kSmall}, miniTableStart,
              static_cast<uint32_t>(miniTable.size() / kSector), more ? moreStart : kEnd,
              static_cast<uint32_t>(more)})
            Word(&head, value);
        std::vector<uint8_t> difat;
        for (size_t i = 0; i < own; ++i)
            Word(i < 109 ? &head : &difat, static_cast<uint32_t>(fatStart + i));
        head.resize(kSector, 0xFF);
        std::vector<uint8_t> tail = Table(fat);
        tail.resize(own * kSector, 0xFF);
        for (size_t i = 0; i < more; ++i) {
            const size_t from = i * 127 * 4, to = std::min(difat.size(), from + 127 * 4);
            std::vector<uint8_t> sector(difat.begin() + static_cast<ptrdiff_t>(from),
                                        difat.begin() + static_cast<ptrdiff_t>(to));
            sector.resize(127 * 4, 0xFF);
            Word(&sector, i + 1 < more ? static_cast<uint32_t>(moreStart + i + 1) : kEnd);
            tail.insert(tail.end(), sector.begin(), sector.end());
        }
        head.insert(head.end(), sectors.begin(), sectors.end());
        head.insert(head.end(), tail.begin(), tail.end());
        return head;
    }
};

inline std::vector<uint8_t> BigArchive(uint32_t discs, uint16_t tracks = 12) {
    BigFile file;
    std::vector<IndexPair> pairs = {{0, 0}};
    const auto packed = std::make_unique<uint8_t[][kMaxPackedEntry]>(1);
    for (uint32_t n = 1; n <= discs; ++n) {
        const auto record = BigRecord(n, tracks);
        size_t length;
        PackRecord(*record, packed[0], &length);
        char name[kEntryNameSize];
        EntryName(record->identity, name);
        file.streams.push_back({name, {packed[0], packed[0] + length}});
        pairs.push_back({record->identity, record->identity});
    }
    file.streams.push_back({kIndexName, PackIndex(pairs)});
    return file.Image();
}
