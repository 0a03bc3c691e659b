// A CUE sheet as text from outside, laid over files whose lengths come from its own bytes; then
// what the driver asks of the disc.
#include "discdrive/disc.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CueSheet sheet;
    IsUtf8(text);
    if (!ReadCue(text, &sheet)) return 0;
    std::vector<ImageFile> files;
    uint64_t seed = size;
    for (const CueFile& file : sheet.files) {
        seed = seed * 6364136223846793005u + file.name[0];
        const uint64_t sectors = file.name.size() % 3 ? seed >> 44 : seed;
        files.push_back({file.wave ? 44u : 0u, sectors * (file.wave ? 1000 : kAudioSectorBytes)});
    }
    Disc disc;
    if (!BuildDisc(sheet, files, &disc)) return 0;
    uint32_t at = disc.pieces.empty() ? disc.end : disc.pieces[0].start;
    for (const DiscPiece& piece : disc.pieces) {
        if (piece.start != at) abort(); // a hole
        at += piece.count;
        if (piece.file < 0) continue;
        const ImageFile& file = files[piece.file];
        if (piece.bytes > file.bytes || piece.offset - file.offset > file.bytes - piece.bytes)
            abort(); // bytes that the file does not have
    }
    if (at != disc.end) abort();
    for (const DiscTrack& track : disc.tracks) {
        uint32_t frame;
        const uint32_t told = TellPosition(disc, kTimeMsf, track.start);
        if (!ReadPosition(disc, kTimeMsf, told, &frame) || frame != track.start) abort();
        FrameAfter(disc, track.start, disc.end, track.length);
    }
    DiscIdentity(disc);
    return 0;
}
