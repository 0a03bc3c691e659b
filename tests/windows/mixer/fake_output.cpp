// See fake_output.h.
#include "tests/windows/mixer/fake_output.h"

#include <cwchar>
#include <propsys.h>

FakeOutputs Outputs;

namespace {
template <class Interface> struct Object : Interface {
    Object() { InterlockedIncrement(&Outputs.objects); }
    virtual ~Object() { InterlockedDecrement(&Outputs.objects); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override {
        return static_cast<ULONG>(InterlockedIncrement(&references));
    }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references);
        if (!left) delete this;
        return static_cast<ULONG>(left);
    }
    volatile LONG references = 1;
};

LPWSTR CoText(const std::wstring& text) {
    auto* copy = static_cast<LPWSTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
    return std::wcscpy(copy, text.c_str());
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
        return references > 0 ? Outputs.result : RPC_E_DISCONNECTED;
    }
    HRESULT STDMETHODCALLTYPE
    RegisterControlChangeNotify(IAudioEndpointVolumeCallback* listener) override {
        Outputs.listener = listener;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE
    UnregisterControlChangeNotify(IAudioEndpointVolumeCallback*) override {
        Outputs.listener = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetMasterVolumeLevelScalar(FLOAT level, LPCGUID) override {
        Outputs.level = level;
        return Enter();
    }
    HRESULT STDMETHODCALLTYPE GetMasterVolumeLevelScalar(FLOAT* level) override {
        const HRESULT result = Enter();
        *level = Outputs.level;
        return result;
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
};

struct Properties final : Object<IPropertyStore> {
    explicit Properties(const std::wstring& n) : name(n) {}
    HRESULT STDMETHODCALLTYPE GetValue(REFPROPERTYKEY, PROPVARIANT* value) override {
        for (wchar_t& c : name)
            c = static_cast<wchar_t>(towupper(c));
        value->vt = VT_LPWSTR;
        value->pwszVal = CoText(name);
        return S_OK;
    }
    UNUSED(GetCount(DWORD*))
    UNUSED(GetAt(DWORD, PROPERTYKEY*))
    UNUSED(SetValue(REFPROPERTYKEY, REFPROPVARIANT))
    UNUSED(Commit())
    std::wstring name;
};

struct Device final : Object<IMMDevice> {
    explicit Device(const std::wstring& i) : id(i) {}
    HRESULT STDMETHODCALLTYPE Activate(REFIID, DWORD, PROPVARIANT*, void** object) override {
        *object = static_cast<IAudioEndpointVolume*>(new Volume);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OpenPropertyStore(DWORD, IPropertyStore** store) override {
        *store = new Properties(id);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetId(LPWSTR* text) override {
        *text = CoText(id);
        return S_OK;
    }
    UNUSED(GetState(DWORD*))
    std::wstring id;
};

struct Collection final : Object<IMMDeviceCollection> {
    HRESULT STDMETHODCALLTYPE GetCount(UINT* count) override {
        *count = static_cast<UINT>(Outputs.ids.size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Item(UINT index, IMMDevice** device) override {
        if (index >= Outputs.ids.size()) return E_INVALIDARG;
        *device = new Device(Outputs.ids[index]);
        return S_OK;
    }
};

struct Enumerator final : Object<IMMDeviceEnumerator> {
    HRESULT STDMETHODCALLTYPE EnumAudioEndpoints(EDataFlow, DWORD,
                                                 IMMDeviceCollection** c) override {
        *c = new Collection;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDevice(LPCWSTR id, IMMDevice** device) override {
        for (const std::wstring& known : Outputs.ids) {
            if (known != id) continue;
            *device = new Device(known);
            return S_OK;
        }
        return E_NOTIMPL;
    }
    UNUSED(GetDefaultAudioEndpoint(EDataFlow, ERole, IMMDevice**))
    UNUSED(RegisterEndpointNotificationCallback(IMMNotificationClient*))
    UNUSED(UnregisterEndpointNotificationCallback(IMMNotificationClient*))
};

HRESULT WINAPI FakeCreate(REFCLSID, IUnknown*, DWORD, REFIID, void** object) {
    *object = static_cast<IMMDeviceEnumerator*>(new Enumerator);
    return S_OK;
}
} // namespace

// As in fake_mixer.cpp.
extern "C" void* const imp_CoCreateInstance asm("__imp__CoCreateInstance@20");
void* const imp_CoCreateInstance = reinterpret_cast<void*>(FakeCreate);
