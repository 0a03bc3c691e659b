// A list view of another process: its cells read and its rows selected, through memory in that
// process.
#pragma once
#include "tests/support/driver_win.h"

#include <commctrl.h>

class ListPeer {
public:
    explicit ListPeer(HWND window) : list(window) {
        DWORD id = 0;
        GetWindowThreadProcessId(list, &id);
        process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
        if (process) memory = VirtualAllocEx(process, nullptr, 4096, MEM_COMMIT, PAGE_READWRITE);
    }
    ~ListPeer() {
        if (memory) VirtualFreeEx(process, memory, 0, MEM_RELEASE);
        if (process) CloseHandle(process);
    }
    ListPeer(const ListPeer&) = delete;
    ListPeer& operator=(const ListPeer&) = delete;

    int Count() const { return static_cast<int>(Send(LVM_GETITEMCOUNT, 0, 0)); }
    int Selected() const { return static_cast<int>(Send(LVM_GETSELECTEDCOUNT, 0, 0)); }
    int Next(int row, UINT what) const {
        return static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(row), what));
    }
    std::string Cell(int row, int column) const {
        char text[512] = "";
        LVITEMA item = {};
        item.iSubItem = column;
        item.pszText = static_cast<char*>(memory) + sizeof item;
        item.cchTextMax = sizeof text;
        SendItem(LVM_GETITEMTEXTA, row, item);
        ReadProcessMemory(process, item.pszText, text, sizeof text - 1, nullptr);
        return text;
    }
    // Row -1: all of them.
    void Select(int row, bool on = true, UINT state = LVIS_SELECTED) const {
        LVITEMA item = {};
        item.stateMask = state;
        item.state = on ? state : 0;
        SendItem(LVM_SETITEMSTATE, row, item);
    }
    void SelectOnly(int row) const {
        Select(-1, false);
        Select(row, true, LVIS_SELECTED | LVIS_FOCUSED);
    }
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const {
        LRESULT answer = -2;
        Ask(list, message, wParam, lParam, &answer);
        return answer;
    }
    void SetOrder(const int* order, int count) const {
        WriteProcessMemory(process, memory, order, sizeof *order * static_cast<size_t>(count),
                           nullptr);
        Send(LVM_SETCOLUMNORDERARRAY, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(memory));
    }
    std::string Order(int count) const {
        int order[16] = {};
        std::string text;
        Send(LVM_GETCOLUMNORDERARRAY, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(memory));
        ReadProcessMemory(process, memory, order, sizeof order, nullptr);
        for (int i = 0; i < count; ++i)
            text += std::to_string(order[i]);
        return text;
    }
    const HWND list;

private:
    void SendItem(UINT message, int row, const LVITEMA& item) const {
        WriteProcessMemory(process, memory, &item, sizeof item, nullptr);
        Send(message, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory));
    }
    HANDLE process = nullptr;
    void* memory = nullptr;
};
