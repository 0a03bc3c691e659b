// The platform's comparison of texts, in the forms that a catalog takes.
#pragma once
#include <cstdint>
#include <string>

// A TextKey (catalog.h): orders as lstrcmp does, locale-aware and case-sensitive.
void PlatformTextKey(const char* text, std::string* key);
// The small letter of each of the 256 characters of the system's code page.
const uint8_t* PlatformLowerCase();
