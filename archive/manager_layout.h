// Geometry of the database manager window: where its controls stand for a client size, and how the
// panes share the height. Numbers only; texts are measured by the window.
//
// The list gets what it can. Above it stand indicators and search field, below it the summary and
// the buttons. Where the window is too small, summary, buttons and indicators give way in this
// order: the context menu and the keyboard have them all.
#pragma once
#include "ui/geometry.h"

// The controls' ids are the commands that they send.
enum ManagerControl {
    kManagerPower = 700,
    kManagerName = 701,
    kManagerView = 702,     // indicator: which view
    kManagerSort = 703,     // indicator: which order
    kManagerProgress = 704, // indicator: how many rows, or how far something is
    kManagerExport = 705,
    kManagerImport = 706,
    kManagerCopy = 707,
    kManagerPaste = 708,
    kManagerDelete = 709,
    kManagerEdit = 710,
    kManagerSelect = 711,
    kManagerPrint = 712,
    kManagerToggle = 713, // goes to the next view
    kManagerList = 715,
    kManagerSummary = 716,
    kManagerDivider = 717,
    kManagerSearch = 718
};
constexpr int kManagerControls = 18;
extern const int kManagerControlIds[kManagerControls];
int ManagerControlIndex(int id); // -1 for others
constexpr int kManagerFirstIndicator = 0, kManagerIndicators = 4;
constexpr int kManagerFirstButton = 4, kManagerButtons = 10; // in reading order

enum ManagerGroup { kManagerStripGroup, kManagerPanesGroup, kManagerButtonGroup, kManagerGroups };

struct ManagerLayout {
    Box boxes[kManagerControls]; // as in kManagerControlIds; empty: left out
    Box panel;                   // the dark ground of the indicators
    Box groups[kManagerGroups];  // what shares an edge; empty without room for one
    int panesHeight;             // what list, divider and summary share
    int letterHeight;            // of labels, at most: their cell, in pixels
};

struct ManagerWish {
    int large;      // "Large Font Size"
    int listHeight; // as the divider was left; 0 or less: by rule
};
// Where large letters would cost the buttons, labels stay as they are; the list's own do not.
ManagerLayout LayOutManager(int width, int height, const ManagerWish& wish);
// Cell height in pixels of the letters.
int ManagerLetterHeight(int large);
constexpr int kManagerMinLetter = 7;
