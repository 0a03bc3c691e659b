// The media player window from the inside: what its files share. Everything here belongs to the
// window's own thread.
#pragma once
#include "core/platform.h"
#include "media/player.h"
#include "media/player_layout.h"
#include "ui/look_win.h"

struct MediaPlayer {
    HWND window, tooltips;
    HWND controls[kMediaControls]; // by id - kMediaFirst
    std::string shown[kMediaControls];
    uint8_t lit[kMediaControls];
    CachedFont fonts[kMediaFonts];
    MediaTextWidths widths;
    MediaLayout layout;

    Playlist list;
    int playing; // also while paused
    int paused;
    int Repeat, Random, TouchFiles;
    uint32_t seed;
    int failures;    // in a row
    int unknownType; // the caption tells of the last file instead
    int goesOn;      // the next tick goes on to the next entry
    int heard;       // the current file has got beyond its start
    int endTicks;    // in a row at which the position was the end
    double duration; // seconds, as the open graph gave it last
    int second;      // of the file, as the slider shows it
    int sliderMaximum;
    int dragging; // the slider's thumb is held
    int sought;   // where the slider asked to play since the last tick, or -1
    int dialogOpen;
    int started; // the first tick has come
};

inline HWND ControlOf(const MediaPlayer& player, int id) {
    return player.controls[id - kMediaFirst];
}

// ---- player_controls_win.cpp
int CreateMediaControls(MediaPlayer* player);
void LayOutMediaWindow(MediaPlayer* player, int width, int height);
void PaintMediaWindow(const MediaPlayer& player);
void FreeMediaFonts(MediaPlayer* player);
// Each acts only on a change.
void SetMediaText(MediaPlayer* player, int id, const std::string& text);
void SetMediaLit(MediaPlayer* player, int id, int on);
void ShowMediaCaption(MediaPlayer* player);

// ---- player_menu_win.cpp
// At the place of a WM_CONTEXTMENU. What is chosen arrives as WM_COMMAND.
void ShowMediaMenu(const MediaPlayer& player, LPARAM lParam);

// ---- player_files_win.cpp: what is opened, from wherever it comes
void ReadMediaSettings(MediaPlayer* player);
void WriteMediaSettings(const MediaPlayer& player);
// 1 when *list is there to be played from its start; else it stays as it was.
int OpenMediaPath(const std::string& path, Playlist* list);
// The only file that was dropped; empty where it is a folder, or several.
std::string OnlyDroppedFile(HDROP drop);
int OpenDroppedFiles(HDROP drop, Playlist* list); // several become a list
// 1 and the name when another instance, or the command line, left one.
int TakeCommandFile(std::string* path);
// Both show dialogs: the window may be gone afterwards. 1 when the entry that was current is no
// longer: what plays is not the list's then.
int EditMediaList(MediaPlayer* player);
void SaveMediaList(MediaPlayer* player);
