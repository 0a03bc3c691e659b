// See cue.h. A line is cut into words; the first one picks the handler, which returns 0 to refuse
// the whole sheet: a guess about a damaged sheet would play the wrong sound.
#include "discdrive/cue.h"

#include "core/tmsf.h"

struct CueLine {
    std::string_view rest;
};

struct CueState {
    CueSheet* sheet;
    CueTexts* texts;    // may be null
    int lastNumber = 0; // of the track before
};

static int IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// The next word, or the text between quotes.
static std::string_view NextWord(CueLine& line) {
    std::string_view& s = line.rest;
    while (!s.empty() && IsBlank(s.front()))
        s.remove_prefix(1);
    if (s.empty()) return {};
    size_t end = 0;
    if (s.front() == '"') {
        s.remove_prefix(1);
        end = s.find('"');
        if (end == std::string_view::npos) end = s.size();
        const auto word = s.substr(0, end);
        s.remove_prefix(end < s.size() ? end + 1 : end);
        return word;
    }
    while (end < s.size() && !IsBlank(s[end]))
        ++end;
    const auto word = s.substr(0, end);
    s.remove_prefix(end);
    return word;
}

static int SameWord(std::string_view a, std::string_view upper) {
    if (a.size() != upper.size()) return 0;
    for (size_t i = 0; i < a.size(); ++i) {
        const char c = a[i] >= 'a' && a[i] <= 'z' ? static_cast<char>(a[i] - 32) : a[i];
        if (c != upper[i]) return 0;
    }
    return 1;
}

// 1 to 3 digits, nothing else.
static int ReadNumber(std::string_view word, uint32_t* value) {
    if (word.empty() || word.size() > 3) return 0;
    *value = 0;
    for (const char c : word) {
        if (c < '0' || c > '9') return 0;
        *value = *value * 10 + static_cast<uint32_t>(c - '0');
    }
    return 1;
}

static int ReadTime(std::string_view word, uint32_t* frames) {
    const size_t a = word.find(':');
    const size_t b = a == std::string_view::npos ? a : word.find(':', a + 1);
    if (b == std::string_view::npos) return 0;
    uint32_t m, s, f;
    if (!ReadNumber(word.substr(0, a), &m) || !ReadNumber(word.substr(a + 1, b - a - 1), &s) ||
        !ReadNumber(word.substr(b + 1), &f) || m > 255 || s >= 60 || f >= kFramesPerSecond) {
        return 0;
    }
    *frames = (m * 60 + s) * kFramesPerSecond + f;
    return 1;
}

// A sheet made elsewhere may name files by full path, and a hostile one could name another
// machine's. Files are looked for in the sheet's own folder and below it, nowhere else.
static std::string LocalName(std::string_view name) {
    const int leaves = name.find(':') != std::string_view::npos ||
                       name.find("..") != std::string_view::npos || name.starts_with('\\') ||
                       name.starts_with('/');
    const size_t slash = name.find_last_of("\\/:");
    if (leaves && slash != std::string_view::npos) name.remove_prefix(slash + 1);
    std::string local(name);
    for (char& c : local) {
        if (c == '/') c = '\\';
    }
    return local;
}

// FILE "name" BINARY|WAVE. A name without quotes may hold blanks: the last word is the kind.
static int ReadFile(CueState& state, CueLine line) {
    auto& files = state.sheet->files;
    while (!line.rest.empty() && IsBlank(line.rest.back()))
        line.rest.remove_suffix(1);
    while (!line.rest.empty() && IsBlank(line.rest.front()))
        line.rest.remove_prefix(1);
    const size_t cut = line.rest.find_last_of(" \t\"");
    if (cut == std::string_view::npos || files.size() >= kMaxCueFiles) return 0;
    const auto kind = line.rest.substr(cut + 1);
    std::string_view name = line.rest.substr(0, cut + 1);
    if (name.starts_with('"')) {
        CueLine quoted{name};
        name = NextWord(quoted);
    } else {
        while (!name.empty() && IsBlank(name.back()))
            name.remove_suffix(1);
    }
    CueFile file;
    file.name = LocalName(name);
    file.wave = SameWord(kind, "WAVE");
    file.other = !file.wave && !SameWord(kind, "BINARY");
    if (file.name.empty() || (file.other && !state.texts)) return 0;
    files.push_back(file);
    return 1;
}

static int ReadTrack(CueState& state, CueLine line) {
    static constexpr struct {
        const char* name;
        int audio;
        uint32_t sectorBytes;
    } kModes[] = {
        {"AUDIO", 1, 2352},      {"MODE1/2048", 0, 2048}, {"MODE1/2352", 0, 2352},
        {"MODE2/2048", 0, 2048}, {"MODE2/2324", 0, 2324}, {"MODE2/2336", 0, 2336},
        {"MODE2/2352", 0, 2352}, {"CDI/2336", 0, 2336},   {"CDI/2352", 0, 2352},
    };
    auto& tracks = state.sheet->tracks;
    uint32_t number;
    if (!ReadNumber(NextWord(line), &number) || number < 1 || number > kMaxCueTracks) return 0;
    // The first track of a disc may bear any number; the others follow without a hole.
    if (!tracks.empty() && number != static_cast<uint32_t>(state.lastNumber) + 1) return 0;
    if (state.sheet->files.empty() || tracks.size() >= kMaxCueTracks) return 0;
    if (!tracks.empty() && tracks.back().start.file < 0) return 0;
    const auto mode = NextWord(line);
    for (const auto& known : kModes) {
        if (!SameWord(mode, known.name)) continue;
        CueTrack track;
        track.audio = known.audio;
        track.sectorBytes = known.sectorBytes;
        tracks.push_back(track);
        if (state.texts) state.texts->tracks.emplace_back();
        state.lastNumber = static_cast<int>(number);
        return 1;
    }
    return 0;
}

static int ReadIndex(CueState& state, CueLine line) {
    uint32_t number, frame;
    if (!ReadNumber(NextWord(line), &number) || number > 99) return 0;
    if (!ReadTime(NextWord(line), &frame) || state.sheet->tracks.empty()) return 0;
    CueTrack& track = state.sheet->tracks.back();
    if (number > 1) return track.start.file >= 0; // marks within a track: nothing asks for them
    if (track.start.file >= 0 || (number == 0 && track.first.file >= 0)) return 0;
    const CueMark mark{static_cast<int>(state.sheet->files.size()) - 1, frame};
    if (track.first.file < 0) track.first = mark;
    if (number == 1) track.start = mark;
    return 1;
}

static int ReadGap(CueState& state, CueLine line, uint32_t CueTrack::*gap) {
    if (state.sheet->tracks.empty()) return 0;
    return ReadTime(NextWord(line), &(state.sheet->tracks.back().*gap));
}

// A text may hold quotes itself, and may stand without any: the last quote of the line ends it.
static std::string RestOfLine(CueLine line) {
    std::string_view& s = line.rest;
    while (!s.empty() && IsBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back()))
        s.remove_suffix(1);
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') s = s.substr(1, s.size() - 2);
    return std::string(s);
}

static void ReadText(CueTexts& texts, std::string_view word, CueLine line) {
    CueText& text = texts.tracks.empty() ? texts.disc : texts.tracks.back();
    if (SameWord(word, "TITLE")) text.title = RestOfLine(line);
    if (SameWord(word, "PERFORMER")) text.performer = RestOfLine(line);
    if (!SameWord(word, "REM") || text.remarks.size() >= kMaxCueRemarks) return;
    const std::string remark(NextWord(line));
    text.remarks.push_back({remark, RestOfLine(line)});
}

std::string_view FindCueRemark(const CueText& text, std::string_view word) {
    for (const CueRemark& remark : text.remarks) {
        if (SameWord(remark.word, word)) return remark.text;
    }
    return {};
}

static int ReadLine(CueState& state, CueLine line) {
    const auto word = NextWord(line);
    if (state.texts) ReadText(*state.texts, word, line);
    if (SameWord(word, "FILE")) return ReadFile(state, line);
    if (SameWord(word, "TRACK")) return ReadTrack(state, line);
    if (SameWord(word, "INDEX")) return ReadIndex(state, line);
    if (SameWord(word, "PREGAP")) return ReadGap(state, line, &CueTrack::pregap);
    if (SameWord(word, "POSTGAP")) return ReadGap(state, line, &CueTrack::postgap);
    return 1;
}

int ReadCue(std::string_view text, CueSheet* sheet, CueTexts* texts) {
    *sheet = {};
    if (texts) *texts = {};
    if (text.size() > kMaxCueBytes || text.find('\0') != std::string_view::npos) return 0;
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    CueState state{sheet, texts};
    while (!text.empty()) {
        const size_t end = text.find('\n');
        if (!ReadLine(state, {text.substr(0, end)})) return 0;
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    if (sheet->files.empty()) return 0;
    return sheet->tracks.empty() || sheet->tracks.back().start.file >= 0;
}

CueSheet MakeFolderSheet(size_t files) {
    CueSheet sheet;
    for (size_t i = 0; i < files; ++i) {
        CueTrack track;
        track.first = track.start = {static_cast<int>(i), 0};
        sheet.files.push_back({{}, 1});
        sheet.tracks.push_back(track);
    }
    return sheet;
}

int IsUtf8(std::string_view text) {
    for (size_t i = 0; i < text.size();) {
        const auto lead = static_cast<uint8_t>(text[i++]);
        if (lead < 0x80) continue;
        const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        if (lead < 0xC2 || lead > 0xF4) return 0;
        for (int k = 0; k < more; ++k, ++i) {
            if (i >= text.size() || (static_cast<uint8_t>(text[i]) & 0xC0) != 0x80) return 0;
        }
    }
    return 1;
}
