// The choice of a drive. See drives.h.
#include "cd/drives.h"

char DriveLetterOf(intptr_t value) {
    if (value >= 'a' && value <= 'z') value -= 'a' - 'A';
    return value >= 'A' && value <= 'Z' ? static_cast<char>(value) : 0;
}

char ChooseDrive(uint32_t drives, char wanted) {
    const char letter = DriveLetterOf(wanted);
    if (letter && drives >> (letter - 'A') & 1) return letter;
    for (char first = 'A'; first <= 'Z'; ++first)
        if (drives >> (first - 'A') & 1) return first;
    return 'D';
}
