// A database of the tests' own for import and export: whoever asks for the default one gets another
// file, since other test programs run from the same folder at the same time.
#pragma once
#include "archive/exchange_win.h"
#include "core/settings.h"
#include "tests/logic/archive/records.h"
#include "tests/windows/cdinfo/support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

struct OwnState {
    int writeFails;
};
inline OwnState s_own; // one for all files of the test program

inline std::wstring Own(const wchar_t* path) {
    const std::wstring standard = DefaultDatabasePath();
    const std::wstring given = path;
    if (given.compare(0, standard.size(), standard)) return given;
    return Scratch(L"own.cdp") + given.substr(standard.size());
}

inline const FileLayer& OwnFiles() {
    static FileLayer own = SystemFiles();
    own.read = [](auto p, auto b) { return SystemFiles().read(Own(p).c_str(), b); };
    own.write = [](auto p, auto b) {
        return s_own.writeFails ? kFileFailed : SystemFiles().write(Own(p).c_str(), b);
    };
    own.flush = [](auto p) { return SystemFiles().flush(Own(p).c_str()); };
    own.size = [](auto p, auto b) { return SystemFiles().size(Own(p).c_str(), b); };
    own.replace = [](auto p, auto r, auto b) {
        return SystemFiles().replace(Own(p).c_str(), Own(r).c_str(), Own(b).c_str());
    };
    own.move = [](auto p, auto q) { return SystemFiles().move(Own(p).c_str(), Own(q).c_str()); };
    own.remove = [](auto p) { return SystemFiles().remove(Own(p).c_str()); };
    own.lock = [](auto p, auto l) { return SystemFiles().lock(Own(p).c_str(), l); };
    own.hold = [](auto l, auto p) { return SystemFiles().hold(l, Own(p).c_str()); };
    return own;
}

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
