// The printing dialog: what to print, with which letters, on which paper, and how it will look.
// See print_win.h.
#include "archive/print_win.h"

#include "archive/print_job_win.h"
#include "archive/print_preview_win.h"
#include "core/component_win.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"

#include <commdlg.h>

#include <algorithm>
#include <memory>
#include <new>

constexpr const char* kSection = "Software\\Tonvista\\CDInfoUI";
constexpr const char* kKindValue = "PrintKind";
constexpr const char* kFaceValue = "PrintFont";
constexpr const char* kPointsValue = "PrintFontSize";
constexpr uint32_t kWindowId = 6; // the manager's
constexpr const char* kPlaceValue = "PrintWndPlcmnt";
constexpr int kDefaultPoints = 9, kLeastPoints = 5, kMostPoints = 24;

static constexpr AnchoredControl kAnchors[] = {
    {IDC_PRINT_PREVIEW, kGrowX | kGrowY},
    {IDC_PRINT_FIRST, kMoveY},
    {IDC_PRINT_BACK, kMoveY},
    {IDC_PRINT_PAGE, kGrowX | kMoveY},
    {IDC_PRINT_NEXT, kMoveX | kMoveY},
    {IDC_PRINT_LAST, kMoveX | kMoveY},
    {IDOK, kMoveX | kMoveY},
    {IDCANCEL, kMoveX | kMoveY},
};

namespace {
struct PrintDialog {
    ModalDialog modal;
    DialogLayout layout;
    const PrintSystem* system;
    PrintSource source;
    PrinterSetup setup;
    int hasPrinter;
    std::string printer;
    char face[LF_FACESIZE];
    int points;
    PrintDocument document;
    std::shared_ptr<PrintDiscs> discs;
    size_t disc; // the one that pages are shown of
    CDInfoRecord record;
    int hasRecord;
    size_t page;
    PrintPreview preview;
    int ready; // the controls hold what they should
};
} // namespace

// ---- texts

static void SetText(const PrintDialog* dialog, int id, const char* text) {
    SetDlgItemTextA(dialog->modal.window, id, text);
}

static std::string FormattedText(UINT id, int first, int second = 0) {
    char format[kStringMax], text[kStringMax];
    LoadText(id, format);
    FormatText(text, sizeof text, format, first, second);
    return text;
}

static void ShowMessage(const PrintDialog* dialog, const char* text) {
    char caption[kStringMax];
    LoadText(IDS_PRINT_CAPTION, caption);
    MessageBoxA(dialog->modal.window, text, caption, MB_OK | MB_ICONEXCLAMATION);
}

// ---- the discs

static int ReadDisc(size_t index, CDInfoRecord* record, void* context) {
    const PrintSource& source = static_cast<PrintDialog*>(context)->source;
    *record = {};
    if (!source.Record(index, record, source.context)) return 0;
    record->trackCount = std::min<uint16_t>(record->trackCount, kMaxTracks);
    record->programCount = std::min<uint16_t>(record->programCount, kMaxSegments);
    return 1;
}

static void ReadList(PrintDialog* dialog) {
    const HCURSOR before = SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32514))); // IDC_WAIT
    dialog->discs = std::make_shared<PrintDiscs>();
    for (size_t i = 0; i < dialog->source.count; ++i)
        if (ReadDisc(i, &dialog->record, dialog))
            AddPrintDisc(dialog->discs.get(), dialog->document.style, dialog->record);
    dialog->document.discs = dialog->discs;
    SetCursor(before);
}

// ---- what is shown

static int CanPrint(const PrintDialog* dialog) {
    return dialog->document.kind == kPrintList || dialog->hasRecord;
}

static void ShowNote(const PrintDialog* dialog) {
    char text[kStringMax] = "";
    if (!CanPrint(dialog))
        LoadText(IDS_PRINT_GONE, text);
    else if (dialog->document.reduced)
        LoadText(IDS_PRINT_REDUCED, text);
    else if (!dialog->hasPrinter)
        LoadText(IDS_PRINT_NO_PRINTER, text);
    SetText(dialog, IDC_PRINT_NOTE, text);
}

static void ShowPage(PrintDialog* dialog) {
    const HWND window = dialog->modal.window;
    const size_t pages = DocumentPages(dialog->document);
    dialog->page = std::min(dialog->page, pages - 1);
    SetText(dialog, IDC_PRINT_PAGE,
            FormattedText(IDS_PRINT_PAGE_OF, static_cast<int>(dialog->page + 1),
                          static_cast<int>(pages))
                .c_str());
    const int before = dialog->page > 0, after = dialog->page + 1 < pages;
    EnableDialogButton(window, IDC_PRINT_FIRST, before, after ? IDC_PRINT_NEXT : IDOK);
    EnableDialogButton(window, IDC_PRINT_BACK, before, after ? IDC_PRINT_NEXT : IDOK);
    EnableDialogButton(window, IDC_PRINT_NEXT, after, before ? IDC_PRINT_BACK : IDOK);
    EnableDialogButton(window, IDC_PRINT_LAST, after, before ? IDC_PRINT_BACK : IDOK);
    DrawPreview(&dialog->preview, GetDlgItem(window, IDC_PRINT_PREVIEW), dialog->document,
                dialog->page, dialog->face);
}

// After the kind, the disc, the letters or the paper changed.
static void ShowDocument(PrintDialog* dialog) {
    if (CanPrint(dialog)) {
        LayOutDocument(&dialog->document, dialog->record);
    } else {
        dialog->document.pages.clear();
        dialog->document.reduced = 0;
    }
    EnableDialogButton(dialog->modal.window, IDOK, CanPrint(dialog), IDCANCEL);
    ShowNote(dialog);
    ShowPage(dialog);
}

static void ShowDisc(PrintDialog* dialog, size_t disc) {
    dialog->disc = std::min(disc, dialog->source.count - 1);
    dialog->hasRecord = ReadDisc(dialog->disc, &dialog->record, dialog);
    const std::string title = PrintableText(dialog->record.title);
    const char* artist = DiscArtistOf(dialog->document.style, dialog->record);
    SetText(dialog, IDC_PRINT_NAME,
            dialog->hasRecord ? (title + "\n" + PrintableText(artist)).c_str() : "");
}

static void EnableChoices(const PrintDialog* dialog) {
    static constexpr int kOfDiscs[] = {IDC_PRINT_NUMBER_LABEL, IDC_PRINT_NUMBER,
                                       IDC_PRINT_NUMBER_SPIN, IDC_PRINT_NUMBER_OF, IDC_PRINT_ALL};
    const HWND window = dialog->modal.window;
    const int one = dialog->document.kind != kPrintList;
    for (const int id : kOfDiscs)
        EnableWindow(GetDlgItem(window, id), one && dialog->source.count > 1);
    EnableWindow(GetDlgItem(window, IDC_PRINT_NAME), one);
}

static void ChooseKind(PrintDialog* dialog, PrintKind kind) {
    dialog->document.kind = kind;
    dialog->page = 0;
    WriteRegDword(kUserRoot, kSection, kKindValue, kRegDword, kind);
    EnableChoices(dialog);
    ShowDocument(dialog);
}

// ---- letters and paper

static void TakeFont(PrintDialog* dialog) {
    LoadPrintFont(dialog->face, &dialog->document.style.font);
    dialog->document.style.size = PointsToPaper(dialog->points);
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_PRINT_FONT, format);
    FormatText(text, sizeof text, format, dialog->face, dialog->points);
    SetText(dialog, IDC_PRINT_FONT_NAME, text);
}

static void TakePaper(PrintDialog* dialog) {
    PrintPaper& paper = dialog->document.style.paper;
    dialog->printer.clear();
    dialog->hasPrinter = dialog->system->ReadPaper(&dialog->setup, &paper, &dialog->printer);
    if (!dialog->hasPrinter) paper = LocalPaper();
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_PRINT_PAPER, format);
    FormatText(text, sizeof text, format, dialog->printer.c_str(), (paper.width + 50) / 100,
               (paper.height + 50) / 100);
    SetText(dialog, IDC_PRINT_PAPER_NAME, text[0] == '\n' ? text + 1 : text);
}

static int Points(int points) {
    return std::max(kLeastPoints, std::min(points, kMostPoints));
}

// After a dialog of the system ours may have gone with its owner.
static int Gone(const PrintDialog* dialog) {
    return dialog->modal.done;
}

static void OnFont(PrintDialog* dialog) {
    const HDC dc = GetDC(nullptr);
    const int perInch = GetDeviceCaps(dc, LOGPIXELSY);
    ReleaseDC(nullptr, dc);
    LOGFONTA font = {};
    font.lfHeight = -MulDiv(dialog->points, perInch, 72);
    CopyText(font.lfFaceName, dialog->face);
    CHOOSEFONTA choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = dialog->modal.window;
    choice.lpLogFont = &font;
    choice.Flags = CF_SCREENFONTS | CF_TTONLY | CF_NOSTYLESEL | CF_NOVERTFONTS | CF_NOSCRIPTSEL |
                   CF_INITTOLOGFONTSTRUCT | CF_LIMITSIZE;
    choice.nSizeMin = kLeastPoints;
    choice.nSizeMax = kMostPoints;
    if (!ChooseFontA(&choice) || Gone(dialog)) return;
    if (font.lfFaceName[0]) CopyText(dialog->face, font.lfFaceName);
    dialog->points = Points((choice.iPointSize + 5) / 10);
    WriteRegString(kUserRoot, kSection, kFaceValue, dialog->face);
    WriteRegDword(kUserRoot, kSection, kPointsValue, kRegDword,
                  static_cast<uint32_t>(dialog->points));
    TakeFont(dialog);
    ShowDocument(dialog);
}

static void ShowNoPrinter(PrintDialog* dialog) {
    char text[kStringMax];
    LoadText(IDS_PRINT_NONE, text);
    ShowMessage(dialog, text);
}

static void OnPaper(PrintDialog* dialog) {
    const PrintAnswer answer = dialog->system->ChoosePaper(dialog->modal.window, &dialog->setup);
    if (Gone(dialog) || answer == kPrintCancelled) return;
    if (answer == kPrintNoPrinter) ShowNoPrinter(dialog);
    if (Gone(dialog)) return;
    TakePaper(dialog);
    ShowDocument(dialog);
}

// ---- printing

static int PrintsAll(const PrintDialog* dialog) {
    return dialog->document.kind != kPrintList && dialog->source.count > 1 &&
           IsDlgButtonChecked(dialog->modal.window, IDC_PRINT_ALL);
}

static void TellResult(PrintDialog* dialog, const PrintResult& result) {
    if (result.end == kPrintDone || result.end == kPrintStopped) return;
    char reason[kStringMax] = "", format[kStringMax], text[2 * kStringMax];
    if (!result.error || !FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                         nullptr, result.error, 0, reason, sizeof reason, nullptr))
        LoadText(IDS_PRINT_UNKNOWN_ERROR, reason);
    if (result.end == kPrintBroken) {
        LoadText(IDS_PRINT_BROKEN, format);
        FormatText(text, sizeof text, format, static_cast<int>(result.pages), reason);
    } else {
        LoadText(IDS_PRINT_NOT_STARTED, format);
        FormatText(text, sizeof text, format, reason);
    }
    ShowMessage(dialog, text);
}

static void OnPrint(PrintDialog* dialog) {
    PrintOrder order = {};
    const int all = PrintsAll(dialog);
    const PrintAnswer answer = dialog->system->ChoosePrinter(
        dialog->modal.window, &dialog->setup, all ? 0 : DocumentPages(dialog->document), &order);
    if (answer == kPrintNoPrinter && !Gone(dialog)) ShowNoPrinter(dialog);
    if (answer != kPrintChosen) return;
    if (Gone(dialog)) {
        dialog->system->FreeDevice(order.dc);
        return;
    }
    TakePaper(dialog); // of what was chosen there
    ShowDocument(dialog);
    PrintWork work;
    work.document = dialog->document;
    work.record = dialog->record;
    work.discs = all ? dialog->source.count : 0;
    work.face = dialog->face;
    char name[kStringMax];
    LoadText(IDS_PRINT_WORDS, name);
    work.name = dialog->document.kind == kPrintList || all ? name : dialog->record.title;
    const PrintResult result = RunPrintJob(dialog->modal.window, *dialog->system, order,
                                           std::move(work), ReadDisc, dialog);
    if (!Gone(dialog)) TellResult(dialog, result);
}

// ---- the dialog

static void ReadSettings(PrintDialog* dialog) {
    CopyText(dialog->face, kPrintFace);
    ReadRegString(kUserRoot, kSection, kFaceValue, dialog->face, sizeof dialog->face);
    if (!dialog->face[0]) CopyText(dialog->face, kPrintFace);
    uint32_t points = kDefaultPoints, kind = kPrintList;
    ReadRegValue(kUserRoot, kSection, kPointsValue, kRegDword, &points, sizeof points);
    ReadRegValue(kUserRoot, kSection, kKindValue, kRegDword, &kind, sizeof kind);
    dialog->points = Points(static_cast<int>(std::min<uint32_t>(points, kMostPoints)));
    if (kind >= kPrintKinds) kind = kPrintList;
    if (kind == kPrintList && dialog->source.count == 1) kind = kPrintDisc;
    dialog->document.kind = static_cast<PrintKind>(kind);
    PrintStyle& style = dialog->document.style;
    for (int i = 0; i < kPrintWords; ++i) {
        char text[kStringMax];
        LoadText(IDS_PRINT_WORDS + i, text);
        style.words[i] = text;
    }
    char date[kStringMax] = "";
    GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, date, sizeof date);
    style.date = date;
}

static void SetUpChoices(PrintDialog* dialog) {
    const HWND window = dialog->modal.window;
    const int count = static_cast<int>(dialog->source.count);
    SetText(dialog, IDC_PRINT_LIST, FormattedText(IDS_PRINT_LIST_OF, count).c_str());
    SetText(dialog, IDC_PRINT_NUMBER_OF, FormattedText(IDS_PRINT_DISC_OF, count).c_str());
    SetText(dialog, IDC_PRINT_ALL, FormattedText(IDS_PRINT_ALL, count).c_str());
    CheckRadioButton(window, IDC_PRINT_LIST, IDC_PRINT_INLAY,
                     IDC_PRINT_LIST + dialog->document.kind);
    const HWND spin = GetDlgItem(window, IDC_PRINT_NUMBER_SPIN);
    SendMessageA(spin, UDM_SETBUDDY, reinterpret_cast<WPARAM>(GetDlgItem(window, IDC_PRINT_NUMBER)),
                 0);
    SendMessageA(spin, UDM_SETRANGE32, 1, count);
    SetDlgItemInt(window, IDC_PRINT_NUMBER, 1, FALSE);
}

static void OnInitDialog(HWND window, PrintDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    NoteDialogLayout(&dialog->layout, window, kAnchors, std::size(kAnchors));
    ReadSettings(dialog);
    ReadList(dialog);
    SetUpChoices(dialog);
    ShowDisc(dialog, 0);
    TakeFont(dialog);
    TakePaper(dialog);
    RestoreDialogPlace(window, dialog->modal.owner, kWindowId, kPlaceValue);
    LayOutDialog(dialog->layout, window);
    EnableChoices(dialog);
    dialog->ready = 1;
    ShowDocument(dialog);
}

static void TurnPage(PrintDialog* dialog, size_t page) {
    if (page == dialog->page || page >= DocumentPages(dialog->document)) return;
    dialog->page = page;
    ShowPage(dialog);
}

static void OnNumber(PrintDialog* dialog) {
    BOOL good = FALSE;
    const UINT number = GetDlgItemInt(dialog->modal.window, IDC_PRINT_NUMBER, &good, FALSE);
    if (!dialog->ready || !good || number < 1 || number > dialog->source.count) return;
    dialog->page = 0;
    ShowDisc(dialog, number - 1);
    ShowDocument(dialog);
}

// Where something else was typed, that of the disc that is shown and would be printed.
static void ShowNumber(const PrintDialog* dialog) {
    const HWND window = dialog->modal.window;
    const UINT number = static_cast<UINT>(dialog->disc + 1);
    if (GetDlgItemInt(window, IDC_PRINT_NUMBER, nullptr, FALSE) != number)
        SetDlgItemInt(window, IDC_PRINT_NUMBER, number, FALSE);
}

static void OnCommand(PrintDialog* dialog, WORD id, WORD code) {
    switch (id) {
    case IDOK: OnPrint(dialog); break;
    case IDCANCEL: EndModalDialog(&dialog->modal, IDCANCEL); break;
    case IDC_PRINT_LIST: ChooseKind(dialog, kPrintList); break;
    case IDC_PRINT_DISC: ChooseKind(dialog, kPrintDisc); break;
    case IDC_PRINT_INLAY: ChooseKind(dialog, kPrintInlay); break;
    case IDC_PRINT_NUMBER:
        if (code == EN_CHANGE) OnNumber(dialog);
        if (code == EN_KILLFOCUS) ShowNumber(dialog);
        break;
    case IDC_PRINT_FONT: OnFont(dialog); break;
    case IDC_PRINT_PAPER: OnPaper(dialog); break;
    case IDC_PRINT_FIRST: TurnPage(dialog, 0); break;
    case IDC_PRINT_BACK: TurnPage(dialog, dialog->page - 1); break;
    case IDC_PRINT_NEXT: TurnPage(dialog, dialog->page + 1); break;
    case IDC_PRINT_LAST: TurnPage(dialog, DocumentPages(dialog->document) - 1); break;
    default: break;
    }
}

static void OnSize(PrintDialog* dialog) {
    LayOutDialog(dialog->layout, dialog->modal.window);
    if (dialog->ready) ShowPage(dialog);
}

static void OnDestroy(PrintDialog* dialog) {
    StoreDialogPlace(dialog->modal.window, kWindowId, kPlaceValue);
    FreePreview(&dialog->preview);
    EndModalDialog(&dialog->modal, 0);
}

static INT_PTR PrintProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<PrintDialog*>(lParam));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<PrintDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case WM_COMMAND: OnCommand(dialog, LOWORD(wParam), HIWORD(wParam)); return TRUE;
    case WM_DRAWITEM:
        ShowCanvas(dialog->preview.picture, reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)->hDC, 0,
                   0);
        return TRUE;
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED) OnSize(dialog);
        return TRUE;
    case WM_GETMINMAXINFO:
        if (dialog->layout.minimum.cx)
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {dialog->layout.minimum.cx,
                                                                     dialog->layout.minimum.cy};
        return TRUE;
    case WM_DESTROY: OnDestroy(dialog); return TRUE;
    case WM_NCDESTROY: SetWindowLongPtrA(window, DWLP_USER, 0); return FALSE;
    default: return FALSE;
    }
}

// The keys that turn pages everywhere.
static int OnMessage(ModalDialog* modal, const MSG& message) {
    if (message.message != WM_KEYDOWN ||
        (message.wParam != VK_PRIOR && message.wParam != VK_NEXT) ||
        !IsChild(modal->window, message.hwnd))
        return 0;
    SendMessageA(modal->window, WM_COMMAND,
                 message.wParam == VK_PRIOR ? IDC_PRINT_BACK : IDC_PRINT_NEXT, 0);
    return 1;
}

void ShowPrintingOn(const PrintSystem& system, HWND owner, const PrintSource& discs) {
    if (!discs.count) return;
    const std::unique_ptr<PrintDialog> dialog(new (std::nothrow) PrintDialog{}); // 40 KB
    if (!dialog) return;
    dialog->system = &system;
    dialog->source = discs;
    dialog->modal.OnMessage = OnMessage;
    RunModalDialog(&dialog->modal, owner, IDD_PRINT, GuardedDialog<PrintProcedure>,
                   reinterpret_cast<LPARAM>(dialog.get()));
    FreePrinterSetup(&dialog->setup);
}

void ShowPrinting(HWND owner, const PrintSource& discs) {
    ShowPrintingOn(SystemPrinting(), owner, discs);
}
