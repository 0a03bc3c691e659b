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
#define IDS_LASTOK_TEXT 256      // (fixed)
#define IDS_LASTOK_CAPTION 257   // (fixed)
#define IDS_SHORT_NAMES 287      // + window id (fixed)
#define IDS_INSTALL_FAILED 1040  // (fixed)
#define IDS_INSTALL_CAPTION 1041 // (fixed)
#define IDS_INSTALL_DONE 1042    // (fixed)
#define IDI_TONVISTA 401         // (fixed)
#define IDD_LOADING 440
#define IDC_LOADING_TEXT 1000
#define IDC_LOADING_BAR 1001
// Console button labels, tooltips and menu texts: 320-399
#define IDS_CONSOLE_BRAND 320
#define IDS_CONSOLE_MINIMIZE 321
#define IDS_CONSOLE_MINIMIZE_SHORT 322
#define IDS_CONSOLE_MINIMIZE_TIP 323
#define IDS_CONSOLE_CLOSE 324
#define IDS_CONSOLE_CLOSE_TIP 325
#define IDS_CONSOLE_VOLUME_TIP 326
#define IDS_CONSOLE_ICON_TIP 327
#define IDS_MENU_ALWAYS_ON_TOP 330
#define IDS_MENU_TASKBAR_ICON 331
#define IDS_MENU_3D_LOOK 332
#define IDS_MENU_LOCK_MOVEMENT 333
#define IDS_MENU_LOCK_WINDOWS 334
#define IDS_MENU_LARGE_FONT 335
#define IDS_MENU_PREVENT_SAVER 336
#define IDS_MENU_TASKBAR_ONLY 337
#define IDS_MENU_ENGINES 338
#define IDS_MENU_COMPONENTS 339
#define IDS_CD_ENGINE 350
#define IDS_CD_ENGINE_SHORT 351
#define IDS_CD_ENGINE_TIP 352
#define IDS_CD_ENGINE_ENGAGE 353
#define IDS_CD_ENGINE_DISENGAGE 354
#define IDS_CD_PLAYER 356
#define IDS_CD_PLAYER_TIP 357
#define IDS_WAVES_ENGINE 360
#define IDS_WAVES_ENGINE_SHORT 361
#define IDS_WAVES_ENGINE_TIP 362
#define IDS_WAVES_ENGINE_MENU 363
#define IDS_WAVES_ENGINE_ENGAGE 364
#define IDS_WAVES_ENGINE_DISENGAGE 365
#define IDS_WAVES_ENGINE_CONFIGURE 366
#define IDS_MIXER_ENGINE 367
#define IDS_MIXER_ENGINE_SHORT 368
#define IDS_MIXER_ENGINE_TIP 369
#define IDS_MIXER_ENGINE_ENGAGE 370
#define IDS_MIXER_ENGINE_DISENGAGE 371
#define IDS_MIXER_ENGINE_CONFIGURE 372
#define IDS_SPECTRUM 373
#define IDS_SPECTRUM_TIP 374
#define IDS_SCOPE 375
#define IDS_SCOPE_TIP 376
#define IDS_MIXER 377
#define IDS_MIXER_TIP 378
#define IDS_VOLUME_ICON 379
#define IDS_VOLUME_ICON_SHORT 380
#define IDS_VOLUME_ICON_TIP 381
#define IDS_VOLUME_ICON_MENU 382

// ---- cd engine: strings 480-499
#define IDS_NO_CD_DRIVE 480
#define IDS_NO_CD_CAPTION 481

// ---- cd player: strings 500-599 (labels 500 + n, tooltips 550 + n); dialogs 450-459
#define IDS_CD_LABELS 500 // + control id - 700 (fixed)
#define IDS_CD_MENU_DRIVE 545
#define IDS_CD_MENU_IMAGE 546
#define IDS_CD_MENU_EJECT_IMAGE 547
#define IDS_CD_IMAGE_CAPTION 548
#define IDS_CD_IMAGE_FILTER 549 // pairs of text and pattern, "|" for the NULs
#define IDS_CD_TIPS 550         // + control id - 700 (fixed)
#define IDS_CD_TIP_PROGRAM_POSITION 595
#define IDS_CD_TIP_PROGRAM_TOTAL 596
#define IDS_CD_IMAGE_FAILED 597

// ---- cd information editor and store: strings 600-699; dialogs 460-469
#define IDD_CD_EDITOR 460
#define IDD_READ_PROGRESS 461
#define IDC_READ_BAR 640
#define IDC_EDITOR_TITLE 600
#define IDC_EDITOR_COMMENT 601
#define IDC_EDITOR_SAME_ARTIST 602
#define IDC_EDITOR_TRACKS 603
#define IDC_EDITOR_TRACKS_SUM 604
#define IDC_EDITOR_PROGRAM 605
#define IDC_EDITOR_PROGRAM_SUM 606
#define IDC_EDITOR_ADD_TRACKS 607
#define IDC_EDITOR_STRETCH_TRACK 608
#define IDC_EDITOR_FROM_MINUTE 609
#define IDC_EDITOR_FROM_SECOND 610
#define IDC_EDITOR_TO_MINUTE 611
#define IDC_EDITOR_TO_SECOND 612
#define IDC_EDITOR_STRETCH_NOTE 613
#define IDC_EDITOR_ADD_STRETCH 614
#define IDC_EDITOR_UP 615
#define IDC_EDITOR_DOWN 616
#define IDC_EDITOR_REMOVE 617
#define IDC_EDITOR_CLEAR 618
#define IDC_EDITOR_CELL 619 // the edit control over a cell of the track list
#define IDC_EDITOR_FROM_MINUTE_SPIN 620
#define IDC_EDITOR_FROM_SECOND_SPIN 621
#define IDC_EDITOR_TO_MINUTE_SPIN 622
#define IDC_EDITOR_TO_SECOND_SPIN 623
#define IDS_EDITOR_CAPTION 600
#define IDS_EDITOR_NO_DISC 601
#define IDS_EDITOR_TOO_LARGE 602
#define IDS_EDITOR_COLUMN_NUMBER 603
#define IDS_EDITOR_COLUMN_ARTIST 604
#define IDS_EDITOR_COLUMN_TITLE 605
#define IDS_EDITOR_COLUMN_COMMENT 606
#define IDS_EDITOR_COLUMN_LENGTH 607
#define IDS_EDITOR_COLUMN_TRACK 608
#define IDS_EDITOR_COLUMN_PART 609
#define IDS_EDITOR_TRACKS_SUM 610
#define IDS_EDITOR_PROGRAM_SUM 611
#define IDS_EDITOR_PROGRAM_EMPTY 612
#define IDS_EDITOR_WHOLE_TRACK 613
#define IDS_EDITOR_STRETCH_LENGTH 614
#define IDS_EDITOR_STRETCH_SECONDS 615
#define IDS_EDITOR_STRETCH_PAST 616
#define IDS_EDITOR_STRETCH_EMPTY 617
#define IDS_EDITOR_STRETCH_FULL 618

// ---- waves engine: strings 700-749, its dialog 403 (fixed)
#define IDD_WAVES_CONFIG 403 // (fixed)
#define IDS_LOOPBACK_PREFIX 730
#define IDS_LOOPBACK_DEFAULT 731

// ---- spectrum analyzer: strings 750-799, its dialog 410 (fixed)
#define IDD_SPECTRUM_SETTINGS 410 // (fixed)

// ---- oscilloscope: strings 800-849, its dialog 464 (fixed)
#define IDD_SCOPE_SETTINGS 464 // (fixed)

// ---- volume meter: strings 850-879, dialog 470
#define IDD_METER_SETTINGS 470

// ---- mixer engine: strings 880-899; mixer window: strings 900-999, dialog 471
#define IDD_MIXER_CONFIG 471
