// The manager's values in the registry, in a section that bears its window's title and not its
// number.
#include "archive/manager_state_win.h"
#include "core/settings.h"
#include "core/text.h"

static constexpr char kSection[] = "Software\\Tonvista\\CDInfoUI";

template <class Value> static void Read(const char* name, Value* value) {
    static_assert(sizeof *value == 4);
    ReadRegValue(kUserRoot, kSection, name, kRegBinary, value, sizeof *value);
}

template <class Value> static void Write(const char* name, RegType type, const Value& value) {
    static_assert(sizeof value == 4);
    WriteRegValue(kUserRoot, kSection, name, type, &value, sizeof value);
}

static void NumberedName(char (&name)[32], const char* stem, int number) {
    FormatText(name, sizeof name, "%s%d", stem, number);
}

ManagerSettings ReadManagerSettings() {
    StoredManagerSettings stored;
    char name[32];
    for (int i = 0; i < kTrackViewColumns; ++i) {
        NumberedName(name, "ColumnOrder", i);
        Read(name, &stored.order[i]);
        NumberedName(name, "ColumnWidth", i);
        Read(name, &stored.widths[i]);
    }
    Read("SortOrder", &stored.sortOrder);
    Read("SortDirection", &stored.sortDirection);
    Read("ViewType", &stored.viewType);
    Read("CDListHeight", &stored.listHeight);
    return CheckedManagerSettings(stored);
}

void WriteManagerSettings(const ManagerSettings& settings) {
    const StoredManagerSettings stored = StoredFormOf(settings);
    char name[32];
    for (int i = 0; i < kTrackViewColumns; ++i) {
        NumberedName(name, "ColumnOrder", i);
        Write(name, kRegBinary, stored.order[i]);
        NumberedName(name, "ColumnWidth", i);
        Write(name, kRegBinary, stored.widths[i]);
    }
    Write("SortOrder", kRegBinary, stored.sortOrder);
    Write("SortDirection", kRegBinary, stored.sortDirection);
    Write("ViewType", kRegBinary, stored.viewType);
    Write("CDListHeight", kRegDword, stored.listHeight);
}
