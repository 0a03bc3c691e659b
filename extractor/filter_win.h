// The filter itself: what the graph knows of it, and its pins. Samples go through in place.
#pragma once
#include "extractor/pins_win.h"
#include "extractor/publisher_win.h"

struct ExtractorFilter final : IBaseFilter {
    ExtractorFilter();
    ~ExtractorFilter();
    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetClassID(CLSID* id) override;
    STDMETHODIMP Stop() override;
    STDMETHODIMP Pause() override;
    STDMETHODIMP Run(REFERENCE_TIME start) override;
    STDMETHODIMP GetState(DWORD waitMs, FILTER_STATE* out) override;
    STDMETHODIMP SetSyncSource(IReferenceClock* clock) override;
    STDMETHODIMP GetSyncSource(IReferenceClock** clock) override;
    STDMETHODIMP EnumPins(IEnumPins** list) override;
    STDMETHODIMP FindPin(LPCWSTR id, IPin** pin) override;
    STDMETHODIMP QueryFilterInfo(FILTER_INFO* info) override;
    STDMETHODIMP JoinFilterGraph(IFilterGraph* joined, LPCWSTR called) override;
    STDMETHODIMP QueryVendorInfo(LPWSTR*) override { return E_NOTIMPL; }

    LONG references = 1;
    volatile FILTER_STATE state = State_Stopped;
    IFilterGraph* graph = nullptr; // without a reference: the graph holds the filter
    wchar_t name[MAX_FILTER_NAME] = L"";
    InputPin in{this};
    OutputPin out{this};
    Publisher publisher = {};
};

const wchar_t* PinName(PIN_DIRECTION direction);
HRESULT CreateExtractorFilter(REFIID id, void** object);
