// The bitmaps in force and their painting. See appearance_win.h.
//
// A change replaces what is in force under the lock and counts up the generation. Every thread
// paints from a copy of its own, which it renews when the generation is another one; so no paint
// waits, and a bitmap lives until the last thread has let go of it. A thread that is ended by force
// leaves its copy behind, nothing worse.
//
// Files are read by threads of their own. A change waits a moment for its file, so that usual ones
// are there at the first paint, and goes on with the built-in bitmap; the console hears when the
// file's has taken its place.
#include "ui/appearance_win.h"

#include "core/commands.h"
#include "core/lock_win.h"
#include "core/settings.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/framework_win.h"
#include "ui/look_win.h"
#include "ui/picture_reader_win.h"

#include <cstring>
#include <new>

namespace {
enum BitmapKind { kBackground, kButtonFace, kBitmapKinds };

struct KindOfBitmap {
    const char *use, *useDefault, *stretch, *align, *fileName;
    UINT resource;
};
constexpr KindOfBitmap kKinds[kBitmapKinds] = {
    {"UseBackgroundBitmap", "UseDefaultBkgrndBmp", "BkgrndBmpStretch", "BkgrndBmpAlign",
     "BkgrndBmpFileName", IDB_BACKGROUND},
    {"UseButtonFaceBitmap", "UseDefaultBtnFaceBmp", "BtnFaceStretch", "BtnFaceAlign",
     "BtnFaceFileName", IDB_BUTTON_FACE},
};

struct InForce {
    BitmapSettings settings[kBitmapKinds];
    Picture* pictures[kBitmapKinds]; // null: none wanted yet, or none to be had
};
struct OpenWindow {
    HWND window;
    int isComponent; // part of the group's rectangle; the console is not
};
constexpr int kMaxOpenWindows = 16;
} // namespace

static struct {
    HANDLE lock = CreateMutexA(nullptr, FALSE, nullptr); // guards all of it
    InForce now = {};
    PictureReading* coming[kBitmapKinds] = {}; // whose picture is to take the built-in one's place
    volatile LONG generation = 1;              // read without the lock
    OpenWindow open[kMaxOpenWindows] = {};     // a painting thread looks without the lock, too
    TilePoint group = {};                      // where pictures of the group were hung up last
} s_looks;

static thread_local struct {
    LONG generation;
    InForce seen;
} s_mine;

// ---- sharing

static void Release(Picture* picture) {
    if (picture && !--picture->users) FreePicture(picture);
}

// The lock is held. An owner that was terminated in the middle of a change loses a bitmap at most.
static void ReplacePicture(InForce* holder, int kind, Picture* picture) {
    if (picture) ++picture->users;
    Picture* const before = holder->pictures[kind];
    holder->pictures[kind] = picture;
    Release(before);
}

static const InForce& Mine() {
    if (s_mine.generation == s_looks.generation) return s_mine.seen;
    const ScopedLock lock(s_looks.lock);
    if (!lock.held) return s_mine.seen; // what was in force before will do for this paint
    FreeReducedPictures();
    for (int kind = 0; kind < kBitmapKinds; ++kind) {
        ReplacePicture(&s_mine.seen, kind, s_looks.now.pictures[kind]);
        s_mine.seen.settings[kind] = s_looks.now.settings[kind];
    }
    s_mine.generation = s_looks.generation;
    return s_mine.seen;
}

static void LetGo() {
    FreeReducedPictures();
    const ScopedLock lock(s_looks.lock);
    if (!lock.held) return;
    for (int kind = 0; kind < kBitmapKinds; ++kind)
        ReplacePicture(&s_mine.seen, kind, nullptr);
    s_mine.generation = 0;
}

// ---- the group

// Upper left corner of all open component windows; where there is none, 0 and a corner that no
// window has. One out of sight counts, too: it comes back to its place.
static int GroupCorner(TilePoint* corner) {
    RECT around = {};
    int count = 0;
    for (const OpenWindow& open : s_looks.open) {
        RECT place;
        if (!open.window || !open.isComponent || !GetWindowRect(open.window, &place)) continue;
        if (!count++) around = place;
        UnionRect(&around, &around, &place);
    }
    *corner = count ? TilePoint{around.left, around.top} : TilePoint{INT32_MIN, INT32_MIN};
    return count;
}

// ---- what is in force

static int SameBitmap(const BitmapSettings& a, const BitmapSettings& b) {
    return !a.UseDefault == !b.UseDefault && (a.UseDefault || !strcmp(a.FileName, b.FileName));
}

// A picture that came late. One that nobody wants any more is dropped.
static void OnPictureArrived(PictureReading* reading, Picture* picture) {
    HWND consoles[kMaxOpenWindows] = {};
    int count = 0;
    {
        const ScopedLock lock(s_looks.lock, INFINITE);
        for (int kind = 0; kind < kBitmapKinds; ++kind) {
            if (s_looks.coming[kind] != reading) continue;
            s_looks.coming[kind] = nullptr;
            if (!picture) continue; // the built-in one stays
            ReplacePicture(&s_looks.now, kind, picture);
            InterlockedIncrement(&s_looks.generation);
            count = 0;
            for (const OpenWindow& open : s_looks.open)
                if (open.window && !open.isComponent) consoles[count++] = open.window;
        }
        EndPictureReading(reading, picture);
    }
    for (int i = 0; i < count; ++i)
        PostMessageA(consoles[i], WM_COMMAND, kColorsChanged, 0);
}

// The lock is held. Null when the bitmap is in no file.
static PictureReading* BeginReading(const BitmapSettings& settings) {
    if (settings.UseDefault || !settings.FileName[0]) return nullptr;
    return BeginPictureReading(settings.FileName, OnPictureArrived);
}

// The lock is held. What was read; the built-in bitmap where that is nothing, or until it comes.
static void PutInForce(int kind, PictureReading* reading) {
    Picture* picture = reading && !reading->running ? reading->picture : nullptr;
    s_looks.coming[kind] = reading && reading->running ? reading : nullptr;
    if (!picture) picture = LoadPictureResource(kKinds[kind].resource);
    ReplacePicture(&s_looks.now, kind, picture);
    InterlockedIncrement(&s_looks.generation);
    if (reading) LetGoOfPictureReading(reading);
}

static void BringIntoForce(int kind, const BitmapSettings& settings, int anew) {
    PictureReading* reading = nullptr;
    int keep = 0;
    {
        const ScopedLock lock(s_looks.lock);
        if (!lock.held) return;
        keep =
            !anew && s_looks.now.pictures[kind] && SameBitmap(settings, s_looks.now.settings[kind]);
        if (!keep && settings.UseBitmap) reading = BeginReading(settings);
    }
    if (reading) AwaitPictureReading(*reading);
    const ScopedLock lock(s_looks.lock);
    if (!lock.held) return;
    s_looks.now.settings[kind] = settings;
    if (!keep && settings.UseBitmap) {
        PutInForce(kind, reading);
    } else if (!keep) {
        ReplacePicture(&s_looks.now, kind, nullptr);
        s_looks.coming[kind] = nullptr;
    }
    GroupCorner(&s_looks.group);
    InterlockedIncrement(&s_looks.generation);
}

static HBITMAP BitmapInForce(int kind, const BitmapSettings& settings) {
    PictureReading* reading = nullptr;
    {
        const ScopedLock lock(s_looks.lock);
        if (!lock.held) return nullptr;
        if (const Picture* picture = s_looks.now.pictures[kind]) return picture->bitmap;
        reading = BeginReading(settings);
    }
    if (reading) AwaitPictureReading(*reading);
    const ScopedLock lock(s_looks.lock);
    if (!lock.held) return nullptr;
    PutInForce(kind, reading);
    const Picture* picture = s_looks.now.pictures[kind];
    return picture ? picture->bitmap : nullptr;
}

// ---- settings

static void ReadSettings(int kind, BitmapSettings* settings) {
    const KindOfBitmap& names = kKinds[kind];
    *settings = {};
    settings->UseBitmap = ReadRegDword(kUserRoot, kSettingsRoot, names.use);
    settings->UseDefault = ReadRegDword(kUserRoot, kSettingsRoot, names.useDefault);
    settings->Stretch = ReadRegDword(kUserRoot, kSettingsRoot, names.stretch);
    settings->Align = ReadRegDword(kUserRoot, kSettingsRoot, names.align);
    ReadRegString(kUserRoot, kSettingsRoot, names.fileName, settings->FileName,
                  sizeof settings->FileName);
}

static int SaveNumber(const char* name, uint32_t value, int force) {
    if (!force && RegValueExists(kUserRoot, kSettingsRoot, name)) return 1;
    return WriteRegDword(kUserRoot, kSettingsRoot, name, kRegDword, value);
}

static int SaveText(const char* name, const char* text, int force) {
    if (!force && RegValueExists(kUserRoot, kSettingsRoot, name)) return 1;
    return WriteRegString(kUserRoot, kSettingsRoot, name, text);
}

static int SaveSettings(int kind, const BitmapSettings& settings, int force) {
    const KindOfBitmap& names = kKinds[kind];
    int saved = SaveNumber(names.use, settings.UseBitmap, force);
    saved &= SaveNumber(names.useDefault, settings.UseDefault, force);
    saved &= SaveNumber(names.stretch, settings.Stretch, force);
    saved &= SaveNumber(names.align, settings.Align, force);
    saved &= SaveText(names.fileName, settings.FileName, force);
    BitmapSettings stored = settings;
    if (!force) ReadSettings(kind, &stored);
    BringIntoForce(kind, stored, 1);
    return saved;
}

void ReadBackgroundSettings(BitmapSettings* settings) {
    ReadSettings(kBackground, settings);
}
void ReadButtonFaceSettings(BitmapSettings* settings) {
    ReadSettings(kButtonFace, settings);
}
int SaveBackgroundSettings(const BitmapSettings& settings, int force) {
    return SaveSettings(kBackground, settings, force);
}
int SaveButtonFaceSettings(const BitmapSettings& settings, int force) {
    return SaveSettings(kButtonFace, settings, force);
}

void SeedAppearance() {
    BitmapSettings plain = {};
    plain.UseDefault = 1; // who switches bitmaps on sees the built-in ones
    SaveBackgroundSettings(plain, 0);
    SaveButtonFaceSettings(plain, 0);
    SaveText("FontFaceName", kDefaultFace, 0);
    SeedColors();
}

void LoadAppearance() {
    for (int kind = 0; kind < kBitmapKinds; ++kind) {
        BitmapSettings settings;
        ReadSettings(kind, &settings);
        BringIntoForce(kind, settings, 1);
    }
}

void UseBackground(const BitmapSettings& settings) {
    BringIntoForce(kBackground, settings, 0);
}
void UseButtonFace(const BitmapSettings& settings) {
    BringIntoForce(kButtonFace, settings, 0);
}
HBITMAP GetBackgroundBitmap(const BitmapSettings& settings) {
    return BitmapInForce(kBackground, settings);
}
HBITMAP GetButtonFaceBitmap(const BitmapSettings& settings) {
    return BitmapInForce(kButtonFace, settings);
}

// ---- painting

// A control's place counts from its window's corner without the frame: what the window and its
// track bars show is then one picture.
static TileCorners CornersOf(HWND window, uint32_t align) {
    TileCorners corners = {};
    RECT place = {};
    const HWND parent = GetAncestor(window, GA_PARENT);
    const int isControl = (GetWindowLongA(window, GWL_STYLE) & WS_CHILD) && IsUIWindow(parent);
    GetWindowRect(isControl ? parent : window, &place);
    corners.parent = corners.window = {place.left, place.top};
    if (isControl) {
        POINT at = {};
        MapWindowPoints(window, parent, &at, 1);
        corners.window.x += at.x;
        corners.window.y += at.y;
    }
    if (align == kAlignGroup && !GroupCorner(&corners.group)) corners.group = corners.parent;
    return corners;
}

static void DrawPicture(HDC dc, const Picture& picture, const RECT& area,
                        const BitmapSettings& settings, HWND window) {
    if (IsRectEmpty(&area)) return;
    if (settings.Stretch) {
        StretchPicture(dc, picture, area);
        return;
    }
    const TilePoint start =
        TileStart(settings.Align, CornersOf(window, settings.Align), picture.width, picture.height);
    RECT clip = area;
    GetClipBox(dc, &clip);
    if (!IntersectRect(&clip, &clip, &area)) return;
    ForEachTile({start.x + area.left, start.y + area.top}, picture.tileWidth, picture.tileHeight,
                clip.left, clip.top, clip.right, clip.bottom,
                [&](int x, int y) { DrawPictureTile(dc, picture, x, y); });
}

static int DrawKind(int kind, HDC dc, const RECT& area, const BitmapSettings& settings,
                    HWND window) {
    const Picture* picture = Mine().pictures[kind];
    if (!picture) return 0;
    DrawPicture(dc, *picture, area, settings, window);
    return 1;
}

int DrawBitmapBackground(HDC dc, const RECT& area, const BitmapSettings& settings, HWND window) {
    return DrawKind(kBackground, dc, area, settings, window);
}

static int DrawInForce(int kind, HDC dc, const RECT& area, HWND window) {
    const BitmapSettings& settings = Mine().settings[kind];
    return settings.UseBitmap && DrawKind(kind, dc, area, settings, window);
}

int DrawBackground(HDC dc, const RECT& area, HWND window) {
    return DrawInForce(kBackground, dc, area, window);
}
int DrawButtonFace(HDC dc, const RECT& area, HWND button) {
    return DrawInForce(kButtonFace, dc, area, button);
}

int DrawBackgroundBeneath(HDC dc, HWND control) {
    const HWND parent = GetAncestor(control, GA_PARENT);
    const InForce& mine = Mine();
    if (!mine.settings[kBackground].UseBitmap || !mine.pictures[kBackground] || !IsUIWindow(parent))
        return 0;
    POINT at = {}, before;
    MapWindowPoints(control, parent, &at, 1);
    RECT client;
    GetClientRect(parent, &client);
    OffsetViewportOrgEx(dc, -at.x, -at.y, &before);
    DrawBackground(dc, client, parent);
    SetViewportOrgEx(dc, before.x, before.y, nullptr);
    return 1;
}

// ---- windows that move

static void PaintAnew(HWND window, UINT now) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | now);
}

static int Follows(const BitmapSettings& settings, uint32_t align) {
    return settings.UseBitmap && !settings.Stretch && settings.Align == align;
}

static int AnyFollows(uint32_t align) {
    const InForce& mine = Mine();
    return Follows(mine.settings[kBackground], align) || Follows(mine.settings[kButtonFace], align);
}

// When the group's corner moves, the pictures of all windows do. Those of other threads are only
// marked, so none is waited for.
static void FollowGroup(HWND mover) {
    OpenWindow open[kMaxOpenWindows];
    {
        const ScopedLock lock(s_looks.lock);
        TilePoint corner;
        if (!lock.held) return;
        GroupCorner(&corner);
        if (corner.x == s_looks.group.x && corner.y == s_looks.group.y) return;
        s_looks.group = corner;
        memcpy(open, s_looks.open, sizeof open);
    }
    for (const OpenWindow& other : open)
        if (other.window && other.window != mover) PaintAnew(other.window, 0);
}

void NoteMovedWindow(HWND window) {
    const int group = AnyFollows(kAlignGroup);
    if (!group && !AnyFollows(kAlignScreen)) return;
    if (group) FollowGroup(window);
    PaintAnew(window, RDW_UPDATENOW);
}

// A window of a terminated thread may have left its entry behind.
void NoteOpenWindow(HWND window, int isComponent) {
    {
        const ScopedLock lock(s_looks.lock);
        if (!lock.held) return;
        OpenWindow* place = nullptr;
        for (OpenWindow& open : s_looks.open)
            if (!open.window || !IsWindow(open.window)) place = &open;
        if (place) *place = {window, isComponent};
    }
    if (AnyFollows(kAlignGroup)) FollowGroup(window);
}

void NoteClosedWindow(HWND window) {
    const int group = AnyFollows(kAlignGroup);
    {
        const ScopedLock lock(s_looks.lock);
        if (lock.held)
            for (OpenWindow& open : s_looks.open)
                if (open.window == window) open = {};
    }
    if (group) FollowGroup(window);
    LetGo();
}
