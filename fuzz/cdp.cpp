// Old-style CDP files: any bytes; what is read lies in the file, has its right checksum, and comes
// before the first fault.
#include "cdinfo/old_style.h"

#include "cdinfo/record.h"

#include <cstdlib>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CdpReader reader;
    CdpEntry entry;
    CdpFault fault = OpenCdp({data, size}, &reader);
    if (fault != kCdpGood) return 0;
    auto record = std::make_unique<CDInfoRecord>();
    uint32_t read = 0;
    while (ReadCdpEntry(&reader, &entry, &fault)) {
        const auto& packed = entry.packed;
        if (packed.size() > kMaxPackedEntry || fault != kCdpGood || ++read > reader.count) abort();
        if (!packed.empty() && (packed.data() < data || &packed.back() >= data + size)) abort();
        *record = {};
        UnpackEntry(packed, record.get());
    }
    if (fault == kCdpGood && read != reader.count) abort();
    return 0;
}
