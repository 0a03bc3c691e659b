// The packed entry: one variable-length byte string per disc, little-endian, nothing aligned.
//
//   u16 length of all; u8 + title; u8 tracks N; u8 segments P | 0x80; P * (u32 start, u32 stop);
//   N artist items; N title items; u8 extension level (2); comment item; N comment items;
//   u32 revision; N + 1 * u32 track start, the last one the lead-out.
//
// An item is a length byte and that many characters. Length 255 stands for the default text, and
// among the artists 254 for the artist of track 1. Entries of the earlier layout lack bit 7 in
// the segment count, hold one track number a segment and end after the titles.
//
// A comment of 255 characters would need the very length byte that means "none". It is written as
// that marker alone, and so reads back empty; its text is left out, since characters behind the
// marker would be taken for the items that follow, and the other comments would be lost with it.
#include "cdinfo/record.h"

#include <algorithm>
#include <cstring>

#include "core/bytes.h"
#include "core/text.h"

constexpr uint8_t kDefaultItem = 255;
constexpr uint8_t kFirstArtistItem = 254;
constexpr uint8_t kCurrentLayout = 0x80;
constexpr uint8_t kExtensionLevel = 2; // 1: comments; 2: revision and track starts

// ---- writing

static void WriteItem(ByteWriter& w, const char* text, size_t size) {
    const size_t length = strnlen(text, size);
    WriteU8(w, static_cast<uint8_t>(length));
    WriteBytes(w, text, length);
}

static void WriteComment(ByteWriter& w, const char (&comment)[kCommentSize]) {
    const size_t length = strnlen(comment, kCommentSize);
    if (length == 0 || length >= kDefaultItem)
        WriteU8(w, kDefaultItem);
    else
        WriteItem(w, comment, kCommentSize);
}

static void WriteArtists(ByteWriter& w, const CDInfoRecord& record) {
    for (size_t i = 0; i < record.trackCount; ++i) {
        const char* artist = record.trackArtists[i];
        if (SameText(artist, kDefaultArtist))
            WriteU8(w, kDefaultItem);
        else if (i > 0 && SameText(artist, record.trackArtists[0]))
            WriteU8(w, kFirstArtistItem);
        else
            WriteItem(w, artist, kTextSize);
    }
}

static void WriteTitles(ByteWriter& w, const CDInfoRecord& record) {
    for (size_t i = 0; i < record.trackCount; ++i) {
        char usual[kTextSize];
        DefaultTrackTitle(usual, static_cast<uint32_t>(i + 1));
        if (SameText(record.trackTitles[i], usual))
            WriteU8(w, kDefaultItem);
        else
            WriteItem(w, record.trackTitles[i], kTextSize);
    }
}

int PackRecord(const CDInfoRecord& record, uint8_t (&buffer)[kMaxPackedEntry], size_t* length) {
    *length = 0;
    std::memset(buffer, 0, sizeof buffer);
    if (record.trackCount > kMaxTracks || record.programCount > kMaxSegments) return 0;
    ByteWriter w{buffer};
    WriteU16(w, 0); // the length, known at the end
    WriteItem(w, record.title, kTextSize);
    WriteU8(w, static_cast<uint8_t>(record.trackCount));
    WriteU8(w, static_cast<uint8_t>(record.programCount | kCurrentLayout));
    for (size_t i = 0; i < record.programCount; ++i) {
        WriteU32(w, record.program[i].start);
        WriteU32(w, record.program[i].stop);
    }
    WriteArtists(w, record);
    WriteTitles(w, record);
    WriteU8(w, kExtensionLevel);
    WriteComment(w, record.comment);
    for (size_t i = 0; i < record.trackCount; ++i)
        WriteComment(w, record.trackComments[i]);
    WriteU32(w, record.revision);
    for (size_t i = 0; i <= record.trackCount; ++i)
        WriteU32(w, record.trackStarts[i]);
    if (w.failed) {
        std::memset(buffer, 0, sizeof buffer);
        return 0;
    }
    *length = w.at;
    ByteWriter head{buffer};
    WriteU16(head, static_cast<uint32_t>(w.at));
    return 1;
}

// ---- reading

struct Item {
    uint8_t length = 0;
    std::span<const uint8_t> text; // empty for a marker
    int whole = 0;                 // 0 when the entry ended within the item
};

// Lengths from `markers` on stand for something else and have no characters behind them.
constexpr unsigned kNoMarkers = 256;

static Item ReadItem(ByteReader& r, unsigned markers) {
    Item item;
    item.length = ReadU8(r);
    if (item.length < markers) item.text = ReadBytes(r, item.length);
    item.whole = !r.failed;
    return item;
}

static void KeepText(char* to, size_t size, std::span<const uint8_t> text) {
    const size_t count = std::min(text.size(), size - 1);
    std::memset(to, 0, size);
    if (count) std::memcpy(to, text.data(), count);
}

static void KeepName(char (&to)[kTextSize], std::span<const uint8_t> text) {
    KeepText(to, kTextSize, text);
    TrimText(to, kTextSize);
}

// Items of tracks that the record does not have are read past.
static void ReadArtists(ByteReader& r, size_t tracks, CDInfoRecord* record) {
    for (size_t i = 0; i < tracks; ++i) {
        const Item item = ReadItem(r, kFirstArtistItem);
        if (!item.whole || i >= record->trackCount) continue;
        if (item.length == kDefaultItem)
            CopyText(record->trackArtists[i], kDefaultArtist);
        else if (item.length == kFirstArtistItem)
            CopyText(record->trackArtists[i], record->trackArtists[0]);
        else
            KeepName(record->trackArtists[i], item.text);
    }
}

static void ReadTitles(ByteReader& r, size_t tracks, CDInfoRecord* record) {
    for (size_t i = 0; i < tracks; ++i) {
        const Item item = ReadItem(r, kDefaultItem);
        if (!item.whole || i >= record->trackCount) continue;
        if (item.length == kDefaultItem)
            DefaultTrackTitle(record->trackTitles[i], static_cast<uint32_t>(i + 1));
        else
            KeepName(record->trackTitles[i], item.text);
    }
}

static void ReadComments(ByteReader& r, size_t tracks, CDInfoRecord* record) {
    for (size_t i = 0; i <= tracks; ++i) { // the disc's own comes first
        const Item item = ReadItem(r, kDefaultItem);
        if (!item.whole || i > record->trackCount) continue;
        KeepText(i ? record->trackComments[i - 1] : record->comment, kCommentSize, item.text);
    }
}

static void ClearComments(CDInfoRecord* record) {
    record->comment[0] = 0;
    for (auto& comment : record->trackComments)
        comment[0] = 0;
}

static void ReadSegments(ByteReader& r, size_t segments, CDInfoRecord* record) {
    size_t kept = 0;
    for (size_t i = 0; i < segments; ++i) {
        const Tmsf start = ReadU32(r);
        const Tmsf stop = ReadU32(r);
        if (!r.failed && kept < kMaxSegments) record->program[kept++] = {start, stop};
    }
    record->programCount = static_cast<uint16_t>(kept);
}

static void ReadEarlierProgram(ByteReader& r, size_t segments, CDInfoRecord* record) {
    size_t kept = 0;
    for (size_t i = 0; i < segments; ++i) {
        const uint32_t track = ReadU8(r) + 1u;
        if (!r.failed && kept < kMaxSegments)
            record->program[kept++] = WholeTrackSegment(*record, track);
    }
    if (segments == 0) record->program[kept++] = {MakeTmsf(1, 0, 0, 1), MakeTmsf(2, 0, 0, 0)};
    record->programCount = static_cast<uint16_t>(kept);
}

// Half a table of starts would give wrong lengths, so it counts only as a whole.
static void ReadStarts(ByteReader& r, size_t tracks, CDInfoRecord* record) {
    if (record->trackStarts[0] || record->trackStarts[1]) return; // they came from the disc
    if (BytesLeft(r) < 4 * (tracks + 1)) return;
    for (size_t i = 0; i <= tracks; ++i)
        record->trackStarts[i] = ReadU32(r);
    DeriveTrackSeconds(record);
    DeriveTotalTime(record);
}

int UnpackEntry(std::span<const uint8_t> entry, CDInfoRecord* record) {
    ByteReader r{entry};
    ReadU16(r); // the length; what counts is how many bytes there are
    const Item title = ReadItem(r, kNoMarkers);
    const size_t tracks = ReadU8(r);
    if (r.failed || tracks > kMaxTracks) return 0;
    if (record->trackCount > kMaxTracks) return 0;
    if (record->trackCount == 0) record->trackCount = static_cast<uint16_t>(tracks);
    KeepName(record->title, title.text);

    const uint8_t program = ReadU8(r);
    const size_t segments = program & (kCurrentLayout - 1);
    const int earlier = !r.failed && !(program & kCurrentLayout);
    if (earlier)
        ReadEarlierProgram(r, segments, record);
    else
        ReadSegments(r, segments, record);
    ReadArtists(r, tracks, record);
    ReadTitles(r, tracks, record);
    DeriveDiscArtist(record);
    if (earlier) {
        ClearComments(record);
        return 1;
    }
    const uint8_t level = ReadU8(r);
    if (level >= 1) ReadComments(r, tracks, record);
    if (level < kExtensionLevel) return 1;
    const uint32_t revision = ReadU32(r);
    if (!r.failed) record->revision = static_cast<uint16_t>(revision);
    ReadStarts(r, tracks, record);
    return 1;
}
