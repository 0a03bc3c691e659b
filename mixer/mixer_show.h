// How a name is cut that its column in the mixer window has no room for.
#pragma once

// Width in pixels of the first `length` characters.
using MeasureName = int (*)(const char* text, int length, void* context);
// Cuts `name` to fit `room` pixels, with dots at the end; where they would leave fewer than four
// letters, without them.
void FitMixerName(const char* name, int room, MeasureName measure, void* context, char* fitted,
                  int size);
