// What is printed, or shown before it is: the kind chosen, its style, and the pages that follow
// from them. The preview has one, and each job has one of its own.
#pragma once
#include "archive/print_layout.h"

#include <memory>

enum PrintKind { kPrintList, kPrintDisc, kPrintInlay, kPrintKinds };

struct PrintDocument {
    PrintKind kind = kPrintList;
    PrintStyle style = {};
    std::shared_ptr<const PrintDiscs> discs; // of the list; changed by nobody any more

    // The rest is made by LayOutDocument.
    ListLayout list = {};
    std::vector<PrintPage> pages; // all pages of the other kinds
    int reduced = 0;              // an inlay that is smaller than it should be
};

// Anew, after anything above has changed. The record is that of the one disc (not for lists).
void LayOutDocument(PrintDocument* document, const CDInfoRecord& record);
size_t DocumentPages(const PrintDocument& document); // 1 at least
PrintPage DocumentPage(const PrintDocument& document, size_t page);
