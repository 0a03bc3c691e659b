// Numbers of the program's resources, a range for each trade. Texts stand in the .rc part of the
// same name. Numbers marked (fixed) are known outside the program and never change.
#pragma once

// ---- cd information: strings 128-159 (fixed)
#define IDS_UNKNOWN_TITLE 128  // (fixed)
#define IDS_DEFAULT_ARTIST 129 // (fixed)
#define IDS_TRACK_NUMBER 130
#define IDS_DUPLICATE_TEXT 131
#define IDS_DUPLICATE_CAPTION 132
#define IDS_VARIOUS 134 // (fixed)

// ---- start-up and console: strings 256-319, 1040-1047; icon 401; dialogs 440-449
#define IDS_LASTOK_TEXT 256    // (fixed)
#define IDS_LASTOK_CAPTION 257 // (fixed)
#define IDS_SHORT_NAMES 287    // + window id (fixed)
#define IDS_INSTALL_FAILED 1040  // (fixed)
#define IDS_INSTALL_CAPTION 1041 // (fixed)
#define IDS_INSTALL_DONE 1042    // (fixed)
#define IDI_TONVISTA 401         // (fixed)
#define IDD_LOADING 440
#define IDC_LOADING_TEXT 1000
#define IDC_LOADING_BAR 1001
#define IDS_CONSOLE_LABELS 320   // console button labels and tooltips: 320-399

// ---- cd player: strings 500-599 (labels 500 + n, tooltips 550 + n); dialogs 450-459
#define IDS_CD_LABELS 500
#define IDS_CD_TIPS 550

// ---- cd information editor and store: strings 600-699; dialogs 460-469
#define IDD_CD_EDITOR 460
