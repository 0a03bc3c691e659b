// See ini.h.
#include "archive/ini.h"

#include "core/text.h"

#include <algorithm>
#include <climits>
#include <iterator>

constexpr char kNoProgram[] = "NoProg"; // stands for a key that is not there
constexpr size_t kNumberDigits = 10;    // "numtracks" is read into a buffer of that many

// ---- lines

static std::string_view Trim(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

static int IsQuoted(std::string_view value) {
    return value.size() >= 2 && value.front() == value.back() &&
           (value.front() == '"' || value.front() == '\'');
}

IniLines ParseIniSection(std::string_view block) {
    IniLines lines;
    while (!block.empty() && block.front()) {
        const auto line = block.substr(0, block.find('\0'));
        block.remove_prefix(std::min(line.size() + 1, block.size()));
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            lines.push_back({std::string(line), {}, 0});
            continue;
        }
        auto value = Trim(line.substr(equals + 1));
        if (IsQuoted(value)) value = value.substr(1, value.size() - 2);
        lines.push_back({std::string(Trim(line.substr(0, equals))), std::string(value), 1});
    }
    return lines;
}

static int HasKey(const IniLine& line, const char* key) {
    return line.hasValue && SameText(line.key.c_str(), key);
}

std::string_view IniValue(const IniLines& lines, const char* key, std::string_view fallback) {
    for (const IniLine& line : lines) {
        if (HasKey(line, key)) return line.value;
    }
    return fallback;
}

std::string FormatIniSection(const IniLines& lines) {
    std::string block;
    for (const IniLine& line : lines) {
        if (!line.hasValue) {
            block += line.key + '\0';
            continue;
        }
        // A line's end within a text would begin another line.
        std::string value = line.value;
        for (char& c : value) {
            if (c == '\r' || c == '\n' || c == '\0') c = ' ';
        }
        const int bare = Trim(value).size() == value.size() && !IsQuoted(value);
        block += line.key + (bare ? "=" : "=\"") + value + (bare ? "" : "\"");
        block += '\0';
    }
    return block + '\0';
}

int ParseIniName(std::string_view name, uint32_t* identity) {
    *identity = 0;
    if (name.empty() || name.size() > 8) return 0;
    for (const char c : name) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0) return 0;
        *identity = *identity * 16 + static_cast<uint32_t>(digit);
    }
    return 1;
}

std::string IniName(uint32_t identity) {
    char name[16];
    FormatText(name, sizeof name, "%X", static_cast<unsigned>(identity));
    return name;
}

// ---- reading

// As the C library reads a decimal number, but within the bounds of an int.
static int Number(std::string_view text) {
    text = Trim(text);
    const int negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    int64_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') break;
        value = std::min<int64_t>(value * 10 + (c - '0'), INT_MAX);
    }
    return static_cast<int>(negative ? -value : value);
}

struct NumberedKey {
    char text[24];
    NumberedKey(const char* stem, int number) {
        FormatText(text, sizeof text, "%s%d", stem, number);
    }
};

static void ReadTexts(const IniLines& lines, CDInfoRecord* record) {
    CopyText(record->title, std::string(IniValue(lines, "title", kUnknownTitle)).c_str());
    const std::string artist(IniValue(lines, "artist", kDefaultArtist));
    for (int i = 0; i < static_cast<int>(kMaxTracks); ++i) {
        const auto own = IniValue(lines, NumberedKey("artist", i).text, artist);
        CopyText(record->trackArtists[i], std::string(own).c_str());
        DefaultTrackTitle(record->trackTitles[i], static_cast<uint32_t>(i + 1));
        const auto title = IniValue(lines, NumberedKey("", i).text, record->trackTitles[i]);
        CopyText(record->trackTitles[i], std::string(title).c_str());
    }
}

static void ReadOrder(std::string_view order, CDInfoRecord* record) {
    constexpr char kGaps[] = " ,";
    const int last = std::max<int>(record->trackCount, 1);
    size_t taken = 0;
    while (taken < record->programCount) {
        order.remove_prefix(std::min(order.find_first_not_of(kGaps), order.size()));
        if (order.empty()) break;
        const auto item = order.substr(0, order.find_first_of(kGaps));
        order.remove_prefix(item.size());
        const int track = std::clamp(std::min(Number(item), last) + 1, 1, last);
        record->program[taken++] = WholeTrackSegment(*record, static_cast<uint32_t>(track));
    }
    record->programCount = static_cast<uint16_t>(taken);
}

static void ReadProgram(const IniLines& lines, CDInfoRecord* record) {
    DefaultProgram(record);
    const auto count = IniValue(lines, "numplay", kNoProgram);
    if (count != kNoProgram) {
        const int number = Number(count);
        // Below 0 it is a huge number to who counts without a sign.
        const int usable = number >= 0 && number <= static_cast<int>(kMaxSegments);
        record->programCount = static_cast<uint16_t>(usable ? number : 1);
    }
    const auto order = IniValue(lines, "order", kNoProgram);
    if (order != kNoProgram) ReadOrder(order, record);
}

void ReadIniDisc(const IniLines& lines, CDInfoRecord* record) {
    uint32_t identity;
    if (record->identityText[0] && ParseIniName(record->identityText, &identity))
        SetIdentity(record, identity);
    const auto tracks = IniValue(lines, "numtracks", "0").substr(0, kNumberDigits);
    record->trackCount =
        static_cast<uint16_t>(std::clamp(Number(tracks), 0, static_cast<int>(kMaxTracks)));
    ReadTexts(lines, record);
    DeriveDiscArtist(record);
    ReadProgram(lines, record);
}

// ---- writing

static void Put(IniLines* lines, const char* key, const std::string& value) {
    const auto found = std::find_if(lines->begin(), lines->end(),
                                    [&](const IniLine& line) { return HasKey(line, key); });
    if (found == lines->end())
        lines->push_back({key, value, 1});
    else
        found->value = value;
}

IniLines WriteIniDisc(const CDInfoRecord& record, const IniLines& before) {
    if (!record.identity) return {};
    IniLines lines = before;
    const int tracks = std::min<int>(record.trackCount, kMaxTracks);
    Put(&lines, "numtracks", std::to_string(tracks));
    Put(&lines, "title", record.title);
    Put(&lines, "artist", record.discArtist);
    for (int i = 0; i < tracks; ++i)
        Put(&lines, NumberedKey("", i).text, record.trackTitles[i]);
    Put(&lines, "numplay", "0");
    Put(&lines, "order", "");
    return lines;
}
