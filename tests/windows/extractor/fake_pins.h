// The filter's neighbours: a pin that stands for the decoder, one for the renderer, which counts
// what it is given.
#pragma once
#include "graph.h"

struct FakePin : IPin, IMemInputPin { // lives longer than whoever refers to it
    explicit FakePin(PIN_DIRECTION way) : direction(way) {}
    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        *object = nullptr;
        if (id == IID_IUnknown || id == IID_IPin) *object = static_cast<IPin*>(this);
        if (id == IID_IMemInputPin) *object = static_cast<IMemInputPin*>(this);
        if (*object) ++references;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }
    STDMETHODIMP Connect(IPin*, const AM_MEDIA_TYPE*) override { return S_OK; }
    STDMETHODIMP ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return S_OK; }
    STDMETHODIMP Disconnect() override { return S_OK; }
    STDMETHODIMP ConnectedTo(IPin**) override { return VFW_E_NOT_CONNECTED; }
    STDMETHODIMP ConnectionMediaType(AM_MEDIA_TYPE*) override { return VFW_E_NOT_CONNECTED; }
    STDMETHODIMP QueryPinInfo(PIN_INFO*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryDirection(PIN_DIRECTION* way) override {
        *way = direction;
        return S_OK;
    }
    STDMETHODIMP QueryId(LPWSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryAccept(const AM_MEDIA_TYPE*) override { return S_OK; }
    STDMETHODIMP EnumMediaTypes(IEnumMediaTypes**) override { return E_NOTIMPL; }
    STDMETHODIMP QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    STDMETHODIMP EndOfStream() override { return Note('E'); }
    STDMETHODIMP BeginFlush() override { return Note('B'); }
    STDMETHODIMP EndFlush() override { return Note('F'); }
    STDMETHODIMP NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return Note('N'); }
    STDMETHODIMP GetAllocator(IMemAllocator**) override { return VFW_E_NO_ALLOCATOR; }
    STDMETHODIMP NotifyAllocator(IMemAllocator*, BOOL) override { return Note('A'); }
    STDMETHODIMP GetAllocatorRequirements(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    STDMETHODIMP Receive(IMediaSample* sample) override {
        last = sample;
        ++received;
        return answer;
    }
    STDMETHODIMP ReceiveMultiple(IMediaSample**, LONG, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ReceiveCanBlock() override { return S_OK; }
    HRESULT Note(char what) {
        calls += what;
        return S_OK;
    }

    const PIN_DIRECTION direction;
    int references = 1, received = 0;
    IMediaSample* last = nullptr;
    HRESULT answer = S_OK;
    std::string calls;
};

inline AM_MEDIA_TYPE TypeOf(SoundFormatRecord* format) {
    AM_MEDIA_TYPE type = {};
    type.majortype = MEDIATYPE_Audio;
    type.subtype = MEDIASUBTYPE_PCM;
    type.formattype = FORMAT_WaveFormatEx;
    type.cbFormat = sizeof *format;
    type.pbFormat = reinterpret_cast<BYTE*>(format);
    return type;
}

// The filter between two such pins, with samples of up to kSampleBytes to send through.
struct FakeGraph {
    static constexpr long kSampleBytes = 5000000; // more than the filter keeps
    explicit FakeGraph(SoundFormatRecord format) {
        CreateExtractor(&filter);
        filter->FindPin(L"In", &in.p);
        filter->FindPin(L"Out", &out.p);
        in->QueryInterface(IID_IMemInputPin, input.Out());
        const AM_MEDIA_TYPE type = TypeOf(&format);
        connected = SUCCEEDED(in->ReceiveConnection(&decoder, &type)) &&
                    SUCCEEDED(out->Connect(&renderer, nullptr));
        CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                         allocator.Out());
        ALLOCATOR_PROPERTIES wanted = {1, kSampleBytes, 1, 0}, actual;
        allocator->SetProperties(&wanted, &actual);
        allocator->Commit();
        allocator->GetBuffer(&sample.p, nullptr, nullptr, 0);
    }
    ~FakeGraph() {
        filter->Stop();
        in->Disconnect();
        out->Disconnect();
    }
    HRESULT Send(const std::vector<uint8_t>& sound) {
        BYTE* bytes = nullptr;
        sample->GetPointer(&bytes);
        std::memcpy(bytes, sound.data(), sound.size());
        sample->SetActualDataLength(static_cast<long>(sound.size()));
        return input->Receive(sample.p);
    }

    FakePin decoder{PINDIR_OUTPUT}, renderer{PINDIR_INPUT};
    Com<IBaseFilter> filter;
    Com<IPin> in, out;
    Com<IMemInputPin> input;
    Com<IMemAllocator> allocator;
    Com<IMediaSample> sample;
    bool connected = false;
};
