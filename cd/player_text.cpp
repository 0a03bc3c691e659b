// See player_text.h.
#include "cd/player_text.h"

#include <algorithm>

#include "cd/player_layout.h"
#include "core/text.h"

void TrackTimeText(char* text, size_t size, uint32_t track, uint32_t elapsed, uint32_t length) {
    FormatText(text, size, "[%d] %02d:%02d / %02d:%02d", static_cast<int>(track),
               static_cast<int>(elapsed / 60), static_cast<int>(elapsed % 60),
               static_cast<int>(length / 60), static_cast<int>(length % 60));
}

void MinuteText(char* text, size_t size, uint32_t seconds) {
    FormatText(text, size, "%02d:%02d", static_cast<int>(seconds / 60),
               static_cast<int>(seconds % 60));
}

void DriveTimeText(char* text, size_t size, char drive, uint32_t total) {
    if (!total) {
        FormatText(text, size, "%c:", drive);
        return;
    }
    FormatText(text, size, "%c: %02d:%02d", drive, static_cast<int>(total / 60),
               static_cast<int>(total % 60));
}

// The sums are 16-bit and unsigned: no track (0) becomes a large index and so the last track; of
// an empty disc any index passes the cap, and those that no record holds become the first.
size_t PlayingIndex(uint16_t currentTrack, uint16_t trackCount) {
    const auto last = static_cast<uint16_t>(trackCount - 1);
    const uint16_t index = std::min(static_cast<uint16_t>(currentTrack - 1), last);
    return index < kMaxTracks ? index : 0;
}

PlayerTitles TitlesShown(const CDInfoRecord& record, int busy, uint16_t currentTrack) {
    if (busy) {
        const size_t index = PlayingIndex(currentTrack, record.trackCount);
        return {record.title, record.trackArtists[index], record.trackTitles[index]};
    }
    return {record.title, IsSingleArtist(record) ? record.trackArtists[0] : kVariousArtists, ""};
}

const char* BackTip(const CDInfoRecord& record, int busy, uint16_t currentTrack) {
    if (!busy) return nullptr;
    const uint16_t track = currentTrack > 1 ? currentTrack - 1 : record.trackCount;
    return record.trackTitles[PlayingIndex(track, record.trackCount)];
}

const char* ForwardTip(const CDInfoRecord& record, int busy, uint16_t currentTrack) {
    if (!busy) return nullptr;
    const uint16_t track = currentTrack < record.trackCount ? currentTrack + 1 : 1;
    return record.trackTitles[PlayingIndex(track, record.trackCount)];
}

void MenuText(char* text, size_t size, const char* title) {
    size_t used = 0;
    for (; *title; ++title) {
        const size_t width = *title == '&' ? 2 : 1;
        if (used + width >= size) break;
        const bool control = static_cast<unsigned char>(*title) < ' ';
        text[used++] = control ? ' ' : *title;
        if (width == 2) text[used++] = '&';
    }
    if (size) text[used] = 0;
}

uint16_t KeptPage(uint16_t offset, uint16_t trackCount) {
    return offset + 15 > trackCount - 1 ? 0 : offset;
}

int TrackButtonEnabled(int button, uint16_t offset, uint16_t trackCount) {
    return offset + button - 1 < trackCount;
}

int PreviousPageEnabled(uint16_t offset) {
    return offset > 0;
}

int NextPageEnabled(uint16_t offset, uint16_t trackCount) {
    return offset + kPlayerTrackButtons < trackCount;
}

int ButtonOfTrack(uint16_t track, uint16_t offset) {
    const int button = track - offset;
    return button >= 1 && button <= kPlayerTrackButtons ? button : 0;
}

Tmsf SegmentPoint(uint16_t track, uint32_t elapsed) {
    return MakeTmsf(track, elapsed / 60, elapsed % 60, 0);
}

int RecordedSegment(Tmsf start, Tmsf end, ProgramSegment* segment) {
    if (start == kNoSegmentStart || TmsfTrack(start) != TmsfTrack(end)) return 0;
    if (TmsfSeconds(end) <= TmsfSeconds(start)) return 0;
    segment->start = start;
    segment->stop = end;
    return 1;
}

int PieDegrees(uint32_t elapsed, uint32_t total) {
    if (!total) return 0;
    if (elapsed >= total) return 360;
    return static_cast<int>(static_cast<uint64_t>(elapsed) * 360 / total);
}
