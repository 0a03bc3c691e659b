// What the engine's tests share: the engine in a process of its own making, with the console's
// part played by a window of the test, and without a database.
#pragma once
#include "cd/engine_win.h"
#include "cdinfo/store_parts_win.h"
#include "core/commands.h"
#include "fake_device.h"
#include "tests/support/driver_win.h"

#include <gtest/gtest.h>

constexpr const char* kCdKey = "Software\\Tonvista\\CDEngine";

// No database: it is absent and can't be made. The engine then shows defaults.
inline const FileLayer& NoFiles() {
    static const FileLayer s_files = [] {
        FileLayer files = SystemFiles();
        files.read = [](const wchar_t*, std::vector<uint8_t>*) { return kFileMissing; };
        files.size = [](const wchar_t*, uint64_t*) { return kFileMissing; };
        files.lock = [](const wchar_t*, void**) { return kFileBusy; };
        return files;
    }();
    return s_files;
}

class Engine : public testing::Test {
protected:
    void SetUp() override {
        SetStoreFiles(&NoFiles());
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
        DestroyWindow(m_owner);
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
    }
    bool Start() {
        if (!StartComponentThread(CdEngineThread(), GetModuleHandleA(nullptr), m_owner))
            return false;
        s_engineProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(EngineWindow(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MarkProc)));
        Drain(); // until the disc has been read
        return RegisterCdWindow(m_owner) == 1;
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
    HWND m_owner = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 1, 1, nullptr,
                                   nullptr, nullptr, nullptr);
    static constexpr UINT kMark = WM_APP + 99;
    inline static const HANDLE s_marked = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    inline static WNDPROC s_engineProc;
};
