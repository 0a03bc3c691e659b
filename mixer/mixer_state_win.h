// The mixer window from the inside: what its files share. Everything here belongs to the window's
// own thread, so nothing needs a lock; what the device knows is asked from the engine at each
// refresh, never in a paint.
#pragma once
#include "mixer/engine_win.h"
#include "mixer/mixer_layout.h"
#include "ui/level_bar.h"
#include "ui/look_win.h"

constexpr int kMixerBarStart = 40; // where a bar stands until a value was read

struct MixerWindow {
    HWND window;
    HWND tooltips;
    HWND fixed[kMixerFixed];
    HWND buttons[kMixerColumns], sliders[kMixerColumns];
    uint8_t lit[kMixerDestinations], masterLit, sourceLit[kMixerColumns];
    LevelBar volume, treble, bass, levels[kMixerColumns];
    CachedFont fonts[kMixerFonts];
    MixerTextWidths widths;
    MixerLayout layout;

    int destination; // index of the destination's button
    int count;       // columns shown
    MixerSource sources[kMixerColumns];
    int hasTreble, hasBass;
    int refreshAhead; // a refresh is on its way
};

inline HWND ControlOf(const MixerWindow& mixer, int fixedId) {
    return mixer.fixed[MixerFixedIndex(fixedId)];
}

// ---- mixer_controls_win.cpp: making, placing and painting
int CreateMixerControls(MixerWindow* mixer);
// Shows the sources that stand in `mixer`, or the message that there are none.
void ShowMixerColumns(MixerWindow* mixer);
void LayOutMixerWindow(MixerWindow* mixer, int width, int height);
void PaintMixer(MixerWindow* mixer);
void FreeMixerFonts(MixerWindow* mixer);
// Treble and bass follow what the device has.
void EnableMixerMasters(MixerWindow* mixer);
