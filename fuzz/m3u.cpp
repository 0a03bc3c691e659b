// A playlist as bytes from outside: as M3U, written and read again, and as a PLS section.
#include "media/playlist.h"

#include <cstdlib>

static void Check(const Playlist& list) {
    if (list.entries.size() > kPlaylistMax) abort();
    for (const std::string& entry : list.entries) {
        if (entry.empty() || entry.size() > kMediaPathMax) abort();
        if (!ResolveEntry(list, entry).ends_with(entry)) abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const char* bytes = reinterpret_cast<const char*>(data);
    Playlist list = {.name = "C:\\Lists\\x.m3u", .position = 0, .entries = {"earlier"}};
    ParseM3u(bytes, size, &list);
    Check(list);
    Playlist again = {};
    const std::string text = FormatM3u(list);
    ParseM3u(text.data(), text.size(), &again);
    if (again.entries != list.entries) abort();

    const int count = size ? 1 << data[0] % 31 : 1;
    ParsePls(bytes, size, count, &list);
    Check(list);
    if (list.entries.size() > static_cast<size_t>(count)) abort();
    return 0;
}
