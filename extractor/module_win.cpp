// What the DLL exports: its class, and its entry in the registry.
#include "core/extractor.h"
#include "core/settings.h"
#include "extractor/filter_win.h"
#include "extractor/list_win.h"

#include <string>

static constexpr CLSID kExtractorClass = TONVISTA_EXTRACTOR_CLSID;
LONG ExtractorObjects;

namespace {
// The one factory is never freed: its references do not count.
struct Factory final : IClassFactory {
    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (!object) return E_POINTER;
        *object = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        return outer ? CLASS_E_NOAGGREGATION : CreateExtractorFilter(id, object);
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        if (lock)
            InterlockedIncrement(&ExtractorObjects);
        else
            InterlockedDecrement(&ExtractorObjects);
        return S_OK;
    }
};
} // namespace
static Factory s_factory;
static HINSTANCE s_module;

extern "C" __declspec(dllexport) HRESULT WINAPI
    DllGetClassObject(REFCLSID classId, REFIID id, LPVOID* object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    return classId == kExtractorClass ? s_factory.QueryInterface(id, object)
                                      : CLASS_E_CLASSNOTAVAILABLE;
}

extern "C" __declspec(dllexport) HRESULT WINAPI DllCanUnloadNow() {
    return ExtractorObjects ? S_FALSE : S_OK;
}

// ---- registration

static std::string ClassKey() {
    wchar_t wide[64] = L"";
    char text[64] = "";
    StringFromGUID2(kExtractorClass, wide, 64);
    WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr);
    return std::string("Software\\Classes\\CLSID\\") + text;
}

static int Register(RegRoot root, const std::string& key, const char* path) {
    const std::string server = key + "\\InprocServer32";
    return WriteRegString(root, key.c_str(), "", kExtractorName) &&
           WriteRegString(root, server.c_str(), "", path) &&
           WriteRegString(root, server.c_str(), "ThreadingModel", "Both");
}

// For the machine, or for the user where that is refused.
extern "C" __declspec(dllexport) HRESULT WINAPI DllRegisterServer() {
    char path[MAX_PATH] = "";
    const DWORD length = GetModuleFileNameA(s_module, path, MAX_PATH);
    if (!length || length >= MAX_PATH) return E_FAIL;
    const std::string key = ClassKey();
    if (Register(kMachineRoot, key, path) || Register(kUserRoot, key, path)) return S_OK;
    return E_ACCESSDENIED;
}

extern "C" __declspec(dllexport) HRESULT WINAPI DllUnregisterServer() {
    const std::string key = ClassKey();
    for (const RegRoot root : {kMachineRoot, kUserRoot})
        if (RegKeyExists(root, key.c_str()) && DeleteRegTree(root, key.c_str()))
            return E_ACCESSDENIED;
    return S_OK;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        s_module = instance;
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}
