// See text_pool.h.
#include "archive/text_pool.h"

#include <algorithm>
#include <cstring>

constexpr size_t kBlockBytes = 64 * 1024;
constexpr size_t kFirstSlots = 256;         // a power of two
constexpr uint32_t kFreeSlot = 0xFFFFFFFFu; // no number
// From here on, making all keys anew costs less than looking up each new text's place.
constexpr size_t kFewPart = 32;

// A copy of some bytes that stays where it is.
static const char* Keep(TextBlocks* blocks, const char* bytes, size_t size) {
    if (!size) return "";
    if (size > blocks->left) {
        blocks->left = std::max(kBlockBytes, size);
        blocks->all.push_back(std::make_unique_for_overwrite<char[]>(blocks->left));
        blocks->at = blocks->all.back().get();
    }
    char* own = blocks->at;
    memcpy(own, bytes, size);
    blocks->at += size;
    blocks->left -= size;
    return own;
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
    pool->texts.push_back({Keep(&pool->blocks, text, strlen(text) + 1), kNoRank});
    return slot;
}

size_t TextPoolBytes(const TextPool& pool) {
    return pool.blocks.all.size() * kBlockBytes + pool.texts.capacity() * sizeof(PooledText) +
           (pool.slots.capacity() + pool.order.capacity()) * sizeof(uint32_t);
}

// ---- ranks

namespace {
struct KeyedText {
    uint64_t part; // the eight bytes of the key that are just looked at
    const char* key;
    uint32_t size;
    uint32_t number;
};

// A text in the new order.
struct Ranked {
    uint32_t number;
    int begins; // greater than the one before it, not equal
};
} // namespace

static int CompareKeys(const KeyedText& a, const KeyedText& b) {
    const int order = memcmp(a.key, b.key, std::min(a.size, b.size));
    return order ? order : (a.size > b.size) - (a.size < b.size);
}

// Against a text that has no key at hand.
static int CompareToText(const TextPool& pool, const KeyedText& a, uint32_t number) {
    std::string key;
    pool.textKey(pool.texts[number].text, &key);
    return CompareKeys(a, {0, key.data(), static_cast<uint32_t>(key.size()), number});
}

static void LoadPart(KeyedText* text, uint32_t at) {
    text->part = 0;
    for (uint32_t i = at; i < at + sizeof text->part; ++i)
        text->part = text->part << 8 | (i < text->size ? static_cast<uint8_t>(text->key[i]) : 0u);
}

// By eight bytes at a time, which stand in the items themselves: titles have long beginnings in
// common, and comparing those again and again would be most of the time.
static void SortKeys(KeyedText* from, KeyedText* to, uint32_t at) {
    uint32_t longest = 0;
    for (KeyedText* text = from; text != to; ++text) {
        LoadPart(text, at);
        longest = std::max(longest, text->size);
    }
    const auto isLess = [](const KeyedText& a, const KeyedText& b) {
        return a.part != b.part ? a.part < b.part : a.size < b.size;
    };
    std::sort(from, to, isLess);
    at += sizeof from->part;
    if (longest <= at) return;
    while (from != to) {
        KeyedText* end = from + 1;
        while (end != to && end->part == from->part)
            ++end;
        if (end - from > 1) SortKeys(from, end, at);
        from = end;
    }
}

static std::vector<KeyedText>
MakeSortedKeys(const TextPool& pool, const std::vector<uint32_t>& numbers, TextBlocks* room) {
    std::vector<KeyedText> keyed;
    std::string key;
    keyed.reserve(numbers.size());
    for (const uint32_t number : numbers) {
        pool.textKey(pool.texts[number].text, &key);
        keyed.push_back(
            {0, Keep(room, key.data(), key.size()), static_cast<uint32_t>(key.size()), number});
    }
    SortKeys(keyed.data(), keyed.data() + keyed.size(), 0);
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
            if (before) begins = CompareToText(pool, *before, *at) != 0;
            ranked.push_back({*at, begins});
            before = nullptr;
        }
    };
    for (const KeyedText& text : fresh) {
        takeOld(std::lower_bound(at, pool.order.end(), text,
                                 [&](uint32_t old, const KeyedText& wanted) {
                                     return CompareToText(pool, wanted, old) > 0;
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
    TextBlocks room; // of the keys
    const auto keyed = MakeSortedKeys(*pool, wanted, &room);
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
