// A program can't delete its own file while it runs. A batch file does it, and then itself. See
// setup_win.h.
#include "app/setup_win.h"
#include "core/text.h"

#include <cstring>

// The paths come in the environment, which knows neither code pages nor per cent signs. It tries
// for a minute, since the process may take its time to end; "ping" is a wait of a second.
constexpr const char* kBatch = "@echo off\r\n"
                               "set TONVISTA_TRIES=0\r\n"
                               ":again\r\n"
                               "del /f /q \"%TONVISTA_PROGRAM%\" >nul 2>nul\r\n"
                               "if not exist \"%TONVISTA_PROGRAM%\" goto gone\r\n"
                               "set /a TONVISTA_TRIES=TONVISTA_TRIES+1\r\n"
                               "if \"%TONVISTA_TRIES%\"==\"60\" goto gone\r\n"
                               "ping -n 2 127.0.0.1 >nul 2>nul\r\n"
                               "goto again\r\n"
                               ":gone\r\n"
                               "rmdir \"%TONVISTA_FOLDER%\" >nul 2>nul\r\n"
                               "del /f /q \"%~f0\" >nul 2>nul\r\n";

static int WriteBatch(const char* path) {
    const HANDLE file =
        CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    DWORD written = 0;
    const auto length = static_cast<DWORD>(std::strlen(kBatch));
    const int good = WriteFile(file, kBatch, length, &written, nullptr) && written == length;
    CloseHandle(file);
    return good;
}

// In the folder for temporary files: a process holds the folder in which it was started.
static int RunBatch(const char* batch, const char* folder) {
    char shell[MAX_PATH] = "", line[3 * MAX_PATH];
    const DWORD length = GetEnvironmentVariableA("ComSpec", shell, sizeof shell);
    if (!length || length >= sizeof shell) CopyText(shell, "cmd.exe");
    FormatText(line, sizeof line, "\"%s\" /d /c \"\"%s\"\"", shell, batch);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessA(nullptr, line, nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, folder,
                        &startup, &process))
        return 0;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return 1;
}

int DeleteOwnProgramLater() {
    char program[kPathSize], folder[kPathSize], temp[MAX_PATH], name[64], batch[kPathSize];
    if (!OwnProgram(program)) return 0;
    FolderOfPath(program, folder);
    const DWORD length = GetTempPathA(sizeof temp, temp);
    if (!length || length >= sizeof temp) return 0;
    FormatText(name, sizeof name, "TonvistaRemove%lu.bat", GetCurrentProcessId());
    if (!JoinPath(temp, name, batch) || !WriteBatch(batch)) return 0;
    SetEnvironmentVariableA("TONVISTA_PROGRAM", program);
    SetEnvironmentVariableA("TONVISTA_FOLDER", folder);
    if (RunBatch(batch, temp)) return 1;
    DeleteFileA(batch);
    return 0;
}
