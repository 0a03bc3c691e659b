// Names of file types and the places of their icons. See types.h.
#include "media/types.h"

#include "core/text.h"

#include <cstdlib>
#include <cstring>

constexpr const char* kClassPrefix = "Tonvue";

const char* const kMediaExtensions[kMediaTypeCount] = {".mp3", ".wav", ".m3u", ".pls"};

void MediaClass(const char* extension, char* text, size_t size) {
    FormatText(text, size, "%s%s", kClassPrefix, extension);
}

int IsOwnClass(const char* text) {
    char start[8] = "";
    static_assert(sizeof start > sizeof "Tonvue");
    CopyText(start, std::strlen(kClassPrefix) + 1, text);
    return SameText(start, kClassPrefix);
}

void SplitIconPlace(const char* text, char* file, size_t size, int* index) {
    const char* begin = text + (*text == '"');
    const char* end = *text == '"' ? std::strchr(begin, '"') : std::strrchr(begin, ',');
    const size_t length = end ? static_cast<size_t>(end - begin) : std::strlen(begin);
    CopyText(file, length + 1 < size ? length + 1 : size, begin);
    const char* number = std::strrchr(end ? end : "", ',');
    *index = number ? std::atoi(number + 1) : 0;
}
