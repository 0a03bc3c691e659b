// The filter's two pins. They live in the filter and share its references. Connections change only
// while the graph is stopped, so the streaming thread reads them without a lock.
#pragma once
#include "extractor/media_type_win.h"

struct ExtractorFilter;

struct Pin : IPin {
    Pin(ExtractorFilter* owner, PIN_DIRECTION way) : filter(owner), direction(way) {}
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP ConnectedTo(IPin** pin) override;
    STDMETHODIMP ConnectionMediaType(AM_MEDIA_TYPE* copy) override;
    STDMETHODIMP QueryPinInfo(PIN_INFO* info) override;
    STDMETHODIMP QueryDirection(PIN_DIRECTION* way) override;
    STDMETHODIMP QueryId(LPWSTR* id) override;
    STDMETHODIMP QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    // Both sides of a connection; a copy of the type is kept.
    HRESULT Attach(IPin* pin, const AM_MEDIA_TYPE& connected);
    void Detach();

    ExtractorFilter* const filter;
    const PIN_DIRECTION direction;
    IPin* peer = nullptr;
    AM_MEDIA_TYPE type = {};

protected:
    ~Pin() { Detach(); }
};

struct InputPin final : Pin, IMemInputPin {
    explicit InputPin(ExtractorFilter* owner) : Pin(owner, PINDIR_INPUT) {}
    ~InputPin() { ForgetAllocator(); }
    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return Pin::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return Pin::Release(); }
    STDMETHODIMP Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_UNEXPECTED; }
    STDMETHODIMP ReceiveConnection(IPin* pin, const AM_MEDIA_TYPE* offered) override;
    STDMETHODIMP Disconnect() override;
    STDMETHODIMP QueryAccept(const AM_MEDIA_TYPE* offered) override;
    STDMETHODIMP EnumMediaTypes(IEnumMediaTypes** list) override;
    STDMETHODIMP EndOfStream() override;
    STDMETHODIMP BeginFlush() override;
    STDMETHODIMP EndFlush() override;
    STDMETHODIMP NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) override;

    STDMETHODIMP GetAllocator(IMemAllocator** out) override;
    STDMETHODIMP NotifyAllocator(IMemAllocator* chosen, BOOL isReadOnly) override;
    STDMETHODIMP GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) override;
    STDMETHODIMP Receive(IMediaSample* sample) override;
    STDMETHODIMP ReceiveMultiple(IMediaSample** samples, LONG count, LONG* done) override;
    STDMETHODIMP ReceiveCanBlock() override;
    void ForgetAllocator();

    IMemAllocator* allocator = nullptr;
    BOOL readOnly = FALSE;
    volatile LONG flushing = 0;
};

struct OutputPin final : Pin {
    explicit OutputPin(ExtractorFilter* owner) : Pin(owner, PINDIR_OUTPUT) {}
    ~OutputPin();
    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP Connect(IPin* pin, const AM_MEDIA_TYPE* pattern) override;
    STDMETHODIMP ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return E_UNEXPECTED; }
    STDMETHODIMP Disconnect() override;
    STDMETHODIMP QueryAccept(const AM_MEDIA_TYPE* offered) override;
    STDMETHODIMP EnumMediaTypes(IEnumMediaTypes** list) override;
    STDMETHODIMP EndOfStream() override { return E_UNEXPECTED; }
    STDMETHODIMP BeginFlush() override { return E_UNEXPECTED; }
    STDMETHODIMP EndFlush() override { return E_UNEXPECTED; }
    STDMETHODIMP NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override {
        return E_UNEXPECTED;
    }
    HRESULT AttachInput(IPin* pin);
    IUnknown* Seeking();

    IMemInputPin* input = nullptr; // of the peer
    IUnknown* seeking = nullptr;
};
