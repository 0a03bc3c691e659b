// See catalog.h.
#include "archive/catalog.h"

struct Catalog {
    TextKey textKey;
};

Catalog* CreateCatalog(TextKey textKey, const uint8_t*) {
    return new Catalog{textKey};
}
void FreeCatalog(Catalog* catalog) {
    delete catalog;
}
void CatalogClear(Catalog*) {}
void CatalogPut(Catalog*, const CDInfoRecord&) {}
void CatalogRemove(Catalog*, uint32_t) {}
size_t CatalogDiscCount(const Catalog*) {
    return 0;
}
int CatalogRecord(const Catalog*, uint32_t, CDInfoRecord*) {
    return 0;
}
size_t CatalogBytes(const Catalog*) {
    return 0;
}
void CatalogArrange(Catalog*, const CatalogOrder&) {}
size_t CatalogRowCount(const Catalog*) {
    return 0;
}
RowKey CatalogRow(const Catalog*, size_t) {
    return {};
}
long CatalogFind(const Catalog*, RowKey) {
    return -1;
}
void CatalogCell(const Catalog*, size_t, CatalogColumn, char (&text)[kCommentSize]) {
    text[0] = 0;
}
std::string DiscSummary(const CDInfoRecord&) {
    return {};
}
