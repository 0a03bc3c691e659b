// See fake_output.h.
#include "tests/windows/mixer/fake_output.h"

#include <cwchar>
#include <propsys.h>

FakeOutputs Outputs;

namespace {
template <class... Interfaces> struct Object : Interfaces... {
    Object() { InterlockedIncrement(&Outputs.objects); }
    virtual ~Object() { InterlockedDecrement(&Outputs.objects); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return InterlockedIncrement(&references); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references);
        if (!left) delete this;
        return left;
    }
    volatile LONG references = 1;
};

HRESULT CoText(const std::wstring& text, LPWSTR* copy) {
    *copy = static_cast<LPWSTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
    std::wcscpy(*copy, text.c_str());
    return S_OK;
}

#define UNUSED(method)                          \
    HRESULT STDMETHODCALLTYPE method override { \
        return E_NOTIMPL;                       \
    }

struct Volume final : Object<IAudioEndpointVolume> {
    ~Volume() override { references = -1000; } // whoever calls it now is found out
    HRESULT Enter() {
        if (Outputs.block) {
            InterlockedIncrement(&Outputs.waiting);
            WaitForSingleObject(Outputs.block, 10000);
        }
        return references > 0 && plugging == Outputs.plugging ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE
    RegisterControlChangeNotify(IAudioEndpointVolumeCallback* listener) override {
        ++Outputs.listeners;
        Outputs.listener = listener;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE
    UnregisterControlChangeNotify(IAudioEndpointVolumeCallback*) override {
        --Outputs.listeners;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetMasterVolumeLevelScalar(FLOAT level, LPCGUID) override {
        Outputs.level = level;
        return Enter();
    }
    HRESULT STDMETHODCALLTYPE GetMasterVolumeLevelScalar(FLOAT* level) override {
        *level = Outputs.level;
        return Enter();
    }
    HRESULT STDMETHODCALLTYPE SetMute(BOOL muted, LPCGUID) override {
        Outputs.muted = muted;
        return Enter();
    }
    HRESULT STDMETHODCALLTYPE GetMute(BOOL* muted) override {
        *muted = Outputs.muted;
        return Enter();
    }
    // clang-format off
    UNUSED(GetChannelCount(UINT*)) UNUSED(SetMasterVolumeLevel(FLOAT, LPCGUID))
    UNUSED(GetMasterVolumeLevel(FLOAT*)) UNUSED(SetChannelVolumeLevel(UINT, FLOAT, LPCGUID))
    UNUSED(SetChannelVolumeLevelScalar(UINT, FLOAT, LPCGUID)) UNUSED(VolumeStepUp(LPCGUID))
    UNUSED(GetChannelVolumeLevel(UINT, FLOAT*)) UNUSED(GetChannelVolumeLevelScalar(UINT, FLOAT*))
    UNUSED(GetVolumeStepInfo(UINT*, UINT*)) UNUSED(VolumeStepDown(LPCGUID))
    UNUSED(QueryHardwareSupport(DWORD*)) UNUSED(GetVolumeRange(FLOAT*, FLOAT*, FLOAT*))
        // clang-format on
        const int plugging = Outputs.plugging;
};

// The enumerator, its collection, an output of that and the output's properties, all in one.
struct Device final : Object<IMMDeviceEnumerator, IMMDeviceCollection, IMMDevice, IPropertyStore> {
    explicit Device(const std::wstring& i = {}) : id(i) {}
    HRESULT STDMETHODCALLTYPE EnumAudioEndpoints(EDataFlow, DWORD,
                                                 IMMDeviceCollection** collection) override {
        *collection = new Device;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDevice(LPCWSTR wanted, IMMDevice** device) override {
        for (const std::wstring& known : Outputs.ids) {
            if (known != wanted) continue;
            *device = new Device(known);
            return S_OK;
        }
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetCount(UINT* count) override {
        *count = static_cast<UINT>(Outputs.ids.size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Item(UINT index, IMMDevice** device) override {
        if (index >= Outputs.ids.size()) return E_INVALIDARG;
        *device = new Device(Outputs.ids[index]);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Activate(REFIID, DWORD, PROPVARIANT*, void** object) override {
        *object = static_cast<IAudioEndpointVolume*>(new Volume);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OpenPropertyStore(DWORD, IPropertyStore** store) override {
        *store = new Device(id);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetId(LPWSTR* text) override { return CoText(id, text); }
    HRESULT STDMETHODCALLTYPE GetValue(REFPROPERTYKEY, PROPVARIANT* value) override {
        for (wchar_t& c : id)
            c = static_cast<wchar_t>(towupper(c));
        value->vt = VT_LPWSTR;
        return CoText(id, &value->pwszVal);
    }
    // clang-format off
    UNUSED(GetDefaultAudioEndpoint(EDataFlow, ERole, IMMDevice**)) UNUSED(GetState(DWORD*))
    UNUSED(RegisterEndpointNotificationCallback(IMMNotificationClient*)) UNUSED(Commit())
    UNUSED(UnregisterEndpointNotificationCallback(IMMNotificationClient*))
    UNUSED(GetCount(DWORD*)) UNUSED(GetAt(DWORD, PROPERTYKEY*))
    UNUSED(SetValue(REFPROPERTYKEY, REFPROPVARIANT))
        // clang-format on
        std::wstring id;
};

HRESULT WINAPI FakeCreate(REFCLSID, IUnknown*, DWORD, REFIID, void** object) {
    *object = static_cast<IMMDeviceEnumerator*>(new Device);
    return S_OK;
}
} // namespace

// As in fake_mixer.cpp.
extern "C" void* const imp_CoCreateInstance asm("__imp__CoCreateInstance@20");
void* const imp_CoCreateInstance = reinterpret_cast<void*>(FakeCreate);
