// The CD player window from the inside: what its files share. Everything here belongs to the
// window's own thread, so nothing needs a lock; what the engine knows arrives as one snapshot a
// refresh or timer tick.
#pragma once
#include "cd/engine_win.h"
#include "cd/player_layout.h"
#include "cd/player_text.h"
#include "ui/look_win.h"

// The pie's pixels, made when the layout changes, drawn when its angle or a colour does.
struct PiePicture {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ bitmapBefore;
    uint32_t* pixels;
    int side;
};

struct PlayerWindow {
    HWND window;
    HWND tooltips;
    HWND controls[kPlayerControls];         // by id - kPlayerFirst
    char shown[kPlayerControls][kTextSize]; // texts that were set last
    uint8_t lit[kPlayerControls];           // buttons drawn in the on colours
    CachedFont fonts[kPlayerFonts];
    PlayerTextWidths widths;
    PlayerLayout layout;
    PiePicture pie;
    int pieDegrees;
    int tipsProgrammed; // the time displays' tooltips speak of the program

    uint16_t page;     // track buttons: page offset
    int dragging;      // the slider's thumb is held
    int sought;        // where the slider asked to play since the last tick, or -1
    int registered;    // with the engine, at the last look
    Tmsf segmentStart; // of the segment repeater, kNoSegmentStart when none
    CdSnapshot now;
    CDInfoRecord record;
};

inline HWND ControlOf(const PlayerWindow& player, int id) {
    return player.controls[id - kPlayerFirst];
}

// ---- player_controls_win.cpp: making, placing and painting
int CreatePlayerControls(PlayerWindow* player);
void LayOutPlayerWindow(PlayerWindow* player, int width, int height);
void PaintPlayer(PlayerWindow* player);
void FreePlayerPictures(PlayerWindow* player);
// Each acts only on a change.
void SetPlayerText(PlayerWindow* player, int id, const char* text);
void SetPlayerLit(PlayerWindow* player, int id, int on);
void SetPlayerEnabled(PlayerWindow* player, int id, int on);
void SetPlayerPie(PlayerWindow* player, int degrees);

// ---- player_menu_win.cpp
// Menu entries beside those of core/commands.h.
enum PlayerMenuCommand { kPlayerDiscImage = 760, kPlayerEjectImage = 761 };
// The context menu, centred on `at` (screen); what is chosen arrives as WM_COMMAND.
void ShowPlayerMenu(HWND window, POINT at, const CdSnapshot& now, const CDInfoRecord& record);
// Lets the user choose an image and puts it into the disc drive. Runs a message loop: the window
// may be gone afterwards.
void ChooseDiscImage(HWND window);
