// Numbers of the program's resources, a range for each trade; those of the large rooms stand in
// files of their own. Texts stand in the .rc part of the same name. Numbers marked (fixed) are
// known outside the program and never change.
#pragma once
#include "resources/ids_archive.h"
#include "resources/ids_media.h"

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
#define IDS_MEDIA 383
#define IDS_MEDIA_TIP 384
#define IDS_SPECTRUM_LABEL 385
#define IDS_LAYOUTS 386
#define IDS_LAYOUTS_TIP 387
#define IDS_LAYOUTS_ICON_MENU 388

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
#define IDC_READ_TEXT 641
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
#define IDC_WAVES_DEVICE 700
#define IDC_WAVES_FORMAT 701
#define IDC_WAVES_FFT 702
#define IDS_WAVES_FORMATS 700 // + place in kFormatCodes
#define IDS_WAVES_FFT 712     // + "FFTChoice"
#define IDS_WAVES_NO_DEVICE 718
#define IDS_WAVES_NO_FORMATS 719
#define IDS_LOOPBACK_PREFIX 730
#define IDS_LOOPBACK_DEFAULT 731

// ---- spectrum analyzer: strings 750-799, its dialog 410 (fixed)
#define IDD_SPECTRUM_SETTINGS 410 // (fixed)
#define IDC_ANALYZER_HOLD 750
#define IDC_ANALYZER_HOLD_TEXT 751
#define IDC_ANALYZER_FALLOFF 752
#define IDC_ANALYZER_HIGH 753
#define IDC_ANALYZER_LOW 754
#define IDS_ANALYZER_LABELS 750 // + index in kAnalyzerControlIds
#define IDS_ANALYZER_TIPS 763   // + the same
#define IDS_ANALYZER_MENU 776   // + the same
#define IDS_ANALYZER_STEREO 785
#define IDS_ANALYZER_MONO 786
#define IDS_ANALYZER_FORMAT 787
#define IDS_ANALYZER_CHANNELS 788 // + AnalyzerChannel
#define IDS_ANALYZER_HOLD 791

// ---- oscilloscope: strings 800-849, its dialog 464 (fixed)
#define IDD_SCOPE_SETTINGS 464 // (fixed)
#define IDC_SCOPE_HIGH 801
#define IDC_SCOPE_LOW 802
#define IDC_SCOPE_LINE 803
#define IDC_SCOPE_RESET 804
#define IDS_SCOPE_POWER 800
#define IDS_SCOPE_FORCE_MONO 801
#define IDS_SCOPE_VERTICAL 802
#define IDS_SCOPE_GRADIENT 803
#define IDS_SCOPE_LEGENDS 804
#define IDS_SCOPE_SETTINGS 805
#define IDS_SCOPE_POWER_TIP 810
#define IDS_SCOPE_FORCE_MONO_TIP 811
#define IDS_SCOPE_VERTICAL_TIP 812
#define IDS_SCOPE_GRADIENT_TIP 813
#define IDS_SCOPE_LEGENDS_TIP 814
#define IDS_SCOPE_SETTINGS_TIP 815
#define IDS_SCOPE_GAIN_TIP 816
#define IDS_SCOPE_MODE_TIP 817
#define IDS_SCOPE_FORMAT_TIP 818
#define IDS_SCOPE_STEREO 820
#define IDS_SCOPE_MONO 821
#define IDS_SCOPE_LEFT_LEGEND 822
#define IDS_SCOPE_RIGHT_LEGEND 823
#define IDS_SCOPE_MONO_LEGEND 824
#define IDS_SCOPE_MENU_FORCE_MONO 825
#define IDS_SCOPE_MENU_SETTINGS 826
#define IDS_SCOPE_MENU_POWER 827

// ---- volume meter: strings 850-879, dialog 470
#define IDD_METER_SETTINGS 470
#define IDC_METER_GAIN 850
#define IDC_METER_GAIN_VALUE 851
#define IDC_METER_REFRESH 852
#define IDC_METER_REFRESH_VALUE 853
#define IDC_METER_FOREGROUND 854
#define IDC_METER_BACKGROUND 855
#define IDS_METER_TIP 850
#define IDS_METER_MENU_LEFT_RIGHT 851
#define IDS_METER_MENU_CENTER 852
#define IDS_METER_MENU_CONFIGURE 853
#define IDS_METER_GAIN_VALUE 854
#define IDS_METER_REFRESH_VALUE 855

// ---- mixer engine: strings 880-899; mixer window: strings 900-999, dialog 471
#define IDD_MIXER_CONFIG 471
#define IDS_NO_MIXER 880
#define IDS_NO_MIXER_CAPTION 881
#define IDS_SYSTEM_VOLUME 882
#define IDC_MIXER_DEVICES 900
#define IDS_MIXER_LABELS 900   // + MixerFixedIndex
#define IDS_MIXER_TIPS 920     // + MixerFixedIndex
#define IDS_MIXER_MESSAGES 940 // + index of the destination; 8 for any other
#define IDS_MIXER_MENU_CONFIGURE 950

// ---- layouts: strings 1140-1152 and menus 1154-1159
#define IDS_LAYOUTS_MENU 1140
#define IDS_LAYOUTS_ENTRY 1141
#define IDS_LAYOUTS_CHOICE_TIP 1142
#define IDS_LAYOUTS_RECALL 1143
#define IDS_LAYOUTS_RECALL_TIP 1144
#define IDS_LAYOUTS_STORE 1145
#define IDS_LAYOUTS_STORE_TIP 1146
#define IDS_LAYOUTS_CLOSE 1147
#define IDS_LAYOUTS_BRAND 1148
#define IDS_LAYOUTS_BRAND_TIP 1149
// ---- hotkeys: string 1153 (fixed), further ones 1160-1167; dialog 443 (fixed)
#define IDD_HOTKEYS 443          // (fixed)
#define IDS_HOTKEYS_CAPTION 1153 // (fixed)
#define IDS_HOTKEY_REFUSED 1160
#define IDS_HOTKEY_PROMPT 1161
#define IDS_MENU_HOTKEYS 1162
// Controls of a hotkey: in the order of storage, first its check box, its text, its button.
#define IDC_HOTKEY_PLAY 808             // (fixed)
#define IDC_HOTKEY_PLAY_TEXT 813        // (fixed)
#define IDC_HOTKEY_PLAY_SET 818         // (fixed)
#define IDC_HOTKEY_FORWARD 809          // (fixed)
#define IDC_HOTKEY_FORWARD_TEXT 814     // (fixed)
#define IDC_HOTKEY_FORWARD_SET 819      // (fixed)
#define IDC_HOTKEY_BACK 810             // (fixed)
#define IDC_HOTKEY_BACK_TEXT 815        // (fixed)
#define IDC_HOTKEY_BACK_SET 820         // (fixed)
#define IDC_HOTKEY_STOP 811             // (fixed)
#define IDC_HOTKEY_STOP_TEXT 816        // (fixed)
#define IDC_HOTKEY_STOP_SET 821         // (fixed)
#define IDC_HOTKEY_PAUSE 812            // (fixed)
#define IDC_HOTKEY_PAUSE_TEXT 817       // (fixed)
#define IDC_HOTKEY_PAUSE_SET 822        // (fixed)
#define IDC_HOTKEY_EJECT 823            // (fixed)
#define IDC_HOTKEY_EJECT_TEXT 824       // (fixed)
#define IDC_HOTKEY_EJECT_SET 825        // (fixed)
#define IDC_HOTKEY_MUTE 826             // (fixed)
#define IDC_HOTKEY_MUTE_TEXT 827        // (fixed)
#define IDC_HOTKEY_MUTE_SET 828         // (fixed)
#define IDC_HOTKEY_MEDIA_PLAY 829       // (fixed)
#define IDC_HOTKEY_MEDIA_PLAY_TEXT 830  // (fixed)
#define IDC_HOTKEY_MEDIA_PLAY_SET 831   // (fixed)
#define IDC_HOTKEY_MEDIA_STOP 832       // (fixed)
#define IDC_HOTKEY_MEDIA_STOP_TEXT 833  // (fixed)
#define IDC_HOTKEY_MEDIA_STOP_SET 834   // (fixed)
#define IDC_HOTKEY_MEDIA_PAUSE 835      // (fixed)
#define IDC_HOTKEY_MEDIA_PAUSE_TEXT 836 // (fixed)
#define IDC_HOTKEY_MEDIA_PAUSE_SET 837  // (fixed)
#define IDC_HOTKEY_REFUSED 838          // + place in storage order, to 847
#define IDC_HOTKEYS_CAPTION 848

// ---- appearance: strings 1340-1399; dialogs 441 colours, 442 font; bitmaps 463, 464 (fixed)
#define IDD_COLORS 441
#define IDD_FONT 442
#define IDB_BACKGROUND 463  // (fixed)
#define IDB_BUTTON_FACE 464 // (fixed)
#define IDS_MENU_COLORS 1340
#define IDS_MENU_FONT 1341
#define IDS_BITMAP_FILTER 1342 // pairs of text and pattern, "|" for the NULs
#define IDS_BACKGROUND_FILE 1343
#define IDS_BUTTON_FACE_FILE 1344
#define IDS_ALIGNMENTS 1345    // + BitmapAlign
#define IDC_COLORS_SWATCH 1340 // + place in kColorValues
#define IDC_COLORS_DEFAULTS 1347
#define IDC_FONT_LIST 1348
// the same for either bitmap
#define IDC_BACKGROUND_USE 1350
#define IDC_BACKGROUND_BUILT_IN 1351
#define IDC_BACKGROUND_FILE 1352
#define IDC_BACKGROUND_PATH 1353
#define IDC_BACKGROUND_CHOOSE 1354
#define IDC_BACKGROUND_STRETCH 1355
#define IDC_BACKGROUND_ALIGN_TEXT 1356
#define IDC_BACKGROUND_ALIGN 1357
#define IDC_FACE_USE 1360
#define IDC_FACE_BUILT_IN 1361
#define IDC_FACE_FILE 1362
#define IDC_FACE_PATH 1363
#define IDC_FACE_CHOOSE 1364
#define IDC_FACE_STRETCH 1365
#define IDC_FACE_ALIGN_TEXT 1366
#define IDC_FACE_ALIGN 1367

// ---- cd icon: strings 1400-1410, icon 402; cd engine configuration: strings 482-499, dialog 444
#define IDI_CD_ICON 402
#define IDS_CD_ICON 1400
#define IDS_CD_ICON_SHORT 1401
#define IDS_CD_ICON_TIP 1402
#define IDS_CD_ICON_MENU 1403
#define IDS_CD_ICON_NAME 1404 // what the icon says before anything else
#define IDS_CD_ICON_PROPERTIES 1405
#define IDS_CD_ICON_OPTIONS 1406 // + bit of "CDIconShowOptions", to 1410
#define IDS_CD_ENGINE_CONFIGURE 482
#define IDD_CD_CONFIG 444
#define IDC_CD_CONFIG_DRIVE 1010
#define IDC_CD_CONFIG_INTRO 1011
#define IDC_CD_CONFIG_INTRO_SPIN 1012
#define IDC_CD_CONFIG_AUTO_EJECT 1013
#define IDC_CD_CONFIG_STOP_EXIT 1014
#define IDC_CD_CONFIG_DEFAULT 1015
#define IDC_CD_CONFIG_AUTO_RUN 1016
#define IDC_CD_CONFIG_AUTO_EXIT 1017

// ---- installation and help: strings 400-439; dialogs 445 install, 446 uninstall
#define IDS_MENU_HELP 400
#define IDS_HELP_MISSING 401
#define IDS_HELP_CAPTION 402
#define IDS_SETUP_NOT_WRITABLE 403
#define IDS_SETUP_BAD_FOLDER 404
#define IDS_SETUP_RUNNING 405
#define IDS_SETUP_STILL_RUNNING 406
#define IDS_SETUP_COPY_FAILED 407
#define IDS_SETUP_NO_DRIVE 408
#define IDS_SETUP_BROWSE 409
#define IDS_UNINSTALL_CAPTION 410
#define IDS_UNINSTALL_TEXT 411
#define IDS_UNINSTALL_DONE 412
#define IDS_UNINSTALL_LEFT 413
#define IDS_HELP_NO_BROWSER 414
#define IDD_INSTALL 445
#define IDC_INSTALL_FOLDER 1450
#define IDC_INSTALL_BROWSE 1451
#define IDC_INSTALL_CD 1452
#define IDC_INSTALL_MEDIA 1453
#define IDC_INSTALL_MENU 1454
#define IDC_INSTALL_DRIVE 1455
#define IDC_INSTALL_DRIVE_HINT 1456
#define IDC_INSTALL_BAR 1457
#define IDD_UNINSTALL 446
#define IDC_UNINSTALL_TEXT 1460
#define IDC_UNINSTALL_DATABASE 1461
#define IDC_UNINSTALL_SETTINGS 1462
