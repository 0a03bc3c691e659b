// Colours and label sizes. See look.h.
#include "ui/look.h"

#include <algorithm>

const ColorValue kColorValues[kColorCount] = {
    {"BtnFaceClr", &ColorSet::BtnFaceClr}, {"BtnDrkClr", &ColorSet::BtnDrkClr},
    {"BtnLtClr", &ColorSet::BtnLtClr},     {"BtnActClr", &ColorSet::BtnActClr},
    {"CmpntBkClr", &ColorSet::CmpntBkClr}, {"IndtrDrkClr", &ColorSet::IndtrDrkClr},
    {"IndtrLtClr", &ColorSet::IndtrLtClr},
};

ColorSet DefaultColors(int bitsPerPixel) {
    ColorSet colors = {0x808080, 0x000000, 0x00FF00, 0xFFFFFF, 0x404040, 0x00FF00, 0x808080};
    if (bitsPerPixel > 8) {
        colors.BtnLtClr = 0x800000;
        colors.IndtrDrkClr = 0xFF8000;
    }
    return colors;
}

int LabelFontHeight(int width, int height, int large) {
    int size = std::max(width / 20, 1) * 2;
    if (size > height) size = height - 2;
    size = std::max(size, 1);
    return large ? (size * 3 + 1) / 2 : size;
}
