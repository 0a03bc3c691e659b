// The program's entry: command line, installation, the hand-over to a running instance, and the
// console's message loop.
#include "app/install_win.h"
#include "app/table_win.h"
#include "archive/exchange_win.h"
#include "archive/store_queue_win.h"
#include "archive/transfer_win.h"
#include "cd/engine_win.h"
#include "cdinfo/store.h"
#include "core/command_line.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "core/text.h"
#include "ui/console_win.h"
#include "ui/framework_win.h"
#include "ui/look_win.h"

#include <cstdlib>
#include <cstring>
#include <ole2.h>

// The build's date stamp, which other builds and the visuals host compare.
constexpr const char* kBuildDate = "Feb  4 2006";

constexpr int kExitHandedOver = 1;
constexpr DWORD kLastChangesMs = 2000;                // for what the manager still has to store
constexpr uint32_t kLongestHold = 50, kUsualHold = 5; // buffers

constexpr float kBandCentres[16] = {150,  400,  600,  800,  1000, 1500,  2000,  2500,
                                    3250, 4000, 5000, 6250, 8000, 10000, 12500, 18000};

static void FillFixedFields(uint16_t year, uint16_t monthDay) {
    SharedBlock->BuildYear = year;
    SharedBlock->BuildMonthDay = monthDay;
    std::memcpy(SharedBlock->BandCentres, kBandCentres, sizeof kBandCentres);
    const uint32_t hold = SharedBlock->HoldLimit;
    if (!hold || hold > kLongestHold) SharedBlock->HoldLimit = kUsualHold;
}

// What the command line asks for, left in the block for whoever runs: this instance or the one
// that was there before.
static void FillCommand(const StartRequest& request) {
    uint32_t bits = 0;
    if (request.MediaFileGiven) {
        std::memcpy(SharedBlock->CommandFile, request.MediaFilePath,
                    sizeof SharedBlock->CommandFile);
        bits |= kCommandOpenFile;
    }
    ClearSharedBits(SHARED_FIELD(CommandFlags), kCommandNoUi);
    if (request.PlayRequested) {
        const auto letter = static_cast<int16_t>(static_cast<signed char>(request.PlayDriveLetter));
        SharedBlock->CommandDrive = static_cast<uint16_t>(letter);
        bits |= kCommandPlayCd;
        if (request.PPlay) bits |= kCommandNoUi;
    }
    SetSharedBits(SHARED_FIELD(CommandFlags), bits);
}

static int IsFile(const char* path) {
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The instance that will play the file may have another current folder.
static void MakeMediaFileAbsolute(StartRequest* request) {
    char path[MAX_PATH];
    const DWORD length = request->MediaFileGiven
                             ? GetFullPathNameA(request->MediaFilePath, sizeof path, path, nullptr)
                             : 0;
    if (length && length < sizeof path) CopyText(request->MediaFilePath, path);
}

static int RunLoop() {
    MSG message = {};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

static void OpenDatabase() {
    EnsureDatabase(nullptr);
    EnsureDatabase(nullptr); // the second open proves what the first one made
    MigrateRegistryDiscs();
    MigrateIniDiscs();
}

static int RunFirstInstance(HINSTANCE instance, const StartRequest& request, UINT taskbarCreated) {
    OpenDatabase();
    ConsoleStart start = {};
    start.instance = instance;
    start.table = Components();
    start.noEngines = static_cast<int>(request.NoEngines);
    start.openMediaFile = static_cast<int>(request.MediaFileGiven);
    start.taskbarCreated = taskbarCreated;
    UIOptions.PPlay = static_cast<LONG>(request.PPlay);
    const int result = CreateConsole(start) ? RunLoop() : 0;
    FlushCdRecords(); // typed while another program held the database
    FinishChanges(kLastChangesMs);
    FinishTransfers(kLastChangesMs);
    ExchangeShared(SHARED_FIELD(RunningFlags), 0);
    return result;
}

static int RunInstalled(HINSTANCE instance, const StartRequest& request, UINT taskbarCreated,
                        uint16_t year, uint16_t monthDay) {
    RefreshShellRegistrations();
    InitCommonControls();
    SharedBlock = OpenSharedBlock();
    if (!SharedBlock) return 0; // another build's block, or none to be had
    const uint32_t running = SetSharedBits(SHARED_FIELD(RunningFlags), kRunningInstance);
    FillFixedFields(year, monthDay);
    FillCommand(request);
    int result = kExitHandedOver;
    if (running) {                          // its console looks once a second
        AllowSetForegroundWindow(ASFW_ANY); // the user's click was for that console
        SetSharedBits(SHARED_FIELD(CommandFlags), kCommandNew);
    } else {
        result = RunFirstInstance(instance, request, taskbarCreated);
    }
    SharedControlBlock* block = SharedBlock;
    SharedBlock = nullptr;
    CloseSharedBlock(block);
    return result;
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    uint16_t year = 0, monthDay = 0;
    ParseBuildDate(kBuildDate, &year, &monthDay);
    InitColors();
    OleInitialize(nullptr);
    RegisterWheelMessage();
    const UINT taskbarCreated = RegisterWindowMessageA("TaskbarCreated");
    StartRequest request = EmptyStartRequest();
    ParseWords(__argc, __argv, &request);
    JoinMediaWords(__argc, __argv, IsFile, &request);
    MakeMediaFileAbsolute(&request);
    int result = 0;
    if (request.InstallUIRequested || request.InstallRequested)
        InstallProgram(request);
    else if (request.UninstallRequested)
        UninstallProgram();
    else if (request.RegisterShellRequested)
        WriteShellRegistrations();
    else if (!RegKeyExists(kUserRoot, kSettingsRoot))
        InstallProgram(request);
    else
        result = RunInstalled(instance, request, taskbarCreated, year, monthDay);
    OleUninitialize();
    return result;
}
