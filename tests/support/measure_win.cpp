// Counters of other processes under Wine. See measure_win.h.
#include "tests/support/measure_win.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <winternl.h>

// Whether it runs in our host: others may run programs of the same name at the same time.
static bool IsOfOurHost(long id) {
    const char* prefix = std::getenv("WINEPREFIX");
    FILE* file = std::fopen(("Z:\\proc\\" + std::to_string(id) + "\\environ").c_str(), "rb");
    std::vector<char> bytes(64 << 10);
    size_t size = 0;
    if (file) {
        size = std::fread(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
    }
    const std::string end(1, 0), text = end + std::string(bytes.data(), size);
    return !prefix || text.find(end + "WINEPREFIX=" + prefix + end) != std::string::npos;
}

// Wine gives neither the processor time nor the private memory of another process, so both are
// read where the Unix side keeps them: in /proc, of the newest process of that name.
static std::string UnixProcess(const char* name) {
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA("Z:\\proc\\*", &found);
    long newest = -1;
    do {
        const long id = std::atol(found.cFileName);
        char path[64], text[64] = "";
        std::snprintf(path, sizeof path, "Z:\\proc\\%ld\\comm", id);
        FILE* file = id > newest ? std::fopen(path, "r") : nullptr;
        if (!file) continue;
        if (std::fgets(text, sizeof text, file) && !std::strncmp(text, name, std::strlen(name)) &&
            IsOfOurHost(id))
            newest = id;
        std::fclose(file);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    return "Z:\\proc\\" + std::to_string(newest) + "\\";
}

double CpuSeconds(const char* name) {
    constexpr double kTicksPerSecond = 100;
    char line[512] = "";
    if (FILE* file = std::fopen((UnixProcess(name) + "stat").c_str(), "r")) {
        if (!std::fgets(line, sizeof line, file)) line[0] = 0;
        std::fclose(file);
    }
    long user = -1, kernel = 0; // fields 14 and 15; the name in brackets is field 2
    const char* rest = std::strrchr(line, ')');
    if (rest)
        std::sscanf(rest + 1, " %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %ld %ld", &user,
                    &kernel);
    return static_cast<double>(user + kernel) / kTicksPerSecond;
}

long PrivateKiB(const char* name) {
    char text[128] = "";
    long dirty = 0;
    if (FILE* file = std::fopen((UnixProcess(name) + "smaps_rollup").c_str(), "r")) {
        while (std::fgets(text, sizeof text, file))
            std::sscanf(text, "Private_Dirty: %ld", &dirty);
        std::fclose(file);
    }
    return dirty;
}

// GetProcessHandleCount and GetGuiResources answer 0 under Wine; these counters are true there.
int KernelHandles(DWORD processId) {
    struct HandleEntry {
        ULONG owner;
        BYTE type, flags;
        USHORT handle;
        void* object;
        ACCESS_MASK access;
    };
    using Query = LONG(NTAPI*)(ULONG, void*, ULONG, ULONG*);
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA("ntdll"), "NtQuerySystemInformation")));
    std::vector<char> bytes(4 << 20);
    ULONG used = 0;
    if (query(16, bytes.data(), static_cast<ULONG>(bytes.size()), &used) < 0) return -1;
    const ULONG count = *reinterpret_cast<ULONG*>(bytes.data());
    const auto* entry = reinterpret_cast<HandleEntry*>(bytes.data() + sizeof(void*));
    return static_cast<int>(std::count_if(
        entry, entry + count, [&](const HandleEntry& e) { return e.owner == processId; }));
}

int GdiObjects(HANDLE process) {
    struct GdiEntry {
        uint64_t object;
        uint32_t owner;
        uint16_t unique;
        uint8_t type, flags;
        uint64_t user;
    };
    constexpr size_t kEntries = 65536, kTableInPeb = 0x94;
    PROCESS_BASIC_INFORMATION basic = {};
    using Query = LONG(NTAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA("ntdll"), "NtQueryInformationProcess")));
    if (query(process, 0, &basic, sizeof basic, nullptr) < 0) return -1;
    uint32_t table = 0;
    SIZE_T got = 0;
    const char* at = reinterpret_cast<const char*>(basic.PebBaseAddress) + kTableInPeb;
    if (!ReadProcessMemory(process, at, &table, sizeof table, &got) || !table) return -1;
    std::vector<GdiEntry> entries(kEntries);
    if (!ReadProcessMemory(process, reinterpret_cast<void*>(static_cast<uintptr_t>(table)),
                           entries.data(), kEntries * sizeof(GdiEntry), &got))
        return -1;
    return static_cast<int>(std::count_if(entries.begin(), entries.end(),
                                          [](const GdiEntry& e) { return e.type != 0; }));
}

double Now() {
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return 1000.0 * static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}
