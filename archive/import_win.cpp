// Reading discs from files, and taking them into the default database. See exchange_win.h.
//
// An import reads everything first, as packed entries, and only then begins its one change of the
// database: nobody else can change that meanwhile, and reading may take long or be cancelled.
#include "archive/forms_win.h"
#include "cdinfo/store.h"

#include <memory>
#include <vector>

// The engine stores a disc now and then; for that long an import waits for it.
constexpr DWORD kBusyWaitMs = 3000, kBusyStepMs = 50;
constexpr size_t kDiscsPerStep = 64; // while changing

// ---- reading

int StepJob(ReadJob* job) {
    const ExchangeProgress& progress = job->progress;
    if (!job->stopped && progress.OnStep)
        job->stopped = !progress.OnStep(job->done, job->total, progress.context);
    return !job->stopped;
}

int GiveDisc(ReadJob* job, const CDInfoRecord& record) {
    if (job->stopped) return 0;
    if (!job->sink(record, job->context)) {
        job->stopped = 1;
        return 0;
    }
    ++job->done;
    return StepJob(job);
}

static int OnEntry(const void* data, size_t, uint32_t, void* context) {
    return GiveDisc(static_cast<ReadJob*>(context), *static_cast<const CDInfoRecord*>(data));
}

static int ReadCdpFile(ReadJob* job) {
    job->total = CountEntries(job->path.c_str());
    return EnumerateEntries(job->owner, job->path.c_str(), OnEntry, job, 0, 0);
}

static int RunJob(ExchangeForm form, ReadJob* job) {
    int read = 0;
    if (form == kCdpForm) read = ReadCdpFile(job);
    if (form == kIniForm) read = ReadIniFile(job);
    if (form == kCddbForm) read = ReadCddbFiles(job);
    if (form == kCueForm) read = ReadCueFiles(job);
    return read && !job->stopped;
}

int ReadDiscs(HWND owner, ExchangeForm form, const char* path, DiscSink sink, void* context,
              const ExchangeProgress& progress) {
    ReadJob job = {owner, WidenPath(path), sink, context, progress, 0, 0, 0};
    return RunJob(form, &job);
}

// ---- importing

struct GatheredDisc {
    uint32_t identity;
    std::vector<uint8_t> packed;
};

struct Gathering {
    std::vector<GatheredDisc> discs;
    std::unique_ptr<uint8_t[][kMaxPackedEntry]> buffer;
    int refused; // a record that fits into no entry
};

static int GatherDisc(const CDInfoRecord& record, void* context) {
    Gathering& gathering = *static_cast<Gathering*>(context);
    uint8_t(&buffer)[kMaxPackedEntry] = gathering.buffer[0];
    size_t length;
    if (PackRecord(record, buffer, &length))
        gathering.discs.push_back({record.identity, {buffer, buffer + length}});
    else
        gathering.refused = 1;
    return 1;
}

static StoreBatch* BeginPatiently() {
    for (const DWORD start = GetTickCount();; Sleep(kBusyStepMs)) {
        StoreBatch* batch = BeginStoreBatch(nullptr);
        if (batch || GetTickCount() - start > kBusyWaitMs) return batch;
    }
}

// 1 when it was taken; a record that is not worth storing is none.
static int AddDisc(StoreBatch* batch, ExchangeForm form, const GatheredDisc& disc) {
    auto record = std::make_unique<CDInfoRecord>();
    auto stored = std::make_unique<CDInfoRecord>();
    if (!UnpackEntry(disc.packed, record.get())) return 0;
    SetIdentity(record.get(), disc.identity);
    if (form != kCdpForm && BatchRead(batch, disc.identity, stored.get()))
        KeepUncarried(form, *stored, record.get());
    return !IsNothingToStore(*record) && BatchAdd(batch, *record);
}

static int StoreGathered(ExchangeForm form, const Gathering& gathering, ReadJob* job,
                         size_t* discs) {
    if (gathering.discs.empty()) return 1;
    StoreBatch* batch = BeginPatiently();
    if (!batch) return 0;
    size_t added = 0, seen = 0;
    for (const GatheredDisc& disc : gathering.discs) {
        if (seen++ % kDiscsPerStep == 0 && !StepJob(job)) {
            CancelStoreBatch(batch);
            return 0;
        }
        added += static_cast<size_t>(AddDisc(batch, form, disc));
    }
    if (!CommitStoreBatch(batch)) return 0;
    *discs = added;
    return 1;
}

// What the database could take from itself is there already. Where its index leads from one disc to
// another's entry, taking it would even put one's texts in the other's place.
static int CountDisc(const CDInfoRecord&, void*) {
    return 1;
}

int ImportDiscs(HWND owner, ExchangeForm form, const char* path, const ExchangeProgress& progress,
                size_t* discs) {
    *discs = 0;
    Gathering gathering;
    gathering.buffer = std::make_unique<uint8_t[][kMaxPackedEntry]>(1);
    gathering.refused = 0;
    ReadJob job = {owner, WidenPath(path), GatherDisc, &gathering, progress, 0, 0, 0};
    const int isOwn = form == kCdpForm && IsSameFile(job.path, DefaultDatabasePath());
    if (isOwn) job.sink = CountDisc;
    const int read = RunJob(form, &job);
    if (job.stopped) return 0;
    if (isOwn) *discs = job.done;
    return StoreGathered(form, gathering, &job, discs) && read && !gathering.refused;
}
