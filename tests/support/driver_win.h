// Drives the real program, for tests and benchmarks: starts it in a folder of its own with the disc
// drive beside it, posts commands to its windows, answers its boxes and reads what a user or
// another program would see.
#pragma once
#include "core/platform.h"
#include "core/commands.h"
#include "core/disc_drive.h"
#include "core/settings.h"
#include "core/shared_block.h"

#include <functional>
#include <string>

constexpr const char* kProgramFolder = "C:\\TonvistaTest";
constexpr const char* kWindowClass = "TNVUIWindowClass";
constexpr const char* kCdEngineClass = "CDPlayrHiddenWindowClassName";
constexpr DWORD kPatienceMs = 8000; // for anything that should come

// Copies the program and its DLLs of a build folder to kProgramFolder, a path without blanks, which
// the MCI registration needs, and makes the drive the machine's CD-audio driver.
bool InstallProgram(const std::string& build);
// The drive alone.
bool InstallDrive(const std::string& build);
// The build folder of the running test or benchmark.
std::string BuildFolder();

std::string ProgramPath();
std::string DatabasePath();

// Waits until the condition holds; false when it does not within the time.
bool WaitUntil(const std::function<bool()>& condition, DWORD waitMs = kPatienceMs);

// Settings as after an installation: nothing switched on, drive D, no automatic play, no disc, no
// database; and every window has a place of its own. Tests switch on what they need before they
// start the program.
void FreshSettings();
void SwitchOn(const char* onOffValue);           // a value of section UIWindow1
void PutImage(const std::string& path);          // into the disc drive; empty takes it out
void SetDrive(const char* name, uint32_t value); // a number in the drive's key
void CalmDrive();                                // door closed, manners for trials off

// ---- windows
HWND FindConsole();
HWND FindComponent(const char* title);
HWND FindCdEngine();
HWND Child(HWND window, int id);
std::string TextOf(HWND window);
std::string ChildText(HWND window, int id);
RECT PlaceOf(HWND window);
// SendMessage that gives up after kPatienceMs; false then.
bool Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* answer = nullptr);
void Command(HWND window, UINT id, LPARAM lParam = 0);
// Milliseconds until the window answered WM_NULL; kPatienceMs when it did not.
DWORD AnswerTime(HWND window);
// Waits for a dialog of that caption, gives its message text, and answers it with the button.
bool AnswerBox(const char* caption, int button, std::string* text = nullptr);

// ---- processes
class Process {
public:
    Process() = default;
    explicit Process(const std::string& arguments, const std::string& program = ProgramPath());
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    // Exit code, or -1 when it does not end in time.
    int WaitEnd(DWORD waitMs = kPatienceMs);
    bool Runs() const;
    void Kill();
    HANDLE handle = nullptr;
    DWORD id = 0;
};

// The shared block as another process sees it, or null while no program runs.
struct SharedPeer {
    SharedPeer();
    ~SharedPeer();
    SharedControlBlock* block = nullptr;
    HANDLE mapping = nullptr;
};
