// The look shared by all windows: the seven colours and the rule for label sizes. Numbers only.
#pragma once
#include <cstdint>

// Fields are named as their values in the settings; each is 0x00BBGGRR.
struct ColorSet {
    uint32_t BtnFaceClr;  // button face
    uint32_t BtnDrkClr;   // label of a button whose component or mode is off
    uint32_t BtnLtClr;    // label of one that is on
    uint32_t BtnActClr;   // label under the pointer
    uint32_t CmpntBkClr;  // background of component windows
    uint32_t IndtrDrkClr; // lamp of an engine that runs
    uint32_t IndtrLtClr;  // lamp of an engine that is off
};

// Screens of more than 8 bits per pixel have calmer defaults for two of them.
ColorSet DefaultColors(int bitsPerPixel);

// One row for each colour: how loading, saving and seeding find them.
struct ColorValue {
    const char* name;
    uint32_t ColorSet::*field;
};
constexpr int kColorCount = 7;
extern const ColorValue kColorValues[kColorCount];

// Height in pixels of the label font for a button of width x height. `large` ("Large Font Size")
// enlarges by half, rounded to the nearest. At least 1.
int LabelFontHeight(int width, int height, int large);
