// The job's thread and its dialog. See print_job_win.h.
#include "archive/print_job_win.h"

#include "core/component_win.h"
#include "core/guard_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"

#include <algorithm>
#include <memory>
#include <new>

// From the thread to the dialog: sent, with a place in `discs`, to have the job's record filled;
// posted, to look at how far it is.
constexpr UINT kAskRecord = WM_APP + 1, kLookAtJob = WM_APP + 2;

namespace {
struct PrintJob {
    // Set before the thread starts; the record is the thread's, filled while it waits.
    const PrintSystem* system;
    PrintOrder order;
    PrintWork work;
    HWND window;
    DeviceScale scale;
    // Told by the thread.
    volatile LONG printed, total; // pages, or discs when there are many
    volatile LONG sheets;
    volatile LONG ended;
    PrintEnd end; // valid after `ended`
    DWORD error;
    // Told by the dialog.
    volatile LONG cancelled;
};
struct JobDialog {
    ModalDialog modal;
    std::shared_ptr<PrintJob> job;
    int (*ask)(size_t index, CDInfoRecord* record, void* context);
    void* context;
};
} // namespace

// ---- on the thread

static int Broken(PrintJob* job, PrintEnd end) {
    job->error = GetLastError();
    // Where the printer's own dialog (a file's name, say) was cancelled, that is what was wanted.
    const int cancelled = job->error == ERROR_CANCELLED || job->error == ERROR_PRINT_CANCELLED;
    job->end = cancelled || job->cancelled ? kPrintStopped : end;
    return 0;
}

static int PrintOne(PrintJob* job, const PrintPage& page) {
    if (job->cancelled) {
        job->end = kPrintStopped;
        return 0;
    }
    const HDC dc = job->order.dc;
    if (!job->system->StartSheet(dc)) return Broken(job, kPrintBroken);
    DrawPrintPage(dc, page, job->work.document.style.font, job->work.face.c_str(), job->scale);
    if (!job->system->EndSheet(dc)) return Broken(job, kPrintBroken);
    InterlockedIncrement(&job->sheets);
    return 1;
}

static void Tell(PrintJob* job, size_t printed) {
    job->printed = static_cast<LONG>(printed);
    PostMessageA(job->window, kLookAtJob, 0, 0);
}

// The document's pages within the order's range.
static int PrintPages(PrintJob* job) {
    const PrintDocument& document = job->work.document;
    const size_t last = std::min(job->order.last, DocumentPages(document));
    const size_t first = std::max<size_t>(1, job->order.first);
    job->total = static_cast<LONG>(last < first ? 0 : last - first + 1);
    for (size_t i = first; i <= last; ++i) {
        if (!PrintOne(job, DocumentPage(document, i - 1))) return 0;
        Tell(job, i - first + 1);
    }
    return 1;
}

// All pages of many discs, one disc after the other.
static int PrintDiscPages(PrintJob* job) {
    PrintWork& work = job->work;
    job->total = static_cast<LONG>(work.discs);
    for (size_t i = 0; i < work.discs; ++i) {
        if (job->cancelled) {
            job->end = kPrintStopped;
            return 0;
        }
        if (SendMessageA(job->window, kAskRecord, i, 0)) {
            LayOutDocument(&work.document, work.record);
            for (size_t page = 0; page < DocumentPages(work.document); ++page)
                if (!PrintOne(job, DocumentPage(work.document, page))) return 0;
        }
        Tell(job, i + 1);
    }
    return 1;
}

static void PrintAll(void* argument) {
    auto* job = static_cast<PrintJob*>(argument);
    const HDC dc = job->order.dc;
    PrintDocument& document = job->work.document;
    job->system->ReadDevice(dc, &document.style.paper, &job->scale);
    if (!job->work.discs) LayOutDocument(&document, job->work.record);
    SetLastError(0);
    if (!job->system->StartDocument(dc, job->work.name.c_str())) {
        Broken(job, kPrintNotStarted);
        return;
    }
    const int good = job->work.discs ? PrintDiscPages(job) : PrintPages(job);
    if (!good)
        job->system->Abort(dc);
    else if (!job->system->EndDocument(dc))
        Broken(job, kPrintBroken);
}

static DWORD WINAPI JobThread(void* argument) {
    const std::unique_ptr<std::shared_ptr<PrintJob>> kept(
        static_cast<std::shared_ptr<PrintJob>*>(argument));
    PrintJob* job = kept->get();
    DWORD fault = 0;
    if (GuardCall(PrintAll, job, &fault) != kGuardNormal) {
        job->end = kPrintBroken;
        job->error = fault;
    }
    job->system->FreeDevice(job->order.dc);
    InterlockedExchange(&job->ended, 1);
    PostMessageA(job->window, kLookAtJob, 0, 0);
    return 0;
}

static int StartThread(const std::shared_ptr<PrintJob>& job) {
    auto* given = new (std::nothrow) std::shared_ptr<PrintJob>(job);
    const HANDLE thread = given ? CreateThread(nullptr, 0, JobThread, given, 0, nullptr) : nullptr;
    if (!thread) {
        delete given;
        return 0;
    }
    CloseHandle(thread);
    return 1;
}

// ---- the dialog

static void ShowProgress(const JobDialog& dialog) {
    const PrintJob& job = *dialog.job;
    char format[kStringMax], text[kStringMax];
    LoadText(job.cancelled    ? IDS_PRINT_CANCELLING
             : job.work.discs ? IDS_PRINT_DISC_PROGRESS
                              : IDS_PRINT_PROGRESS,
             format);
    FormatText(text, sizeof text, format, static_cast<int>(job.printed),
               static_cast<int>(job.total));
    SetDlgItemTextA(dialog.modal.window, IDC_PRINTING_TEXT, text);
    const HWND bar = GetDlgItem(dialog.modal.window, IDC_PRINTING_BAR);
    SendMessageA(bar, PBM_SETRANGE32, 0, job.total > 0 ? job.total : 1);
    SendMessageA(bar, PBM_SETPOS, static_cast<WPARAM>(job.printed), 0);
}

static void OnInitDialog(HWND window, JobDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    dialog->job->window = window;
    PlaceOverOwner(window, dialog->modal.owner);
    ShowProgress(*dialog);
    if (!StartThread(dialog->job)) {
        dialog->job->end = kPrintNotStarted;
        dialog->job->error = GetLastError();
        dialog->job->system->FreeDevice(dialog->job->order.dc);
        dialog->job->ended = 1;
        EndModalDialog(&dialog->modal, IDOK);
    }
}

static void OnLookAtJob(JobDialog* dialog) {
    ShowProgress(*dialog);
    if (dialog->job->ended) EndModalDialog(&dialog->modal, IDOK);
}

static void OnCancel(JobDialog* dialog) {
    InterlockedExchange(&dialog->job->cancelled, 1);
    EnableDialogButton(dialog->modal.window, IDCANCEL, 0, IDC_PRINTING_TEXT);
    ShowProgress(*dialog);
}

static LRESULT OnAskRecord(JobDialog* dialog, size_t index) {
    PrintJob* job = dialog->job.get();
    if (job->cancelled || index >= job->work.discs) return 0;
    job->work.record = {};
    return dialog->ask(index, &job->work.record, dialog->context);
}

static INT_PTR JobProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<JobDialog*>(lParam));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<JobDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case kAskRecord:
        SetWindowLongPtrA(window, DWLP_MSGRESULT, OnAskRecord(dialog, wParam));
        return TRUE;
    case kLookAtJob: OnLookAtJob(dialog); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL) OnCancel(dialog);
        return TRUE;
    case WM_DESTROY:
        SetWindowLongPtrA(window, DWLP_USER, 0);
        InterlockedExchange(&dialog->job->cancelled, 1); // harmless when it has ended
        EndModalDialog(&dialog->modal, 0);
        return TRUE;
    default: return FALSE;
    }
}

PrintResult RunPrintJob(HWND owner, const PrintSystem& system, const PrintOrder& order,
                        PrintWork&& work, int (*ask)(size_t index, CDInfoRecord* record, void*),
                        void* context) {
    JobDialog dialog = {};
    dialog.job = std::make_shared<PrintJob>();
    PrintJob* job = dialog.job.get();
    job->system = &system;
    job->order = order;
    job->work = std::move(work);
    dialog.ask = ask;
    dialog.context = context;
    RunModalDialog(&dialog.modal, owner, IDD_PRINTING, GuardedDialog<JobProcedure>,
                   reinterpret_cast<LPARAM>(&dialog));
    if (!dialog.modal.window) { // no dialog, no thread
        system.FreeDevice(order.dc);
        return {kPrintNotStarted, 0, GetLastError()};
    }
    if (!job->ended) return {kPrintStopped, static_cast<size_t>(job->sheets), 0};
    return {job->end, static_cast<size_t>(job->sheets), job->error};
}
