// WM_COMMAND ids that travel between windows, from menus and from other processes. Ids of a
// window's own controls (from 700 in every window) stand with that window. Numbers never change:
// other programs post them.
#pragma once

// ---- what every component window's menu offers besides its own; passed on to the console
enum LayoutCommand {
    kLayoutFirst = 200, // + n: apply layout n, 0 to 5
    kLayoutLast = 205
};

// ---- what every component window knows or sends to its owner, the console
enum CommonCommand {
    kNotifyCdEngine = 2020,    // from the CD engine: its state changed, read it again
    kNotifyMixer = 2121,       // from the mixer engine
    kComponentClosed = 1111,   // lParam: component window id
    kGroupAlign = 1122,        // high word: sender's id, lParam: arrow key
    kGroupStretch = 1133,      // the same
    kGroupMove = 2222,         // high word: sender's id, lParam: dy << 16 | (dx & 0xFFFF)
    kGroupRaise = 3134,        // lParam: the window handle
    kWheelStep = 3136,         // lParam: not 0 moves a bar by -2, 0 by +2
    kAskMovementLocked = 3137, // sent; the answer forbids a drag when not 0
    kDatabaseChanged = 3138,   // lParam: entry identity
    kForwardKey = 3150,        // high word: sender's id, lParam: virtual key
    kLookChanged = 3132,       // from the console: lay out again (3D look)
    kFontChanged = 3133,       // from the console: make fonts anew
    kColorsChanged = 3135,     // from the console: colours or bitmaps are others, paint anew
    kFormatChanged = 3131      // lParam 0: the sound's format changed, read it again
};

// ---- the console's commands (and the ids of its buttons and menu entries)
enum ConsoleCommand {
    kConsoleClose = 700,
    kConsoleMinimizeAll = 701,
    kConsoleCdPlayer = 702,
    kConsoleSpectrum = 703,
    kConsoleMixer = 704,
    kConsoleCdIcon = 706,
    kConsoleVolumeIcon = 707,
    kConsoleDatabase = 708,
    kConsoleScope = 709,
    kConsoleMedia = 712,
    kConsoleLayouts = 715,
    kConsoleHelp = 716,
    kConsoleCdEngine = 719,
    kConsoleWavesEngine = 720,
    kConsoleMixerEngine = 722,
    kConsoleAlwaysOnTop = 740,
    kConsoleTaskbarIcon = 741,
    kConsole3dLook = 742,
    kConsoleConfigureWaves = 743,
    kConsoleConfigureCd = 744,
    kConsoleConfigureMixer = 745,
    kConsoleTaskbarOnly = 746,
    kConsoleColors = 747,
    kConsolePreventSaver = 748,
    kConsoleLargeFont = 749,
    kConsoleFont = 750,
    kConsoleLockMovement = 751,
    kConsoleLockWindows = 752,
    kConsoleHotkeys = 754,
    kConsoleCdIconOption = 770, // + bit of "CDIconShowOptions", 0 to 4
    kConsoleFirstHotkey = 780,  // ids of WM_HOTKEY, 780 to 789
    kConsoleIconCallback = 798
};

// ---- the CD engine's commands, posted to its hidden window (argument in lParam)
enum CdEngineCommand {
    kCdPlay = 1,      // 0: resume or the current entry; n: track n to the end of the disc
    kCdSeek = 2,      // seconds in the current track
    kCdPlayEntry = 3, // play-list index (programmed play)
    kCdPause = 4,     // pause or resume
    kCdStop = 5,
    kCdEject = 6,         // or close the door
    kCdNext = 7,          // steps, 0 counts as 1
    kCdPrevious = 8,      // steps
    kCdUseDrive = 701,    // drive letter
    kCdIntroLength = 702, // seconds
    kCdOptions = 703,     // bits, see cd/engine_state.h
    kCdRecordChanged = 704,
    kCdModeChanged = 705 // previous play flags
};

// ---- commands that reach the CD player window besides its controls
enum CdPlayerCommand {
    kPlayerTrackFirst = 600, // + n: play track n
    kPlayerDriveFirst = 900, // + k: use drive letter 'A' + k
    kPlayerConfigure = 750
};

// ---- buttons of the media player window that others press, too (ids of its controls)
enum MediaPlayerCommand { kMediaPlay = 707, kMediaPause = 710, kMediaStop = 711 };

// ---- the Waves engine's commands, for its hidden window
enum WavesEngineCommand {
    kWavesOpen = 700,        // capture on the saved device; nothing when it captures already
    kWavesClose = 701,       // capture off until the next kWavesOpen
    kWavesReconfigure = 702, // lParam: device in the low word, format code in the high word
    kWavesFftChoice = 703    // how much is analysed has been stored anew: read it
};

// ---- the mixer engine's command, for its hidden window
enum MixerEngineCommand {
    kMixerUseDevice = 700 // lParam: device index
};
