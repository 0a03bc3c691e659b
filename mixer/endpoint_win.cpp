// An output's own volume through the endpoint-volume interface: what every program's sound goes
// through. It has a master volume and a mute, no bass, treble or sources. See backend_win.h.
#include "mixer/backend_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "mixer/fader.h"
#include "resources/ids.h"

#include <endpointvolume.h>
#include <mmdeviceapi.h>

#include <algorithm>
#include <climits>

static const PROPERTYKEY kFriendlyName = {
    {0xa45c254e, 0xdf1c, 0x4efd, {0x80, 0x20, 0x67, 0xd1, 0x46, 0xa8, 0x50, 0xe0}}, 14};
constexpr int kReleaseTries = 100; // 1 ms each

namespace {
// A reference held for a scope.
template <class Interface> struct Held {
    explicit Held(Interface* p = nullptr) : pointer(p) {}
    ~Held() {
        if (pointer) pointer->Release();
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Interface* operator->() const { return pointer; }
    Interface* pointer;
};

// COM for a thread that may have none of its own.
struct ComScope {
    ComScope() : result(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~ComScope() {
        if (SUCCEEDED(result)) CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    HRESULT result;
};

// Hears of changes made anywhere, on a thread of the system's. Lives as long as the program.
struct Listener final : IAudioEndpointVolumeCallback {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        const int known = id == __uuidof(IUnknown) || id == __uuidof(IAudioEndpointVolumeCallback);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE OnNotify(AUDIO_VOLUME_NOTIFICATION_DATA*) override {
        NotifyMixerChange();
        return S_OK;
    }
};

struct OutputState {
    IAudioEndpointVolume* volatile volume;
    volatile LONG entering; // threads between reading `volume` and holding it
};
} // namespace

static Listener s_listener;
static OutputState s_output;

static int Good(HRESULT result) {
    NoteMixerError(SUCCEEDED(result) ? 0 : static_cast<uint32_t>(result));
    return SUCCEEDED(result);
}

// The last thread that leaves COM has all its libraries unloaded, but another thread may be inside
// one of their objects just then: the object's library is kept for good.
static void KeepCodeOf(void* object) {
    MEMORY_BASIC_INFORMATION area = {};
    char path[MAX_PATH];
    if (!VirtualQuery(*static_cast<void**>(object), &area, sizeof area)) return;
    const DWORD length =
        GetModuleFileNameA(static_cast<HMODULE>(area.AllocationBase), path, sizeof path);
    if (length && length < sizeof path) LoadLibraryA(path);
}

// ---- the pointer in use

// A reference of the caller's own, or null.
static IAudioEndpointVolume* HoldVolume() {
    InterlockedIncrement(&s_output.entering);
    IAudioEndpointVolume* volume = s_output.volume;
    if (volume) volume->AddRef();
    InterlockedDecrement(&s_output.entering);
    return volume;
}

// Puts another pointer (or null) in place. The old one is let go when nobody can be about to take a
// reference of it any more; if a thread was killed just there, it is kept for good.
static void ReplaceVolume(IAudioEndpointVolume* fresh) {
    auto* old = static_cast<IAudioEndpointVolume*>(InterlockedExchangePointer(
        reinterpret_cast<void* volatile*>(const_cast<IAudioEndpointVolume**>(&s_output.volume)),
        fresh));
    if (!old) return;
    old->UnregisterControlChangeNotify(&s_listener);
    for (int i = 0; i < kReleaseTries && s_output.entering; ++i)
        Sleep(1);
    if (!s_output.entering) old->Release();
}

// ---- operations

static MixerAnswer Master(MixerFader fader, int percent) {
    const Held<IAudioEndpointVolume> volume(HoldVolume());
    float level = 0;
    if (fader != kVolumeFader || !volume.pointer) return {};
    if (!Good(volume->GetMasterVolumeLevelScalar(&level))) return {};
    const int before = PercentOfScalar(level);
    if (percent < 0) return {before, 0};
    const int wanted = std::min(percent, 100);
    if (!Good(volume->SetMasterVolumeLevelScalar(static_cast<float>(wanted) / 100, nullptr)))
        return {};
    return {before, wanted != before};
}

static MixerAnswer MasterOn(int on) {
    const Held<IAudioEndpointVolume> volume(HoldVolume());
    BOOL muted = FALSE;
    if (!volume.pointer || !Good(volume->GetMute(&muted))) return {};
    if ((on == 0 || on == 1) && !Good(volume->SetMute(!on, nullptr))) return {};
    return {!muted, (on == 0 || on == 1) && on != !muted};
}

static int HasMaster(MixerFader fader) {
    return fader == kVolumeFader && s_output.volume;
}

static int NoSources(uint32_t, MixerSource*, int) {
    return 0;
}

static MixerAnswer NoLine(uint32_t, int) {
    return {};
}

static MixerAnswer NoSource(uint32_t, uint32_t, int) {
    return {};
}

static void Close() {
    ReplaceVolume(nullptr);
}

const MixerBackend kOutputBackend = {NoSources, NoLine,   Master, HasMaster,
                                     MasterOn,  NoSource, Close};

// ---- which outputs there are

static IMMDeviceEnumerator* Enumerator() {
    void* enumerator = nullptr;
    CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_ALL,
                     __uuidof(IMMDeviceEnumerator), &enumerator);
    return static_cast<IMMDeviceEnumerator*>(enumerator);
}

static IMMDeviceCollection* Outputs() {
    const Held<IMMDeviceEnumerator> enumerator(Enumerator());
    IMMDeviceCollection* outputs = nullptr;
    if (!enumerator.pointer ||
        FAILED(enumerator->EnumAudioEndpoints(eRender, DEVICE_STATE_ACTIVE, &outputs)))
        return nullptr;
    return outputs;
}

static IMMDevice* Output(int index) {
    const Held<IMMDeviceCollection> outputs(Outputs());
    IMMDevice* output = nullptr;
    if (!outputs.pointer || index < 0 || FAILED(outputs->Item(static_cast<UINT>(index), &output)))
        return nullptr;
    return output;
}

// 1 when all of it fits.
static int NarrowText(const wchar_t* wide, char* text, int size) {
    *text = 0;
    return wide && WideCharToMultiByte(CP_ACP, 0, wide, -1, text, size, nullptr, nullptr) > 0;
}

int CountOutputs() {
    const ComScope com;
    const Held<IMMDeviceCollection> outputs(Outputs());
    UINT count = 0;
    if (!outputs.pointer || FAILED(outputs->GetCount(&count))) return 0;
    return static_cast<int>(std::min<UINT>(count, INT_MAX));
}

int OutputId(int index, char (&id)[kOutputIdSize]) {
    const ComScope com;
    const Held<IMMDevice> output(Output(index));
    LPWSTR wide = nullptr;
    if (!output.pointer || FAILED(output->GetId(&wide))) return 0;
    const int fits = NarrowText(wide, id, kOutputIdSize);
    CoTaskMemFree(wide);
    return fits && *id;
}

int OutputName(int index, char* name, int size) {
    const ComScope com;
    const Held<IMMDevice> output(Output(index));
    if (!output.pointer) return 0;
    char text[kStringMax], device[kStringMax] = "";
    LoadText(IDS_SYSTEM_VOLUME, text);
    IPropertyStore* opened = nullptr;
    if (FAILED(output->OpenPropertyStore(STGM_READ, &opened))) return 0;
    const Held<IPropertyStore> properties(opened);
    PROPVARIANT value = {};
    if (SUCCEEDED(properties->GetValue(kFriendlyName, &value)) && value.vt == VT_LPWSTR)
        NarrowText(value.pwszVal, device, sizeof device);
    PropVariantClear(&value);
    FormatText(name, static_cast<size_t>(size), "%s%s", text, device);
    return 1;
}

int OpenOutputVolume(const char* id) {
    wchar_t wide[kOutputIdSize];
    if (!MultiByteToWideChar(CP_ACP, 0, id, -1, wide, kOutputIdSize)) return 0;
    const Held<IMMDeviceEnumerator> enumerator(Enumerator());
    IMMDevice* found = nullptr;
    if (!enumerator.pointer || !Good(enumerator->GetDevice(wide, &found))) return 0;
    const Held<IMMDevice> output(found);
    void* activated = nullptr;
    if (!Good(output->Activate(__uuidof(IAudioEndpointVolume), CLSCTX_ALL, nullptr, &activated)) ||
        !activated)
        return 0;
    auto* volume = static_cast<IAudioEndpointVolume*>(activated);
    KeepCodeOf(volume);
    volume->RegisterControlChangeNotify(&s_listener); // without it, windows still look now and then
    ReplaceVolume(volume);
    return 1;
}
