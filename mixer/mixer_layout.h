// Geometry of the mixer window: where its controls stand for a client size and a set of source
// names, and how large the letters may be. Numbers only; the texts are measured by the window.
//
// A header with the destinations on top (one row, or two or three where it is narrow), below it the
// source columns at the left and the master columns at the right. Columns stand in one row, or in
// several where their names would not be readable otherwise.
#pragma once
#include "ui/geometry.h"

// The controls' ids are the commands that they send.
enum MixerControl {
    kMixerDestination1 = 700, // to 707
    kMixerCaption = 708,
    kMixerPower = 709,
    kMixerMaster = 750,
    kMixerVolume = 751,
    kMixerTreble = 752,
    kMixerBass = 753,
    kMixerConfigure = 754,
    kMixerTrebleLabel = 755,
    kMixerBassLabel = 756,
    kMixerMessage1 = 757, // shown in place of the columns, in two lines
    kMixerMessage2 = 758,
    kMixerSource1 = 800, // on/off buttons, to 823
    kMixerSlider1 = 824  // to 847
};
constexpr int kMixerDestinations = 8;
constexpr int kMixerColumns = 24;
// All but the columns, by MixerFixedIndex.
constexpr int kMixerFixed = 19;
constexpr int MixerFixedIndex(int id) {
    return id < kMixerMaster ? id - kMixerDestination1 : id - kMixerMaster + 10;
}
constexpr int MixerFixedId(int index) {
    return index < 10 ? kMixerDestination1 + index : kMixerMaster + index - 10;
}

constexpr int kMixerMargin = 7;   // pixels round everything
constexpr int kMixerGap = 3;      // between neighbours
constexpr int kMixerGroupGap = 7; // between groups: room for their edges
constexpr int kMixerPanelAir = 2; // between the columns and the border of their panel

enum MixerGroup { kMixerHeader, kMixerSources, kMixerMasters, kMixerGroups };

// Widths of the texts in thousandths of their letters' cell height; 0 sets no limit.
struct MixerTextWidths {
    int fixed[kMixerFixed];
    int names[kMixerColumns];
};

struct MixerLayout {
    Box fixed[kMixerFixed];
    Box buttons[kMixerColumns], sliders[kMixerColumns]; // of the columns shown, in client pixels
    Box groups[kMixerGroups];                           // bounds of what stands together
    int edges;                                          // there is room for edges round the groups
};

// Below about 280 by 80 pixels boxes shrink to single pixels but never turn inside out.
MixerLayout LayOutMixer(int width, int height, const MixerTextWidths& widths, int columns);

// ---- letters: one size a kind, so that like things look alike
enum MixerFont {
    kMixerFontButtons,
    kMixerFontNames,
    kMixerFontLongNames, // names too long for the letters of the others
    kMixerFontMasters,
    kMixerFontMessage,
    kMixerFonts
};
MixerFont MixerFontOf(int fixedId);
// Cell heights in pixels. Names get the size at which enough of them fit, so that one long name
// does not make all the others small; long ones shrink to kMixerMinName and are cut then. `large`
// ("Large Font Size") uses up the room that is otherwise left free.
constexpr int kMixerMinLetter = 7;
constexpr int kMixerMinName = 9;
void MixerLetterSizes(const MixerLayout& layout, const MixerTextWidths& widths, int columns,
                      int large, int (&sizes)[kMixerFonts]);
int EnoughMixerNames(int fitting, int columns); // three of four
// Pixels for the letters on a button of that width.
int MixerNameRoom(int buttonWidth);
