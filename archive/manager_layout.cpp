// Geometry of the database manager window. See manager_layout.h.
#include "archive/manager_layout.h"

#include <algorithm>
#include <iterator>

static constexpr int kMargin = 7; // pixels round everything
static constexpr int kGap = 3;    // between neighbours
static constexpr int kGroupGap = 8;
static constexpr int kRowAir = 8; // a row is so much higher than its letters
static constexpr int kDividerHeight = 6;
static constexpr int kMinList = 48;
static constexpr int kMinSummary = 30;
static constexpr int kWideStrip = 460; // indicators and search field in one row
static constexpr int kMinSearch = 80, kMaxSearch = 200;
static constexpr int kMinCell = 41; // width of a button whose label can be read

const int kManagerControlIds[kManagerControls] = {
    kManagerName,    kManagerView,    kManagerSort,   kManagerProgress, kManagerExport,
    kManagerImport,  kManagerCopy,    kManagerPaste,  kManagerDelete,   kManagerEdit,
    kManagerSelect,  kManagerPrint,   kManagerToggle, kManagerPower,    kManagerList,
    kManagerSummary, kManagerDivider, kManagerSearch};

int ManagerControlIndex(int id) {
    const int* end = std::end(kManagerControlIds);
    const int* at = std::find(kManagerControlIds, end, id);
    return at == end ? -1 : static_cast<int>(at - kManagerControlIds);
}

int ManagerLetterHeight(int large) {
    return large ? 21 : 14;
}

static Box& BoxOf(ManagerLayout* layout, int id) {
    return layout->boxes[ManagerControlIndex(id)];
}
static const Box& BoxOf(const ManagerLayout& layout, int id) {
    return layout.boxes[ManagerControlIndex(id)];
}

// ---- indicators and search field

static void PlaceStripRow(ManagerLayout* layout, const Box& row, const int* ids, const int* weights,
                          int count) {
    Box boxes[kManagerIndicators];
    SplitRowBy(row, weights, count, kGap, boxes);
    for (int i = 0; i < count; ++i)
        BoxOf(layout, ids[i]) = boxes[i];
}

static void PlaceStrip(ManagerLayout* layout, const Box& area, int row) {
    static constexpr int kAll[] = {kManagerName, kManagerView, kManagerSort, kManagerProgress};
    static constexpr int kAllWeights[] = {3, 4, 7, 5};
    static constexpr int kAbove[] = {kManagerView, kManagerSort}, kAboveWeights[] = {4, 7};
    static constexpr int kBelow[] = {kManagerName, kManagerProgress}, kBelowWeights[] = {4, 6};
    const int search = std::clamp(area.width / 4, kMinSearch, kMaxSearch);
    const int hasSearch = area.width >= 2 * kMinSearch;
    Box indicators = area;
    if (hasSearch) indicators.width -= search + kGroupGap;
    const Box field = {area.left + area.width - search, area.top, search, row};
    if (area.height == row) {
        PlaceStripRow(layout, indicators, kAll, kAllWeights, 4);
        BoxOf(layout, kManagerSearch) = hasSearch ? field : Box{};
        layout->panel = indicators;
        return;
    }
    Box rows[2];
    SplitColumn(area, 2, kGap, rows);
    PlaceStripRow(layout, rows[0], kAbove, kAboveWeights, 2);
    if (hasSearch) rows[1].width -= search + kGroupGap;
    PlaceStripRow(layout, rows[1], kBelow, kBelowWeights, 2);
    if (hasSearch) BoxOf(layout, kManagerSearch) = {field.left, rows[1].top, search, row};
    layout->panel = area;
}

// ---- buttons

// "Select All/None" is twice as long as the others.
static int ButtonWeight(int index) {
    return kManagerControlIds[index] == kManagerSelect ? 2 : 1;
}

static int ButtonColumns(int width) {
    for (const int columns : {kManagerButtons, kManagerButtons / 2}) {
        const int cells = columns + 1; // one is double
        if (width >= cells * kMinCell + (columns - 1) * kGap) return columns;
    }
    return 0;
}

static void PlaceButtons(ManagerLayout* layout, const Box& area, int columns) {
    const int rows = kManagerButtons / columns;
    Box lines[kManagerButtons], cells[kManagerButtons];
    int weights[kManagerButtons];
    SplitColumn(area, rows, kGap, lines);
    for (int row = 0; row < rows; ++row) {
        const int first = kManagerFirstButton + row * columns;
        for (int i = 0; i < columns; ++i)
            weights[i] = ButtonWeight(first + i);
        SplitRowBy(lines[row], weights, columns, kGap, cells);
        std::copy_n(cells, columns, layout->boxes + first);
    }
    layout->groups[kManagerButtonGroup] = area;
}

// ---- panes

static void PlacePanes(ManagerLayout* layout, const Box& area, const ManagerWish& wish) {
    const int most = area.height - kDividerHeight - kMinSummary;
    layout->groups[kManagerPanesGroup] = area;
    layout->panesHeight = area.height;
    if (most < kMinList) {
        BoxOf(layout, kManagerList) = area;
        return;
    }
    const int wanted = wish.listHeight > 0 ? wish.listHeight : area.height * 7 / 10;
    const int list = std::clamp(wanted, kMinList, most);
    const int below = area.top + list + kDividerHeight;
    BoxOf(layout, kManagerList) = {area.left, area.top, area.width, list};
    BoxOf(layout, kManagerDivider) = {area.left, area.top + list, area.width, kDividerHeight};
    BoxOf(layout, kManagerSummary) = {area.left, below, area.width,
                                      area.height - list - kDividerHeight};
}

static ManagerLayout LayOutWith(int width, int height, int large, const ManagerWish& wish) {
    ManagerLayout layout = {};
    Box area = InsetBox({0, 0, std::max(width, 0), std::max(height, 0)}, kMargin);
    layout.letterHeight = ManagerLetterHeight(large);
    const int row = layout.letterHeight + kRowAir;
    const int columns = ButtonColumns(large ? area.width * 2 / 3 : area.width);
    const int lines = columns ? kManagerButtons / columns : 0;
    const int buttons = lines * row + (lines - 1) * kGap;
    const int stripRows = area.width >= (large ? kWideStrip * 3 / 2 : kWideStrip) ? 1 : 2;
    const int strip = stripRows * row + (stripRows - 1) * kGap;
    int left = area.height - kMinList;
    if (left >= strip + kGroupGap && area.width >= kMinSearch) {
        left -= strip + kGroupGap;
        const Box place = {area.left, area.top, area.width, strip};
        PlaceStrip(&layout, place, row);
        layout.groups[kManagerStripGroup] = place;
        area.top += strip + kGroupGap;
        area.height -= strip + kGroupGap;
    }
    if (lines && left >= buttons + kGroupGap) {
        area.height -= buttons + kGroupGap;
        PlaceButtons(&layout, {area.left, area.top + area.height + kGroupGap, area.width, buttons},
                     columns);
    }
    PlacePanes(&layout, area, wish);
    return layout;
}

ManagerLayout LayOutManager(int width, int height, const ManagerWish& wish) {
    const ManagerLayout layout = LayOutWith(width, height, wish.large, wish);
    const int complete =
        layout.groups[kManagerButtonGroup].width && BoxOf(layout, kManagerSummary).width;
    return complete || !wish.large ? layout : LayOutWith(width, height, 0, wish);
}
