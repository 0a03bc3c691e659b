// What the files of import and export share: the job of reading, and one reader a form. Nobody else
// includes this.
#pragma once
#include "archive/exchange_win.h"
#include "archive/ini.h"

#include <string>
#include <string_view>

// ---- reading

struct ReadJob {
    HWND owner;
    std::wstring path;
    DiscSink sink;
    void* context;
    ExchangeProgress progress;
    size_t done, total;
    int stopped; // the sink or the progress ended it
};

// Tells the progress without a disc; 0 once the reading is to end.
int StepJob(ReadJob* job);
// Hands a disc on and counts it; 0 once the reading is to end.
int GiveDisc(ReadJob* job, const CDInfoRecord& record);

// Each gives 1 when all was read.
int ReadIniFile(ReadJob* job);
int ReadCddbFiles(ReadJob* job); // a file or a folder
int ReadCueFiles(ReadJob* job);

// ---- files

std::wstring WidenPath(const char* path);
// The whole file when it is not larger than `limit`. 0 otherwise.
int ReadFileText(const std::wstring& path, uint64_t limit, std::string* text);
// Its first bytes, up to `limit`; none when they can't be had.
void ReadFileStart(const std::wstring& path, size_t limit, std::string* text);
inline std::string ReadFileHead(const std::wstring& path) {
    std::string head;
    ReadFileStart(path, 16, &head);
    return head;
}
// 1 when both paths are one file, however they are spelled.
int IsSameFile(const std::wstring& a, const std::wstring& b);

// Single bytes of a CDDB file are Western European, those of a CUE sheet the system's code page.
const TextCodec& CddbCodec();
const TextCodec& CueCodec();

// 1 when the file holds that very disc.
int HoldsCddbDisc(const std::wstring& path, uint32_t identity);
int HoldsCueDisc(const std::wstring& path, uint32_t identity);

// ---- CDPlayer.ini

// Empty stands for the one in the Windows directory.
std::string IniPath(const std::wstring& path);
// Names of all sections; 0 when the file can't be read. A file that is not there has none: 1.
int ReadIniNames(const std::string& path, std::vector<std::string>* names);
IniLines ReadIniSection(const std::string& path, const char* name);
int WriteIniSection(const std::string& path, const CDInfoRecord& record);
