// Import and export of discs through files. See exchange_win.h.
#include "archive/exchange_win.h"

int ReadDiscs(HWND, ExchangeForm, const char*, DiscSink, void*, const ExchangeProgress&) {
    return 0;
}
int ImportDiscs(HWND, ExchangeForm, const char*, const ExchangeProgress&, size_t* discs) {
    *discs = 0;
    return 0;
}
int ExportDiscs(ExchangeForm, const char*, char, DiscSource, void*, const ExchangeProgress&) {
    return 0;
}
void MigrateRegistryDiscs() {}
void MigrateIniDiscs() {}
