// What the engine's tests share: the engine in a process of its own making, with the console's
// part played by a window of the test, and with a database of its own.
#pragma once
#include "cd/engine_win.h"
#include "cdinfo/store_parts_win.h"
#include "core/commands.h"
#include "fake_device.h"
#include "tests/support/driver_win.h"

#include <gtest/gtest.h>

constexpr const char* kCdKey = "Software\\Tonvista\\CDEngine";

// Files of the database lie in the temporary folder instead of beside the executable, where the
// database's own tests, run at the same time, have theirs.
inline std::wstring Elsewhere(const wchar_t* path) {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return folder + std::wstring(wcsrchr(path, L'\\') + 1);
}
template <auto Call, class... Rest> FileResult CallElsewhere(const wchar_t* path, Rest... rest) {
    return (SystemFiles().*Call)(Elsewhere(path).c_str(), rest...);
}
inline const FileLayer& FilesElsewhere() {
    static const FileLayer s_files = [] {
        FileLayer files = SystemFiles();
        files.read = CallElsewhere<&FileLayer::read>;
        files.write = CallElsewhere<&FileLayer::write>;
        files.flush = CallElsewhere<&FileLayer::flush>;
        files.size = CallElsewhere<&FileLayer::size>;
        files.remove = CallElsewhere<&FileLayer::remove>;
        files.replace = [](const wchar_t* path, const wchar_t* by, const wchar_t* backup) {
            return SystemFiles().replace(Elsewhere(path).c_str(), Elsewhere(by).c_str(),
                                         Elsewhere(backup).c_str());
        };
        files.move = [](const wchar_t* from, const wchar_t* to) {
            return SystemFiles().move(Elsewhere(from).c_str(), Elsewhere(to).c_str());
        };
        files.hold = [](void* lock, const wchar_t* path) {
            return SystemFiles().hold(lock, Elsewhere(path).c_str());
        };
        return files;
    }();
    return s_files;
}

// A window of the test that counts what it is posted: changes of the engine, requests to close.
struct Recorder {
    Recorder() {
        window = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr, nullptr,
                                 nullptr, nullptr);
    }
    ~Recorder() { DestroyWindow(window); }
    void Pump() {
        MSG message;
        while (PeekMessageA(&message, window, 0, 0, PM_REMOVE)) {
            changes += message.message == WM_COMMAND && message.wParam == kNotifyCdEngine &&
                       message.lParam == 0;
            closes += message.message == WM_CLOSE;
        }
    }
    HWND window;
    int changes = 0, closes = 0;
};

class Engine : public testing::Test {
protected:
    void SetUp() override {
        SetStoreFiles(&FilesElsewhere());
        DeleteRegTree(kUserRoot, kCdKey);
        SetCdNumber("Drive", 'D');
        SetCdNumber("IntroLength", 10);
        SharedBlock = OpenSharedBlock();
        ASSERT_NE(SharedBlock, nullptr);
    }
    void TearDown() override {
        s_fake.stallMs = 0;
        Stop();
        CloseSharedBlock(SharedBlock);
        SharedBlock = nullptr;
        s_fake.active = 0;
    }
    static void SetCdNumber(const char* name, uint32_t value) {
        WriteRegDword(kUserRoot, kCdKey, name, kRegDword, value);
    }
    static void UseFake(const FakeDisc& disc) {
        s_fake.Insert(disc);
        s_fake.mode = kModeStop;
        s_fake.position = 0;
        s_fake.opens = s_fake.plays = 0;
        s_fake.calls = NthCall{};
        s_fake.active = 1;
    }
    bool Start() {
        if (!StartComponentThread(CdEngineThread(), GetModuleHandleA(nullptr), m_recorder.window))
            return false;
        s_engineProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(EngineWindow(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MarkProc)));
        Drain(); // until the disc has been read
        return RegisterCdWindow(m_recorder.window) == 1;
    }
    static void Stop() { StopComponentThread(CdEngineThread()); }
    static HWND EngineWindow() { return CdEngineThread()->Window; }
    // Carried out when this returns; what it posts in turn as well.
    static void Do(uint32_t command, LPARAM argument = 0) {
        SendMessageA(EngineWindow(), WM_COMMAND, command, argument);
        Drain();
    }
    static void Poll() {
        SendMessageA(EngineWindow(), WM_TIMER, 700, 0);
        Drain();
    }
    // Sent messages overtake posted ones: a posted mark that comes by tells that those before it
    // are done. Twice, for what they post in turn.
    static void Drain() {
        for (int i = 0; i < 2; ++i) {
            PostMessageA(EngineWindow(), kMark, 0, 0);
            EXPECT_EQ(WaitForSingleObject(s_marked, 20000), WAIT_OBJECT_0);
        }
    }
    static LRESULT CALLBACK MarkProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == kMark) SetEvent(s_marked);
        return CallWindowProcA(s_engineProc, window, message, wParam, lParam);
    }
    static CdSnapshot Now() {
        CdSnapshot snapshot;
        GetCdSnapshot(&snapshot);
        return snapshot;
    }
    static CDInfoRecord Record() {
        CDInfoRecord record;
        GetCdRecord(&record);
        return record;
    }
    Recorder m_recorder;
    static constexpr UINT kMark = WM_APP + 99;
    inline static const HANDLE s_marked = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    inline static WNDPROC s_engineProc;
};
