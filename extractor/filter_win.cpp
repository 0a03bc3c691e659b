// States, clock and the list of pins. See filter_win.h.
#include "extractor/filter_win.h"

#include "core/extractor.h"
#include "extractor/list_win.h"

#include <cwchar>
#include <new>

static constexpr CLSID kExtractorClass = TONVISTA_EXTRACTOR_CLSID;
constexpr ULONG kPins = 2;

const wchar_t* PinName(PIN_DIRECTION direction) {
    return direction == PINDIR_INPUT ? L"In" : L"Out";
}

ExtractorFilter::ExtractorFilter() {
    InterlockedIncrement(&ExtractorObjects);
}

ExtractorFilter::~ExtractorFilter() {
    references = 1; // parts of it that go may take and give back a reference once more
    ClosePublisher(&publisher);
    InterlockedDecrement(&ExtractorObjects);
}

HRESULT CreateExtractorFilter(REFIID id, void** object) {
    auto* filter = new (std::nothrow) ExtractorFilter;
    if (!filter) return E_OUTOFMEMORY;
    const HRESULT result =
        OpenPublisher(&filter->publisher) ? filter->QueryInterface(id, object) : E_OUTOFMEMORY;
    filter->Release();
    return result;
}

HRESULT ExtractorFilter::QueryInterface(REFIID id, void** object) {
    if (!object) return E_POINTER;
    const bool isOurs =
        id == IID_IUnknown || id == IID_IPersist || id == IID_IMediaFilter || id == IID_IBaseFilter;
    *object = isOurs ? this : nullptr;
    if (!isOurs) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ExtractorFilter::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references));
}

ULONG ExtractorFilter::Release() {
    const LONG left = InterlockedDecrement(&references);
    if (!left) delete this;
    return static_cast<ULONG>(left);
}

HRESULT ExtractorFilter::GetClassID(CLSID* id) {
    if (!id) return E_POINTER;
    *id = kExtractorClass;
    return S_OK;
}

// ---- states

HRESULT ExtractorFilter::Stop() {
    state = State_Stopped;
    StopPublisher(&publisher);
    return S_OK;
}

HRESULT ExtractorFilter::Pause() {
    if (state == State_Stopped && in.peer) StartPublisher(&publisher);
    PausePublisher(&publisher);
    state = State_Paused;
    return S_OK;
}

HRESULT ExtractorFilter::Run(REFERENCE_TIME start) {
    if (state == State_Stopped) Pause();
    RunPublisher(&publisher, start);
    state = State_Running;
    return S_OK;
}

HRESULT ExtractorFilter::GetState(DWORD, FILTER_STATE* out_) {
    if (!out_) return E_POINTER;
    *out_ = state;
    return S_OK;
}

HRESULT ExtractorFilter::SetSyncSource(IReferenceClock* clock) {
    SetPublisherClock(&publisher, clock);
    return S_OK;
}

HRESULT ExtractorFilter::GetSyncSource(IReferenceClock** clock) {
    if (!clock) return E_POINTER;
    *clock = GetPublisherClock(&publisher);
    return S_OK;
}

// ---- the graph

HRESULT ExtractorFilter::JoinFilterGraph(IFilterGraph* joined, LPCWSTR called) {
    graph = joined;
    name[0] = 0;
    if (called) std::wcsncat(name, called, MAX_FILTER_NAME - 1);
    return S_OK;
}

HRESULT ExtractorFilter::QueryFilterInfo(FILTER_INFO* info) {
    if (!info) return E_POINTER;
    std::wcscpy(info->achName, name);
    info->pGraph = graph;
    if (graph) graph->AddRef();
    return S_OK;
}

HRESULT ExtractorFilter::FindPin(LPCWSTR id, IPin** pin) {
    if (!id || !pin) return E_POINTER;
    *pin = nullptr;
    if (!std::wcscmp(id, PinName(PINDIR_INPUT))) *pin = &in;
    if (!std::wcscmp(id, PinName(PINDIR_OUTPUT))) *pin = &out;
    if (!*pin) return VFW_E_NOT_FOUND;
    (*pin)->AddRef();
    return S_OK;
}

// ---- its pins

namespace {
struct PinList final : ComList<IEnumPins> {
    explicit PinList(ExtractorFilter* owner) : ComList(IID_IEnumPins, kPins), filter(owner) {
        filter->AddRef();
    }
    ~PinList() { filter->Release(); }
    STDMETHODIMP Next(ULONG wanted, IPin** pins, ULONG* given) override {
        if (!pins || (!given && wanted != 1)) return E_POINTER;
        ULONG done = 0;
        for (; done < wanted && at < count; ++done, ++at) {
            pins[done] = at ? static_cast<IPin*>(&filter->out) : &filter->in;
            pins[done]->AddRef();
        }
        if (given) *given = done;
        return done == wanted ? S_OK : S_FALSE;
    }
    STDMETHODIMP Clone(IEnumPins** list) override {
        const HRESULT result = filter->EnumPins(list);
        if (SUCCEEDED(result)) static_cast<PinList*>(*list)->at = at;
        return result;
    }

    ExtractorFilter* const filter;
};
} // namespace

HRESULT ExtractorFilter::EnumPins(IEnumPins** list) {
    if (!list) return E_POINTER;
    *list = new (std::nothrow) PinList(this);
    return *list ? S_OK : E_OUTOFMEMORY;
}
