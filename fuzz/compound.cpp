// The check of compound files: whatever passes it can be read to its last byte.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "cdinfo/compound.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CompoundView view;
    if (CheckCompound({data, size}, &view) != kCompoundGood) return 0;
    size_t total = 0;
    for (const CompoundStream& stream : view.streams) {
        const auto bytes = ReadCompoundStream(view, stream);
        if (bytes.size() != stream.size) std::abort();
        if (!IsSameStream(view, stream, view, stream)) std::abort();
        total += bytes.size();
        std::string name;
        for (const char16_t* at = stream.name; *at && *at < 0x80; ++at)
            name.push_back(static_cast<char>(*at));
        FindCompoundStream(view, name);
    }
    // No sector belongs to two streams, so all of them together fit into the file.
    if (total > size) std::abort();
    return 0;
}
