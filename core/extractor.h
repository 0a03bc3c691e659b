// What the program and the extractor, the DirectShow filter that shows the analyzers what a media
// file plays, must both know of each other.
#pragma once

constexpr const char* kExtractorFile = "TONVExtr.dll"; // beside the program
constexpr const char* kExtractorName = "AudioDataExtractorIP";
// Its class identifier, {669B1B7A-3BC7-4466-8B2F-6FC46E6CC031}.
#define TONVISTA_EXTRACTOR_CLSID                           \
    {                                                      \
        0x669b1b7a, 0x3bc7, 0x4466, {                      \
            0x8b, 0x2f, 0x6f, 0xc4, 0x6e, 0x6c, 0xc0, 0x31 \
        }                                                  \
    }
