// Changes to a playlist while it is edited. The position stays with its entry; when that is
// removed, with the one that comes to stand there.
#pragma once
#include "media/playlist.h"

using EntryMarks = std::vector<char>; // 1 for each selected entry; as many as there are entries

// By one place, up (-1) or down (1); what stands at the end already stays. The marks move along.
// 0 when nothing moved, as for all of these.
int MoveEntries(Playlist* list, EntryMarks* marks, int step);
// To where entry `gap` begins (all of them together, in their order).
int DropEntries(Playlist* list, EntryMarks* marks, int gap);
int RemoveEntries(Playlist* list, const EntryMarks& marks);

struct InsertTally {
    int added;
    int tooLong; // left out: cut, they would name other files
    int full;    // left out since the record holds no more
};
// At index, in order; at the end when there is no entry `index`.
InsertTally InsertPaths(Playlist* list, const std::vector<std::string>& paths, int index);

// As it is written to `path`: where that is another folder, entries relative to the old one are
// made whole.
Playlist ListForFile(const Playlist& list, const std::string& path);
