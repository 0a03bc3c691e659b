// The program as the handler of .mp3, .wav, .m3u and .pls.
#pragma once
#include "core/platform.h"

int RegisterMediaTypes(const char* commandLine); // always 1
void ShowFileTypes(HWND owner);                  // the dialog
void RefreshMediaIcons();                        // "TouchFiles"
void ShowMediaPlayerRequired(HWND owner);
