// What stands in a metafile of printed pages.
#pragma once
#include "core/platform.h"

#include <string>
#include <vector>

inline int CALLBACK CollectText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM to) {
    if (record->iType != EMR_EXTTEXTOUTW) return 1;
    const auto& text = *reinterpret_cast<const EMREXTTEXTOUTW*>(record);
    const auto* letters = reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(record) +
                                                           text.emrtext.offString);
    std::string narrow;
    for (DWORD i = 0; i < text.emrtext.nChars; ++i)
        narrow += static_cast<char>(letters[i]);
    reinterpret_cast<std::vector<std::string>*>(to)->push_back(narrow);
    return 1;
}

inline std::vector<std::string> TextsOf(HENHMETAFILE file) {
    std::vector<std::string> texts;
    EnumEnhMetaFile(nullptr, file, CollectText, &texts, nullptr);
    return texts;
}
