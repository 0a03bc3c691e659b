// Endpoints and clients that record from them. See loopback_source_win.h.
#include "waves/loopback_source_win.h"

#include "core/text.h"

#include <algorithm>

constexpr REFERENCE_TIME kKeptByPlatform = 5000000; // half a second, in 100 ns
constexpr UINT32 kMostPacketSeconds = 10;           // a larger buffer is a lie
constexpr UINT kMostEndpoints = 64;
constexpr DWORD kConversion = 0x80000000 | 0x08000000; // AUTOCONVERTPCM, SRC_DEFAULT_QUALITY
// PKEY_Device_FriendlyName, which no library of the tool chain has.
static const PROPERTYKEY kFriendlyName = {
    {0xa45c254e, 0xdf1c, 0x4efd, {0x80, 0x20, 0x67, 0xd1, 0x46, 0xa8, 0x50, 0xe0}}, 14};

static HRESULT MakePlatformEnumerator(IMMDeviceEnumerator** made) {
    return CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_INPROC_SERVER,
                            __uuidof(IMMDeviceEnumerator), reinterpret_cast<void**>(made));
}

LoopbackSource TheLoopbackSource = {MakePlatformEnumerator, eRender, AUDCLNT_STREAMFLAGS_LOOPBACK};

// A call may claim success and give nothing. Not to be nested with the call: arguments are
// evaluated in any order.
static int Got(HRESULT result, const void* made) {
    return SUCCEEDED(result) && made;
}

int MakeLoopbackEnumerator(Held<IMMDeviceEnumerator>* made) {
    made->Drop();
    const HRESULT result = TheLoopbackSource.MakeEnumerator(&made->it);
    return Got(result, made->it);
}

// ---- endpoints

static int ActiveEndpoints(IMMDeviceEnumerator* enumerator, Held<IMMDeviceCollection>* all,
                           UINT* count) {
    const HRESULT result =
        enumerator->EnumAudioEndpoints(TheLoopbackSource.flow, DEVICE_STATE_ACTIVE, &all->it);
    *count = 0;
    if (!Got(result, all->it) || FAILED(all->it->GetCount(count))) return 0;
    *count = std::min(*count, kMostEndpoints);
    return 1;
}

int CountEndpoints(IMMDeviceEnumerator* enumerator) {
    Held<IMMDeviceCollection> all;
    UINT count = 0;
    return ActiveEndpoints(enumerator, &all, &count) ? static_cast<int>(count) : 0;
}

int FindEndpoint(IMMDeviceEnumerator* enumerator, int index, Held<IMMDevice>* found) {
    found->Drop();
    if (index < 0) {
        const HRESULT result =
            enumerator->GetDefaultAudioEndpoint(TheLoopbackSource.flow, eConsole, &found->it);
        return Got(result, found->it);
    }
    Held<IMMDeviceCollection> all;
    UINT count = 0;
    if (!ActiveEndpoints(enumerator, &all, &count)) return 0;
    if (static_cast<UINT>(index) >= count) return 0;
    const HRESULT result = all.it->Item(static_cast<UINT>(index), &found->it);
    return Got(result, found->it);
}

int EndpointId(IMMDevice* endpoint, WCHAR id[kEndpointIdMax]) {
    LPWSTR own = nullptr;
    const HRESULT result = endpoint->GetId(&own);
    if (!Got(result, own)) return 0;
    lstrcpynW(id, own, kEndpointIdMax);
    CoTaskMemFree(own);
    return 1;
}

int EndpointName(IMMDevice* endpoint, char* name, int size) {
    constexpr int kMost = 100; // letters
    Held<IPropertyStore> store;
    const HRESULT result = endpoint->OpenPropertyStore(STGM_READ, &store.it);
    if (!Got(result, store.it)) return 0;
    PROPVARIANT value = {};
    if (FAILED(store.it->GetValue(kFriendlyName, &value))) return 0;
    WCHAR cut[kMost + 1] = L"";
    if (value.vt == VT_LPWSTR && value.pwszVal) lstrcpynW(cut, value.pwszVal, kMost + 1);
    PropVariantClear(&value);
    char text[4 * kMost + 1] = "";
    WideCharToMultiByte(CP_ACP, 0, cut, -1, text, sizeof(text), nullptr, nullptr);
    if (!text[0]) return 0;
    CopyText(name, static_cast<size_t>(size), text);
    return 1;
}

// ---- recording

static HRESULT Initialize(IAudioClient* client, const SoundFormatRecord& delivered) {
    const WAVEFORMATEX format = {WAVE_FORMAT_PCM,
                                 delivered.channels,
                                 delivered.rate,
                                 delivered.bytesPerSecond,
                                 delivered.blockAlign,
                                 delivered.bits,
                                 0};
    return client->Initialize(AUDCLNT_SHAREMODE_SHARED, TheLoopbackSource.streamFlags | kConversion,
                              kKeptByPlatform, 0, &format, nullptr);
}

HRESULT OpenRecording(IMMDevice* endpoint, const SoundFormatRecord& delivered, Recording* made) {
    EndRecording(made);
    HRESULT result = endpoint->Activate(__uuidof(IAudioClient), CLSCTX_INPROC_SERVER, nullptr,
                                        reinterpret_cast<void**>(&made->client.it));
    if (SUCCEEDED(result) && !made->client.it) result = E_POINTER;
    if (SUCCEEDED(result)) result = Initialize(made->client.it, delivered);
    if (SUCCEEDED(result)) result = made->client.it->GetBufferSize(&made->mostFrames);
    if (SUCCEEDED(result)) {
        result = made->client.it->GetService(__uuidof(IAudioCaptureClient),
                                             reinterpret_cast<void**>(&made->capture.it));
    }
    if (SUCCEEDED(result) && !made->capture.it) result = E_POINTER;
    made->mostFrames = std::min<UINT32>(made->mostFrames, kMostPacketSeconds * delivered.rate);
    if (FAILED(result)) EndRecording(made);
    return result;
}

void EndRecording(Recording* recording) {
    if (recording->client.it) recording->client.it->Stop();
    recording->capture.Drop();
    recording->client.Drop();
    recording->mostFrames = 0;
}
