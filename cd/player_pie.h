// The picture of the pie: a disc seen from above whose played part is lit, clockwise from the top.
// Computed pixel by pixel with soft edges; the window copies the pixels and needs no pens for it.
#pragma once
#include <cstdint>

// Each 0x00BBGGRR, as the settings hold colours.
struct PieColors {
    uint32_t back; // round the disc and in its hole
    uint32_t face; // not yet played
    uint32_t lit;  // played
    uint32_t rim;
};
// The dark instrument look: all four follow from the window's colour and the lamps'. `back` is the
// colour of the panel that pie and texts lie on.
PieColors PieLook(uint32_t background, uint32_t lamp);

// Fills side * side pixels (0x00RRGGBB, rows from the top) with the disc at `degrees` (0 to 360).
void DrawPie(uint32_t* pixels, int side, int degrees, const PieColors& colors);
