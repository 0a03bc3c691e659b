// Connections, allocators and the flow of samples. See pins_win.h.
#include "extractor/pins_win.h"

#include "extractor/filter_win.h"

#include <cwchar>

// ---- both pins

ULONG Pin::AddRef() {
    return filter->AddRef();
}
ULONG Pin::Release() {
    return filter->Release();
}

HRESULT Pin::Attach(IPin* pin, const AM_MEDIA_TYPE& connected) {
    const HRESULT result = CopyMediaType(&type, connected);
    if (FAILED(result)) return result;
    peer = pin;
    peer->AddRef();
    return S_OK;
}

void Pin::Detach() {
    if (peer) peer->Release();
    peer = nullptr;
    FreeMediaType(&type);
}

HRESULT Pin::ConnectedTo(IPin** pin) {
    if (!pin) return E_POINTER;
    *pin = peer;
    if (!peer) return VFW_E_NOT_CONNECTED;
    peer->AddRef();
    return S_OK;
}

HRESULT Pin::ConnectionMediaType(AM_MEDIA_TYPE* copy) {
    if (!copy) return E_POINTER;
    *copy = {};
    return peer ? CopyMediaType(copy, type) : VFW_E_NOT_CONNECTED;
}

HRESULT Pin::QueryPinInfo(PIN_INFO* info) {
    if (!info) return E_POINTER;
    *info = {filter, direction, L""};
    filter->AddRef();
    std::wcscpy(info->achName, PinName(direction));
    return S_OK;
}

HRESULT Pin::QueryDirection(PIN_DIRECTION* way) {
    if (!way) return E_POINTER;
    *way = direction;
    return S_OK;
}

HRESULT Pin::QueryId(LPWSTR* id) {
    if (!id) return E_POINTER;
    const wchar_t* const text = PinName(direction);
    *id = static_cast<LPWSTR>(CoTaskMemAlloc((std::wcslen(text) + 1) * sizeof *text));
    if (!*id) return E_OUTOFMEMORY;
    std::wcscpy(*id, text);
    return S_OK;
}

// ---- the input's connection

HRESULT InputPin::QueryInterface(REFIID id, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IPin) *object = static_cast<IPin*>(this);
    if (id == IID_IMemInputPin) *object = static_cast<IMemInputPin*>(this);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT InputPin::ReceiveConnection(IPin* pin, const AM_MEDIA_TYPE* offered) {
    if (!pin || !offered) return E_POINTER;
    if (peer) return VFW_E_ALREADY_CONNECTED;
    if (filter->state != State_Stopped) return VFW_E_NOT_STOPPED;
    SoundFormatRecord format;
    if (!AcceptsMediaType(offered, &format)) return VFW_E_TYPE_NOT_ACCEPTED;
    // The same samples go on: an output that is connected already fixes their type.
    if (filter->out.peer && !SameMediaType(filter->out.type, *offered))
        return VFW_E_TYPE_NOT_ACCEPTED;
    const HRESULT result = Attach(pin, *offered);
    if (SUCCEEDED(result)) SetPublisherFormat(&filter->publisher, format);
    return result;
}

HRESULT InputPin::Disconnect() {
    if (!peer) return S_FALSE;
    if (filter->state != State_Stopped) return VFW_E_NOT_STOPPED;
    Detach();
    ForgetAllocator();
    return S_OK;
}

HRESULT InputPin::QueryAccept(const AM_MEDIA_TYPE* offered) {
    SoundFormatRecord format;
    if (!offered) return E_POINTER;
    if (!AcceptsMediaType(offered, &format)) return S_FALSE;
    return filter->out.peer ? filter->out.peer->QueryAccept(offered) : S_OK;
}

HRESULT InputPin::EnumMediaTypes(IEnumMediaTypes** list) {
    return ListMediaTypes(nullptr, list);
}

// ---- the allocator: that of the renderer, for samples that go through as they are

HRESULT InputPin::GetAllocator(IMemAllocator** out) {
    return filter->out.input ? filter->out.input->GetAllocator(out) : VFW_E_NO_ALLOCATOR;
}

HRESULT InputPin::NotifyAllocator(IMemAllocator* chosen, BOOL isReadOnly) {
    if (!chosen) return E_POINTER;
    chosen->AddRef();
    ForgetAllocator();
    allocator = chosen;
    readOnly = isReadOnly;
    return filter->out.input ? filter->out.input->NotifyAllocator(chosen, isReadOnly) : S_OK;
}

HRESULT InputPin::GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) {
    return filter->out.input ? filter->out.input->GetAllocatorRequirements(wanted) : E_NOTIMPL;
}

void InputPin::ForgetAllocator() {
    if (allocator) allocator->Release();
    allocator = nullptr;
}

// ---- the flow

HRESULT InputPin::Receive(IMediaSample* sample) {
    if (!sample) return E_POINTER;
    if (flushing) return S_FALSE;
    if (filter->state == State_Stopped) return VFW_E_WRONG_STATE;
    if (!filter->out.input) return VFW_E_NOT_CONNECTED;
    LeaveSample(&filter->publisher, sample); // before anybody downstream can change it
    return filter->out.input->Receive(sample);
}

HRESULT InputPin::ReceiveMultiple(IMediaSample** samples, LONG count, LONG* done) {
    if (!samples || !done) return E_POINTER;
    HRESULT result = S_OK;
    for (*done = 0; *done < count && result == S_OK;) {
        result = Receive(samples[*done]);
        if (result == S_OK) ++*done;
    }
    return result;
}

HRESULT InputPin::ReceiveCanBlock() {
    return filter->out.input ? filter->out.input->ReceiveCanBlock() : S_FALSE;
}

HRESULT InputPin::EndOfStream() {
    if (flushing) return S_OK;
    LeaveEnd(&filter->publisher);
    return filter->out.peer ? filter->out.peer->EndOfStream() : S_OK;
}

HRESULT InputPin::BeginFlush() {
    InterlockedExchange(&flushing, 1);
    const HRESULT result = filter->out.peer ? filter->out.peer->BeginFlush() : S_OK;
    FlushPublisher(&filter->publisher);
    return result;
}

HRESULT InputPin::EndFlush() {
    FlushPublisher(&filter->publisher); // a sample may have been on its way
    const HRESULT result = filter->out.peer ? filter->out.peer->EndFlush() : S_OK;
    InterlockedExchange(&flushing, 0);
    return result;
}

// What is on its way belongs to the segment before and is still heard.
HRESULT InputPin::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) {
    return filter->out.peer ? filter->out.peer->NewSegment(start, stop, rate) : S_OK;
}

// ---- the output's connection

OutputPin::~OutputPin() {
    if (input) input->Release();
    if (seeking) seeking->Release();
}

HRESULT OutputPin::QueryInterface(REFIID id, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (id == IID_IMediaSeeking || id == IID_IMediaPosition) {
        IUnknown* const through = Seeking();
        return through ? through->QueryInterface(id, object) : E_NOINTERFACE;
    }
    if (id != IID_IUnknown && id != IID_IPin) return E_NOINTERFACE;
    *object = static_cast<IPin*>(this);
    AddRef();
    return S_OK;
}

// The platform's own object that asks whoever is connected to the input. It is a part of this pin
// and keeps only a weak pointer to the input.
IUnknown* OutputPin::Seeking() {
    if (seeking) return seeking;
    IUnknown* made = nullptr;
    if (FAILED(CoCreateInstance(CLSID_SeekingPassThru, static_cast<IPin*>(this),
                                CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(&made))))
        return nullptr;
    ISeekingPassThru* through = nullptr;
    HRESULT result = made->QueryInterface(IID_ISeekingPassThru, reinterpret_cast<void**>(&through));
    if (SUCCEEDED(result)) {
        result = through->Init(FALSE, static_cast<IPin*>(&filter->in));
        through->Release();
    }
    auto* const place = reinterpret_cast<void* volatile*>(&seeking);
    if (FAILED(result) || InterlockedCompareExchangePointer(place, made, nullptr)) made->Release();
    return seeking;
}

HRESULT OutputPin::Connect(IPin* pin, const AM_MEDIA_TYPE* pattern) {
    if (!pin) return E_POINTER;
    if (peer) return VFW_E_ALREADY_CONNECTED;
    if (filter->state != State_Stopped) return VFW_E_NOT_STOPPED;
    if (!filter->in.peer) return VFW_E_NOT_CONNECTED;
    if (!FitsMediaType(filter->in.type, pattern)) return VFW_E_TYPE_NOT_ACCEPTED;
    if (FAILED(pin->ReceiveConnection(this, &filter->in.type))) return VFW_E_NO_ACCEPTABLE_TYPES;
    const HRESULT result = AttachInput(pin);
    if (FAILED(result)) {
        Disconnect();
        pin->Disconnect();
    }
    return result;
}

HRESULT OutputPin::AttachInput(IPin* pin) {
    HRESULT result = Attach(pin, filter->in.type);
    if (FAILED(result)) return result;
    if (FAILED(pin->QueryInterface(IID_IMemInputPin, reinterpret_cast<void**>(&input))))
        return VFW_E_NO_TRANSPORT;
    if (!filter->in.allocator) return S_OK;
    return input->NotifyAllocator(filter->in.allocator, filter->in.readOnly);
}

HRESULT OutputPin::Disconnect() {
    if (!peer) return S_FALSE;
    if (filter->state != State_Stopped) return VFW_E_NOT_STOPPED;
    if (input) input->Release();
    input = nullptr;
    Detach();
    return S_OK;
}

HRESULT OutputPin::QueryAccept(const AM_MEDIA_TYPE* offered) {
    SoundFormatRecord format;
    if (!offered) return E_POINTER;
    return AcceptsMediaType(offered, &format) ? S_OK : S_FALSE;
}

HRESULT OutputPin::EnumMediaTypes(IEnumMediaTypes** list) {
    return ListMediaTypes(filter->in.peer ? &filter->in.type : nullptr, list);
}
