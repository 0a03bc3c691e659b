// The summary pane's text. See catalog.h.
#include "archive/catalog.h"

#include "cdinfo/program.h"
#include "core/text.h"

#include <algorithm>

// A line's fixed part and two or three titles.
constexpr size_t kLineSize = 256;

template <class... Values> static void Add(std::string* to, const char* format, Values... values) {
    char line[kLineSize];
    FormatText(line, sizeof line, format, values...);
    *to += line;
}

std::string DiscSummary(const CDInfoRecord& record) {
    const int tracks = static_cast<int>(std::min<size_t>(record.trackCount, kMaxTracks));
    const int segments = static_cast<int>(std::min<size_t>(record.programCount, kMaxSegments));
    std::string text;
    Add(&text, "CD Info Revision: %d\r\n", record.revision);
    const int single = IsSingleArtist(record);
    if (single)
        Add(&text, "CD Title: [%s] by [%s]\r\n", record.title, record.trackArtists[0]);
    else
        Add(&text, "CD Title: [%s]\r\n", record.title);
    for (int i = 0; i < tracks; ++i) {
        if (single)
            Add(&text, "Track %03d - [%s]\r\n", i + 1, record.trackTitles[i]);
        else
            Add(&text, "Track %03d - [%s] [%s]\r\n", i + 1, record.trackArtists[i],
                record.trackTitles[i]);
    }
    if (segments) text += "Program:\r\n";
    for (int i = 0; i < segments; ++i) {
        char segment[kSegmentTextSize];
        SegmentText(record, record.program[i], segment, sizeof segment);
        Add(&text, "%03d: %s\r\n", i + 1, segment);
    }
    for (int i = 0; i <= tracks; ++i)
        Add(&text, "%d ", static_cast<int>(record.trackStarts[i]));
    // Once more: the pane has always ended so.
    Add(&text, "%d ", static_cast<int>(record.trackStarts[tracks]));
    return text;
}
