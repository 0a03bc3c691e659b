// Geometry of the CD player window: where its 45 controls and the pie stand for a client size, and
// how large the letters may be. Numbers only; the texts are measured by the window.
//
// Two arrangements. Wide: displays and slider at the left, the named buttons at the right, the
// track buttons in a strip below. Stacked, for narrow windows: everything in full-width rows, so
// that the named buttons stay legible.
#pragma once
#include <cstdint>

#include "ui/geometry.h"

// The controls' ids are the commands that they send, in the order of their numbers.
enum PlayerControl {
    kPlayerTitle = 700,
    kPlayerArtist = 701,
    kPlayerTrackTitle = 702,
    kPlayerTrackTime = 703,
    kPlayerPlay = 704,
    kPlayerBack = 705,
    kPlayerForward = 706,
    kPlayerPause = 707,
    kPlayerStop = 708,
    kPlayerEject = 709,
    kPlayerTrack1 = 710, // to 729
    kPlayerRepeat = 730,
    kPlayerRandom = 731,
    kPlayerIntro = 732,
    kPlayerProgram = 733,
    kPlayerInfo = 734,
    kPlayerNextPage = 735,
    kPlayerPreviousPage = 736,
    kPlayerSlider = 737,
    kPlayerCaption = 738,
    kPlayerPower = 739,
    kPlayerDiscTime = 740,
    kPlayerDriveTime = 741,
    kPlayerRepeater = 742,
    kPlayerRestart = 743,
    kPlayerTrackLock = 744
};
constexpr int kPlayerFirst = kPlayerTitle;
constexpr int kPlayerControls = 45;
constexpr int kPlayerTrackButtons = 20;

constexpr int kPlayerMargin = 7;   // pixels round everything
constexpr int kPlayerGap = 3;      // between neighbours
constexpr int kPlayerRowGap = 5;   // between rows of buttons
constexpr int kPlayerGroupGap = 7; // between groups: room for their edges

// Controls that stand together and share an edge.
enum PlayerGroup { kGroupDisplay, kGroupButtons, kGroupTracks, kPlayerGroups };

struct PlayerLayout {
    Box boxes[kPlayerControls]; // by id - kPlayerFirst, in client pixels
    Box pie;                    // a square
    Box groups[kPlayerGroups];  // bounds of the groups' controls; empty without room for an edge
    Box panel;                  // bounds of the texts and the pie: the dark part of the display
};

// The layout for a client area. Below about 280 by 80 pixels boxes shrink to single pixels but
// never turn inside out.
PlayerLayout LayOutPlayer(int width, int height);

// ---- letters: one size a kind, so that like things look alike
enum PlayerFont { kFontLabels, kFontTracks, kFontTimes, kFontTitles, kPlayerFonts };

// Which of them a control is lettered in.
PlayerFont PlayerFontOf(int id);

// What the window measured: the width of each control's widest usual text, in thousandths of the
// letters' cell height. 0 sets no limit (titles of any length, the slider).
struct PlayerTextWidths {
    int width[kPlayerControls];
};

// Letter heights (cell height in pixels, at least kPlayerMinLetter) by which no label is clipped.
// Some room is left free; `large` ("Large Font Size") uses it up. Titles end in dots rather than
// become smaller than kPlayerMinTitle.
constexpr int kPlayerMinLetter = 7;
constexpr int kPlayerMinTitle = 10;
void PlayerFontSizes(const PlayerLayout& layout, const PlayerTextWidths& widths, int large,
                     int (&sizes)[kPlayerFonts]);
