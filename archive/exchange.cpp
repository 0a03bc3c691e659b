// Text and delimited form of a disc. See exchange.h.
#include "archive/exchange.h"

#include "core/text.h"

static uint32_t TrackCountOf(const CDInfoRecord& record) {
    return record.trackCount < kMaxTracks ? record.trackCount : kMaxTracks;
}

template <class... Args> static void Append(std::string* to, const char* format, Args... args) {
    char text[64];
    FormatText(text, sizeof text, format, args...);
    *to += text;
}

std::string TextBlock(const CDInfoRecord& record) {
    std::string text = "#~#\r\nCDTitle:";
    text += record.title;
    text += "\r\nCDComment:";
    text += record.comment;
    Append(&text, "\r\nTrack Count:%d\r\n", static_cast<int>(TrackCountOf(record)));
    for (uint32_t i = 0; i < TrackCountOf(record); ++i) {
        Append(&text, "Track%03d:", static_cast<int>(i + 1));
        text += record.trackArtists[i];
        text += ";;";
        text += record.trackTitles[i];
        text += ";;";
        text += record.trackComments[i];
        text += "\r\n";
    }
    return text;
}

// ---- delimited

static void AppendQuoted(std::string* line, const char* field, char separator) {
    *line += '"';
    for (; *field; ++field) {
        *line += *field;
        if (*field == '"') *line += '"';
    }
    *line += '"';
    *line += separator;
}

struct DelimitedLine {
    uint32_t track; // 0: the disc's own
    const char* title;
    const char* artist;
    const char* comment;
    uint32_t seconds;
};

static void AppendLine(std::string* to, uint32_t identity, char separator,
                       const DelimitedLine& line) {
    Append(to, "\"%08x\"%c\"%03d\"%c", static_cast<unsigned>(identity), separator,
           static_cast<int>(line.track), separator);
    AppendQuoted(to, line.title, separator);
    AppendQuoted(to, line.artist, separator);
    AppendQuoted(to, line.comment, separator);
    Append(to, "\"%d:%02d\"\r\n", static_cast<int>(line.seconds / 60),
           static_cast<int>(line.seconds % 60));
}

std::string DelimitedLines(const CDInfoRecord& record, char separator) {
    uint32_t total = 0;
    for (uint32_t i = 0; i < TrackCountOf(record); ++i)
        total += record.trackSeconds[i];
    std::string text;
    AppendLine(&text, record.identity, separator,
               {0, record.title, record.discArtist, record.comment, total});
    for (uint32_t i = 0; i < TrackCountOf(record); ++i) {
        AppendLine(&text, record.identity, separator,
                   {i + 1, record.trackTitles[i], record.trackArtists[i], record.trackComments[i],
                    record.trackSeconds[i]});
    }
    return text;
}
