// The CD information editor's dialog and the loop that it runs in. See editor_win.h.
//
// The loop is our own and not DialogBox's, since it has to end in order when the owner is destroyed
// below it: a component is stopped by WM_CLOSE to its window and has two seconds to end.
#include "cdinfo/editor_win.h"

#include "cdinfo/editor_parts_win.h"
#include "core/component_win.h"
#include "core/strings_win.h"
#include "resources/ids.h"

#include <memory>
#include <new>

static Editor* EditorOf(HWND dialog) {
    return reinterpret_cast<Editor*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

static int ShowMessage(HWND owner, UINT textId) {
    char text[kStringMax], caption[kStringMax];
    LoadText(textId, text);
    LoadText(IDS_EDITOR_CAPTION, caption);
    return MessageBoxA(owner, text, caption, MB_OK | MB_ICONEXCLAMATION);
}

// The loop may be waiting inside GetMessage while a sent message ends it.
static void EndLoop(Editor* editor) {
    editor->done = 1;
    PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

static void SetUpField(const Editor* editor, int id, const char* text, size_t limit) {
    const HWND edit = GetDlgItem(editor->dialog, id);
    SendMessageA(edit, EM_SETLIMITTEXT, limit, 0); // does not cut what is longer already
    SetWindowTextA(edit, text);
    SendMessageA(edit, EM_SETMODIFY, FALSE, 0);
}

// A field that nobody touched is left alone: it may hold what an edit control would not give back.
static void TakeField(Editor* editor, int id, int (*set)(CDInfoRecord*, const char*)) {
    const HWND edit = GetDlgItem(editor->dialog, id);
    if (!SendMessageA(edit, EM_GETMODIFY, 0, 0)) return;
    char text[kCommentSize];
    GetWindowTextA(edit, text, sizeof text);
    set(&editor->after, text);
}

static void TakeAll(Editor* editor) {
    CloseCell(editor, 1);
    TakeField(editor, IDC_EDITOR_TITLE, SetDiscTitle);
    TakeField(editor, IDC_EDITOR_COMMENT, SetDiscComment);
}

static void OnInitDialog(HWND dialog, Editor* editor) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(editor));
    editor->dialog = dialog;
    editor->tracks = GetDlgItem(dialog, IDC_EDITOR_TRACKS);
    editor->program = GetDlgItem(dialog, IDC_EDITOR_PROGRAM);
    SetUpField(editor, IDC_EDITOR_TITLE, editor->after.title, kDiscTitleLimit);
    SetUpField(editor, IDC_EDITOR_COMMENT, editor->after.comment, kDiscCommentLimit);
    SetUpLayout(editor);
    SetUpTracks(editor);
    SetUpProgram(editor);
    SelectTrack(editor, 0);
    PlaceOverOwner(dialog, editor->owner);
}

static void OnOk(Editor* editor) {
    TakeAll(editor);
    if (!FitsEntry(editor->after) && IsEdited(editor->before, editor->after)) {
        ShowMessage(editor->dialog, IDS_EDITOR_TOO_LARGE);
        return;
    }
    editor->kept = 1;
    EndLoop(editor);
}

static void OnCommand(Editor* editor, WORD id, WORD code) {
    switch (id) {
    case IDOK:
        if (!AddStretchByEnter(editor)) OnOk(editor);
        break;
    case IDCANCEL: EndLoop(editor); break;
    case IDC_EDITOR_SAME_ARTIST:
        if (code == BN_CLICKED) OnSameArtist(editor);
        break;
    default: OnProgramCommand(editor, id, code);
    }
}

static LRESULT OnNotify(Editor* editor, NMHDR* header) {
    LRESULT result = 0;
    if (!OnTracksNotify(editor, header)) OnProgramNotify(editor, header, &result);
    return result;
}

// Before the loop has ended, the dialog goes down with its owner only.
static void OnDestroy(Editor* editor) {
    if (editor->done) return;
    TakeAll(editor);
    editor->outside = 1;
    editor->kept = 1;
    EndLoop(editor);
}

static INT_PTR EditorProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(dialog, reinterpret_cast<Editor*>(lParam));
        return TRUE;
    }
    Editor* editor = EditorOf(dialog);
    if (!editor) return FALSE;
    switch (message) {
    case WM_COMMAND: OnCommand(editor, LOWORD(wParam), HIWORD(wParam)); return TRUE;
    case WM_NOTIFY:
        SetWindowLongPtrA(dialog, DWLP_MSGRESULT,
                          OnNotify(editor, reinterpret_cast<NMHDR*>(lParam)));
        return TRUE;
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED) LayOut(editor);
        return TRUE;
    case WM_GETMINMAXINFO:
        if (editor->minimum.cx)
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {editor->minimum.cx,
                                                                     editor->minimum.cy};
        return TRUE;
    case WM_DESTROY: OnDestroy(editor); return TRUE;
    case WM_NCDESTROY: // not before: by it the children find the procedures that clean up for them
        SetWindowLongPtrA(dialog, DWLP_USER, 0);
        return FALSE;
    }
    return FALSE;
}

// Until the dialog is done. WM_QUIT is put back for the loop of the caller.
static void RunLoop(Editor* editor) {
    MSG message;
    while (!editor->done) {
        const BOOL got = GetMessageA(&message, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        if (!IsDialogMessageA(editor->dialog, &message)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
}

static void RunDialog(Editor* editor) {
    const HWND owner = editor->owner;
    if (!CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_CD_EDITOR), owner,
                            GuardedDialog<EditorProcedure>, reinterpret_cast<LPARAM>(editor)))
        return;
    if (owner) EnableWindow(owner, FALSE);
    ShowWindow(editor->dialog, SW_SHOW);
    RunLoop(editor);
    if (owner && IsWindow(owner))
        EnableWindow(owner, TRUE); // first, or another program is activated
    if (IsWindow(editor->dialog)) DestroyWindow(editor->dialog);
}

int EditCdInformation(HWND owner, CDInfoRecord* record) {
    if (owner && !IsWindowEnabled(owner)) {
        SetForegroundWindow(GetLastActivePopup(owner));
        return 0;
    }
    if (record->trackCount == 0 || record->trackCount > kMaxTracks ||
        record->programCount > kMaxSegments) {
        ShowMessage(owner, IDS_EDITOR_NO_DISC);
        return 0;
    }
    const std::unique_ptr<Editor> editor(new (std::nothrow) Editor{});
    if (!editor) return 0;
    editor->owner = owner;
    editor->before = *record;
    editor->after = *record;
    RunDialog(editor.get());
    if (!editor->kept) return 0;
    if (editor->outside) ShrinkToFit(&editor->after);
    return TakeEdited(record, editor->after);
}
