// A compound file laid out in one pass, in time linear in its size. The platform inserts streams
// one by one, each in time that grows with their number.
#pragma once
#include <span>
#include <string_view>
#include <vector>

#include "cdinfo/compound.h"

// A stream of the new file: bytes, or a stream of a checked file that is carried over.
struct CompoundPart {
    char16_t name[kMaxCompoundName + 1] = {}; // ASCII, not empty
    std::span<const uint8_t> bytes;
    const CompoundView* from = nullptr; // instead of bytes
    const CompoundStream* stream = nullptr;
};

// `name` is ASCII; a longer one than there may be makes a part that is refused.
CompoundPart MakePart(std::string_view name, std::span<const uint8_t> bytes);
CompoundPart CarryPart(const CompoundView& view, const CompoundStream& stream);

// A file of version 3 whose root holds these streams, in any order. 0 when a name is none, two are
// the same, the file would be larger than a database may be, or there is no memory for it. What
// the parts point at must not be in `image`.
int BuildCompound(const CompoundStamps& root, std::vector<CompoundPart> parts,
                  std::vector<uint8_t>* image);
