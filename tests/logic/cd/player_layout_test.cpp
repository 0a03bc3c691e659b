// The CD player's geometry: at every size all controls lie inside the margins, none over another.
#include "cd/player_layout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

struct Size {
    int width, height;
};

// Client sizes: the built-in layouts' (less a frame of 4 at each side), the default placement's,
// larger ones, small ones.
static const Size kSizes[] = {{608, 138},  {608, 113}, {654, 126}, {645, 124},  {734, 160},
                              {734, 164},  {492, 192}, {544, 126}, {1192, 292}, {1592, 200},
                              {1592, 500}, {292, 92},  {292, 292}, {493, 113},  {494, 113},
                              {400, 92},   {1592, 92}};

static int Right(const Box& box) {
    return box.left + box.width;
}
static int Bottom(const Box& box) {
    return box.top + box.height;
}

// Also when they merely touch: a pixel of background stands between any two.
static bool Overlap(const Box& a, const Box& b) {
    return a.left <= Right(b) && b.left <= Right(a) && a.top <= Bottom(b) && b.top <= Bottom(a);
}

static std::string At(const Size& size, int id) {
    return std::to_string(size.width) + "x" + std::to_string(size.height) + " id " +
           std::to_string(id);
}

TEST(PlayerLayout, EverythingInsideAndApart) {
    for (const Size& size : kSizes) {
        const PlayerLayout layout = LayOutPlayer(size.width, size.height);
        std::vector<Box> boxes(std::begin(layout.boxes), std::end(layout.boxes));
        boxes.push_back(layout.pie);
        for (size_t i = 0; i < boxes.size(); ++i) {
            const Box& a = boxes[i];
            const std::string at = At(size, static_cast<int>(i) + kPlayerFirst);
            EXPECT_TRUE(a.left >= kPlayerMargin && a.top >= kPlayerMargin &&
                        Right(a) <= size.width - kPlayerMargin &&
                        Bottom(a) <= size.height - kPlayerMargin)
                << at;
            EXPECT_GE(a.width, 9) << at;
            EXPECT_GE(a.height, 7) << at;
            for (size_t j = i + 1; j < boxes.size(); ++j)
                EXPECT_FALSE(Overlap(a, boxes[j])) << at << " and " << j + kPlayerFirst;
        }
    }
}
