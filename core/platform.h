// The one way <windows.h> enters: the version macros and the headers that every Windows file may
// use. WIN32_LEAN_AND_MEAN, NOMINMAX and STRICT come from the build. The macros are set anew,
// since any header of the C library has already given them the compiler's defaults.
#pragma once
#undef WINVER
#undef _WIN32_WINNT
#undef _WIN32_IE
#define WINVER 0x0601
#define _WIN32_WINNT 0x0601
#define _WIN32_IE 0x0600
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
