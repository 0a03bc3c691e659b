// Filter graphs and what goes into them; what needs a graph only for a moment. See graph_win.h.
#include "media/graph_win.h"

#include "core/extractor.h"
#include "core/text.h"
#include "media/engine_win.h"

#include <cmath>
#include <cstring>

static constexpr CLSID kExtractorClass = TONVISTA_EXTRACTOR_CLSID;

int PathBesideProgram(const char* file, char (&path)[MAX_PATH]) {
    const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    char* name = length && length < MAX_PATH ? std::strrchr(path, '\\') : nullptr;
    if (!name || name + 1 - path + std::strlen(file) >= MAX_PATH) return 0;
    name[1] = 0;
    AppendText(path, sizeof path, file);
    return 1;
}

// ---- the extractor

// The file itself, where nobody has registered it. It stays loaded: filters of it may live on.
static HRESULT CreateUnregistered(IBaseFilter** filter) {
    static HMODULE s_module;
    char path[MAX_PATH];
    if (!s_module && PathBesideProgram(kExtractorFile, path)) s_module = LoadLibraryA(path);
    if (!s_module) return E_FAIL;
    const auto getClass = reinterpret_cast<LPFNGETCLASSOBJECT>(
        reinterpret_cast<void*>(GetProcAddress(s_module, "DllGetClassObject")));
    if (!getClass) return E_FAIL;
    IClassFactory* factory = nullptr;
    HRESULT result =
        getClass(kExtractorClass, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    if (FAILED(result) || !factory) return E_FAIL;
    result = factory->CreateInstance(nullptr, IID_IBaseFilter, reinterpret_cast<void**>(filter));
    factory->Release();
    return result;
}

static HRESULT CreateExtractor(IBaseFilter** filter) {
    const HRESULT result = CoCreateInstance(kExtractorClass, nullptr, CLSCTX_INPROC_SERVER,
                                            IID_IBaseFilter, reinterpret_cast<void**>(filter));
    return SUCCEEDED(result) && *filter ? result : CreateUnregistered(filter);
}

static HRESULT CreateGraph(IGraphBuilder** graph) {
    return CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                            reinterpret_cast<void**>(graph));
}

MediaPlatform TheMediaPlatform = {CreateGraph, CreateExtractor};

int AddExtractor(IGraphBuilder* graph) {
    IBaseFilter* filter = nullptr;
    if (FAILED(TheMediaPlatform.CreateExtractor(&filter)) || !filter) return 1;
    wchar_t name[64];
    MultiByteToWideChar(CP_ACP, 0, kExtractorName, -1, name, 64);
    const HRESULT result = graph->AddFilter(filter, name);
    filter->Release();
    return SUCCEEDED(result);
}

int RenderMediaFile(IGraphBuilder* graph, const char* path) {
    wchar_t wide[MAX_PATH];
    return path && MultiByteToWideChar(CP_ACP, 0, path, -1, wide, MAX_PATH) &&
           SUCCEEDED(graph->RenderFile(wide, nullptr));
}

// ---- graphs of a moment, on any thread

double MediaFileDuration(const char* path) {
    const ComScope com;
    IGraphBuilder* graph = nullptr;
    IMediaPosition* position = nullptr;
    REFTIME duration = 0;
    if (SUCCEEDED(TheMediaPlatform.CreateGraph(&graph)) && graph && RenderMediaFile(graph, path) &&
        SUCCEEDED(graph->QueryInterface(IID_IMediaPosition, reinterpret_cast<void**>(&position))) &&
        position && FAILED(position->get_Duration(&duration)))
        duration = 0;
    ReleaseCom(&position);
    ReleaseCom(&graph);
    return std::isfinite(duration) && duration > 0 ? duration : 0;
}

static int Answers(IGraphBuilder* graph, REFIID interfaceId) {
    IUnknown* object = nullptr;
    const HRESULT result = graph->QueryInterface(interfaceId, reinterpret_cast<void**>(&object));
    const int good = SUCCEEDED(result) && object;
    ReleaseCom(&object);
    return good;
}

int CheckMediaSupport() {
    const ComScope com;
    IGraphBuilder* graph = nullptr;
    const int good = SUCCEEDED(TheMediaPlatform.CreateGraph(&graph)) && graph &&
                     Answers(graph, IID_IMediaControl) && Answers(graph, IID_IMediaEventEx) &&
                     Answers(graph, IID_IVideoWindow) && Answers(graph, IID_IBasicAudio);
    ReleaseCom(&graph);
    return !good;
}
