// CUE sheets: which files a disc image is made of, where its tracks begin in them, and on demand
// what they are called. Text in, description out; whether the files exist and are long enough is
// seen later (disc.h).
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

constexpr size_t kMaxCueBytes = 1 << 20;
constexpr size_t kMaxCueFiles = 198; // two files a track
constexpr size_t kMaxCueTracks = 99;
constexpr uint32_t kAudioSectorBytes = 2352;

struct CueFile {
    std::string name; // relative to the sheet's folder, in the sheet's own encoding
    int wave = 0;     // 1: a WAV file, 0: bare sectors
    int other = 0;    // 1: a kind that isn't played, which only who asks for texts is given
};

// A place in a file, counted in sectors from the file's first one.
struct CueMark {
    int file = -1;
    uint32_t frame = 0;
};

struct CueTrack {
    int audio = 1;
    uint32_t sectorBytes = kAudioSectorBytes;
    CueMark first;        // index 00 (the gap before the track) where given, else index 01
    CueMark start;        // index 01
    uint32_t pregap = 0;  // frames of silence before `first`, in no file
    uint32_t postgap = 0; // frames of silence after the track, in no file
};

struct CueSheet {
    std::vector<CueFile> files;
    std::vector<CueTrack> tracks; // empty: a blank disc
};

constexpr size_t kMaxCueRemarks = 64; // of the disc, and as many of each track

struct CueRemark {
    std::string word, text; // REM word text
};

// What stands about the disc, or about one of its tracks, in the sheet's own encoding.
struct CueText {
    std::string title, performer;
    std::vector<CueRemark> remarks;
};

struct CueTexts {
    CueText disc;
    std::vector<CueText> tracks; // as many as the sheet has
};

// 1, or 0 when the text is no sheet of a disc: no file, an unknown kind of file or track, a time
// that is none, track numbers out of order, a track without index 01. Lines about titles and the
// like are passed over, unless `texts` is given: then they go there, and any kind of file will do.
int ReadCue(std::string_view text, CueSheet* sheet, CueTexts* texts = nullptr);

// The text of the first remark with that word (upper case; the sheet's may be in any), or empty.
std::string_view FindCueRemark(const CueText& text, std::string_view word);

// The sheet of a folder: file n holds track n and nothing else.
CueSheet MakeFolderSheet(size_t files);

// Sheets carry no note of their encoding: what is valid UTF-8 is taken as that.
int IsUtf8(std::string_view text);
