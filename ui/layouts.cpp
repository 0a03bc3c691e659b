// See layouts.h.
#include "ui/layouts.h"

#include <algorithm>

const uint16_t kLayoutWindowIds[kLayoutWindows] = {
    kConsoleWindowId, kCdPlayerWindowId, kSpectrumWindowId, kMixerWindowId,
    kVisualsWindowId, kScopeWindowId,    kMediaWindowId,    kLayoutsWindowId};

const uint16_t kSwitchedWindowIds[kSwitchedWindows] = {kMediaWindowId,    kCdPlayerWindowId,
                                                       kSpectrumWindowId, kVisualsWindowId,
                                                       kMixerWindowId,    kScopeWindowId};

// ---- the built-in layouts: two each for screens of 640, 800 and 1024 pixels

static constexpr LayoutEntry kVisuals = {0, 0, 300, 200, 0}, kChooser = {50, 50, 400, 400, 0};
static constexpr LayoutEntry kBuiltIn[kLayoutCount][kLayoutWindows] = {
    {{20, 340, 616, 110, 1},
     {20, 193, 616, 146, 1},
     {20, 1, 616, 192, 1},
     {10, 185, 616, 122, 0},
     kVisuals,
     {0, 0, 596, 193, 0},
     {0, 0, 300, 100, 0},
     kChooser},
    {{20, 340, 616, 110, 1},
     {20, 218, 616, 121, 1},
     {20, 1, 616, 192, 0},
     {10, 185, 616, 122, 0},
     kVisuals,
     {0, 0, 596, 193, 0},
     {0, 0, 300, 100, 0},
     kChooser},
    {{110, 470, 662, 101, 1},
     {110, 232, 662, 134, 1},
     {110, 0, 662, 134, 1},
     {110, 366, 662, 104, 1},
     kVisuals,
     {0, 0, 552, 134, 0},
     {110, 134, 662, 98, 1},
     kChooser},
    {{146, 451, 653, 117, 1},
     {146, 317, 653, 132, 1},
     {146, 40, 653, 174, 0},
     {146, 348, 653, 102, 0},
     kVisuals,
     {0, 0, 507, 134, 0},
     {0, 0, 300, 100, 0},
     kChooser},
    {{34, 620, 742, 114, 1},
     {34, 334, 742, 168, 1},
     {34, 2, 742, 215, 1},
     {34, 504, 742, 115, 1},
     kVisuals,
     {0, 0, 708, 213, 0},
     {34, 218, 742, 115, 1},
     kChooser},
    {{158, 616, 742, 114, 1},
     {158, 442, 742, 172, 1},
     {148, 61, 742, 214, 0},
     {148, 451, 742, 121, 0},
     kVisuals,
     {0, 0, 694, 153, 0},
     {0, 0, 300, 100, 0},
     kChooser},
};

LayoutEntry BuiltInLayoutEntry(int layout, int place) {
    return kBuiltIn[layout][place];
}

int LayoutOfSetting(uint32_t stored) {
    return stored < kLayoutCount ? static_cast<int>(stored) : 0;
}

int LayoutOfScreenWidth(int pixels) {
    if (pixels >= 1024) return 4;
    return pixels < 800 ? 0 : 2;
}

LayoutStep LayoutStepOf(int windowId, uint32_t openMask, int isOpen) {
    if (openMask & WindowBit(windowId)) return isOpen ? kMoveWindow : kOpenWindow;
    return isOpen ? kCloseWindow : kLeaveWindow;
}

// ---- the window

constexpr int kMargin = 7;
constexpr int kColumnShare = 3; // the column has one third of the width
constexpr int kColumnMin = 70, kBrandMin = 50;
constexpr int kLegible = 14; // button height below which the gaps give way

LayoutsWindowBoxes LayOutLayoutsWindow(int width, int height) {
    LayoutsWindowBoxes boxes = {};
    Box area = InsetBox({0, 0, width, height}, kMargin);
    int column = std::max(area.width / kColumnShare, kColumnMin);
    if (area.width - column - kMargin < kBrandMin) column = area.width;
    const int gap =
        std::clamp((area.height - kLayoutsButtons * kLegible) / (kLayoutsButtons - 1), 1, kMargin);
    SplitColumn(TakeLeft(&area, column, kMargin), kLayoutsButtons, gap, boxes.buttons);
    const int line = boxes.buttons[0].height;
    boxes.brand = {area.left, area.top, area.width, line};
    const int rest = std::max(0, area.height - line - kMargin);
    boxes.picture = {area.left, area.top + area.height - rest, area.width, rest};
    return boxes;
}

Box SmallScreen(const Box& area, int screenWidth, int screenHeight) {
    if (screenWidth <= 0 || screenHeight <= 0) return {area.left, area.top, 0, 0};
    const int64_t fits = static_cast<int64_t>(area.width) * screenHeight / screenWidth;
    if (fits <= area.height) return {area.left, area.top, area.width, static_cast<int>(fits)};
    const int64_t width = static_cast<int64_t>(area.height) * screenWidth / screenHeight;
    return {area.left, area.top, static_cast<int>(width), area.height};
}

// One axis: a stored stretch on a screen of `from` pixels, shown in `to` pixels. Stored numbers may
// be anything.
static void ScaleAxis(int32_t start, int32_t extent, int from, int to, int* small, int* length) {
    const int64_t low = std::clamp<int64_t>(start, 0, from);
    const int64_t high = std::clamp<int64_t>(static_cast<int64_t>(start) + extent, low, from);
    *small = static_cast<int>(low * to / from);
    *length = static_cast<int>(high * to / from) - *small;
}

Box SmallWindow(const Box& screen, int screenWidth, int screenHeight, const LayoutEntry& entry) {
    Box box = {screen.left, screen.top, 0, 0};
    if (screenWidth <= 0 || screenHeight <= 0) return box;
    int left, top;
    ScaleAxis(entry.X, entry.Width, screenWidth, screen.width, &left, &box.width);
    ScaleAxis(entry.Y, entry.Height, screenHeight, screen.height, &top, &box.height);
    box.left += left;
    box.top += top;
    return box;
}
