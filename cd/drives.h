// Which drive to play from.
#pragma once
#include <cstdint>

// A letter in upper case, or 0 for what is none.
char DriveLetterOf(intptr_t value);
// `wanted` if it is among the drives (bit 0 is A), else the first one, else 'D'.
char ChooseDrive(uint32_t drives, char wanted);
