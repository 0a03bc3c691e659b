// See command_line.h.
#include "core/command_line.h"

#include "core/text.h"

#include <cstdlib>
#include <cstring>

StartRequest EmptyStartRequest() {
    StartRequest request = {};
    request.PlayDriveLetter = '-';
    request.ClaimDefaultCDPlayer = 1;
    request.ClaimDefaultMediaPlayer = 1;
    return request;
}

// 1 when `word` is `name` behind a slash or a dash.
static int IsSwitch(const char* word, const char* name) {
    return (word[0] == '/' || word[0] == '-') && SameText(word + 1, name);
}

// The drive is looked for in the switch itself, not in the word behind it: that word is swallowed
// and the letter is always '-'. Long-standing behaviour that registered commands rely on.
static void TakePlay(const char* word, StartRequest* request) {
    const char first = word[0];
    request->PlayRequested = 1;
    const int letter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
    request->PlayDriveLetter = letter ? static_cast<char>(first & ~0x20) : '-';
}

static int TakeFlag(const char* word, StartRequest* request) {
    if (IsSwitch(word, "reg"))
        request->RegisterShellRequested = 1;
    else if (IsSwitch(word, "install"))
        request->InstallRequested = 1;
    else if (IsSwitch(word, "installui"))
        request->InstallRequested = request->InstallUIRequested = 1;
    else if (IsSwitch(word, "uninstall"))
        request->UninstallRequested = 1;
    else if (IsSwitch(word, "nodefcd"))
        request->ClaimDefaultCDPlayer = 0;
    else if (IsSwitch(word, "nodefmed"))
        request->ClaimDefaultMediaPlayer = 0;
    else if (IsSwitch(word, "noeng"))
        request->NoEngines = 1;
    else
        return 0;
    return 1;
}

static int IsMediaFile(const char* word) {
    static const char* const kParts[] = {".mp3", ".wav", ".pl", ".m3u"};
    for (const char* part : kParts)
        if (std::strstr(word, part)) return 1;
    return 0;
}

void ParseWords(int count, const char* const* words, StartRequest* request) {
    for (int i = 0; i < count; ++i) {
        if (!words[i]) continue;
        char word[260];
        CopyText(word, words[i]);
        LowerText(word);
        const bool more = i + 1 < count;
        if (IsSwitch(word, "play") || IsSwitch(word, "pplay")) {
            TakePlay(word, request);
            if (IsSwitch(word, "pplay")) request->PPlay = 1;
            if (more) ++i;
        } else if (IsSwitch(word, "target")) {
            if (!more) continue;
            ++i;
            CopyText(request->TargetPath, words[i]);
            request->TargetGiven = 1;
        } else if (!TakeFlag(word, request) && IsMediaFile(word)) {
            CopyText(request->MediaFilePath, word);
            request->MediaFileGiven = 1;
        }
    }
}

// 0 when it is too long for a path.
static int JoinWords(const char* const* words, int count, char (&text)[260]) {
    size_t length = 0;
    text[0] = 0;
    for (int i = 0; i < count; ++i) {
        if (!words[i]) return 0;
        length += (i > 0) + std::strlen(words[i]);
        if (length >= sizeof text) return 0;
        if (i) AppendText(text, sizeof text, " ");
        AppendText(text, sizeof text, words[i]);
    }
    LowerText(text);
    return 1;
}

void JoinMediaWords(int count, const char* const* words, int (*Exists)(const char* path),
                    StartRequest* request) {
    constexpr int kLongest = 130; // words of one character that a path has room for
    char text[260];
    for (int row = count - 1 < kLongest ? count - 1 : kLongest; row > 1; --row)
        for (int first = 1; first + row <= count; ++first) {
            if (!JoinWords(words + first, row, text) || !IsMediaFile(text) || !Exists(text))
                continue;
            CopyText(request->MediaFilePath, text);
            request->MediaFileGiven = 1;
            return;
        }
}

static int MonthNumber(const char* name) {
    switch (name[0]) {
    case 'D': return 12;
    case 'N': return 11;
    case 'O': return 10;
    case 'S': return 9;
    case 'F': return 2;
    case 'A': return name[1] == 'U' ? 8 : 4;
    case 'M': return name[2] == 'Y' ? 5 : 3;
    case 'J': return name[1] == 'A' ? 1 : name[2] == 'N' ? 6 : 7;
    default: return 0;
    }
}

void ParseBuildDate(const char* date, uint16_t* year, uint16_t* monthDay) {
    *year = *monthDay = 0;
    if (strnlen(date, 12) < 11) return;
    char month[4];
    CopyText(month, sizeof month, date);
    UpperText(month);
    if (!MonthNumber(month)) return;
    *year = static_cast<uint16_t>(std::atoi(date + 7));
    *monthDay = static_cast<uint16_t>(MonthNumber(month) * 100 + std::atoi(date + 4));
}
