// The check of compound files: whatever passes it can be read to its last byte, and what is flat
// can be laid out anew with the same streams.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "cdinfo/compound_write.h"

static void LayOutAnew(const CompoundView& view) {
    std::vector<CompoundPart> parts;
    for (const CompoundStream& stream : view.streams)
        parts.push_back(CarryPart(view, stream));
    std::vector<uint8_t> image;
    CompoundView made;
    if (!BuildCompound(view.root, std::move(parts), &image) ||
        CheckCompound(image, &made) != kCompoundGood || made.streams.size() != view.streams.size())
        std::abort();
    for (size_t i = 0; i < made.streams.size(); ++i) {
        if (!IsSameName(view.streams[i], made.streams[i]) ||
            !IsSameStream(view, view.streams[i], made, made.streams[i]))
            std::abort();
    }
}

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
    if (view.isFlat) LayOutAnew(view);
    return 0;
}
