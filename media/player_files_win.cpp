// What the media player opens, from wherever it comes, and what it keeps: settings, history, the
// file that another instance left in the shared block.
#include "media/player_state_win.h"

#include <cstring>

#include "core/settings.h"
#include "core/shared_block.h"
#include "core/text.h"
#include "media/dialogs_win.h"
#include "media/playlist_win.h"
#include "ui/components.h"

constexpr const char* kUnnamedList = "Default.pls";
constexpr const char* kLastFile = "LastFile";

// In the current folder, which may be another one later.
static std::string UnnamedList() {
    char path[MAX_PATH];
    const DWORD length = GetFullPathNameA(kUnnamedList, sizeof path, path, nullptr);
    return length && length < sizeof path ? path : kUnnamedList;
}

// ---- settings

static const struct {
    const char* name;
    int MediaPlayer::*flag;
} kFlags[] = {{"Random", &MediaPlayer::Random},
              {"Repeat", &MediaPlayer::Repeat},
              {"TouchFiles", &MediaPlayer::TouchFiles}};

void ReadMediaSettings(MediaPlayer* player) {
    for (const auto& entry : kFlags)
        player->*entry.flag = ReadWindowDword(kMediaWindowId, entry.name, 0) != 0;
    char name[kMediaPathMax + 1] = "";
    ReadWindowSetting(kMediaWindowId, kLastFile, kRegSz, sizeof name, name);
    if (name[0]) ReadPlaylist(name, &player->list);
    player->list.position = 0;
}

void WriteMediaSettings(const MediaPlayer& player) {
    for (const auto& entry : kFlags)
        WriteWindowDword(kMediaWindowId, entry.name, static_cast<uint32_t>(player.*entry.flag));
    const std::string name = player.list.name.empty() ? kUnnamedList : player.list.name;
    WriteWindowSetting(kMediaWindowId, kLastFile, kRegSz, static_cast<uint32_t>(name.size() + 1),
                       name.c_str());
}

// ---- opening

int OpenMediaPath(const std::string& path, Playlist* list) {
    Playlist opened = {};
    if (!OpenPlaylistFor(path, &opened)) return 0;
    opened.position = 0;
    *list = opened;
    return 1;
}

static std::string DroppedPath(HDROP drop, UINT index) {
    char path[kMediaPathMax + 1] = "";
    if (DragQueryFileA(drop, index, nullptr, 0) > static_cast<UINT>(kMediaPathMax)) return "";
    DragQueryFileA(drop, index, path, sizeof path);
    return path;
}

// A folder gives its songs, a playlist its entries.
static void AddDropped(const std::string& path, Playlist* list) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    const int end = static_cast<int>(list->entries.size());
    Playlist other = {};
    if (path.empty() || attributes == INVALID_FILE_ATTRIBUTES) return;
    if (attributes & FILE_ATTRIBUTE_DIRECTORY)
        AddFolder(path, list, end, nullptr, nullptr);
    else if (!IsPlaylistPath(path))
        InsertEntry(list, path, end);
    else if (ReadPlaylist(path, &other))
        for (const std::string& entry : other.entries)
            InsertEntry(list, ResolveEntry(other, entry), static_cast<int>(list->entries.size()));
}

std::string OnlyDroppedFile(HDROP drop) {
    if (DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0) != 1) return "";
    const std::string path = DroppedPath(drop, 0);
    const DWORD attributes = GetFileAttributesA(path.c_str());
    const int folder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    return folder ? "" : path;
}

int OpenDroppedFiles(HDROP drop, Playlist* list) {
    Playlist opened = {UnnamedList(), 0, {}};
    const UINT count = DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count && opened.entries.size() < kPlaylistMax; ++i)
        AddDropped(DroppedPath(drop, i), &opened);
    if (opened.entries.empty()) return 0;
    WritePlaylist(opened, opened.name);
    *list = opened;
    return 1;
}

// The flag goes first: a name that is written while this one is copied sets it again.
int TakeCommandFile(std::string* path) {
    if (!(ReadShared(SHARED_FIELD(CommandFlags)) & kCommandOpenFile)) return 0;
    if (!(ClearSharedBits(SHARED_FIELD(CommandFlags), kCommandOpenFile) & kCommandOpenFile))
        return 0;
    char name[sizeof SharedBlock->CommandFile + 1] = "";
    std::memcpy(name, SharedBlock->CommandFile, sizeof SharedBlock->CommandFile);
    *path = name;
    return !path->empty();
}

// ---- changing

// The list without a file of its own is kept from run to run all the same.
static int IsUnnamed(const Playlist& list) {
    return list.name.empty() || SameText(FileTitle(list.name).c_str(), kUnnamedList);
}

// While a dialog was open the list may have gone on, or a file from outside have replaced it.
static int IsSameList(const Playlist& a, const Playlist& b) {
    return a.name == b.name && a.entries == b.entries;
}

int EditMediaList(MediaPlayer* player) {
    const HWND window = player->window;
    const Playlist before = player->list;
    Playlist edited = before;
    if (!EditPlaylist(window, &edited) || !IsWindow(window)) return 0;
    const Playlist now = player->list;
    if (now.position != before.position || !IsSameList(now, before))
        edited.position = PositionAfterEdit(now, edited);
    if (edited.name.empty()) edited.name = UnnamedList();
    if (IsUnnamed(edited)) WritePlaylist(edited, edited.name);
    player->list = edited;
    return ResolveEntry(now, CurrentEntry(now)) != ResolveEntry(edited, CurrentEntry(edited));
}

void SaveMediaList(MediaPlayer* player) {
    const HWND window = player->window;
    const Playlist before = player->list;
    Playlist saved = before;
    if (!SavePlaylistByDialog(window, &saved) || !IsWindow(window)) return;
    if (!IsSameList(player->list, before)) return; // another one plays now
    saved.position = player->list.position;
    player->list = saved;
}
