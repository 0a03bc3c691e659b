// The parts of which installation and its taking back are made. Paths of folders have no backslash
// at their end, but for a drive's root. Functions give 1 and 0 and say nothing themselves, unless
// told.
#pragma once
#include "app/setup.h"
#include "core/platform.h"

static_assert(kPathSize == MAX_PATH);

struct SetupChoices {
    char folder[kPathSize]; // where the program is to stand; its own one copies nothing
    int claimCd, claimMedia;
    int startMenu;
    int discDrive; // make the disc drive the machine's CD-audio driver
};

// How far it is. Show may be null.
struct SetupProgress {
    HWND owner;
    void (*Show)(HWND owner, int done, int total);
};

// ---- setup_install_win.cpp: does it all, and says what was not possible. 1 when installed.
int Install(const SetupChoices& choices, const SetupProgress& progress);
// What "/install" means by itself: the program's own folder, or where that can't be written the
// default one; everything but the disc drive.
SetupChoices UsualChoices();
void SayHowItWent(HWND owner, int installed);
// A message box of the installation, about a path (may be null); its button.
int SetupBox(HWND owner, UINT captionId, UINT textId, const char* path, UINT style);

// ---- setup_defaults_win.cpp: only where the user has no value
int SeedDefaults();

// ---- setup_dialog_win.cpp
// The same with the choices in a dialog. Answers when it was cancelled, too.
void InstallByDialog(const SetupChoices& proposed);

// ---- setup_files_win.cpp
int OwnProgram(char (&path)[kPathSize]); // 0 when its path is too long to be named anywhere
// The installed program as it was noted at installation; 0 where there is none.
int InstalledProgram(char (&path)[kPathSize]);
// Where a user has the right to write, whoever it is.
void DefaultFolder(char (&folder)[kPathSize]);
int SameFile(const char* a, const char* b);
// Makes the folder when it is missing. 1 when files can be written there.
int PrepareFolder(const char* folder);
int IsWritable(const char* folder);
// The running program, its libraries and its manual. Either all of them are new afterwards or, with
// 0, none that was there before is harmed.
int CopyProgram(const char* folder, const SetupProgress& progress);
// The disc database of another installation, unless the folder has one.
void CarryDatabase(const char* from, const char* folder);
uint32_t ProgramKilobytes(const char* folder);
// What CopyProgram put there, but not the running executable. The rest of the folder stays. 0 when
// some could not be deleted.
int DeleteProgram(const char* folder);
int DeleteDatabase(const char* folder); // 0 when it, too, is still there
// The executable that runs, and its folder where that is empty then, as soon as it has ended.
int DeleteOwnProgramLater();

// ---- setup_close_win.cpp
// Asks and closes a program that runs. 0 when it still does.
int CloseRunningProgram(HWND owner, UINT captionId);

// ---- setup_shell_win.cpp
// "App Paths" and the ".cdp" association.
int RegisterShell(const char* program);
// As "Saved\Module", where it is looked for later. Below the settings root, so it makes a copy of
// the program an installed one.
int NoteProgram(const char* program);
void TakeBackShell();
// The entry in the system's list of installed programs.
int ListProgram(const char* program);
int IsListed();
void UnlistProgram();

// ---- setup_menu_win.cpp
int AddToStartMenu(const char* folder);
void RemoveFromStartMenu();

// ---- setup_drive_win.cpp
int IsDiscDriveWanted(); // no real CD drive in the machine
int IsDiscDriveOurs();   // its driver is the machine's CD-audio driver
int RegisterDiscDrive(const char* folder);
void TakeBackDiscDrive(const char* folder); // unless it is another folder's driver
