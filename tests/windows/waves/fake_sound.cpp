// See fake_sound.h. One object of each kind; references are counted together.
#include "fake_sound.h"

FakeSound s_sound;

// clang-format off
#define UNUSED(name, ...) \
    HRESULT STDMETHODCALLTYPE name(__VA_ARGS__) override { return E_NOTIMPL; }
// Each does as told, unless it is the call that fails.
#define CALL(name, parameters, ...) HRESULT STDMETHODCALLTYPE name parameters override { \
        if (FailsNow(s_sound.calls)) return AUDCLNT_E_DEVICE_INVALIDATED; \
        __VA_ARGS__; return S_OK; }

template <class I> struct Counted : I {
    UNUSED(QueryInterface, REFIID, void**)
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++s_sound.refs); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--s_sound.refs); }
};

template <class I> static HRESULT Give(I* object, void* to) {
    object->AddRef();
    *static_cast<I**>(to) = object;
    return S_OK;
}

static struct : Counted<IAudioCaptureClient> {
    CALL(GetNextPacketSize, (UINT32* frames),
         *frames = s_sound.packets.empty() ? 0 : s_sound.packets.front().frames)
    CALL(GetBuffer, (BYTE** data, UINT32* frames, DWORD* flags, UINT64*, UINT64*),
         FakePacket& next = s_sound.packets.front();
         *data = next.samples.empty() ? nullptr : reinterpret_cast<BYTE*>(next.samples.data());
         *frames = next.frames; *flags = next.flags)
    CALL(ReleaseBuffer, (UINT32), s_sound.packets.pop_front())
} s_capture;

static struct : Counted<IAudioClient> {
    CALL(Initialize, (AUDCLNT_SHAREMODE, DWORD flags, REFERENCE_TIME, REFERENCE_TIME,
                      const WAVEFORMATEX* format, LPCGUID),
         s_sound.flags = flags; s_sound.channels = format->nChannels)
    CALL(GetBufferSize, (UINT32* frames), *frames = 22050)
    CALL(GetService, (REFIID, void** made),
         return FAILED(s_sound.service) ? s_sound.service
                                        : Give<IAudioCaptureClient>(&s_capture, made))
    CALL(Start, (), s_sound.packets.clear())
    CALL(Stop, ())
    CALL(Reset, ())
    UNUSED(GetStreamLatency, REFERENCE_TIME*) UNUSED(GetCurrentPadding, UINT32*)
    UNUSED(IsFormatSupported, AUDCLNT_SHAREMODE, const WAVEFORMATEX*, WAVEFORMATEX**)
    UNUSED(GetMixFormat, WAVEFORMATEX**) UNUSED(SetEventHandle, HANDLE)
    UNUSED(GetDevicePeriod, REFERENCE_TIME*, REFERENCE_TIME*)
} s_client;

struct FakeOutput : Counted<IMMDevice> {
    CALL(Activate, (REFIID, DWORD, PROPVARIANT*, void** made),
         s_sound.from = static_cast<int>(this - s_all);
         return s_sound.from < s_sound.outputs ? Give<IAudioClient>(&s_client, made) : E_FAIL)
    CALL(GetId, (LPWSTR* id),
         *id = static_cast<LPWSTR>(CoTaskMemAlloc(16));
         lstrcpyW(*id, this == s_all ? L"one" : L"two"))
    UNUSED(OpenPropertyStore, DWORD, IPropertyStore**) UNUSED(GetState, DWORD*)
    static FakeOutput s_all[2];
};
FakeOutput FakeOutput::s_all[2];

static HRESULT GiveOutput(int number, IMMDevice** made) {
    return number < s_sound.outputs ? Give<IMMDevice>(&FakeOutput::s_all[number], made) : E_FAIL;
}

static struct : Counted<IMMDeviceCollection> {
    CALL(GetCount, (UINT* count), *count = static_cast<UINT>(s_sound.outputs))
    CALL(Item, (UINT n, IMMDevice** made), return GiveOutput(static_cast<int>(n), made))
} s_collection;

static struct : Counted<IMMDeviceEnumerator> {
    CALL(EnumAudioEndpoints, (EDataFlow, DWORD, IMMDeviceCollection** made),
         return Give<IMMDeviceCollection>(&s_collection, made))
    CALL(GetDefaultAudioEndpoint, (EDataFlow, ERole, IMMDevice** made),
         return GiveOutput(s_sound.standard, made))
    CALL(GetDevice, (LPCWSTR id, IMMDevice** made),
         return GiveOutput(lstrcmpW(id, L"two") == 0, made))
    UNUSED(RegisterEndpointNotificationCallback, IMMNotificationClient*)
    UNUSED(UnregisterEndpointNotificationCallback, IMMNotificationClient*)
} s_enumerator;
// clang-format on

HRESULT MakeFakeEnumerator(IMMDeviceEnumerator** made) {
    if (s_sound.missing) return REGDB_E_CLASSNOTREG;
    if (FailsNow(s_sound.calls)) return E_FAIL;
    return Give<IMMDeviceEnumerator>(&s_enumerator, made);
}
