// Filter graphs and what goes into them. What the machine has to offer stands in a table, which
// tests replace.
#pragma once
#include "core/platform.h"

// Without it <dshow.h> poisons strcpy, sprintf and others for whatever is included after it.
#define NO_DSHOW_STRSAFE
#include <dshow.h>

struct MediaPlatform {
    HRESULT (*CreateGraph)(IGraphBuilder** graph);
    HRESULT (*CreateExtractor)(IBaseFilter** filter);
};
extern MediaPlatform TheMediaPlatform;

// COM on this thread for as long as it lives; also where the thread has it already.
struct [[nodiscard]] ComScope {
    ComScope() : result(CoInitialize(nullptr)) {}
    ~ComScope() {
        if (SUCCEEDED(result)) CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

    HRESULT result;
};

// Releases what is there and forgets it.
template <typename Interface> void ReleaseCom(Interface** object) {
    if (*object) (*object)->Release();
    *object = nullptr;
}

// 0 only when the graph refuses it: files also play without an extractor.
int AddExtractor(IGraphBuilder* graph);
// The graph of a sound file, all the way to the output. 0 also for a path that is too long.
int RenderMediaFile(IGraphBuilder* graph, const char* path);
// Full path of a file beside the program; 0 when it is too long.
int PathBesideProgram(const char* file, char (&path)[MAX_PATH]);
