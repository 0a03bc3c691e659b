// Playlists: the record, its two file formats as bytes, and the rules by which names become
// entries. Paths are ANSI, at most kMediaPathMax characters.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

constexpr int kPlaylistMax = 512; // entries of a record, and read of a file
constexpr int kMediaPathMax = 259;

struct Playlist {
    std::string name;  // the playlist's file
    uint32_t position; // of the current entry; may lie beyond the list
    std::vector<std::string> entries;
};

void ClearEntries(Playlist* list);
// At index, or at the end when there is no entry `index`. 0 when the record is full; the path is
// cut at kMediaPathMax.
int InsertEntry(Playlist* list, const std::string& path, int index);

// The two parsers replace all entries and keep the name.
// M3U: verbatim lines, CR LF or LF; a line longer than kMediaPathMax goes on as the next entry; the
// first empty line ends it.
void ParseM3u(const char* bytes, size_t size, Playlist* list);
std::string FormatM3u(const Playlist& list);
// PLS: a section as the platform hands it out, "key=value" texts with a NUL after each. Takes
// "File1" to "File<count>" in the order of their numbers; of equal keys the first.
void ParsePls(const char* section, size_t size, int count, Playlist* list);

// By substrings, whatever their case: what the file is taken for.
int IsPlaylistPath(const std::string& path); // ".PLS" or ".M3U"
int IsPlsPath(const std::string& path);      // ".PLS"
int IsSongPath(const std::string& path);     // ".MP3" or ".WAV"
// An entry without a drive or root belongs to its playlist's folder; all others, also addresses
// with "://", stay as they are. The result may be longer than kMediaPathMax: cut, it would name
// another file.
std::string ResolveEntry(const Playlist& list, const std::string& entry);
