// Compound files laid out by us, read back: every stream whole, and a directory that is a proper
// red-black tree.
#include "cdinfo/compound_write.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

using Bytes = std::vector<uint8_t>;
using Content = std::map<std::string, Bytes>; // by upper-case names

static Bytes Build(const Content& content) {
    CompoundStamps root;
    root.classId[3] = 0xC0;
    root.stateAndTimes[19] = 7;
    std::vector<CompoundPart> parts;
    for (const auto& [name, bytes] : content)
        parts.push_back(MakePart(name, bytes));
    Bytes image;
    EXPECT_TRUE(BuildCompound(root, std::move(parts), &image));
    return image;
}

static uint32_t Word(const Bytes& image, size_t at) {
    return image[at] | image[at + 1] << 8 | image[at + 2] << 16 | uint32_t{image[at + 3]} << 24;
}

// Black entries on every way down, or -1.
static int BlackHeight(const Bytes& image, uint32_t id, int underRed) {
    if (id == 0xFFFFFFFF) return 0;
    const size_t at = (size_t{Word(image, 48)} + 1) * 512 + id * size_t{128};
    const int red = image[at + 67] == 0;
    const int left = BlackHeight(image, Word(image, at + 68), red);
    const int right = BlackHeight(image, Word(image, at + 72), red);
    return left < 0 || left != right || (red && underRed) ? -1 : left + !red;
}

static void ExpectContent(const Bytes& image, const Content& content) {
    CompoundView view;
    ASSERT_EQ(kCompoundGood, CheckCompound(image, &view));
    EXPECT_TRUE(view.isFlat);
    EXPECT_EQ(0xC0, view.root.classId[3]);
    EXPECT_EQ(7, view.root.stateAndTimes[19]);
    ASSERT_EQ(content.size(), view.streams.size());
    for (const auto& [name, bytes] : content) {
        const CompoundStream* stream = FindCompoundStream(view, name);
        ASSERT_TRUE(stream && ReadCompoundStream(view, *stream) == bytes) << name;
    }
    const size_t root = (size_t{Word(image, 48)} + 1) * 512;
    EXPECT_GE(BlackHeight(image, Word(image, root + 76), 1), 0) << content.size();
}

static Bytes Noise(std::mt19937* random, size_t size) {
    Bytes bytes(size);
    for (uint8_t& byte : bytes)
        byte = static_cast<uint8_t>((*random)());
    return bytes;
}

TEST(CompoundWrite, RandomStreamsComeBack) {
    std::mt19937 random(4711);
    const size_t sizes[] = {0, 1, 63, 64, 65, 511, 512, 4095, 4096, 4097, 39671};
    for (size_t count = 0; count < 150; ++count) {
        Content content;
        while (content.size() < count) {
            std::string name(1 + random() % kMaxCompoundName, ' ');
            for (char& c : name)
                c = "09AFZ_ "[random() % 7];
            content[name] =
                Noise(&random, random() % 2 ? sizes[random() % std::size(sizes)] : random() % 2000);
        }
        const Bytes image = Build(content);
        ExpectContent(image, content);
        // Carried over from that file instead of from memory.
        CompoundView view;
        CheckCompound(image, &view);
        std::vector<CompoundPart> parts;
        for (const CompoundStream& stream : view.streams)
            parts.push_back(CarryPart(view, stream));
        Bytes again;
        ASSERT_TRUE(BuildCompound(view.root, std::move(parts), &again));
        EXPECT_EQ(image, again);
    }
}

// Around the sizes at which the table of sectors outgrows the header, and a list of it a sector.
TEST(CompoundWrite, LargeFilesHaveListsOfTheirTable) {
    for (const size_t sectors : {109 * 128 - 120, 109 * 128 - 110, 109 * 128 - 100,
                                 (109 + 127) * 128 - 240, (109 + 127) * 128 - 220}) {
        for (size_t more = 0; more < 10; ++more) {
            Content content = {{"Large", Bytes((sectors + more) * 512, 'x')}};
            content["Large"].back() = 'y';
            ExpectContent(Build(content), content);
        }
    }
}

TEST(CompoundWrite, RefusesWhatIsNoFile) {
    const Bytes one = {1};
    CompoundPart unending = MakePart(std::string(kMaxCompoundName, 'n'), one),
                 odd = MakePart("odd", one);
    unending.name[kMaxCompoundName] = u'n';
    odd.name[1] = u'\u00E4';
    const std::vector<CompoundPart> cases[] = {
        {MakePart("", one)},
        {unending},
        {odd},
        {MakePart("Same", one), MakePart("x", one), MakePart("sAME", one)}};
    for (const auto& parts : cases) {
        Bytes image;
        EXPECT_FALSE(BuildCompound({}, parts, &image));
        EXPECT_TRUE(image.empty());
    }
}
