// Saved placements in the registry. See settings.h.
#include "core/placement.h"
#include "core/platform.h"

#include <algorithm>

namespace {
struct PlacementValue {
    const char* name;
    size_t offset;
};
constexpr PlacementValue kValues[] = {
    {"X", offsetof(WindowPlacement, X)},
    {"Y", offsetof(WindowPlacement, Y)},
    {"Width", offsetof(WindowPlacement, Width)},
    {"Height", offsetof(WindowPlacement, Height)},
    {"BkColor", offsetof(WindowPlacement, BkColor)},
};
} // namespace

// The virtual screen's origin is left out on purpose: a second monitor left of the first one has
// always been treated as off the screen.
static Bounds ScreenBounds() {
    if (GetSystemMetrics(SM_CMONITORS) >= 2)
        return {0, 0, GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN)};
    RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    return {area.left, area.top, area.right, area.bottom};
}

// No window becomes larger than the system lets a user drag it, or smaller than nothing. A stored
// size beyond that says nothing about how far the window reaches.
void KeepPlacementInSight(WindowPlacement* placement) {
    WindowPlacement shown = *placement;
    shown.Width = std::clamp(shown.Width, 0, GetSystemMetrics(SM_CXMAXTRACK));
    shown.Height = std::clamp(shown.Height, 0, GetSystemMetrics(SM_CYMAXTRACK));
    ClampPlacement(&shown, ScreenBounds());
    placement->X = shown.X;
    placement->Y = shown.Y;
}

int LoadWindowPlacement(uint32_t windowId, WindowPlacement* placement) {
    *placement = DefaultPlacement(windowId);
    for (const auto& value : kValues)
        ReadWindowSetting(windowId, value.name, kRegBinary, 4,
                          reinterpret_cast<char*>(placement) + value.offset);
    KeepPlacementInSight(placement);
    return 1;
}

int WriteWindowPlacement(const WindowPlacement& placement) {
    int good = 1;
    for (const auto& value : kValues)
        good &= WriteWindowSetting(placement.WindowId, value.name, kRegBinary, 4,
                                   reinterpret_cast<const char*>(&placement) + value.offset);
    return good;
}
