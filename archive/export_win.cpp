// Writing discs to files. See exchange_win.h.
#include "archive/cddb.h"
#include "archive/cue_sheet.h"
#include "archive/forms_win.h"
#include "cdinfo/store.h"

#include <memory>

struct ExportJob {
    ExchangeForm form;
    std::wstring path;
    char separator;
    HANDLE file;       // text and delimited
    StoreBatch* batch; // CDP
    std::string ini;   // CDPlayer.ini's full path
};

static int PutText(HANDLE file, const std::string& text) {
    DWORD put = 0;
    return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &put, nullptr) &&
           put == text.size();
}

// ---- one file for all

// The old file goes with the first disc only, so that an export of nothing keeps it.
static int OpenText(ExportJob* job) {
    if (job->file != INVALID_HANDLE_VALUE) return 1;
    if (!DeleteFileW(job->path.c_str()) && GetLastError() != ERROR_FILE_NOT_FOUND) return 0;
    job->file = CreateFileW(job->path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return job->file != INVALID_HANDLE_VALUE;
}

static int AppendDisc(ExportJob* job, const CDInfoRecord& record) {
    if (!OpenText(job)) return 0;
    const std::string text =
        job->form == kTextForm ? TextBlock(record) : DelimitedLines(record, job->separator);
    return PutText(job->file, text);
}

static int AddToDatabase(ExportJob* job, const CDInfoRecord& record) {
    if (!job->batch) job->batch = BeginStoreBatch(job->path.c_str());
    return job->batch && BatchAdd(job->batch, record);
}

// ---- a file for each disc

static int WriteOpened(HANDLE file, const std::string& text) {
    const int good = PutText(file, text);
    return CloseHandle(file) && good;
}

static HANDLE OpenForWriting(const std::wstring& path, DWORD how) {
    return CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, how, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

// Writes under a name of that stem which is free, or whose file holds the same disc: nobody else's
// is written over. A free name is found by making the file, since looking first would cost a second
// walk through the folder where file names have to be compared one by one.
static int WriteBeside(const std::wstring& stem, const wchar_t* ending, uint32_t identity,
                       int (*holdsDisc)(const std::wstring& path, uint32_t identity),
                       const std::string& text) {
    constexpr int kTries = 100;
    wchar_t mark[32] = L"";
    for (int i = 0; i < kTries; ++i) {
        // The identity first: a thousand unknown discs have one title.
        if (i == 1) wsprintfW(mark, L" [%08X]", identity);
        if (i > 1) wsprintfW(mark, L" [%08X]-%d", identity, i);
        const std::wstring path = stem + mark + ending;
        HANDLE file = OpenForWriting(path, CREATE_NEW);
        if (file == INVALID_HANDLE_VALUE) {
            if (GetLastError() != ERROR_FILE_EXISTS) return 0;
            if (!holdsDisc(path, identity)) continue;
            file = OpenForWriting(path, CREATE_ALWAYS);
        }
        return file != INVALID_HANDLE_VALUE && WriteOpened(file, text);
    }
    return 0;
}

static int WriteCddbFile(ExportJob* job, const CDInfoRecord& record) {
    wchar_t name[16];
    wsprintfW(name, L"\\%08x", CddbDiscId(record));
    return WriteBeside(job->path + name, L"", record.identity, HoldsCddbDisc,
                       WriteCddbEntry(record, CddbCodec()));
}

static int WriteCueFile(ExportJob* job, const CDInfoRecord& record) {
    std::string name = std::string(record.discArtist) + " - " + record.title;
    for (char& c : name) {
        if (static_cast<uint8_t>(c) < ' ' || strchr("<>:\"/\\|?*", c)) c = '_';
    }
    return WriteBeside(job->path + L"\\" + WidenPath(name.c_str()), L".cue", record.identity,
                       HoldsCueDisc, WriteCueSheet(record, name + ".wav", CueCodec()));
}

// ---- the export

static int ExportDisc(ExportJob* job, const CDInfoRecord& record) {
    switch (job->form) {
    case kTextForm:
    case kDelimitedForm: return AppendDisc(job, record);
    case kCdpForm: return AddToDatabase(job, record);
    case kIniForm: return WriteIniSection(job->ini, record);
    case kCddbForm: return WriteCddbFile(job, record);
    case kCueForm: return WriteCueFile(job, record);
    }
    return 0;
}

static int BeginExport(ExportJob* job) {
    const int isOwn = IsSameFile(job->path, DefaultDatabasePath());
    if (job->form == kIniForm) job->ini = IniPath(job->path);
    if (job->form == kCddbForm || job->form == kCueForm) {
        CreateDirectoryW(job->path.c_str(), nullptr);
        const DWORD attributes = GetFileAttributesW(job->path.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    }
    return !isOwn || job->form == kCdpForm;
}

static int EndExport(ExportJob* job, int keep) {
    int good = 1;
    if (job->file != INVALID_HANDLE_VALUE) good = CloseHandle(job->file);
    if (job->batch && keep) return CommitStoreBatch(job->batch);
    CancelStoreBatch(job->batch);
    return good;
}

int ExportDiscs(ExchangeForm form, const char* path, char separator, DiscSource source,
                void* context, const ExchangeProgress& progress) {
    ExportJob job = {form, WidenPath(path), separator, INVALID_HANDLE_VALUE, nullptr, {}};
    if (!BeginExport(&job)) return 0;
    // Its discs are in the database already; writing rows of a list over them could only make
    // them older.
    if (form == kCdpForm && IsSameFile(job.path, DefaultDatabasePath())) return 1;
    auto record = std::make_unique<CDInfoRecord>();
    int good = 1, cancelled = 0;
    for (size_t done = 0; !cancelled && source(record.get(), context); ++done) {
        good = ExportDisc(&job, *record);
        if (!good) break;
        cancelled = progress.OnStep && !progress.OnStep(done + 1, 0, progress.context);
        *record = {};
    }
    return EndExport(&job, !cancelled) && good && !cancelled;
}
