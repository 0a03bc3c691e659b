// See media_type_win.h.
#include "extractor/media_type_win.h"

#include "extractor/list_win.h"

#include <cstring>
#include <new>

int AcceptsMediaType(const AM_MEDIA_TYPE* type, SoundFormatRecord* format) {
    if (!type || type->majortype != MEDIATYPE_Audio) return 0;
    if (type->subtype != MEDIASUBTYPE_PCM || type->formattype != FORMAT_WaveFormatEx) return 0;
    return ReadWaveFormat(type->pbFormat, type->cbFormat, format);
}

int SameMediaType(const AM_MEDIA_TYPE& a, const AM_MEDIA_TYPE& b) {
    return a.majortype == b.majortype && a.subtype == b.subtype && a.formattype == b.formattype &&
           a.cbFormat == b.cbFormat &&
           (!a.cbFormat ||
            (a.pbFormat && b.pbFormat && !std::memcmp(a.pbFormat, b.pbFormat, a.cbFormat)));
}

static int Fits(const GUID& id, const GUID& pattern) {
    return pattern == GUID_NULL || pattern == id;
}

int FitsMediaType(const AM_MEDIA_TYPE& type, const AM_MEDIA_TYPE* pattern) {
    if (!pattern) return 1;
    if (!Fits(type.majortype, pattern->majortype)) return 0;
    if (!Fits(type.subtype, pattern->subtype)) return 0;
    return pattern->formattype == GUID_NULL || SameMediaType(type, *pattern);
}

HRESULT CopyMediaType(AM_MEDIA_TYPE* to, const AM_MEDIA_TYPE& from) {
    *to = from;
    to->pbFormat = nullptr;
    to->cbFormat = 0;
    if (from.cbFormat && from.pbFormat) {
        to->pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(from.cbFormat));
        if (!to->pbFormat) {
            *to = {};
            return E_OUTOFMEMORY;
        }
        to->cbFormat = from.cbFormat;
        std::memcpy(to->pbFormat, from.pbFormat, from.cbFormat);
    }
    if (to->pUnk) to->pUnk->AddRef();
    return S_OK;
}

void FreeMediaType(AM_MEDIA_TYPE* type) {
    CoTaskMemFree(type->pbFormat);
    if (type->pUnk) type->pUnk->Release();
    *type = {};
}

// ---- the list

namespace {
struct TypeList final : ComList<IEnumMediaTypes> {
    explicit TypeList(ULONG entries) : ComList(IID_IEnumMediaTypes, entries) {}
    ~TypeList() { FreeMediaType(&type); }
    STDMETHODIMP Next(ULONG wanted, AM_MEDIA_TYPE** types, ULONG* given) override {
        if (!types || (!given && wanted != 1)) return E_POINTER;
        if (given) *given = 0;
        if (!wanted) return S_OK;
        if (at >= count) return S_FALSE;
        auto* copy = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof *types[0]));
        if (!copy || FAILED(CopyMediaType(copy, type))) {
            CoTaskMemFree(copy);
            return E_OUTOFMEMORY;
        }
        types[0] = copy;
        ++at;
        if (given) *given = 1;
        return wanted == 1 ? S_OK : S_FALSE;
    }
    STDMETHODIMP Clone(IEnumMediaTypes** list) override {
        const HRESULT result = ListMediaTypes(count ? &type : nullptr, list);
        if (SUCCEEDED(result)) static_cast<TypeList*>(*list)->at = at;
        return result;
    }

    AM_MEDIA_TYPE type = {};
};
} // namespace

HRESULT ListMediaTypes(const AM_MEDIA_TYPE* type, IEnumMediaTypes** list) {
    if (!list) return E_POINTER;
    *list = nullptr;
    auto* made = new (std::nothrow) TypeList(type ? 1 : 0);
    if (!made) return E_OUTOFMEMORY;
    if (type && FAILED(CopyMediaType(&made->type, *type))) {
        made->Release();
        return E_OUTOFMEMORY;
    }
    *list = made;
    return S_OK;
}
