// Geometry of the media player window. See player_layout.h.
#include "media/player_layout.h"

#include <algorithm>

constexpr int kWideFrom = 520; // content width
constexpr int kFlat = 3;       // and so many times as wide as high
constexpr int kRowGap = 5;     // between rows of buttons where there is room
constexpr int kGroupGap = 7;   // room for the edges of both groups
constexpr int kMinCell = 44;   // width of a button whose label can be read
constexpr int kMinRow = 14;    // its height
constexpr int kMaxRow = 30;    // of a low window's buttons
constexpr int kMinSlider = 11; // a lower slider can't be caught
constexpr int kMaxSlider = 24;
constexpr int kMinLine = 12; // of the panel
constexpr int kMinPanelWidth = 60;
constexpr int kEdge = 2;    // a button's raised edge
constexpr int kTextAir = 1; // kept free between text and edge at either side
constexpr int kButtons = 12, kTransport = 6;
constexpr int kMinDisplay = kMinLine + kMediaGap + kMinSlider;

static Box& BoxOf(MediaLayout* layout, int id) {
    return layout->boxes[id - kMediaFirst];
}

static void PlaceRow(MediaLayout* layout, const Box& area, const int* ids, int count) {
    Box boxes[kButtons];
    SplitRow(area, count, kMediaGap, boxes);
    for (int i = 0; i < count; ++i)
        BoxOf(layout, ids[i]) = boxes[i];
}

// ---- display

// Caption over time, or beside it where the panel is low; the time stands larger.
static void PlaceTexts(MediaLayout* layout, const Box& panel) {
    static constexpr int kLines[] = {10, 12}, kHalves[] = {13, 10};
    Box parts[2];
    layout->panel = panel;
    if (panel.height >= 2 * kMinLine + 1)
        SplitColumnBy(panel, kLines, 2, 1, parts);
    else if (panel.width >= 2 * kMinPanelWidth)
        SplitRowBy(panel, kHalves, 2, kMediaGap, parts);
    else
        parts[0] = panel, parts[1] = {};
    BoxOf(layout, kMediaCaption) = parts[0];
    BoxOf(layout, kMediaTime) = parts[1];
}

// The slider below the panel, or at its right where the window is too low for both.
static void PlaceDisplay(MediaLayout* layout, const Box& area) {
    static constexpr int kOver[] = {31, 10}, kBeside[] = {7, 3};
    Box parts[2];
    if (area.height >= kMinDisplay) {
        SplitColumnBy(area, kOver, 2, area.height < 60 ? kMediaGap : kRowGap, parts);
        const int slider = std::clamp(parts[1].height, kMinSlider, kMaxSlider);
        const int gap = area.height - parts[0].height - parts[1].height;
        parts[0].height = area.height - slider - gap;
        parts[1] = {area.left, area.top + area.height - slider, area.width, slider};
    } else if (area.height >= kMinSlider && area.width >= 4 * kMinPanelWidth) {
        SplitRowBy(area, kBeside, 2, kMediaGap, parts);
    } else {
        parts[0] = area, parts[1] = {};
    }
    BoxOf(layout, kMediaSeek) = parts[1];
    PlaceTexts(layout, parts[0]);
}

// ---- buttons

// In reading order for that many columns; the transport alone comes from kTransportIds.
static constexpr int kSix[] = {kMediaOpen,   kMediaSave,   kMediaEditor, kMediaHistory,
                               kMediaRepeat, kMediaRandom, kMediaPlay,   kMediaPrevious,
                               kMediaNext,   kMediaPause,  kMediaStop,   kMediaPower};
static constexpr int kFour[] = {kMediaPlay, kMediaPrevious, kMediaNext,   kMediaPause,
                                kMediaStop, kMediaRepeat,   kMediaRandom, kMediaPower,
                                kMediaOpen, kMediaSave,     kMediaEditor, kMediaHistory};
static constexpr int kThree[] = {kMediaPlay, kMediaPrevious, kMediaNext,   kMediaPause,
                                 kMediaStop, kMediaPower,    kMediaRepeat, kMediaRandom,
                                 kMediaOpen, kMediaSave,     kMediaEditor, kMediaHistory};
static constexpr int kTwo[] = {kMediaPlay, kMediaPause, kMediaPrevious, kMediaNext,
                               kMediaStop, kMediaPower, kMediaRepeat,   kMediaRandom,
                               kMediaOpen, kMediaSave,  kMediaEditor,   kMediaHistory};
static constexpr int kTransportIds[] = {kMediaPlay,  kMediaPrevious, kMediaNext,
                                        kMediaPause, kMediaStop,     kMediaPower};

static void PlaceGrid(MediaLayout* layout, const Box& area, const int* ids, int count, int columns,
                      int gap) {
    Box rows[kButtons];
    SplitColumn(area, count / columns, gap, rows);
    for (int row = 0; row < count / columns; ++row)
        PlaceRow(layout, rows[row], ids + row * columns, columns);
}

// ---- the two arrangements

static void LayOutWide(MediaLayout* layout, const Box& area) {
    static constexpr int kHalves[] = {56, 44}, kLow[] = {1, 1};
    static constexpr int kOptions[] = {kMediaName, kMediaRepeat, kMediaRandom, kMediaPower};
    static constexpr int kLists[] = {kMediaOpen, kMediaSave, kMediaEditor, kMediaHistory};
    const int gap = area.height < 70 ? kMediaGap : kRowGap;
    Box halves[2], rows[3];
    const int full = area.height >= 3 * kMinRow + 2 * gap;
    SplitRowBy(area, full ? kHalves : kLow, 2, kGroupGap, halves);
    PlaceDisplay(layout, halves[0]);
    layout->groups[kMediaDisplayGroup] = halves[0];
    layout->groups[kMediaButtonGroup] = halves[1];
    if (full) {
        SplitColumn(halves[1], 3, gap, rows);
        PlaceRow(layout, rows[0], kOptions, 4);
        PlaceRow(layout, rows[1], kLists, 4);
        PlaceRow(layout, rows[2], kTransportIds, 5);
    } else if (area.height >= 2 * kMinRow + kMediaGap) {
        PlaceGrid(layout, halves[1], kSix, kButtons, 6, kMediaGap);
    } else {
        PlaceGrid(layout, halves[1], kTransportIds, kTransport, kTransport, kMediaGap);
    }
}

// 0 when so many buttons have no room in these columns.
static int PlaceStacked(MediaLayout* layout, const Box& area, const int* ids, int count,
                        int columns) {
    const int rows = count / columns, rowGap = area.height < 100 ? kMediaGap : kRowGap;
    const int groupGap = area.height < 80 ? kMediaGap : kGroupGap;
    const int gaps = (rows - 1) * rowGap + groupGap;
    if (area.width < columns * kMinCell + (columns - 1) * kMediaGap) return 0;
    if (area.height < rows * kMinRow + gaps + kMinDisplay) return 0;
    const int row = std::clamp(2 * (area.height - gaps) / (2 * rows + 5), kMinRow,
                               std::max(kMaxRow, area.height / 8));
    const int buttons = rows * row + (rows - 1) * rowGap;
    const Box display = {area.left, area.top, area.width, area.height - buttons - groupGap};
    const Box grid = {area.left, area.top + area.height - buttons, area.width, buttons};
    PlaceDisplay(layout, display);
    PlaceGrid(layout, grid, ids, count, columns, rowGap);
    if (groupGap == kGroupGap) {
        layout->groups[kMediaDisplayGroup] = display;
        layout->groups[kMediaButtonGroup] = grid;
    }
    return 1;
}

static void LayOutStacked(MediaLayout* layout, const Box& area) {
    static const struct {
        const int* ids;
        int count, columns;
    } kGrids[] = {{kSix, kButtons, 6},
                  {kFour, kButtons, 4},
                  {kThree, kButtons, 3},
                  {kTwo, kButtons, 2},
                  {kTransportIds, kTransport, 6},
                  {kTransportIds, kTransport, 3},
                  {kTransportIds, kTransport, 2}};
    for (const auto& grid : kGrids)
        if (PlaceStacked(layout, area, grid.ids, grid.count, grid.columns)) return;
    PlaceDisplay(layout, area);
}

MediaLayout LayOutMedia(int width, int height) {
    constexpr int kTightBelow = 68; // client height
    MediaLayout layout = {};
    const int margin = height < kTightBelow ? kMediaTightMargin : kMediaMargin;
    const Box area = InsetBox({0, 0, std::max(width, 0), std::max(height, 0)}, margin);
    if (area.width >= kWideFrom && area.width >= kFlat * area.height)
        LayOutWide(&layout, area);
    else
        LayOutStacked(&layout, area);
    if (margin == kMediaTightMargin) layout.groups[0] = layout.groups[1] = {};
    return layout;
}

// ---- letters

MediaFont MediaFontOf(int id) {
    if (id == kMediaCaption) return kMediaFontCaption;
    return id == kMediaTime ? kMediaFontTime : kMediaFontLabels;
}

void MediaFontSizes(const MediaLayout& layout, const MediaTextWidths& widths, int large,
                    int (&sizes)[kMediaFonts]) {
    constexpr int kLargest = 1000, kSmall = 14;
    std::fill_n(sizes, static_cast<int>(kMediaFonts), kLargest);
    for (int i = 0; i < kMediaControls; ++i) {
        const int id = kMediaFirst + i;
        const Box& box = layout.boxes[i];
        if (id == kMediaSeek || !box.width) continue;
        const int edge = MediaFontOf(id) == kMediaFontLabels && id != kMediaName ? kEdge : 0;
        int size = box.height - (edge ? edge + 1 : 0);
        if (widths.width[i])
            size = std::min(size, (box.width - 2 * (edge + kTextAir)) * 1000 / widths.width[i]);
        if (id == kMediaCaption) size = std::max(size, std::min(kMediaMinCaption, box.height));
        int& smallest = sizes[MediaFontOf(id)];
        smallest = std::min(smallest, size);
    }
    // Small letters keep their size; larger ones leave air round them unless asked not to.
    for (int& size : sizes) {
        if (size == kLargest) size = kSmall;
        if (!large && &size != &sizes[kMediaFontTime])
            size = std::min(size, std::max(kSmall, size * 4 / 5));
        size = std::max(size, kMediaMinLetter);
    }
    // One scale in the display: the caption stands no higher than the time.
    if (layout.boxes[kMediaTime - kMediaFirst].width)
        sizes[kMediaFontCaption] = std::min(sizes[kMediaFontCaption], sizes[kMediaFontTime]);
}
