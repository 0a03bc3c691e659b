// What the filter's lists, of pins and of media types, have in common.
#pragma once
#include "core/platform.h"

// Objects and locks that keep the DLL loaded.
extern LONG ExtractorObjects;

template <typename Interface> struct ComList : Interface {
    ComList(REFIID ownId, ULONG entries) : id(ownId), count(entries) {
        InterlockedIncrement(&ExtractorObjects);
    }
    virtual ~ComList() { InterlockedDecrement(&ExtractorObjects); }
    STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
        if (!object) return E_POINTER;
        *object = wanted == IID_IUnknown || wanted == id ? this : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override {
        return static_cast<ULONG>(InterlockedIncrement(&references));
    }
    STDMETHODIMP_(ULONG) Release() override {
        const LONG left = InterlockedDecrement(&references);
        if (!left) delete this;
        return static_cast<ULONG>(left);
    }
    STDMETHODIMP Skip(ULONG wanted) override {
        const ULONG left = count - at;
        at += wanted < left ? wanted : left;
        return wanted <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        at = 0;
        return S_OK;
    }

    const IID id;
    LONG references = 1;
    ULONG at = 0;
    const ULONG count;
};
