// Choosing files and folders for the media player, by the system's own dialogs.
#include "media/dialogs_win.h"

#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "media/gather_win.h"
#include "media/lengths.h"
#include "media/moves.h"
#include "media/playlist_win.h"
#include "resources/ids.h"
#include "ui/components.h"

#include <algorithm>
#include <cderr.h>
#include <commdlg.h>
#include <cstring>
#include <shlobj.h>

constexpr DWORD kChosenMax = 30000; // characters of many file names
constexpr const char* kFolderValue = "Directory";

// ---- what all of them share

static int IsFolder(const char* path) {
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Empty when there is none any more: the system then chooses.
static void ReadFolder(char (&folder)[MAX_PATH]) {
    folder[0] = 0;
    ReadWindowSetting(kMediaWindowId, kFolderValue, kRegSz, sizeof folder, folder);
    folder[MAX_PATH - 1] = 0;
    if (!IsFolder(folder)) folder[0] = 0;
}

static void StoreFolder(const std::string& folder) {
    WriteWindowSetting(kMediaWindowId, kFolderValue, kRegSz,
                       static_cast<uint32_t>(folder.size() + 1), folder.c_str());
}

namespace {
// A file dialog with its texts, in the folder of the last one.
struct FileChoice {
    OPENFILENAMEA dialog = {};
    char filter[kStringMax], caption[kStringMax], folder[MAX_PATH];

    FileChoice(HWND owner, UINT captionId, UINT filterId, char* text, DWORD size) {
        LoadText(captionId, caption);
        LoadText(filterId, filter);
        std::replace(filter, filter + strlen(filter), '|', '\0');
        ReadFolder(folder);
        dialog.lStructSize = sizeof dialog;
        dialog.hwndOwner = owner;
        dialog.lpstrFilter = filter;
        dialog.lpstrFile = text;
        dialog.nMaxFile = size;
        dialog.lpstrTitle = caption;
        dialog.lpstrInitialDir = folder[0] ? folder : nullptr;
        // A playlist's name may be relative to the current folder, which therefore stays.
        dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    }
    FileChoice(const FileChoice&) = delete;
    FileChoice& operator=(const FileChoice&) = delete;
};
} // namespace

// ---- the player's

int AskMediaFile(HWND owner, std::string* path) {
    char text[MAX_PATH] = "";
    FileChoice choice(owner, IDS_OPEN_CAPTION, IDS_OPEN_FILTER, text, sizeof text);
    choice.dialog.Flags |= OFN_FILEMUSTEXIST;
    if (!GetOpenFileNameA(&choice.dialog)) return 0;
    StoreFolder(std::string(text, choice.dialog.nFileOffset));
    *path = text;
    return 1;
}

int AskSavePath(HWND owner, const Playlist& list, std::string* path) {
    const int pls = EndsInPls(list.name);
    char text[MAX_PATH];
    // Without its extension, or the choice of another type would change nothing.
    CopyText(text, PlainTitle(list.name).c_str());
    FileChoice choice(owner, IDS_SAVE_CAPTION, IDS_SAVE_FILTER, text, sizeof text);
    choice.dialog.nFilterIndex = pls ? 2 : 1;
    choice.dialog.lpstrDefExt = pls ? "PLS" : "M3U";
    choice.dialog.Flags |= OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
    if (!GetSaveFileNameA(&choice.dialog)) return 0;
    StoreFolder(std::string(text, choice.dialog.nFileOffset));
    *path = text;
    return 1;
}

int SavePlaylistByDialog(HWND owner, Playlist* list) {
    std::string path;
    if (!AskSavePath(owner, *list, &path)) return 0;
    const Playlist saved = ListForFile(*list, path);
    if (!WritePlaylist(saved, path)) {
        TellUser(owner, IDS_SAVE_FAILED, path);
        return 0;
    }
    *list = saved;
    return 1;
}

// ---- into a playlist

int AddFilesByDialog(HWND owner, Playlist* list, int index) {
    std::string text(kChosenMax, '\0');
    FileChoice choice(owner, IDS_ADD_CAPTION, IDS_ADD_FILTER, text.data(), kChosenMax);
    choice.dialog.Flags |= OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT;
    if (!GetOpenFileNameA(&choice.dialog)) {
        if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL) TellUser(owner, IDS_TOO_MANY_CHOSEN);
        return 0;
    }
    std::string folder;
    const std::vector<std::string> files = ChosenFiles(text.data(), text.size(), &folder);
    StoreFolder(folder);
    return AddPaths(owner, files, list, index);
}

static int CALLBACK FolderCallback(HWND dialog, UINT message, LPARAM, LPARAM folder) {
    if (message == BFFM_INITIALIZED && *reinterpret_cast<const char*>(folder))
        SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, folder);
    return 0;
}

static int AskFolder(HWND owner, char (&folder)[MAX_PATH]) {
    char text[kStringMax], first[MAX_PATH], display[MAX_PATH];
    LoadText(IDS_ADD_FOLDER_TEXT, text);
    ReadFolder(first);
    BROWSEINFOA choice = {};
    choice.hwndOwner = owner;
    choice.pszDisplayName = display;
    choice.lpszTitle = text;
    choice.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE | BIF_NONEWFOLDERBUTTON;
    choice.lpfn = FolderCallback;
    choice.lParam = reinterpret_cast<LPARAM>(first);
    const HRESULT ole = OleInitialize(nullptr); // what the resizable chooser asks for
    LPITEMIDLIST item = SHBrowseForFolderA(&choice);
    const int chosen = item && SHGetPathFromIDListA(item, folder);
    if (item) CoTaskMemFree(item);
    if (SUCCEEDED(ole)) OleUninitialize();
    return chosen;
}

int AddFolderByDialog(HWND owner, Playlist* list, int index) {
    char folder[MAX_PATH] = "";
    if (!AskFolder(owner, folder)) return 0;
    std::vector<std::string> songs;
    if (!GatherFolder(owner, folder, &songs)) return 0;
    return AddPaths(owner, songs, list, index);
}
