// The components as the console sees them: what each is, what it needs, and in which orders they
// are restored and stopped. Plain data and sums over it; the rows themselves are filled in app/.
#pragma once
#include <cstdint>

enum ComponentKind : uint8_t {
    kEngineComponent, // a hidden window's thread; shown as a lamp
    kWindowComponent, // a component window; shown as a button
    kIconComponent    // an icon in the notification area; shown as a button
};

constexpr uint16_t kConsoleWindowId = 1;
constexpr uint16_t kCdPlayerWindowId = 2;
constexpr uint16_t kSpectrumWindowId = 3;
constexpr uint16_t kMixerWindowId = 4;
constexpr uint16_t kVisualsWindowId = 5;
constexpr uint16_t kDatabaseWindowId = 6;
constexpr uint16_t kScopeWindowId = 7;
constexpr uint16_t kMediaWindowId = 9;
constexpr uint16_t kLayoutsWindowId = 12;

constexpr int kMaxComponents = 16;
constexpr int kRestoreRanks = 10; // ranks 1..10; one that no row has is a step all the same
constexpr int kLoadingSteps = 9;  // range of the loading dialog's bar
constexpr int kWindowSlots = 8;

struct ComponentTraits {
    ComponentKind kind = kEngineComponent;
    uint16_t windowId = 0; // 0 for engines and icons
    uint16_t command = 0;  // console command that switches it, and the id of its button or lamp
    uint16_t engine = 0;   // command of the engine it needs; 0 none
    const char* onValue =
        nullptr; // DWORD in the console's section; null: neither saved nor restored
    uint8_t restoreRank =
        0;                // 1 CD engine, 2 waves, 3 mixer engine, 4 CD player, 5 spectrum, 6 scope,
                          // 7 mixer window, 8 volume icon, 9 CD icon, 10 media player; 0 never
    uint8_t stopRank = 0; // ascending at shutdown: windows, then engines, then icons
    uint8_t withEngineRank = 0;  // ascending among those that stop together with their engine
    uint8_t dependantsFirst = 0; // engines: dependants stop before the engine, else after it
};

// Row of a rank; -1 when there is none.
int RowOfRestoreRank(const ComponentTraits* rows, int count, int rank);

// Rows in the order in which shutdown stops them; returns how many (count).
int ShutdownOrder(const ComponentTraits* rows, int count, int order[kMaxComponents]);
// Rows that depend on the engine with this command, in the order in which they stop with it.
int DependantOrder(const ComponentTraits* rows, int count, int engine, int order[kMaxComponents]);

// Place of a component window in the group (Z order, moves, alignment): CD player, spectrum
// analyzer, visuals host, mixer, layouts, media player, CD database manager, oscilloscope.
// -1 for any other id.
int WindowSlot(int windowId);

// Whether a component-closed notice for this window id may concern anything at all, and whether
// the component's on/off value is then written as 0.
int ClosedNoticeCounts(int windowId);
int ClosedNoticeSaves(int windowId);
