// CDDB disc files: any text gives records within their bounds; what is written of one reads back,
// and after that nothing changes any more.
#include "archive/cddb.h"

#include <cstdlib>
#include <memory>

static std::unique_ptr<CDInfoRecord> Read(std::string_view text) {
    auto record = std::make_unique<CDInfoRecord>();
    if (!ReadCddbEntry(text, {}, record.get())) return nullptr;
    if (record->trackCount < 1 || record->trackCount > kMaxTracks) abort();
    if (record->programCount > kMaxSegments || !record->identity) abort();
    return record;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    IsCddbFile(rest);
    size_t taken = 0;
    for (auto entry = NextCddbEntry(&rest); !entry.empty(); entry = NextCddbEntry(&rest)) {
        taken += entry.size();
        if (taken > size) abort();
        const auto record = Read(entry);
        if (!record) continue;
        const std::string text = WriteCddbEntry(*record, {});
        const auto again = Read(text);
        if (!again || again->identity != record->identity) abort();
        // Artists lose the stroke between blanks on the way, once.
        const auto third = Read(WriteCddbEntry(*again, {}));
        if (!third || WriteCddbEntry(*third, {}) != WriteCddbEntry(*again, {})) abort();
    }
    return 0;
}
