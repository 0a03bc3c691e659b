// The play program in the CD information editor: its entries, and the stretch that may be added.
#include "cdinfo/editor_parts_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

#include <algorithm>

enum ProgramColumn { kNumber, kTrack, kPart, kLength, kColumns };

// The spin buttons of the times move the time as a whole, so that seconds carry into minutes.
struct TimeSpin {
    WORD spinId;
    WORD minuteId;
    WORD secondId;
    int step; // seconds
};
static constexpr TimeSpin kSpins[] = {
    {IDC_EDITOR_FROM_MINUTE_SPIN, IDC_EDITOR_FROM_MINUTE, IDC_EDITOR_FROM_SECOND, 60},
    {IDC_EDITOR_FROM_SECOND_SPIN, IDC_EDITOR_FROM_MINUTE, IDC_EDITOR_FROM_SECOND, 1},
    {IDC_EDITOR_TO_MINUTE_SPIN, IDC_EDITOR_TO_MINUTE, IDC_EDITOR_TO_SECOND, 60},
    {IDC_EDITOR_TO_SECOND_SPIN, IDC_EDITOR_TO_MINUTE, IDC_EDITOR_TO_SECOND, 1},
};
constexpr int kSpinMiddle = 500; // an up-down control reports no steps beyond its ends

static SegmentMarks SelectedEntries(const Editor* editor) {
    SegmentMarks marks = {};
    for (int row = 0; row < editor->after.programCount; ++row)
        marks[row] = SendMessageA(editor->program, LVM_GETITEMSTATE, row, LVIS_SELECTED) != 0;
    return marks;
}

// ---- the stretch

static unsigned NumberIn(const Editor* editor, int id) {
    return GetDlgItemInt(editor->dialog, id, nullptr, FALSE);
}

static Stretch TypedStretch(const Editor* editor) {
    const LRESULT chosen =
        SendDlgItemMessageA(editor->dialog, IDC_EDITOR_STRETCH_TRACK, CB_GETCURSEL, 0, 0);
    Stretch stretch;
    stretch.track = static_cast<uint32_t>(chosen + 1); // none is -1
    stretch.fromMinute = NumberIn(editor, IDC_EDITOR_FROM_MINUTE);
    stretch.fromSecond = NumberIn(editor, IDC_EDITOR_FROM_SECOND);
    stretch.toMinute = NumberIn(editor, IDC_EDITOR_TO_MINUTE);
    stretch.toSecond = NumberIn(editor, IDC_EDITOR_TO_SECOND);
    return stretch;
}

static void ShowTime(const Editor* editor, int minuteId, int secondId, uint32_t seconds) {
    char text[16];
    SetDlgItemInt(editor->dialog, minuteId, seconds / 60, FALSE);
    FormatText(text, sizeof text, "%02u", static_cast<unsigned>(seconds % 60));
    SetDlgItemTextA(editor->dialog, secondId, text);
}

static void ShowStretchNote(const Editor* editor, StretchCheck check, const Stretch& stretch,
                            const ProgramSegment& segment) {
    UINT id = 0;
    unsigned seconds = 0;
    switch (check) {
    case kStretchGood:
        id = IDS_EDITOR_STRETCH_LENGTH;
        seconds = SegmentSeconds(editor->after, segment.start, segment.stop);
        break;
    case kStretchBadSecond: id = IDS_EDITOR_STRETCH_SECONDS; break;
    case kStretchPastTrack:
        id = IDS_EDITOR_STRETCH_PAST;
        seconds = editor->after.trackSeconds[stretch.track - 1];
        break;
    case kStretchEmpty: id = IDS_EDITOR_STRETCH_EMPTY; break;
    case kStretchNoTrack: break;
    }
    if (editor->after.programCount >= kMaxSegments) id = IDS_EDITOR_STRETCH_FULL;
    char format[kStringMax], text[kStringMax];
    LoadText(id, format);
    FormatText(text, sizeof text, format, seconds / 60, seconds % 60);
    SetDlgItemTextA(editor->dialog, IDC_EDITOR_STRETCH_NOTE, text);
}

void OfferStretch(Editor* editor, uint32_t track) {
    if (track < 1 || track > editor->after.trackCount) return;
    SendDlgItemMessageA(editor->dialog, IDC_EDITOR_STRETCH_TRACK, CB_SETCURSEL, track - 1, 0);
    // What a position can hold ends before a track does that is longer than four hours.
    const uint32_t seconds =
        std::min<uint32_t>(editor->after.trackSeconds[track - 1], kMaxMinute * 60 + 59);
    ShowTime(editor, IDC_EDITOR_FROM_MINUTE, IDC_EDITOR_FROM_SECOND, 0);
    ShowTime(editor, IDC_EDITOR_TO_MINUTE, IDC_EDITOR_TO_SECOND, seconds);
    EnableProgramButtons(editor);
}

static void SpinTime(const Editor* editor, const TimeSpin& spin, int steps) {
    const uint32_t track = TypedStretch(editor).track;
    if (track < 1 || track > editor->after.trackCount) return;
    const int end = std::min<int>(editor->after.trackSeconds[track - 1], kMaxMinute * 60 + 59);
    const long long now = static_cast<long long>(NumberIn(editor, spin.minuteId)) * 60 +
                          NumberIn(editor, spin.secondId);
    const long long then = now + static_cast<long long>(steps) * spin.step;
    ShowTime(editor, spin.minuteId, spin.secondId,
             static_cast<uint32_t>(std::clamp<long long>(then, 0, end)));
}

// ---- the list

static void ShowEntry(const Editor* editor, int row) {
    const CDInfoRecord& record = editor->after;
    const ProgramSegment& segment = record.program[row];
    const unsigned track = TmsfTrack(segment.start);
    const unsigned from = TmsfSeconds(segment.start), to = TmsfSeconds(segment.stop);
    const unsigned length = SegmentSeconds(record, segment.start, segment.stop);
    char text[kStringMax];
    FormatText(text, sizeof text, "%d", row + 1);
    SetCellText(editor->program, row, kNumber, text);
    FormatText(text, sizeof text, "%u  %s", track,
               track >= 1 ? TrackFieldText(record, track - 1, kTrackTitle) : "");
    SetCellText(editor->program, row, kTrack, text);
    if (IsWholeTrack(segment))
        LoadText(IDS_EDITOR_WHOLE_TRACK, text);
    else
        FormatText(text, sizeof text, "%02u:%02u - %02u:%02u", from / 60, from % 60, to / 60,
                   to % 60);
    SetCellText(editor->program, row, kPart, text);
    FormatText(text, sizeof text, "%02u:%02u", length / 60, length % 60);
    SetCellText(editor->program, row, kLength, text);
}

void FitProgram(const Editor* editor) {
    FitColumn(editor->program, kTrack, kColumns);
}

static void ShowTotal(const Editor* editor) {
    char format[kStringMax], text[kStringMax];
    const unsigned total = ProgramSeconds(editor->after);
    const int count = editor->after.programCount;
    LoadText(count ? IDS_EDITOR_PROGRAM_SUM : IDS_EDITOR_PROGRAM_EMPTY, format);
    FormatText(text, sizeof text, format, count, static_cast<int>(kMaxSegments), total / 60,
               total % 60);
    SetDlgItemTextA(editor->dialog, IDC_EDITOR_PROGRAM_SUM, text);
}

static void ShowTrackChoice(const Editor* editor) {
    const HWND combo = GetDlgItem(editor->dialog, IDC_EDITOR_STRETCH_TRACK);
    const LRESULT chosen = SendMessageA(combo, CB_GETCURSEL, 0, 0);
    SendMessageA(combo, WM_SETREDRAW, FALSE, 0);
    SendMessageA(combo, CB_RESETCONTENT, 0, 0);
    for (size_t i = 0; i < editor->after.trackCount; ++i) {
        char text[kStringMax];
        FormatText(text, sizeof text, "%u  %s", static_cast<unsigned>(i + 1),
                   TrackFieldText(editor->after, i, kTrackTitle));
        SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    }
    SendMessageA(combo, CB_SETCURSEL, chosen, 0);
    SendMessageA(combo, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(combo, nullptr, TRUE);
}

// Lists the entries; the marked ones are selected afterwards.
static void ShowEntries(Editor* editor, const SegmentMarks& marks) {
    int last = -1;
    editor->programQuiet = 1;
    SendMessageA(editor->program, WM_SETREDRAW, FALSE, 0);
    SetRowCount(editor->program, editor->after.programCount);
    for (int row = 0; row < editor->after.programCount; ++row) {
        ShowEntry(editor, row);
        LVITEMA item = {};
        item.state = marks[row] ? LVIS_SELECTED : 0;
        item.stateMask = LVIS_SELECTED;
        SendMessageA(editor->program, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
        if (marks[row]) last = row;
    }
    if (last >= 0) {
        LVITEMA item = {};
        item.state = item.stateMask = LVIS_FOCUSED;
        SendMessageA(editor->program, LVM_SETITEMSTATE, last, reinterpret_cast<LPARAM>(&item));
    }
    SendMessageA(editor->program, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(editor->program, nullptr, TRUE);
    editor->programQuiet = 0;
    FitProgram(editor);
    // Not before it draws again: the list knows its height only then.
    if (last >= 0) SendMessageA(editor->program, LVM_ENSUREVISIBLE, last, FALSE);
    ShowTotal(editor);
    EnableProgramButtons(editor);
}

void ShowProgram(Editor* editor) {
    ShowTrackChoice(editor);
    ShowEntries(editor, SelectedEntries(editor));
}

// ---- the buttons

static void EnableButton(const Editor* editor, int id, int enable) {
    EnableDialogButton(editor->dialog, id, enable, IDC_EDITOR_PROGRAM);
}

void EnableProgramButtons(Editor* editor) {
    if (editor->programQuiet) return;
    const SegmentMarks marks = SelectedEntries(editor);
    const int count = editor->after.programCount;
    const int room = count < static_cast<int>(kMaxSegments);
    int chosen = 0, canRise = 0, canSink = 0;
    for (int i = 0; i < count; ++i) {
        chosen += marks[i];
        canRise |= marks[i] && i > 0 && !marks[i - 1];
        canSink |= marks[i] && i + 1 < count && !marks[i + 1];
    }
    const Stretch stretch = TypedStretch(editor);
    ProgramSegment segment;
    const StretchCheck check = MakeStretch(editor->after, stretch, &segment);
    ShowStretchNote(editor, check, stretch, segment);
    EnableButton(editor, IDC_EDITOR_ADD_TRACKS,
                 room && SendMessageA(editor->tracks, LVM_GETSELECTEDCOUNT, 0, 0) > 0);
    EnableButton(editor, IDC_EDITOR_ADD_STRETCH, room && check == kStretchGood);
    EnableButton(editor, IDC_EDITOR_UP, canRise);
    EnableButton(editor, IDC_EDITOR_DOWN, canSink);
    EnableButton(editor, IDC_EDITOR_REMOVE, chosen > 0);
    EnableButton(editor, IDC_EDITOR_CLEAR, count > 0);
}

// The entries from `first` on were added.
static void ShowAdded(Editor* editor, int first) {
    SegmentMarks marks = {};
    for (int i = first; i < editor->after.programCount; ++i)
        marks[i] = 1;
    ShowEntries(editor, marks);
}

static void AddSelectedTracks(Editor* editor) {
    uint32_t tracks[kMaxTracks];
    const size_t count = SelectedTracks(editor, tracks);
    const int first = editor->after.programCount;
    if (AddWholeTracks(&editor->after, tracks, count)) ShowAdded(editor, first);
}

static void AddTypedStretch(Editor* editor) {
    ProgramSegment segment;
    const int first = editor->after.programCount;
    if (MakeStretch(editor->after, TypedStretch(editor), &segment) != kStretchGood) return;
    if (AddSegment(&editor->after, segment)) ShowAdded(editor, first);
}

static void MoveSelected(Editor* editor, int step) {
    SegmentMarks marks = SelectedEntries(editor);
    if (MoveSegments(&editor->after, &marks, step)) ShowEntries(editor, marks);
}

// The entry that comes to stand where the first removed one was is selected, so that the next
// press goes on there.
static void RemoveSelected(Editor* editor) {
    const SegmentMarks marks = SelectedEntries(editor);
    const auto first = std::find(marks.begin(), marks.end(), 1) - marks.begin();
    if (!RemoveSegments(&editor->after, marks)) return;
    SegmentMarks next = {};
    if (editor->after.programCount)
        next[std::min<size_t>(first, editor->after.programCount - 1)] = 1;
    ShowEntries(editor, next);
}

int OnProgramCommand(Editor* editor, WORD id, WORD code) {
    switch (id) {
    case IDC_EDITOR_ADD_TRACKS: AddSelectedTracks(editor); return 1;
    case IDC_EDITOR_ADD_STRETCH: AddTypedStretch(editor); return 1;
    case IDC_EDITOR_UP: MoveSelected(editor, -1); return 1;
    case IDC_EDITOR_DOWN: MoveSelected(editor, 1); return 1;
    case IDC_EDITOR_REMOVE: RemoveSelected(editor); return 1;
    case IDC_EDITOR_CLEAR:
        ClearProgram(&editor->after);
        ShowEntries(editor, {});
        return 1;
    case IDC_EDITOR_STRETCH_TRACK:
        if (code == CBN_SELCHANGE) OfferStretch(editor, TypedStretch(editor).track);
        return 1;
    case IDC_EDITOR_FROM_MINUTE:
    case IDC_EDITOR_FROM_SECOND:
    case IDC_EDITOR_TO_MINUTE:
    case IDC_EDITOR_TO_SECOND:
        if (code == EN_CHANGE) EnableProgramButtons(editor);
        return 1;
    }
    return 0;
}

int OnProgramNotify(Editor* editor, NMHDR* header, LRESULT* result) {
    if (header->code == static_cast<UINT>(UDN_DELTAPOS)) {
        for (const TimeSpin& spin : kSpins) {
            if (header->idFrom == spin.spinId)
                SpinTime(editor, spin, reinterpret_cast<const NMUPDOWN*>(header)->iDelta);
        }
        *result = TRUE; // its own position stays in the middle
        return 1;
    }
    if (header->idFrom != IDC_EDITOR_PROGRAM) return 0;
    if (header->code == static_cast<UINT>(LVN_ITEMCHANGED)) {
        EnableProgramButtons(editor);
    } else if (header->code == static_cast<UINT>(LVN_KEYDOWN)) {
        if (reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey == VK_DELETE)
            RemoveSelected(editor);
        else if (IsSelectAllKey(header))
            SelectAllRows(editor->program);
    }
    return 1;
}

int AddStretchByEnter(Editor* editor) {
    const int id = GetDlgCtrlID(GetFocus());
    int inStretch = id == IDC_EDITOR_STRETCH_TRACK;
    for (const TimeSpin& spin : kSpins)
        inStretch |= id == spin.minuteId || id == spin.secondId;
    if (!inStretch) return 0;
    // One that can't be added stays where it is; its note says why.
    if (IsWindowEnabled(GetDlgItem(editor->dialog, IDC_EDITOR_ADD_STRETCH)))
        OnProgramCommand(editor, IDC_EDITOR_ADD_STRETCH, BN_CLICKED);
    return 1;
}

void SetUpProgram(Editor* editor) {
    const HWND list = editor->program = GetDlgItem(editor->dialog, IDC_EDITOR_PROGRAM);
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    AddColumn(list, kNumber, IDS_EDITOR_COLUMN_NUMBER, 32, LVCFMT_LEFT);
    AddColumn(list, kTrack, IDS_EDITOR_COLUMN_TRACK, 180, LVCFMT_LEFT);
    AddColumn(list, kPart, IDS_EDITOR_COLUMN_PART, 84, LVCFMT_LEFT);
    AddColumn(list, kLength, IDS_EDITOR_COLUMN_LENGTH, 56, LVCFMT_RIGHT);
    for (const TimeSpin& spin : kSpins) {
        SendDlgItemMessageA(editor->dialog, spin.spinId, UDM_SETRANGE32, 0, 2 * kSpinMiddle);
        SendDlgItemMessageA(editor->dialog, spin.spinId, UDM_SETPOS32, 0, kSpinMiddle);
        // Five digits: more than any disc has, and no sum of them overflows.
        SendDlgItemMessageA(editor->dialog, spin.minuteId, EM_SETLIMITTEXT, 5, 0);
        SendDlgItemMessageA(editor->dialog, spin.secondId, EM_SETLIMITTEXT, 2, 0);
    }
    ShowProgram(editor);
    OfferStretch(editor, 1);
}
