// Geometry of the spectrum analyzer: where its controls, panes, columns and segments stand for a
// client size. Numbers only; letters are measured by the window.
//
// The display with its buttons at the right (wide windows) or below; where buttons could not be
// read there are none, and the display has the whole window: the context menu has them all.
#pragma once
#include "ui/geometry.h"
#include "waves/analyzer.h"

// The controls' ids are the commands that they send.
enum AnalyzerControl {
    kAnalyzerPower = 701,
    // 702 to 707: AnalyzerToggle
    kAnalyzerStereo = 710, // indicators
    kAnalyzerFormat = 711,
    kAnalyzerName = 712,
    kAnalyzerGain = 713, // the slider
    kAnalyzerSetUp = 751,
    kAnalyzerConfigure = 752
};
constexpr int kAnalyzerControls = 13;
extern const int kAnalyzerControlIds[kAnalyzerControls];
constexpr int kAnalyzerButtons = 9;    // the first ones of them
constexpr int kAnalyzerFirstTip = 800; // + 16 * channel + band: tooltips of the columns

constexpr int kAnalyzerMargin = 7;     // pixels round everything
constexpr int kAnalyzerTinyMargin = 2; // in a window that shows the display alone
constexpr int kAnalyzerGroupGap = 7;   // between groups: room for their edges

struct AnalyzerPane {
    Box frame;   // its outline
    Box plot;    // what the columns fill
    Box caption; // above; empty without room or need
    Box axis;    // below, as wide as the plot; empty without room
    int bandWidth;
};

struct AnalyzerLayout {
    Box controls[kAnalyzerControls]; // in the order of kAnalyzerControlIds
    Box groups[2]; // bounds of display and buttons; empty without room for an edge
    Box panel;     // the dark display; all that follows lies on it
    Box level;     // the level bar; empty without room
    AnalyzerPane panes[kAnalyzerChannels];
    int paneCount;
    int paneChannel[kAnalyzerChannels];     // what a pane shows when there are several
    Box columns[kAnalyzerChannels][kBands]; // empty for a channel that is not shown
};

AnalyzerLayout LayOutAnalyzer(int width, int height, const AnalyzerSettings& settings);

// Which bands get their label below a pane: every so many, the one before the middle first. 0: none
// has room. `widest`: pixels of the widest label.
int AxisStep(int bandWidth, int widest);
int AxisFirst(int step);

// Segment k of a column: empty when the column is too low for it.
Box SegmentBox(const Box& column, int k);
// The mark at the segment's top.
Box SegmentMark(const Box& column, int k);
// The level bar grows from the middle line to both sides; side 0 is the left one.
Box LevelMiddle(const Box& level);
int LevelRoom(const Box& level); // pixels of a side
Box LevelSegment(const Box& level, int side, int k);
Box LevelStretch(const Box& level, int side, int from, int to); // pixels from the middle
