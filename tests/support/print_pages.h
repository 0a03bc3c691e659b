// Discs to print, harmless and hostile ones, and their pages.
#pragma once
#include "archive/print_document.h"
#include "core/text.h"

#include <string>

enum DiscTexts { kShortTexts, kNoTexts, kLongWords, kLongLines, kOddLetters, kTextKinds };

inline std::string TextFor(DiscTexts kind, size_t length, int number) {
    switch (kind) {
    case kShortTexts: return "Song " + std::to_string(number);
    case kLongWords: return std::string(length, "WMjf@"[number % 5]);
    case kLongLines: {
        std::string text;
        while (text.size() < length)
            text += "fjord and waves ";
        return text.substr(0, length);
    }
    case kOddLetters: {
        std::string text = "\t  ";
        for (int i = 1; text.size() < length; ++i)
            text += static_cast<char>(i * 7 % 255 + 1);
        return text;
    }
    default: return "";
    }
}

// With artists that differ where `various` says so, and a program of one stretch.
inline CDInfoRecord MakeDisc(int tracks, DiscTexts kind, int various) {
    CDInfoRecord record;
    SetIdentity(&record, 0x1234);
    record.trackCount = static_cast<uint16_t>(tracks);
    CopyText(record.title, TextFor(kind, 63, 0).c_str());
    CopyText(record.comment, TextFor(kind, 254, 1).c_str());
    for (int i = 0; i < tracks; ++i) {
        record.trackSeconds[i] = static_cast<uint16_t>(i == 1 ? 65535 : 100 + i);
        CopyText(record.trackArtists[i], TextFor(kind, 63, various ? i : 3).c_str());
        CopyText(record.trackTitles[i], TextFor(kind, 63, i + 1).c_str());
        CopyText(record.trackComments[i], TextFor(kind, 254, i).c_str());
    }
    if (tracks)
        record.program[record.programCount++] = {MakeTmsf(1, 0, 5, 0), MakeTmsf(1, 0, 9, 0)};
    DeriveDiscArtist(&record);
    DeriveTotalTime(&record);
    return record;
}

inline PrintStyle MakeStyle(const PrintFont& font, const PrintPaper& paper, int points = 9) {
    return {font,
            paper,
            PointsToPaper(points),
            {"Audio CDs", "Title", "Artist", "Time", "Tracks", "Comment", "Page %d of %d", "%d CDs",
             "Program", "%d tracks, %s", "Various"},
            "1/2/2003"};
}

// Pages of all records, or of the first one.
inline std::vector<PrintPage> MakePages(PrintKind kind, const PrintStyle& style,
                                        const std::vector<CDInfoRecord>& records) {
    PrintDocument document;
    document.kind = kind;
    document.style = style;
    const auto discs = std::make_shared<PrintDiscs>();
    for (const CDInfoRecord& record : records)
        AddPrintDisc(discs.get(), style, record);
    document.discs = discs;
    LayOutDocument(&document, records[0]);
    std::vector<PrintPage> pages;
    for (size_t i = 0; i < DocumentPages(document); ++i)
        pages.push_back(DocumentPage(document, i));
    return pages;
}
