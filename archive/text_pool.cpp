// See text_pool.h.
#include "archive/text_pool.h"

#include <algorithm>
#include <cstring>

constexpr size_t kBlockBytes = 64 * 1024;
constexpr size_t kFirstSlots = 256;         // a power of two
constexpr uint32_t kFreeSlot = 0xFFFFFFFFu; // no number
// From here on, making all keys anew costs less than looking up each new text's place.
constexpr size_t kFewPart = 32;

// Room in blocks, whose addresses stay.
static char* TakeRoom(TextPool* pool, size_t bytes) {
    if (bytes > pool->blockLeft) {
        pool->blocks.push_back(std::make_unique_for_overwrite<char[]>(kBlockBytes));
        pool->blockAt = pool->blocks.back().get();
        pool->blockLeft = kBlockBytes;
    }
    char* room = pool->blockAt;
    pool->blockAt += bytes;
    pool->blockLeft -= bytes;
    return room;
}

// ---- numbers

static size_t HashText(const char* text) {
    uint32_t hash = 2166136261u;
    for (; *text; ++text)
        hash = (hash ^ static_cast<uint8_t>(*text)) * 16777619u;
    return hash ^ hash >> 15;
}

// Where the text stands in the table, or would stand.
static size_t SlotOf(const TextPool& pool, const char* text) {
    const size_t mask = pool.slots.size() - 1;
    size_t at = HashText(text) & mask;
    while (pool.slots[at] != kFreeSlot && strcmp(pool.texts[pool.slots[at]].text, text))
        at = (at + 1) & mask;
    return at;
}

static void GrowSlots(TextPool* pool) {
    const size_t size = std::max(kFirstSlots, pool->slots.size() * 2);
    pool->slots.assign(size, kFreeSlot);
    for (uint32_t i = 0; i < pool->texts.size(); ++i)
        pool->slots[SlotOf(*pool, pool->texts[i].text)] = i;
}

void ClearTextPool(TextPool* pool) {
    const TextKey textKey = pool->textKey;
    *pool = {};
    pool->textKey = textKey;
    PoolText(pool, "");
}

uint32_t PoolText(TextPool* pool, const char* text) {
    if (!*text && !pool->texts.empty()) return 0;
    if (pool->slots.size() < 2 * (pool->texts.size() + 1)) GrowSlots(pool);
    uint32_t& slot = pool->slots[SlotOf(*pool, text)];
    if (slot != kFreeSlot) return slot;
    slot = static_cast<uint32_t>(pool->texts.size());
    const size_t bytes = strlen(text) + 1;
    char* own = TakeRoom(pool, bytes);
    memcpy(own, text, bytes);
    pool->texts.push_back({own, kNoRank});
    return slot;
}

size_t TextPoolBytes(const TextPool& pool) {
    return pool.blocks.size() * kBlockBytes + pool.texts.capacity() * sizeof(PooledText) +
           (pool.slots.capacity() + pool.order.capacity()) * sizeof(uint32_t);
}

// ---- ranks

namespace {
struct KeyedText {
    uint64_t head; // the key's first eight bytes, which mostly decide
    std::string key;
    uint32_t number;
};

// A text in the new order.
struct Ranked {
    uint32_t number;
    int begins; // greater than the one before it, not equal
};
} // namespace

static KeyedText MakeKey(const TextPool& pool, uint32_t number) {
    KeyedText made = {0, {}, number};
    pool.textKey(pool.texts[number].text, &made.key);
    for (size_t i = 0; i < sizeof made.head; ++i)
        made.head =
            made.head << 8 | (i < made.key.size() ? static_cast<uint8_t>(made.key[i]) : uint8_t{0});
    return made;
}

static int CompareKeys(const KeyedText& a, const KeyedText& b) {
    if (a.head != b.head) return a.head < b.head ? -1 : 1;
    return a.key.compare(b.key); // as unsigned bytes
}

static std::vector<KeyedText> MakeSortedKeys(const TextPool& pool,
                                             const std::vector<uint32_t>& numbers) {
    std::vector<KeyedText> keyed;
    keyed.reserve(numbers.size());
    for (const uint32_t number : numbers)
        keyed.push_back(MakeKey(pool, number));
    std::sort(keyed.begin(), keyed.end(),
              [](const KeyedText& a, const KeyedText& b) { return CompareKeys(a, b) < 0; });
    return keyed;
}

static std::vector<Ranked> RankedAnew(const std::vector<KeyedText>& keyed) {
    std::vector<Ranked> ranked;
    ranked.reserve(keyed.size());
    for (size_t i = 0; i < keyed.size(); ++i)
        ranked.push_back({keyed[i].number, !i || CompareKeys(keyed[i - 1], keyed[i])});
    return ranked;
}

// The old order with the few new texts put into their places; old keys are made again only where a
// place is looked up.
static std::vector<Ranked> RankedAmong(const TextPool& pool, const std::vector<KeyedText>& fresh) {
    std::vector<Ranked> ranked;
    ranked.reserve(pool.order.size() + fresh.size());
    auto at = pool.order.begin();
    const KeyedText* before = nullptr; // the new text just before `at`
    const auto takeOld = [&](auto until) {
        for (; at != until; ++at) {
            const uint32_t rank = pool.texts[*at].rank;
            int begins = at == pool.order.begin() || pool.texts[at[-1]].rank != rank;
            if (before) begins = CompareKeys(*before, MakeKey(pool, *at)) != 0;
            ranked.push_back({*at, begins});
            before = nullptr;
        }
    };
    for (const KeyedText& text : fresh) {
        takeOld(std::lower_bound(at, pool.order.end(), text,
                                 [&](uint32_t old, const KeyedText& wanted) {
                                     return CompareKeys(MakeKey(pool, old), wanted) < 0;
                                 }));
        ranked.push_back({text.number, !before || CompareKeys(*before, text)});
        before = &text;
    }
    takeOld(pool.order.end());
    return ranked;
}

void RankTexts(TextPool* pool, std::vector<uint32_t> wanted) {
    if (wanted.empty()) return;
    const int few = wanted.size() < pool->order.size() / kFewPart;
    if (!few) wanted.insert(wanted.end(), pool->order.begin(), pool->order.end());
    const auto keyed = MakeSortedKeys(*pool, wanted);
    const auto ranked = few ? RankedAmong(*pool, keyed) : RankedAnew(keyed);
    pool->order.clear();
    uint32_t rank = kNoRank;
    for (const Ranked& text : ranked) {
        rank += text.begins;
        pool->texts[text.number].rank = rank;
        pool->order.push_back(text.number);
    }
}

// ---- searching

int ContainsWord(const char* text, const std::string& word, const uint8_t* lower) {
    const auto first = static_cast<uint8_t>(word[0]);
    for (; *text; ++text) {
        if (lower[static_cast<uint8_t>(*text)] != first) continue;
        size_t same = 1;
        while (same < word.size() &&
               lower[static_cast<uint8_t>(text[same])] == static_cast<uint8_t>(word[same]))
            ++same; // stops at the text's NUL, which no word has
        if (same == word.size()) return 1;
    }
    return 0;
}
