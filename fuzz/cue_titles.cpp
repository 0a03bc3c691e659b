// CUE sheets read for their titles, over files of which some are missing; what is written of the
// record reads back.
#include "archive/cue_sheet.h"

#include <cstdlib>
#include <memory>

static std::unique_ptr<CDInfoRecord> Read(std::string_view text, int seed) {
    CueSheet sheet;
    CueTexts texts;
    if (!ReadCue(text, &sheet, &texts)) return nullptr;
    std::vector<CueFileLength> lengths;
    for (size_t i = 0; i < sheet.files.size(); ++i)
        lengths.push_back({{0, 9000u * kAudioSectorBytes}, (seed >> i % 8 & 1) == 0});
    auto record = std::make_unique<CDInfoRecord>();
    if (!ReadCueDisc(sheet, texts, lengths, 0, {}, record.get())) return nullptr;
    if (record->trackCount < 1 || record->trackCount > kMaxCueTracks || !record->identity) abort();
    return record;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!size) return 0;
    const auto record = Read({reinterpret_cast<const char*>(data) + 1, size - 1}, data[0]);
    if (!record) return 0;
    const auto again = Read(WriteCueSheet(*record, "any.wav", {}), 1);
    if (!again || again->identity != record->identity) abort();
    if (again->trackCount != record->trackCount) abort();
    for (size_t i = 0; i <= record->trackCount; ++i) {
        if (again->trackStarts[i] != record->trackStarts[i]) abort();
    }
    return 0;
}
