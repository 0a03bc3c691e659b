// Counters of other processes under Wine, for tests that look for leaks and for benchmarks. The
// system's own (GetGuiResources, GetProcessHandleCount, GetProcessTimes) answer 0 there.
#pragma once
#include "core/platform.h"

#include <string>
#include <vector>

// Milliseconds, by the fine clock.
double Now();
double Median(std::vector<double> values);
// Of the newest process of that name; 10 ms steps.
double CpuSeconds(const char* name);
long PrivateKiB(const char* name);
int KernelHandles(DWORD processId);
int GdiObjects(HANDLE process);
