// Geometry of the media player window: where its controls stand for a client size, and how large
// the letters may be. Numbers only; the texts are measured by the window.
//
// Wide: display and slider at the left, buttons at the right. Stacked, for narrow windows: the
// buttons below, in as many columns as can be read. What has no room for legible letters is left
// out, the transport last: the context menu has everything.
#pragma once
#include "core/commands.h"
#include "ui/geometry.h"

// The controls' ids are the commands that they send.
enum MediaControl {
    kMediaCaption = 701,
    kMediaTime = 702,
    kMediaRepeat = 703,
    kMediaRandom = 704,
    kMediaPower = 705,
    kMediaName = 706,
    kMediaPrevious = 708,
    kMediaNext = 709,
    kMediaSeek = 712, // the slider; as a command: to where it stands
    kMediaOpen = 713,
    kMediaSave = 714,
    kMediaEditor = 715,
    kMediaHistory = 716
};
// Commands without a control.
enum MediaCommand {
    kMediaRefresh = 700,
    kMediaFileTypes = 717,
    kMediaTouchFiles = 718,
    kMediaEnded = 751,
    kMediaEntryFirst = 800 // + i: play entry i
};
constexpr int kMediaFirst = kMediaCaption;
constexpr int kMediaControls = 16;

constexpr int kMediaMargin = 7;      // pixels round everything
constexpr int kMediaTightMargin = 3; // in a window that is too small for edges round groups
constexpr int kMediaGap = 3;         // between neighbours

enum MediaGroup { kMediaDisplayGroup, kMediaButtonGroup, kMediaGroups };

struct MediaLayout {
    Box boxes[kMediaControls]; // by id - kMediaFirst; empty: left out
    Box groups[kMediaGroups];  // what shares an edge; empty without room for one
    Box panel;                 // the dark ground of caption and time
};
MediaLayout LayOutMedia(int width, int height);

// ---- letters: one size a kind
enum MediaFont { kMediaFontLabels, kMediaFontTime, kMediaFontCaption, kMediaFonts };
MediaFont MediaFontOf(int id);
// Of each control's usual text, in thousandths of the letters' cell height; 0 sets no limit.
struct MediaTextWidths {
    int width[kMediaControls];
};
constexpr int kMediaMinLetter = 7;
constexpr int kMediaMinCaption = 10; // it ends in dots rather than become smaller
// Cell heights in pixels by which no label is clipped; some room is left free unless `large`.
void MediaFontSizes(const MediaLayout& layout, const MediaTextWidths& widths, int large,
                    int (&sizes)[kMediaFonts]);
