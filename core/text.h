// Texts in fixed buffers: single-byte characters, always terminated.
#pragma once
#include <cstddef>

// Copies at most size - 1 characters and terminates. A null source counts as empty.
void CopyText(char* to, size_t size, const char* from);
template <size_t N> void CopyText(char (&to)[N], const char* from) {
    CopyText(to, N, from);
}

// Appends within the buffer's size, cutting what does not fit.
void AppendText(char* to, size_t size, const char* from);

// printf into a buffer, cut at its size; returns the length of what stands there.
int FormatText(char* to, size_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// Comparison that ignores the case of A to Z only, so that it is the same under every locale:
// 1 when equal.
int SameText(const char* a, const char* b);

// Lower or upper case of A to Z, in place.
void LowerText(char* text);
void UpperText(char* text);
