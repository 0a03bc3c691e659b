// What the tests of import and export share: discs as a database holds them, and a source of them.
#pragma once
#include "archive/exchange_win.h"
#include "tests/logic/archive/records.h"
#include "tests/windows/cdinfo/support.h"

#include <gtest/gtest.h>

#include <map>

inline std::string Narrow(const std::wstring& path) {
    return std::string(path.begin(), path.end()); // scratch paths are ASCII
}

// All of the database or of a CDP file, as packed discs by identity.
using Discs = std::map<uint32_t, std::string>;
inline Discs DiscsOf(const wchar_t* path = nullptr, int program = 1) {
    std::pair<Discs, int> result = {{}, program};
    EnumerateEntries(
        nullptr, path,
        [](const void* data, size_t, uint32_t identity, void* to) {
            auto& [discs, whole] = *static_cast<decltype(result)*>(to);
            discs[identity] = PackedDisc(*static_cast<const CDInfoRecord*>(data), whole);
            return 1;
        },
        &result, 0, 0);
    return result.first;
}

// A source of discs: those of the seeds from `first` to `last`.
struct Seeds {
    uint32_t next, last;
    uint16_t maxTracks;
};
inline int NextSeed(CDInfoRecord* record, void* context) {
    auto& seeds = *static_cast<Seeds*>(context);
    if (seeds.next > seeds.last) return 0;
    *record = *RandomDisc(seeds.next++, seeds.maxTracks);
    return 1;
}
