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

// Reads the file, or for kCddbForm also a folder, and hands each disc on. `owner` owns the messages
// that tell what is wrong with an old-style CDP file; may be null.
int ReadDiscs(HWND owner, ExchangeForm form, const char* path, DiscSink sink, void* context,
              const ExchangeProgress& progress);

// Reads them into the default database, as one change of it. A cancelled import changes nothing.
// *discs is how many were taken.
int ImportDiscs(HWND owner, ExchangeForm form, const char* path, const ExchangeProgress& progress,
                size_t* discs);

// Writes all discs of the source. Text and delimited files are begun anew, all others are merged
// into; kCddbForm and kCueForm write one file a disc into the folder `path`.
int ExportDiscs(ExchangeForm form, const char* path, char separator, DiscSource source,
                void* context, const ExchangeProgress& progress);

// The takeovers of the first start, each done once: discs that were named in the registry by an
// older release, and those of CDPlayer.ini. With progress in windows of their own.
void MigrateRegistryDiscs();
void MigrateIniDiscs();
