// See text.h.
#include "core/text.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

void CopyText(char* to, size_t size, const char* from) {
    if (!size) return;
    size_t n = 0;
    if (from)
        while (n + 1 < size && from[n])
            ++n;
    if (n) std::memmove(to, from, n);
    to[n] = 0;
}

void AppendText(char* to, size_t size, const char* from) {
    const size_t used = strnlen(to, size);
    if (used < size) CopyText(to + used, size - used, from);
}

int FormatText(char* to, size_t size, const char* format, ...) {
    if (!size) return 0;
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(to, size, format, args);
    va_end(args);
    to[size - 1] = 0;
    if (n < 0) to[0] = 0;
    return static_cast<int>(std::strlen(to));
}

static char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
static char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

int SameText(const char* a, const char* b) {
    while (*a && Lower(*a) == Lower(*b)) {
        ++a;
        ++b;
    }
    return Lower(*a) == Lower(*b);
}

void LowerText(char* text) {
    for (; *text; ++text)
        *text = Lower(*text);
}

void UpperText(char* text) {
    for (; *text; ++text)
        *text = Upper(*text);
}
