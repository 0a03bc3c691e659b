// See cue_sheet.h.
#include "archive/cue_sheet.h"

#include "archive/ini.h"
#include "core/text.h"

#include <algorithm>
#include <cstdlib>

// Remarks of our own: the identity as the drive told it, and the lead-out in frames (0: the record
// had no timing, and the marks say nothing).
constexpr char kIdentityRemark[] = "TONVISTA_IDENTITY";
constexpr char kLeadOutRemark[] = "TONVISTA_LEADOUT";

// ---- reading

uint32_t CueSheetIdentity(const CueTexts& texts) {
    uint32_t identity;
    ParseIniName(FindCueRemark(texts.disc, kIdentityRemark), &identity);
    return identity;
}

// With a last file of unknown length the rest of the disc can still be laid out, as if it ended
// with its last mark. 0 when another one is unknown.
static int FillLengths(CueSheet* sheet, std::span<const CueFileLength> lengths,
                       std::vector<ImageFile>* files) {
    if (lengths.size() != sheet->files.size()) return 0;
    for (size_t i = 0; i < lengths.size(); ++i) {
        files->push_back(lengths[i].part);
        if (lengths[i].isKnown) continue;
        if (i + 1 < lengths.size()) return 0;
        uint64_t frames = 0;
        for (CueTrack& track : sheet->tracks) {
            if (track.start.file != static_cast<int>(i)) continue;
            frames = std::max<uint64_t>(frames, track.start.frame);
            // Sound or not makes no difference to where a track begins.
            track.audio = 1;
            track.sectorBytes = kAudioSectorBytes;
        }
        sheet->files[i].wave = 1;
        files->back() = {0, (frames + 1) * kAudioSectorBytes};
    }
    return 1;
}

// 0 when the starts can't be told.
static int ReadStarts(CueSheet sheet, std::span<const CueFileLength> lengths, uint32_t leadOut,
                      CDInfoRecord* record) {
    std::vector<ImageFile> files;
    Disc disc;
    if (!FillLengths(&sheet, lengths, &files) || !BuildDisc(sheet, files, &disc)) return 0;
    for (size_t i = 0; i < disc.tracks.size(); ++i)
        record->trackStarts[i] = disc.tracks[i].start;
    const uint32_t last = disc.tracks.back().start;
    const uint32_t end = lengths.back().isKnown ? disc.end : last;
    record->trackStarts[disc.tracks.size()] =
        leadOut >= last && leadOut <= kMaxDiscFrames ? leadOut : end;
    return 1;
}

static int ReadIdentity(const CueSheet& sheet, const CueTexts& texts,
                        std::span<const CueFileLength> lengths, CDInfoRecord* record) {
    const std::string told(FindCueRemark(texts.disc, kLeadOutRemark));
    const auto leadOut = static_cast<uint32_t>(std::strtoul(told.c_str(), nullptr, 10));
    uint32_t identity = CueSheetIdentity(texts);
    const int saysNoTiming = identity && !leadOut;
    const int isTimed = !saysNoTiming && ReadStarts(sheet, lengths, leadOut, record);
    const int hasEnd = isTimed && (leadOut || lengths.back().isKnown);
    // The classic sum of a short disc counts its length, too.
    if (!identity && isTimed && (hasEnd || record->trackCount >= 3))
        identity = ClassicIdentity(*record);
    SetIdentity(record, identity);
    return identity != 0;
}

static void ReadName(const std::string& text, const char* usual, int utf8, const TextCodec& codec,
                     char (&to)[kTextSize]) {
    TakeText(text, utf8, codec, to, kTextSize);
    if (!to[0]) CopyText(to, usual);
}

int ReadCueDisc(const CueSheet& sheet, const CueTexts& texts,
                std::span<const CueFileLength> lengths, int utf8, const TextCodec& codec,
                CDInfoRecord* record) {
    if (sheet.tracks.empty() || texts.tracks.size() != sheet.tracks.size()) return 0;
    record->trackCount = static_cast<uint16_t>(sheet.tracks.size());
    if (!ReadIdentity(sheet, texts, lengths, record)) return 0;
    ReadName(texts.disc.title, kUnknownTitle, utf8, codec, record->title);
    TakeText(FindCueRemark(texts.disc, "COMMENT"), utf8, codec, record->comment,
             kMaxStoredComment + 1);
    char artist[kTextSize];
    ReadName(texts.disc.performer, kDefaultArtist, utf8, codec, artist);
    for (size_t i = 0; i < record->trackCount; ++i) {
        const CueText& track = texts.tracks[i];
        char usual[kTextSize];
        DefaultTrackTitle(usual, static_cast<uint32_t>(i + 1));
        ReadName(track.title, usual, utf8, codec, record->trackTitles[i]);
        ReadName(track.performer, artist, utf8, codec, record->trackArtists[i]);
        TakeText(FindCueRemark(track, "COMMENT"), utf8, codec, record->trackComments[i],
                 kMaxStoredComment + 1);
    }
    CompleteRecord(record);
    return 1;
}

// ---- writing

template <class... Args> static void Append(std::string* to, const char* format, Args... args) {
    char text[64];
    FormatText(text, sizeof text, format, args...);
    *to += text;
}

// A sheet has no way to write a quote within quotes; other readers end the text there.
static void AppendText(std::string* to, const char* line, const char* text,
                       const TextCodec& codec) {
    if (!text[0]) return;
    std::string given = GiveText(text, codec);
    std::replace(given.begin(), given.end(), '"', '\'');
    *to += line;
    *to += " \"" + given + "\"\r\n";
}

static void AppendTrack(std::string* to, const CDInfoRecord& record, size_t track, uint32_t frames,
                        const TextCodec& codec) {
    Append(to, "  TRACK %02d AUDIO\r\n", static_cast<int>(track + 1));
    AppendText(to, "    TITLE", record.trackTitles[track], codec);
    AppendText(to, "    PERFORMER", record.trackArtists[track], codec);
    AppendText(to, "    REM COMMENT", record.trackComments[track], codec);
    Append(to, "    INDEX 01 %02u:%02u:%02u\r\n",
           static_cast<unsigned>(frames / kFramesPerSecond / 60),
           static_cast<unsigned>(frames / kFramesPerSecond % 60),
           static_cast<unsigned>(frames % kFramesPerSecond));
}

std::string WriteCueSheet(const CDInfoRecord& record, const std::string& soundFile,
                          const TextCodec& codec) {
    const size_t all = std::min<size_t>(record.trackCount, kMaxTracks);
    const size_t count = std::min(all, kMaxCueTracks);
    const int isTimed = HasTiming(record, kLeadInFrames);
    std::string text;
    Append(&text, "REM %s %08X\r\n", kIdentityRemark, static_cast<unsigned>(record.identity));
    Append(&text, "REM %s %u\r\n", kLeadOutRemark,
           static_cast<unsigned>(isTimed ? record.trackStarts[count] : 0));
    AppendText(&text, "REM COMMENT", record.comment, codec);
    AppendText(&text, "PERFORMER",
               IsSingleArtist(record) ? record.trackArtists[0] : kVariousArtists, codec);
    AppendText(&text, "TITLE", record.title, codec);
    text += "FILE \"" + GiveText(soundFile.c_str(), codec) + "\" WAVE\r\n";
    for (size_t i = 0; i < count; ++i)
        AppendTrack(&text, record, i, isTimed ? record.trackStarts[i] - kLeadInFrames : 0, codec);
    return text;
}
