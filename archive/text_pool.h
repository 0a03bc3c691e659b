// Every distinct text of many discs once, named by a small number, with its place in the platform's
// order of texts. So a disc costs four bytes for each of its texts, rows are sorted by numbers, and
// a search looks at each text once, however many tracks bear it.
#pragma once
#include "archive/catalog.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

constexpr uint32_t kNoRank = 0;

struct PooledText {
    const char* text;
    uint32_t rank; // texts that compare equal have the same; kNoRank: not asked for yet
};

// Bytes that stay where they are.
struct TextBlocks {
    std::vector<std::unique_ptr<char[]>> all;
    char* at = nullptr;
    size_t left = 0;
};

struct TextPool {
    TextKey textKey = nullptr;
    std::vector<PooledText> texts; // by number; 0 is the empty text
    std::vector<uint32_t> slots;   // hash table of numbers
    std::vector<uint32_t> order;   // the ranked ones, ascending
    TextBlocks blocks;
};

void ClearTextPool(TextPool* pool);
// The text's number. Texts come from a record and are no longer than its comments.
uint32_t PoolText(TextPool* pool, const char* text);
// Gives all texts a rank whose numbers are in `wanted`; those must have none. Ranks of others
// change, but not their order.
void RankTexts(TextPool* pool, std::vector<uint32_t> wanted);
size_t TextPoolBytes(const TextPool& pool);

// Whether `word` stands in a text. Both are seen through the table `lower`; the word has been
// already.
int ContainsWord(const char* text, const std::string& word, const uint8_t* lower);
