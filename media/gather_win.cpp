// Gathering files on a thread, with its progress dialog. See gather_win.h.
#include "media/gather_win.h"

#include "core/component_win.h"
#include "core/guard_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "media/moves.h"
#include "media/playlist_win.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"

#include <memory>
#include <new>
#include <process.h>

constexpr UINT kGathered = WM_APP;
constexpr UINT_PTR kShowTimer = 1, kCountTimer = 2;
constexpr UINT kShowMs = 300;  // what is quicker needs no dialog
constexpr UINT kCountMs = 100; // between two looks at the count
// One more than a playlist holds: enough to know that it is too many.
constexpr size_t kGatheredMax = kPlaylistMax + 1;
constexpr size_t kMessageMax = kStringMax + MAX_PATH;

namespace {
// Belongs to the dialog and to the thread, whichever lives longer: a folder on a lost network drive
// may keep the thread for a minute after the user has broken it off.
struct Gathering {
    std::vector<std::string> paths;
    HWND window = nullptr; // set before the thread starts
    volatile LONG cancelled = 0;
    volatile LONG found = 0;
    // The thread's until it posts kGathered.
    std::vector<std::string> songs;
    std::string missing; // one of the paths that are not there
};
struct FolderScan {
    Gathering* gathering;
    Playlist list;
};
struct GatherDialog {
    ModalDialog modal;
    std::shared_ptr<Gathering> gathering;
};
} // namespace

// ---- messages

static void ShowText(HWND owner, const char* text) {
    char caption[kStringMax];
    if (owner && !IsWindow(owner)) return; // closed from outside meanwhile
    LoadText(IDS_DIALOGS_CAPTION, caption);
    MessageBoxA(owner, text, caption, MB_OK | MB_ICONINFORMATION);
}

void TellUser(HWND owner, UINT textId, int number) {
    char format[kStringMax], text[kMessageMax];
    LoadText(textId, format);
    FormatText(text, sizeof text, format, number);
    ShowText(owner, text);
}

void TellUser(HWND owner, UINT textId, const std::string& name) {
    char format[kStringMax], text[kMessageMax];
    LoadText(textId, format);
    FormatText(text, sizeof text, format, name.c_str());
    ShowText(owner, text);
}

// ---- on the thread

static void TakeSong(Gathering* gathering, const std::string& path) {
    if (gathering->songs.size() >= kGatheredMax) return;
    gathering->songs.push_back(path);
    InterlockedIncrement(&gathering->found);
}

static int MayGoOn(const Gathering* gathering) {
    return !gathering->cancelled && gathering->songs.size() < kGatheredMax;
}

// Takes each song out at once, so that the list is never full and the scan sees all.
static void TakeScanned(FolderScan* scan) {
    for (const std::string& song : scan->list.entries)
        TakeSong(scan->gathering, song);
    ClearEntries(&scan->list);
}

static int ScanGoesOn(void* context) {
    auto* scan = static_cast<FolderScan*>(context);
    TakeScanned(scan);
    return MayGoOn(scan->gathering);
}

static void GatherPath(Gathering* gathering, const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    FolderScan scan = {gathering, {}};
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        gathering->missing = path;
    } else if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
        AddFolder(path, &scan.list, -1, ScanGoesOn, &scan);
        TakeScanned(&scan);
    } else if (IsPlaylistPath(path) && ReadPlaylist(path, &scan.list)) {
        for (const std::string& entry : scan.list.entries)
            TakeSong(gathering, ResolveEntry(scan.list, entry));
    } else {
        TakeSong(gathering, path);
    }
}

static void GatherAll(void* argument) {
    auto* gathering = static_cast<Gathering*>(argument);
    for (size_t i = 0; i < gathering->paths.size() && MayGoOn(gathering); ++i)
        GatherPath(gathering, gathering->paths[i]);
}

static unsigned __stdcall GatherThread(void* argument) {
    const std::unique_ptr<std::shared_ptr<Gathering>> owned(
        static_cast<std::shared_ptr<Gathering>*>(argument));
    Gathering* const gathering = owned->get();
    GuardCall(GatherAll, gathering, nullptr);
    if (!gathering->cancelled) PostMessageA(gathering->window, kGathered, 0, 0);
    return 0;
}

static int StartGathering(const std::shared_ptr<Gathering>& gathering) {
    auto* own = new (std::nothrow) std::shared_ptr<Gathering>(gathering);
    if (!own) return 0;
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, GatherThread, own, 0, nullptr));
    if (!thread) {
        delete own;
        return 0;
    }
    CloseHandle(thread);
    return 1;
}

// ---- the dialog

static void ShowCount(const GatherDialog* dialog) {
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_FILES_FOUND, format);
    FormatText(text, sizeof text, format, static_cast<int>(dialog->gathering->found));
    SetDlgItemTextA(dialog->modal.window, IDC_PROGRESS_TEXT, text);
}

static void OnInitDialog(HWND window, GatherDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    dialog->gathering->window = window;
    PlaceOverOwner(window, dialog->modal.owner);
    ShowCount(dialog);
    SetTimer(window, kShowTimer, kShowMs, nullptr);
    SetTimer(window, kCountTimer, kCountMs, nullptr);
    if (!StartGathering(dialog->gathering)) EndModalDialog(&dialog->modal, IDCANCEL);
}

static void OnTimer(GatherDialog* dialog, UINT_PTR timer) {
    if (timer == kCountTimer) {
        ShowCount(dialog);
        return;
    }
    KillTimer(dialog->modal.window, kShowTimer);
    ShowWindow(dialog->modal.window, SW_SHOW);
}

static INT_PTR GatherProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<GatherDialog*>(lParam));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<GatherDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case kGathered: EndModalDialog(&dialog->modal, IDOK); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL) EndModalDialog(&dialog->modal, IDCANCEL);
        return TRUE;
    case WM_TIMER: OnTimer(dialog, wParam); return TRUE;
    case WM_DESTROY: EndModalDialog(&dialog->modal, 0); return TRUE;
    default: return FALSE;
    }
}

// Null when it was broken off.
static std::shared_ptr<Gathering> Gather(HWND owner, const std::vector<std::string>& paths) {
    GatherDialog dialog = {};
    dialog.gathering = std::make_shared<Gathering>();
    dialog.gathering->paths = paths;
    if (RunModalDialog(&dialog.modal, owner, IDD_MEDIA_PROGRESS, GuardedDialog<GatherProcedure>,
                       reinterpret_cast<LPARAM>(&dialog), 1) == IDOK)
        return dialog.gathering;
    InterlockedExchange(&dialog.gathering->cancelled, 1);
    return nullptr;
}

int GatherFolder(HWND owner, const std::string& folder, std::vector<std::string>* songs) {
    songs->clear();
    const std::shared_ptr<Gathering> gathering = Gather(owner, {folder});
    if (!gathering) return 0;
    *songs = std::move(gathering->songs);
    if (songs->empty())
        TellUser(owner, gathering->missing.empty() ? IDS_NO_SONGS : IDS_PATH_GONE, folder);
    return !songs->empty();
}

int GatherDropped(HWND owner, const std::vector<std::string>& paths,
                  std::vector<std::string>* songs) {
    songs->clear();
    const std::shared_ptr<Gathering> gathering = Gather(owner, paths);
    if (!gathering) return 0;
    *songs = std::move(gathering->songs);
    if (!gathering->missing.empty()) TellUser(owner, IDS_PATH_GONE, gathering->missing);
    return 1;
}

// ---- into the list

int AddPaths(HWND owner, const std::vector<std::string>& paths, Playlist* list, int index) {
    const InsertTally tally = InsertPaths(list, paths, index);
    if (tally.full) TellUser(owner, IDS_LIST_FULL, kPlaylistMax);
    if (tally.tooLong) TellUser(owner, IDS_NAMES_TOO_LONG, kMediaPathMax);
    return tally.added;
}
