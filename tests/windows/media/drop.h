// What the shell hands to a window that files are dropped on.
#pragma once
#include "core/platform.h"

#include <cstring>
#include <shellapi.h>
#include <shlobj.h>
#include <string>
#include <vector>

inline HDROP DropOf(const std::vector<std::string>& paths, POINT place = {}) {
    std::string names;
    for (const std::string& path : paths)
        names += path + '\0';
    const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + names.size() + 1);
    auto* drop = static_cast<DROPFILES*>(GlobalLock(memory));
    drop->pFiles = sizeof *drop;
    drop->pt = place;
    memcpy(drop + 1, names.data(), names.size());
    GlobalUnlock(memory);
    return static_cast<HDROP>(memory);
}
