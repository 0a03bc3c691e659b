// Capturing what an output device plays: the list's entries, and streams that a poll drives. What
// is gathered from them, and silence, is decided in loopback.cpp.
#include "waves/loopback_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "waves/loopback.h"
#include "waves/loopback_source_win.h"

#include <atomic>
#include <new>

constexpr int kMostPackets = 256; // taken by one poll; they are 10 ms long

namespace {
// The thread may have an apartment of either kind already; what was entered is left again.
struct Apartment {
    const int entered = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    Apartment() = default;
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() {
        if (entered) CoUninitialize();
    }
};

enum Verdict { kNotAsked, kCan, kCannot };
} // namespace

struct LoopbackStream {
    Apartment apartment; // goes last
    int output;          // -1: the default one
    Held<IMMDeviceEnumerator> enumerator;
    Recording recording;      // its client is null while the device is lost
    WCHAR id[kEndpointIdMax]; // of the endpoint recorded from
    uint32_t lookTick;        // when it was looked for, or whether it is still the default one
    SoundFormatRecord format;
    SoundGather gather;
    uint8_t filled[kSoundBufferBytes];
};

static std::atomic<int> s_verdict{kNotAsked};

// ---- entries of the device list

// Trouble that goes by, unlike a platform that refuses.
static int IsPassing(HRESULT result) {
    return result == AUDCLNT_E_DEVICE_INVALIDATED || result == AUDCLNT_E_DEVICE_IN_USE ||
           result == AUDCLNT_E_SERVICE_NOT_RUNNING || result == E_OUTOFMEMORY;
}

// Some platforms accept the flag and refuse the service, so the client is opened in full. Once for
// the process: it takes some milliseconds.
static int CanRecord(IMMDeviceEnumerator* enumerator) {
    if (s_verdict != kNotAsked) return s_verdict == kCan;
    Held<IMMDevice> endpoint;
    if (!FindEndpoint(enumerator, -1, &endpoint)) return 0;
    SoundGather gather;
    Recording recording = {};
    StartGather(&gather, FormatOfCode(kDefaultFormatCode));
    const HRESULT result = OpenRecording(endpoint.it, DeliveredFormat(gather), &recording);
    EndRecording(&recording);
    if (!IsPassing(result)) s_verdict = SUCCEEDED(result) ? kCan : kCannot;
    return SUCCEEDED(result);
}

void ForgetLoopbackVerdict() {
    s_verdict = kNotAsked;
}

int CountLoopback() {
    if (s_verdict == kCannot) return 0;
    const Apartment apartment;
    Held<IMMDeviceEnumerator> enumerator;
    if (!MakeLoopbackEnumerator(&enumerator)) return 0;
    const int outputs = CountEndpoints(enumerator.it);
    return outputs && CanRecord(enumerator.it) ? 1 + outputs : 0;
}

int LoopbackName(int index, char* name, int size, uint16_t* device) {
    if (index < 0 || index >= CountLoopback() || size < 1) return 0;
    char text[kStringMax] = "";
    if (index > 0) {
        const Apartment apartment;
        Held<IMMDeviceEnumerator> enumerator;
        Held<IMMDevice> endpoint;
        if (!MakeLoopbackEnumerator(&enumerator)) return 0;
        if (!FindEndpoint(enumerator.it, index - 1, &endpoint)) return 0;
        if (!EndpointName(endpoint.it, text, sizeof(text)))
            FormatText(text, sizeof(text), "%d", index);
    } else {
        LoadText(IDS_LOOPBACK_DEFAULT, text);
    }
    LoadText(IDS_LOOPBACK_PREFIX, name, size);
    AppendText(name, static_cast<size_t>(size), text);
    *device = static_cast<uint16_t>(kLoopbackDefault + index);
    return 1;
}

// ---- streams

// The endpoint to record from: the default one of now, or the one that was chosen, by its id since
// numbers shift when a device goes.
static int FindChosen(LoopbackStream* stream, Held<IMMDevice>* found) {
    if (stream->output < 0 || !stream->id[0]) {
        return FindEndpoint(stream->enumerator.it, stream->output, found);
    }
    return SUCCEEDED(stream->enumerator.it->GetDevice(stream->id, &found->it)) && found->it;
}

static void Lose(LoopbackStream* stream, uint32_t now) {
    EndRecording(&stream->recording);
    stream->enumerator.Drop();
    stream->lookTick = now;
}

// Everything is made anew: after the sound service was started again, an old enumerator is dead.
static int Connect(LoopbackStream* stream) {
    Held<IMMDevice> endpoint;
    EndRecording(&stream->recording);
    if (!MakeLoopbackEnumerator(&stream->enumerator)) return 0;
    if (!FindChosen(stream, &endpoint) || !EndpointId(endpoint.it, stream->id)) return 0;
    Recording* recording = &stream->recording;
    if (FAILED(OpenRecording(endpoint.it, DeliveredFormat(stream->gather), recording))) return 0;
    if (SUCCEEDED(recording->client.it->Start())) return 1;
    EndRecording(recording);
    return 0;
}

LoopbackStream* OpenLoopback(uint16_t device, const SoundFormatRecord& format) {
    auto* stream = device < kLoopbackDefault ? nullptr : new (std::nothrow) LoopbackStream{};
    if (!stream) return nullptr;
    stream->output = device - kLoopbackFirst;
    stream->format = format;
    if (StartGather(&stream->gather, format) && Connect(stream)) return stream;
    CloseLoopback(stream);
    return nullptr;
}

static int DefaultHasChanged(LoopbackStream* stream) {
    Held<IMMDevice> endpoint;
    WCHAR id[kEndpointIdMax];
    if (stream->output >= 0 || !FindEndpoint(stream->enumerator.it, -1, &endpoint)) return 0;
    return EndpointId(endpoint.it, id) && lstrcmpW(id, stream->id) != 0;
}

static void Look(LoopbackStream* stream, uint32_t now) {
    if (!stream->recording.client.it) {
        if (IsDue(now, &stream->lookTick, kLookAgainMs)) Connect(stream);
    } else if (IsDue(now, &stream->lookTick, kDefaultEveryMs) && DefaultHasChanged(stream)) {
        Connect(stream);
    }
}

// One packet; its frames, 0 when there is none, -1 when the device is lost.
static int64_t TakePacket(Recording* recording, SoundGather* gather) {
    IAudioCaptureClient* capture = recording->capture.it;
    UINT32 frames = 0;
    if (FAILED(capture->GetNextPacketSize(&frames))) return -1;
    if (!frames) return 0;
    BYTE* data = nullptr;
    DWORD flags = 0;
    frames = 0;
    const HRESULT result = capture->GetBuffer(&data, &frames, &flags, nullptr, nullptr);
    if (FAILED(result)) return -1;
    if (result == AUDCLNT_S_BUFFER_EMPTY) return 0;
    if (frames > recording->mostFrames) return -1;
    GatherSound(gather, flags & AUDCLNT_BUFFERFLAGS_SILENT ? nullptr : data, frames);
    return FAILED(capture->ReleaseBuffer(frames)) ? -1 : frames;
}

void PollLoopback(LoopbackStream* stream, uint32_t now, void (*Filled)(const uint8_t* bytes)) {
    if (!stream) return;
    Look(stream, now);
    int came = 0;
    for (int n = 0; n < kMostPackets && stream->recording.client.it; ++n) {
        const int64_t frames = TakePacket(&stream->recording, &stream->gather);
        if (frames < 0) Lose(stream, now);
        if (frames <= 0) break;
        came = 1;
    }
    GatherSilence(&stream->gather, now, came);
    while (TakeBuffer(&stream->gather, stream->filled))
        Filled(stream->filled);
}

int RestartLoopback(LoopbackStream* stream) {
    if (!stream) return 0;
    StartGather(&stream->gather, stream->format);
    IAudioClient* client = stream->recording.client.it;
    if (client && SUCCEEDED(client->Stop()) && SUCCEEDED(client->Reset()) &&
        SUCCEEDED(client->Start())) {
        return 1;
    }
    return Connect(stream);
}

void CloseLoopback(LoopbackStream* stream) {
    if (!stream) return;
    EndRecording(&stream->recording);
    delete stream;
}
