// Installing from the first file to the last registration. See install_win.h and setup_win.h.
#include "app/install_win.h"
#include "app/setup_win.h"
#include "cd/engine_win.h"
#include "core/extractor.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "media/types_win.h"
#include "mixer/engine_win.h"
#include "resources/ids.h"
#include "waves/engine_win.h"

#include <commctrl.h>

int SetupBox(HWND owner, UINT captionId, UINT textId, const char* path, UINT style) {
    char format[kStringMax], caption[kStringMax], text[kStringMax + MAX_PATH];
    LoadText(captionId, caption);
    LoadText(textId, format);
    FormatText(text, sizeof text, format, path ? path : "");
    return MessageBoxA(owner, text, caption, style);
}

void SayHowItWent(HWND owner, int installed) {
    SetupBox(owner, IDS_INSTALL_CAPTION, installed ? IDS_INSTALL_DONE : IDS_INSTALL_FAILED, nullptr,
             MB_OK | (installed ? MB_ICONINFORMATION : MB_ICONERROR));
}

static int Refuse(HWND owner, UINT textId, const char* path) {
    SetupBox(owner, IDS_INSTALL_CAPTION, textId, path, MB_OK | MB_ICONEXCLAMATION);
    return 0;
}

// ---- files

static int IsOwnFolder(const char* folder) {
    char own[kPathSize], ownFolder[kPathSize], program[kPathSize];
    if (!OwnProgram(own)) return 0;
    FolderOfPath(own, ownFolder);
    return SameFile(ownFolder, folder) && JoinPath(folder, kProgramFile, program) &&
           SameFile(own, program);
}

// The records of the installation that was there before, else of the copy that runs.
static void CarryRecords(const char* folder) {
    char program[kPathSize], from[kPathSize];
    if (!InstalledProgram(program) && !OwnProgram(program)) return;
    FolderOfPath(program, from);
    CarryDatabase(from, folder);
}

static int PlaceFiles(const char* folder, const SetupProgress& progress) {
    if (!PrepareFolder(folder)) return Refuse(progress.owner, IDS_SETUP_NOT_WRITABLE, folder);
    if (IsOwnFolder(folder)) return 1;
    if (!CloseRunningProgram(progress.owner, IDS_INSTALL_CAPTION))
        return Refuse(progress.owner, IDS_SETUP_STILL_RUNNING, nullptr);
    if (!CopyProgram(folder, progress))
        return Refuse(progress.owner, IDS_SETUP_COPY_FAILED, folder);
    CarryRecords(folder);
    return 1;
}

// ---- registry

static void RegisterMedia(const char* folder, const char* program, int claim) {
    char path[kPathSize], command[MAX_PATH + 2];
    if (JoinPath(folder, kExtractorFile, path)) RegisterExtractor(path);
    if (!claim) return;
    FormatText(command, sizeof command, "\"%s\"", program);
    RegisterMediaTypes(command);
    RefreshMediaIcons();
}

static int Register(const SetupChoices& choices, const char* program, HWND owner) {
    WriteLastOk(1);
    int done = SeedDefaults();
    if (choices.discDrive && !RegisterDiscDrive(choices.folder))
        Refuse(owner, IDS_SETUP_NO_DRIVE, nullptr); // all else works without it
    done &= RegisterShell(program) && NoteProgram(program);
    SeedCdDefaults(owner, choices.claimCd, program);
    RegisterMedia(choices.folder, program, choices.claimMedia);
    SeedWavesDefaults();
    SeedMixerDefaults();
    if (choices.startMenu) AddToStartMenu(choices.folder);
    done &= ListProgram(program);
    return done;
}

int Install(const SetupChoices& choices, const SetupProgress& progress) {
    char program[kPathSize];
    if (!PlaceFiles(choices.folder, progress)) return 0;
    if (IsOwnFolder(choices.folder)) {
        if (!OwnProgram(program)) return 0;
    } else if (!JoinPath(choices.folder, kProgramFile, program)) {
        return 0;
    }
    const int done = Register(choices, program, progress.owner);
    if (progress.Show) progress.Show(progress.owner, 1, 1);
    return done;
}

// ---- what is asked for

SetupChoices UsualChoices() {
    SetupChoices choices = {};
    char own[kPathSize];
    if (OwnProgram(own)) FolderOfPath(own, choices.folder);
    if (!IsWritable(choices.folder)) DefaultFolder(choices.folder);
    choices.claimCd = choices.claimMedia = choices.startMenu = 1;
    return choices;
}

// The dialog proposes the place of the installation that is there, so that it is brought up to
// date, and else not the folder of a download but the program's own.
static void ProposeFolder(SetupChoices* choices) {
    char program[kPathSize];
    if (InstalledProgram(program))
        FolderOfPath(program, choices->folder);
    else
        DefaultFolder(choices->folder);
}

static void InstallAtOnce(const SetupChoices& choices, int known, const char* asked) {
    const int installed =
        known ? Install(choices, {}) : Refuse(nullptr, IDS_SETUP_BAD_FOLDER, asked);
    SayHowItWent(nullptr, installed);
}

void InstallProgram(const StartRequest& request) {
    InitCommonControls();
    SetupChoices choices = UsualChoices();
    choices.claimCd = static_cast<int>(request.ClaimDefaultCDPlayer);
    choices.claimMedia = static_cast<int>(request.ClaimDefaultMediaPlayer);
    if (request.InstallUIRequested) {
        ProposeFolder(&choices);
        choices.discDrive = IsDiscDriveWanted(); // only here it can be declined
    }
    int known = 1;
    if (request.TargetGiven) {
        char full[MAX_PATH] = ""; // it may be told from the current folder
        const DWORD length = GetFullPathNameA(request.TargetPath, sizeof full, full, nullptr);
        known = length && length < sizeof full && ReadFolder(full, choices.folder);
        if (!known)
            CopyText(choices.folder, request.TargetPath); // the dialog shows what it refuses
    }
    if (request.InstallUIRequested)
        InstallByDialog(choices);
    else
        InstallAtOnce(choices, known, request.TargetPath);
}

// ---- registrations alone

int WriteShellRegistrations() {
    char program[kPathSize];
    if (!OwnProgram(program) || !RegisterShell(program)) return 0;
    return !RegKeyExists(kUserRoot, kSettingsRoot) || NoteProgram(program);
}

void RefreshShellRegistrations() {
    char program[kPathSize], saved[kPathSize];
    InstalledProgram(saved);
    if (!OwnProgram(program) || SameText(program, saved)) return;
    RegisterShell(program);
    NoteProgram(program);
    if (IsListed()) ListProgram(program); // or it would name a file that has gone
}
