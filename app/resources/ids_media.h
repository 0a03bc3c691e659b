// Numbers of the media player's resources: part of ids.h.
#pragma once

// ---- media player: strings 1048-1139 and 1190-1199; dialogs 449 (file types, fixed), 472 playlist
// editor, 473 history, 474 progress, 475 "MediaPlayer Required!"
#define IDD_FILE_TYPES 449 // (fixed)
#define IDD_PLAYLIST 472
#define IDD_HISTORY 473
#define IDD_MEDIA_PROGRESS 474
#define IDD_MEDIA_REQUIRED 475
#define IDD_PICK_ICON 476
// dialogs: 1100-1179
#define IDC_LIST 1100 // entries of either dialog
#define IDC_LIST_ADD_FILES 1101
#define IDC_LIST_ADD_FOLDER 1102
#define IDC_LIST_UP 1103
#define IDC_LIST_DOWN 1104
#define IDC_LIST_REMOVE 1105
#define IDC_LIST_CLEAR 1106
#define IDC_LIST_SAVE 1107
#define IDC_LIST_TOTAL 1108
#define IDC_LIST_READING 1109 // how far the lengths are, and the button that holds them
#define IDC_LIST_HOLD 1110
#define IDC_LIST_COUNT 1111
#define IDC_LIST_MARK 1112 // the line where dragged rows go
#define IDC_PROGRESS_TEXT 1113
#define IDC_HISTORY_REMOVE 1114
#define IDC_HISTORY_CLEAR 1115
#define IDS_OPEN_CAPTION 1100
#define IDS_OPEN_FILTER 1101 // pairs of text and pattern, "|" for the NULs
#define IDS_SAVE_CAPTION 1102
#define IDS_SAVE_FILTER 1103
#define IDS_ADD_CAPTION 1104
#define IDS_ADD_FILTER 1105
#define IDS_ADD_FOLDER_TEXT 1106
#define IDS_DIALOGS_CAPTION 1107
#define IDS_TOO_MANY_CHOSEN 1108
#define IDS_LIST_FULL 1109
#define IDS_NAMES_TOO_LONG 1110
#define IDS_PATH_GONE 1111
#define IDS_SAVE_FAILED 1112
#define IDS_COLUMN_NUMBER 1113
#define IDS_COLUMN_FILE 1114
#define IDS_COLUMN_FOLDER 1115
#define IDS_COLUMN_LENGTH 1116
#define IDS_ENTRY_COUNT 1117
#define IDS_READING_LENGTHS 1119
#define IDS_HOLD_LENGTHS 1120
#define IDS_GO_ON_LENGTHS 1121
#define IDS_LENGTHS_HELD 1122
#define IDS_FILES_FOUND 1123
#define IDS_NO_SONGS 1124
#define IDS_PLAYLIST_CAPTION 1126
// player window: 1048-1099
#define IDS_MEDIA_LABELS 1048 // + id of the control - 701
#define IDS_MEDIA_TIPS 1064   // the same
#define IDS_MEDIA_MENU_OPEN 1080
#define IDS_MEDIA_MENU_SAVE 1081
#define IDS_MEDIA_MENU_EDITOR 1082
#define IDS_MEDIA_MENU_HISTORY 1083
#define IDS_MEDIA_MENU_PLAY 1084
#define IDS_MEDIA_MENU_PAUSE 1085
#define IDS_MEDIA_MENU_STOP 1086
#define IDS_MEDIA_MENU_PREVIOUS 1087
#define IDS_MEDIA_MENU_NEXT 1088
#define IDS_MEDIA_MENU_REPEAT 1089
#define IDS_MEDIA_MENU_RANDOM 1090
#define IDS_MEDIA_MENU_FILE_TYPES 1091
#define IDS_MEDIA_MENU_TOUCH_FILES 1092
#define IDS_MEDIA_MENU_POWER 1093
#define IDS_MEDIA_UNKNOWN_TYPE 1094
// file types and the box: controls 1180-1199, strings 1190-1199
#define IDS_CHOOSE_ICON 1190 // + row of the file types dialog
#define IDS_VENDOR_PAGE 1194
#define IDS_ICON_FILTER 1195 // pairs of text and pattern, "|" for the NULs
#define IDC_TYPE_TICK 1186   // + row
#define IDC_TYPE_ICON 1189   // + row
#define IDC_TYPE_CHOOSE 1192 // + row
#define IDC_VENDOR_PAGE 1196
#define IDC_ICON_FILE 1197
#define IDC_ICON_LIST 1198
#define IDC_ICON_BROWSE 1199
