// The program as the handler of .mp3, .wav, .m3u and .pls.
#pragma once
#include "core/platform.h"

int RegisterMediaTypes(const char* commandLine); // always 1
// Each type opens again with what it opened with before, unless it was given to another since.
void UnregisterMediaTypes();
// The extractor's entry, as the DLL of that path does it. 0 where there is none.
int RegisterExtractor(const char* path);
int UnregisterExtractor(const char* path);
void ShowFileTypes(HWND owner); // the dialog
void RefreshMediaIcons();       // "TouchFiles"
void ShowMediaPlayerRequired(HWND owner);
