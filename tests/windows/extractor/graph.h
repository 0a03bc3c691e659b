// A graph with the extractor of the build, and sound files to play in it.
#pragma once
#include "core/platform.h"
#define NO_DSHOW_STRSAFE
#include <dshow.h>

#include "core/extractor.h"
#include "core/shared_block.h"
#include "tests/support/driver_win.h"
#include "tests/support/tones.h"
#include "tests/support/wave_file.h"

template <typename T> struct Com { // a pointer with its release
    T* p = nullptr;
    ~Com() {
        if (p) p->Release();
    }
    T* operator->() const { return p; }
    void** Out() { return reinterpret_cast<void**>(&p); }
};

inline HMODULE ExtractorModule() {
    static const HMODULE s_module = LoadLibraryA((BuildFolder() + "\\" + kExtractorFile).c_str());
    return s_module;
}

template <typename Function> Function* ExtractorExport(const char* name) {
    const auto address = GetProcAddress(ExtractorModule(), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(address));
}

inline void CreateExtractor(Com<IBaseFilter>* filter) {
    static constexpr CLSID kClass = TONVISTA_EXTRACTOR_CLSID;
    Com<IClassFactory> factory;
    const auto get = ExtractorExport<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject");
    if (get && SUCCEEDED(get(kClass, IID_IClassFactory, factory.Out())))
        factory->CreateInstance(nullptr, IID_IBaseFilter, filter->Out());
}

inline bool ExtractorIsInUse() {
    return ExtractorExport<HRESULT WINAPI()>("DllCanUnloadNow")() != S_OK;
}

// Any PCM or float format, whether it can be shown or not.
inline SoundFormatRecord PcmFormat(uint32_t rate, int channels, int bits, int tag = 1) {
    SoundFormatRecord format = {};
    format.tag = static_cast<uint16_t>(tag);
    format.channels = static_cast<uint16_t>(channels);
    format.rate = rate;
    format.bits = static_cast<uint16_t>(bits);
    format.blockAlign = static_cast<uint16_t>(channels * bits / 8);
    format.bytesPerSecond = rate * format.blockAlign;
    return format;
}

inline std::string WriteWav(const SoundFormatRecord& format, const std::vector<uint8_t>& sound) {
    const char* const path = "C:\\extractor-test.wav";
    WriteWaveFile(path, format, sound);
    return path;
}

struct MediaGraph {
    explicit MediaGraph(const std::string& path, bool withExtractor = true) {
        CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                         graph.Out());
        graph->QueryInterface(IID_IMediaControl, control.Out());
        graph->QueryInterface(IID_IMediaSeeking, seeking.Out());
        graph->QueryInterface(IID_IMediaEvent, events.Out());
        if (withExtractor) CreateExtractor(&filter);
        if (filter.p) graph->AddFilter(filter.p, L"AudioDataExtractorIP");
        rendered =
            SUCCEEDED(graph->RenderFile(std::wstring(path.begin(), path.end()).c_str(), nullptr));
    }
    ~MediaGraph() { control->Stop(); }
    bool GoesThrough() const { // both pins of the filter are connected
        Com<IPin> out, peer;
        return SUCCEEDED(filter->FindPin(L"Out", &out.p)) && SUCCEEDED(out->ConnectedTo(&peer.p));
    }
    bool PlaysToItsEnd() const {
        long code = 0;
        return SUCCEEDED(events->WaitForCompletion(kPatienceMs, &code)) && code == EC_COMPLETE;
    }

    Com<IGraphBuilder> graph;
    Com<IMediaControl> control;
    Com<IMediaSeeking> seeking;
    Com<IMediaEvent> events;
    Com<IBaseFilter> filter;
    bool rendered;
};
