// One front for the kinds of pages. See print_document.h.
#include "archive/print_document.h"

#include <algorithm>

void LayOutDocument(PrintDocument* document, const CDInfoRecord& record) {
    document->pages.clear();
    document->list = {};
    document->reduced = 0;
    switch (document->kind) {
    case kPrintDisc: document->pages = DiscPages(document->style, record); break;
    case kPrintInlay:
        document->pages = InlayPages(document->style, record, &document->reduced);
        break;
    default: document->list = LayOutList(document->style, *document->discs);
    }
}

size_t DocumentPages(const PrintDocument& document) {
    if (document.kind == kPrintList) return ListPages(document.list);
    return std::max<size_t>(1, document.pages.size());
}

PrintPage DocumentPage(const PrintDocument& document, size_t page) {
    if (document.kind == kPrintList)
        return ListPage(document.style, *document.discs, document.list, page);
    return page < document.pages.size() ? document.pages[page] : PrintPage();
}
