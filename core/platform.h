// The one way <windows.h> enters: the version macros and the headers that every Windows file may
// use. WIN32_LEAN_AND_MEAN, NOMINMAX and STRICT come from the build.
#pragma once
#define WINVER 0x0601
#define _WIN32_WINNT 0x0601
#define _WIN32_IE 0x0600
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
