// Texts of the string table.
#pragma once
#include "core/platform.h"

constexpr int kStringMax = 260; // characters with the NUL, the longest that any text may have

// Loads a text; an unknown id leaves an empty one. Returns its length.
int LoadText(UINT id, char* text, int size);
template <int N> int LoadText(UINT id, char (&text)[N]) {
    return LoadText(id, text, N);
}
