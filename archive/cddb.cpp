// See cddb.h. A text is read in three steps: its lines are joined, then unescaped, then cut to the
// record's field; the other way round a cut could split an escape.
#include "archive/cddb.h"

#include "cdinfo/program.h"
#include "core/text.h"
#include "discdrive/cue.h" // IsUtf8

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <vector>

constexpr std::string_view kMagic = "# xmcd";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kFileMark = "#FILENAME=";
constexpr std::string_view kBetween = " / "; // artist and title
// A line may have 256 characters with its end; the longest name is "TTITLE99=".
constexpr size_t kLineText = 240;
// Our own line of the head: identity as the drive told it, and the lead-out in frames.
constexpr std::string_view kOwnLine = "Tonvista disc ";
constexpr size_t kMaxJoined = 8192; // characters of one value; the rest can't be kept anyway

struct CddbFields {
    std::string discTitle, year, genre, comment, order;
    std::array<std::string, kMaxTracks> titles, comments;
    std::vector<uint32_t> starts; // frames; one more than can be kept shows that there are too many
    uint32_t seconds = 0;
    uint32_t revision = 0;
    uint32_t identity = 0, leadOut = 0; // of our own line
    int inStarts = 0;                   // the lines that follow are track starts
};

// ---- reading: lines

static std::string_view NextLine(std::string_view* rest) {
    const size_t end = rest->find('\n');
    auto line = rest->substr(0, end);
    rest->remove_prefix(end == std::string_view::npos ? rest->size() : end + 1);
    while (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

std::string_view NextCddbEntry(std::string_view* rest) {
    if (rest->starts_with(kUtf8Mark)) rest->remove_prefix(kUtf8Mark.size());
    while (rest->starts_with(kFileMark))
        NextLine(rest);
    size_t end = 0;
    do {
        end = rest->find(kFileMark, end + (end > 0));
    } while (end != std::string_view::npos && end > 0 && (*rest)[end - 1] != '\n');
    const auto entry = rest->substr(0, end);
    rest->remove_prefix(entry.size());
    return entry;
}

int IsCddbFile(std::string_view head) {
    if (head.starts_with(kUtf8Mark)) head.remove_prefix(kUtf8Mark.size());
    return head.starts_with(kMagic) || head.starts_with(kFileMark);
}

static void SkipBlanks(std::string_view* text) {
    while (!text->empty() && (text->front() == ' ' || text->front() == '\t'))
        text->remove_prefix(1);
}

// Digits of the base at the text's beginning, taken off it; 0 when there is none or too many.
static int TakeNumber(std::string_view* text, unsigned base, uint32_t* value) {
    uint64_t sum = 0;
    size_t n = 0;
    for (; n < text->size(); ++n) {
        const char c = (*text)[n];
        const unsigned digit = c >= '0' && c <= '9'                 ? c - '0'
                               : (c | 32) >= 'a' && (c | 32) <= 'f' ? (c | 32) - 'a' + 10u
                                                                    : base;
        if (digit >= base) break;
        sum = sum * base + digit;
        if (sum > UINT32_MAX) return 0;
    }
    text->remove_prefix(n);
    *value = static_cast<uint32_t>(sum);
    return n > 0;
}

static int TakeWords(std::string_view* text, std::string_view words) {
    if (!text->starts_with(words)) return 0;
    text->remove_prefix(words.size());
    SkipBlanks(text);
    return 1;
}

static void ReadHeadLine(std::string_view line, CddbFields* fields) {
    SkipBlanks(&line);
    uint32_t value;
    if (fields->inStarts && TakeNumber(&line, 10, &value)) {
        if (fields->starts.size() <= kMaxTracks) fields->starts.push_back(value);
        return;
    }
    // Only an empty line may stand between the caption and the first start.
    fields->inStarts = (fields->inStarts && line.empty() && fields->starts.empty()) ||
                       line.starts_with("Track frame offsets");
    if (TakeWords(&line, "Disc length:")) {
        TakeNumber(&line, 10, &fields->seconds);
    } else if (TakeWords(&line, "Revision:")) {
        TakeNumber(&line, 10, &fields->revision);
    } else if (TakeWords(&line, kOwnLine) && TakeNumber(&line, 16, &fields->identity)) {
        SkipBlanks(&line);
        if (TakeWords(&line, "lead-out")) TakeNumber(&line, 10, &fields->leadOut);
    }
}

static std::string* FieldNamed(std::string_view name, CddbFields* fields) {
    if (name == "DTITLE") return &fields->discTitle;
    if (name == "DYEAR") return &fields->year;
    if (name == "DGENRE") return &fields->genre;
    if (name == "EXTD") return &fields->comment;
    if (name == "PLAYORDER") return &fields->order;
    const int isTitle = name.starts_with("TTITLE");
    if (!isTitle && !name.starts_with("EXTT")) return nullptr;
    name.remove_prefix(isTitle ? 6 : 4);
    uint32_t track;
    if (!TakeNumber(&name, 10, &track) || !name.empty() || track >= kMaxTracks) return nullptr;
    return isTitle ? &fields->titles[track] : &fields->comments[track];
}

static void ReadLines(std::string_view entry, CddbFields* fields) {
    while (!entry.empty()) {
        auto line = NextLine(&entry);
        if (line.starts_with('#')) {
            ReadHeadLine(line.substr(1), fields);
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        std::string* field = FieldNamed(line.substr(0, equals), fields);
        if (field) field->append(line.substr(equals + 1, kMaxJoined - field->size()));
    }
}

// ---- reading: meaning

static std::string Unescape(std::string_view text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 >= text.size()) {
            plain += text[i];
            continue;
        }
        const char c = text[++i];
        if (c == 'n' || c == 't')
            plain += ' '; // a record's texts are single lines
        else if (c == '\\')
            plain += c;
        else
            (plain += '\\') += c;
    }
    return plain;
}

static int IsVarious(const char* artist) {
    return SameText(artist, kVariousArtists) || SameText(artist, "Various Artists") ||
           SameText(artist, "VA");
}

// 1 when the titles are "artist / title" each.
static int HaveArtists(const CddbFields& fields, const CDInfoRecord& record) {
    if (IsVarious(record.trackArtists[0])) return 1;
    for (size_t i = 0; i < record.trackCount; ++i) {
        if (fields.titles[i].find(kBetween) == std::string::npos) return 0;
    }
    return record.trackCount > 1;
}

static void ReadTitles(const CddbFields& fields, int utf8, const TextCodec& codec,
                       CDInfoRecord* record) {
    const std::string disc = Unescape(fields.discTitle);
    const size_t cut = disc.find(kBetween);
    const std::string_view whole = disc;
    // Without the stroke the title is the artist's name, too.
    const auto artist = whole.substr(0, cut);
    const auto title = cut == std::string::npos ? whole : whole.substr(cut + kBetween.size());
    TakeText(title, utf8, codec, record->title, kTextSize);
    if (!record->title[0]) CopyText(record->title, kUnknownTitle);
    TakeText(artist, utf8, codec, record->trackArtists[0], kTextSize);
    if (!record->trackArtists[0][0]) CopyText(record->trackArtists[0], kDefaultArtist);
    const int haveArtists = HaveArtists(fields, *record);
    char discArtist[kTextSize];
    CopyText(discArtist, record->trackArtists[0]);
    for (size_t i = 0; i < record->trackCount; ++i) {
        const std::string text = Unescape(fields.titles[i]);
        const size_t split = haveArtists ? text.find(kBetween) : std::string::npos;
        std::string_view own = text;
        CopyText(record->trackArtists[i], discArtist);
        if (split != std::string::npos) {
            TakeText(own.substr(0, split), utf8, codec, record->trackArtists[i], kTextSize);
            own.remove_prefix(split + kBetween.size());
        }
        TakeText(own, utf8, codec, record->trackTitles[i], kTextSize);
        if (!record->trackTitles[i][0])
            DefaultTrackTitle(record->trackTitles[i], static_cast<uint32_t>(i + 1));
        TakeText(Unescape(fields.comments[i]), utf8, codec, record->trackComments[i],
                 kMaxStoredComment + 1);
    }
}

// Year and genre have no field of their own: they end the disc's comment.
static void ReadDiscComment(const CddbFields& fields, int utf8, const TextCodec& codec,
                            CDInfoRecord* record) {
    std::string comment = Unescape(fields.comment);
    const std::string year = Unescape(fields.year);
    const std::string genre = Unescape(fields.genre);
    if (!year.empty() || !genre.empty()) {
        const char* comma = year.empty() || genre.empty() ? "" : ", ";
        comment += (comment.empty() ? "(" : " (") + year + comma + genre + ")";
    }
    TakeText(comment, utf8, codec, record->comment, kMaxStoredComment + 1);
}

static void ReadOrder(std::string_view order, CDInfoRecord* record) {
    while (!order.empty()) {
        uint32_t track;
        SkipBlanks(&order);
        if (TakeNumber(&order, 10, &track) && track >= 1 && track <= record->trackCount)
            AddWholeTracks(record, &track, 1);
        order.remove_prefix(std::min(order.find(','), order.size()));
        if (!order.empty()) order.remove_prefix(1);
    }
}

// 0 when the starts make no disc. Without any timing a disc still counts if its identity is told.
static int ReadTiming(const CddbFields& fields, CDInfoRecord* record) {
    const size_t count = fields.starts.size();
    if (!count || count > kMaxTracks) return 0;
    record->trackCount = static_cast<uint16_t>(count);
    std::copy(fields.starts.begin(), fields.starts.end(), record->trackStarts);
    const uint32_t last = fields.starts.back();
    const uint32_t seconds = std::min<uint32_t>(fields.seconds, UINT32_MAX / kFramesPerSecond);
    const int isOwn = fields.leadOut / kFramesPerSecond == seconds;
    record->trackStarts[count] =
        std::max(last, isOwn ? fields.leadOut : seconds * kFramesPerSecond);
    const int isTimed = HasTiming(*record, 1);
    if (!isTimed) std::fill_n(record->trackStarts, count + 1, 0u);
    SetIdentity(record, fields.identity ? fields.identity : isTimed ? ClassicIdentity(*record) : 0);
    return record->identity != 0;
}

int ReadCddbEntry(std::string_view entry, const TextCodec& codec, CDInfoRecord* record) {
    if (!entry.starts_with(kMagic)) return 0;
    auto fields = std::make_unique<CddbFields>();
    ReadLines(entry, fields.get());
    if (!ReadTiming(*fields, record)) return 0;
    const int utf8 = IsUtf8(entry);
    record->revision = static_cast<uint16_t>(std::min<uint32_t>(fields->revision, UINT16_MAX));
    ReadTitles(*fields, utf8, codec, record);
    ReadDiscComment(*fields, utf8, codec, record);
    ReadOrder(fields->order, record);
    CompleteRecord(record);
    return 1;
}

// ---- writing

uint32_t CddbDiscId(const CDInfoRecord& record) {
    const size_t count = std::min<size_t>(record.trackCount, kMaxTracks);
    uint32_t digits = 0;
    for (size_t i = 0; i < count; ++i) {
        for (uint32_t s = record.trackStarts[i] / kFramesPerSecond; s; s /= 10)
            digits += s % 10;
    }
    const uint32_t seconds =
        record.trackStarts[count] / kFramesPerSecond - record.trackStarts[0] / kFramesPerSecond;
    return (digits % 255) << 24 | (seconds & 0xFFFF) << 8 | static_cast<uint32_t>(count);
}

template <class... Args> static void Append(std::string* to, const char* format, Args... args) {
    char text[96];
    FormatText(text, sizeof text, format, args...);
    *to += text;
}

// One value, on as many lines as it takes. An escape, and a character of several bytes, stays
// whole.
static void AppendField(std::string* to, const std::string& name, const std::string& value) {
    *to += name + "=";
    size_t used = 0;
    for (const char c : value) {
        const int continues = (static_cast<uint8_t>(c) & 0xC0) == 0x80;
        if (used >= kLineText && !continues) {
            *to += "\n" + name + "=";
            used = 0;
        }
        if (c == '\\') {
            *to += '\\';
            ++used;
        }
        *to += c;
        ++used;
    }
    *to += '\n';
}

static void AppendHead(const CDInfoRecord& record, size_t count, std::string* text) {
    *text += "# xmcd CD database file\n#\n# Track frame offsets:\n";
    for (size_t i = 0; i < count; ++i)
        Append(text, "#\t%u\n", static_cast<unsigned>(record.trackStarts[i]));
    Append(text, "#\n# Disc length: %u seconds\n#\n# Revision: %u\n",
           static_cast<unsigned>(record.trackStarts[count] / kFramesPerSecond),
           static_cast<unsigned>(record.revision));
    *text += "# Submitted via: Tonvista 1.0\n";
    Append(text, "# %s%08X lead-out %u\n#\n", kOwnLine.data(),
           static_cast<unsigned>(record.identity),
           static_cast<unsigned>(record.trackStarts[count]));
}

// Titles are written with their artists where a reader would look for these: on a disc of several,
// or where every title has the stroke that stands between.
static int NeedArtists(const CDInfoRecord& record, size_t count) {
    if (!IsSingleArtist(record) || IsVarious(record.trackArtists[0])) return 1;
    for (size_t i = 0; i < count; ++i) {
        if (!std::strstr(record.trackTitles[i], kBetween.data())) return 0;
    }
    return count > 1;
}

// The first stroke ends the artist, so his own loses its blanks.
static std::string ArtistText(const char* artist, const TextCodec& codec) {
    std::string text = GiveText(artist, codec);
    for (size_t at; (at = text.find(kBetween)) != std::string::npos;)
        text.replace(at, kBetween.size(), "/");
    return text + std::string(kBetween);
}

static std::string PlayOrder(const CDInfoRecord& record, size_t count) {
    std::string order;
    int isEvery = record.programCount == count;
    for (size_t i = 0; i < std::min<size_t>(record.programCount, kMaxSegments); ++i) {
        const ProgramSegment& segment = record.program[i];
        if (!IsWholeTrack(segment)) return {}; // stretches can't be told
        isEvery &= TmsfTrack(segment.start) == i + 1;
        Append(&order, i ? ",%u" : "%u", static_cast<unsigned>(TmsfTrack(segment.start)));
    }
    return isEvery ? std::string() : order;
}

std::string WriteCddbEntry(const CDInfoRecord& record, const TextCodec& codec) {
    const size_t count = std::min<size_t>(record.trackCount, kMaxTracks);
    std::string text;
    AppendHead(record, count, &text);
    Append(&text, "DISCID=%08x\n", static_cast<unsigned>(CddbDiscId(record)));
    const char* discArtist = IsSingleArtist(record) ? record.trackArtists[0] : kVariousArtists;
    AppendField(&text, "DTITLE", ArtistText(discArtist, codec) + GiveText(record.title, codec));
    text += "DYEAR=\nDGENRE=\n";
    const int needArtists = NeedArtists(record, count);
    for (size_t i = 0; i < count; ++i) {
        std::string title = GiveText(record.trackTitles[i], codec);
        if (needArtists) title.insert(0, ArtistText(record.trackArtists[i], codec));
        AppendField(&text, "TTITLE" + std::to_string(i), title);
    }
    AppendField(&text, "EXTD", GiveText(record.comment, codec));
    for (size_t i = 0; i < count; ++i)
        AppendField(&text, "EXTT" + std::to_string(i), GiveText(record.trackComments[i], codec));
    AppendField(&text, "PLAYORDER", PlayOrder(record, count));
    return text;
}
