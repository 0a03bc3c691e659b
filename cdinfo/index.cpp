// See index.h.
#include "cdinfo/index.h"

#include <algorithm>

#include "core/bytes.h"
#include "core/text.h"

std::vector<IndexPair> ParseIndex(std::span<const uint8_t> bytes) {
    std::vector<IndexPair> pairs(bytes.size() / kIndexPairSize);
    ByteReader r{bytes};
    for (IndexPair& pair : pairs) {
        pair.disc = ReadU32(r);
        pair.entry = ReadU32(r);
    }
    return pairs;
}

std::vector<uint8_t> PackIndex(std::span<const IndexPair> pairs) {
    std::vector<uint8_t> bytes(pairs.size() * kIndexPairSize);
    ByteWriter w{bytes};
    for (const IndexPair& pair : pairs) {
        WriteU32(w, pair.disc);
        WriteU32(w, pair.entry);
    }
    return bytes;
}

const IndexPair* FindPair(std::span<const IndexPair> pairs, uint32_t disc) {
    for (const IndexPair& pair : pairs) {
        if (pair.disc == disc) return &pair;
    }
    return nullptr;
}

void EntryName(uint32_t entry, char (&name)[kEntryNameSize]) {
    FormatText(name, sizeof name, "%08X", static_cast<unsigned>(entry));
}

int ParseEntryName(const char16_t* name, uint32_t* entry) {
    *entry = 0;
    for (int i = 0; i < 8; ++i) {
        const char16_t c = name[i];
        uint32_t digit;
        if (c >= u'0' && c <= u'9')
            digit = c - u'0';
        else if (c >= u'A' && c <= u'F')
            digit = c - u'A' + 10;
        else if (c >= u'a' && c <= u'f')
            digit = c - u'a' + 10;
        else
            return 0;
        *entry = *entry << 4 | digit;
    }
    return !name[8];
}

// A bijective mix, so that no two identities tie.
static uint32_t Mix(uint32_t x) {
    x = (x ^ x >> 16) * 0x7FEB352Du;
    x = (x ^ x >> 15) * 0x846CA68Bu;
    return x ^ x >> 16;
}

void ScatterOrder(std::vector<uint32_t>* identities) {
    std::sort(identities->begin(), identities->end(),
              [](uint32_t a, uint32_t b) { return Mix(a) < Mix(b); });
}
