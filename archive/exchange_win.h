// Import and export of discs through files. Slow: meant for a thread that has no window of its own
// (transfer_win.h). Functions give 1 when all went well; what was read before a fault stays.
#pragma once
#include "archive/exchange.h"
#include "core/platform.h"

// How far an operation is, called now and then; 0 cancels it. total 0: not known.
struct ExchangeProgress {
    int (*OnStep)(size_t done, size_t total, void* context); // may be null
    void* context;
};

// Where discs come from: fills *record and gives 1, or 0 at the end.
using DiscSource = int (*)(CDInfoRecord* record, void* context);
// Where discs go to. 0 ends the reading.
using DiscSink = int (*)(const CDInfoRecord& record, void* context);

// Reads the file and hands each disc on. For kCddbForm and kCueForm the path may also be a folder,
// which is read with all below it; for kIniForm it may be empty, which is the Windows directory's
// CDPlayer.ini. `owner` owns the messages that tell what is wrong with an old-style CDP file; may
// be null. 0 also when the sink or the progress ended it, and for forms that are export only.
int ReadDiscs(HWND owner, ExchangeForm form, const char* path, DiscSink sink, void* context,
              const ExchangeProgress& progress);

// Reads them into the default database, as one change of it. Discs that are there already get the
// texts of the file; what the form can't carry (program, comments, timing) they keep. A cancelled
// import changes nothing; after a fault in the file what came before it is taken, and the result is
// 0. *discs is how many were taken.
int ImportDiscs(HWND owner, ExchangeForm form, const char* path, const ExchangeProgress& progress,
                size_t* discs);

// Writes all discs of the source. Text and delimited files are begun anew, all others are merged
// into; kCddbForm and kCueForm write one file a disc into the folder `path` (made when missing) and
// never over a file that is another disc's. An empty path of kIniForm is the Windows directory's
// CDPlayer.ini. No form but kCdpForm is written over the default database. A cancelled kCdpForm
// leaves the file as it was; of the other forms the discs so far stay.
int ExportDiscs(ExchangeForm form, const char* path, char separator, DiscSource source,
                void* context, const ExchangeProgress& progress);

// The takeovers of the first start, each done once: discs that were named in the registry by an
// older release, and those of CDPlayer.ini. With progress in windows of their own.
void MigrateRegistryDiscs();
void MigrateIniDiscs();
