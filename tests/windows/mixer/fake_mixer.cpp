// See fake_mixer.h.
#include "tests/windows/mixer/fake_mixer.h"

#include <algorithm>
#include <cstring>

FakeMixer Fake;

// ---- making cards

static DWORD s_nextControl, s_nextLine;
constexpr DWORD kVolume = MIXERCONTROL_CONTROLTYPE_VOLUME, kMute = MIXERCONTROL_CONTROLTYPE_MUTE;

static void GiveIds(FakeLine* line) {
    line->id = s_nextLine++;
    for (FakeControl& control : line->controls)
        control.id = s_nextControl++;
}

FakeLine PlainSource(const std::string& name) {
    return {0, name, 2, {{kVolume, {30000, 30000}}, {kMute, {0}, 0, 1, true}}};
}

DWORD AddSource(int destination, const FakeLine& source) {
    auto& sources = Fake.cards[0].destinations.at(destination).sources;
    sources.push_back(source);
    GiveIds(&sources.back());
    return sources.back().id;
}

void ResetFake() {
    const FakeLock lock;
    Fake = FakeMixer{};
    s_nextControl = 100;
    s_nextLine = 0xFFFF0000;
    FakeDestination speakers, recording;
    speakers.line = {MIXERLINE_COMPONENTTYPE_DST_SPEAKERS,
                     "Speakers",
                     2,
                     {{kVolume, {20000, 20000}},
                      {MIXERCONTROL_CONTROLTYPE_BASS, {16384, 16384}},
                      {MIXERCONTROL_CONTROLTYPE_TREBLE, {49152, 49152}},
                      {kMute, {0}, 0, 1, true}}};
    recording.line = {
        MIXERLINE_COMPONENTTYPE_DST_WAVEIN,
        "Recording",
        2,
        {{kVolume, {10000, 10000}}, {MIXERCONTROL_CONTROLTYPE_MUX, {1, 0}, 0, 1, true, {0, 0}}}};
    GiveIds(&speakers.line);
    GiveIds(&recording.line);
    Fake.cards.push_back({"Fake Card", {speakers, recording}});
    for (const char* name : {"Wave", "Synthesizer", "CD Audio"})
        AddSource(0, PlainSource(name));
    auto& items = Fake.cards[0].destinations[1].line.controls[1].items;
    items = {AddSource(1, PlainSource("Microphone")), AddSource(1, PlainSource("Line In"))};
}

namespace {
struct Place {
    FakeLine* line;
    DWORD destination, source;
    const FakeDestination* of; // null for sources
};
} // namespace

static std::vector<Place> Lines(FakeCard* card) {
    std::vector<Place> places;
    DWORD d = 0, s = 0;
    for (FakeDestination& destination : card->destinations) {
        places.push_back({&destination.line, d, 0, &destination});
        for (FakeLine& source : destination.sources)
            places.push_back({&source, d, s++, nullptr});
        ++d, s = 0;
    }
    return places;
}

FakeControl* FindFake(DWORD lineId, DWORD type) {
    for (const Place& place : Lines(&Fake.cards[0]))
        for (FakeControl& control : place.line->controls)
            if (place.line->id == lineId && control.type == type) return &control;
    return nullptr;
}

DWORD SpeakerLine() {
    return Fake.cards[0].destinations[0].line.id;
}

DWORD SourceLine(int destination, int source) {
    return Fake.cards[0].destinations.at(destination).sources.at(source).id;
}

// ---- the functions

// Handles are card numbers from 0x500 on, so that 0 is none.
static constexpr UINT_PTR kFirstHandle = 0x500;

static MMRESULT Enter(HMIXEROBJ object, DWORD flags, FakeCard** card) {
    const UINT_PTR index = reinterpret_cast<UINT_PTR>(object) - kFirstHandle;
    ++Fake.calls;
    if ((flags & 0xF0000000) != static_cast<DWORD>(MIXER_OBJECTF_HMIXER)) return MMSYSERR_INVALFLAG;
    if (!Fake.open || index >= Fake.cards.size()) return MMSYSERR_INVALHANDLE;
    if (Fake.removed) return MMSYSERR_NODRIVER;
    if (Fake.failCall && !--Fake.failCall) return MMSYSERR_ERROR;
    *card = &Fake.cards[index];
    return MMSYSERR_NOERROR;
}

static UINT WINAPI FakeGetNumDevs() {
    const FakeLock lock;
    return static_cast<UINT>(Fake.cards.size());
}

static MMRESULT WINAPI FakeGetDevCaps(UINT_PTR id, LPMIXERCAPSA caps, UINT size) {
    const FakeLock lock;
    if (id >= Fake.cards.size()) return MMSYSERR_BADDEVICEID;
    if (size != sizeof *caps) return MMSYSERR_INVALPARAM;
    *caps = {};
    std::strncpy(caps->szPname, Fake.cards[id].name.c_str(), sizeof caps->szPname - 1);
    return MMSYSERR_NOERROR;
}

static MMRESULT WINAPI FakeOpen(LPHMIXER handle, UINT id, DWORD_PTR callback, DWORD_PTR,
                                DWORD flags) {
    const FakeLock lock;
    if (id >= Fake.cards.size()) return MMSYSERR_BADDEVICEID;
    if (Fake.cards[id].refusesOpen) return MMSYSERR_ALLOCATED;
    if (flags != CALLBACK_WINDOW) return MMSYSERR_INVALFLAG;
    *handle = reinterpret_cast<HMIXER>(kFirstHandle + id);
    ++Fake.open;
    Fake.openCard = static_cast<int>(id);
    Fake.window = reinterpret_cast<HWND>(callback);
    return MMSYSERR_NOERROR;
}

static MMRESULT WINAPI FakeClose(HMIXER) {
    const FakeLock lock;
    --Fake.open;
    return MMSYSERR_NOERROR;
}

static MMRESULT WINAPI FakeGetLineInfo(HMIXEROBJ object, LPMIXERLINEA line, DWORD flags) {
    const FakeLock lock;
    FakeCard* card = nullptr;
    if (const MMRESULT result = Enter(object, flags, &card)) return result;
    if (line->cbStruct != sizeof *line) return MMSYSERR_INVALPARAM;
    const MIXERLINEA asked = *line;
    const DWORD how = flags & MIXER_GETLINEINFOF_QUERYMASK;
    for (const Place& place : Lines(card)) {
        const FakeLine& found = *place.line;
        const bool fits = how == MIXER_GETLINEINFOF_LINEID ? found.id == asked.dwLineID
                          : how == MIXER_GETLINEINFOF_COMPONENTTYPE
                              ? place.of && found.type == asked.dwComponentType
                              : !place.of && place.destination == asked.dwDestination &&
                                    place.source == asked.dwSource;
        if (!fits) continue;
        *line = {};
        line->cbStruct = sizeof *line;
        line->dwDestination = place.destination;
        line->dwSource = place.source;
        line->dwLineID = found.id;
        line->dwComponentType = found.type;
        line->cChannels = found.channels;
        line->cControls = static_cast<DWORD>(found.controls.size());
        if (place.of) line->cConnections = static_cast<DWORD>(place.of->sources.size());
        if (place.of && place.of->toldSources) line->cConnections = place.of->toldSources;
        std::strncpy(line->szName, found.name.c_str(), sizeof line->szName - 1);
        return MMSYSERR_NOERROR;
    }
    return MIXERR_INVALLINE;
}

static void Describe(const FakeControl& control, MIXERCONTROLA* to) {
    *to = {};
    to->cbStruct = sizeof *to;
    to->dwControlID = control.id;
    to->dwControlType = control.type;
    if (control.uniform) to->fdwControl |= MIXERCONTROL_CONTROLF_UNIFORM;
    if (!control.items.empty()) to->fdwControl |= MIXERCONTROL_CONTROLF_MULTIPLE;
    to->cMultipleItems = static_cast<DWORD>(control.items.size());
    to->Bounds.dwMinimum = control.minimum;
    to->Bounds.dwMaximum = control.maximum;
}

static MMRESULT WINAPI FakeGetLineControls(HMIXEROBJ object, LPMIXERLINECONTROLSA asked,
                                           DWORD flags) {
    const FakeLock lock;
    FakeCard* card = nullptr;
    if (const MMRESULT result = Enter(object, flags, &card)) return result;
    if (asked->cbStruct != sizeof *asked || asked->cbmxctrl != sizeof(MIXERCONTROLA))
        return MMSYSERR_INVALPARAM;
    const bool all = (flags & MIXER_GETLINECONTROLSF_QUERYMASK) == MIXER_GETLINECONTROLSF_ALL;
    DWORD count = 0;
    for (const Place& place : Lines(card))
        for (const FakeControl& control : place.line->controls)
            if (place.line->id == asked->dwLineID && (all || control.type == asked->dwControlType))
                if (count++ < asked->cControls) Describe(control, &asked->pamxctrl[count - 1]);
    if (all && count != asked->cControls) return MMSYSERR_INVALPARAM;
    return count ? MMSYSERR_NOERROR : MIXERR_INVALCONTROL;
}

// The control, if the details ask for as many values as it has.
static FakeControl* ControlFor(FakeCard* card, const MIXERCONTROLDETAILS& details) {
    if (details.cbStruct != sizeof details) return nullptr;
    for (const Place& place : Lines(card))
        for (FakeControl& control : place.line->controls)
            if (control.id == details.dwControlID &&
                details.cMultipleItems == control.items.size() &&
                details.cChannels == (control.uniform ? 1 : place.line->channels))
                return &control;
    return nullptr;
}

static MMRESULT WINAPI FakeGetControlDetails(HMIXEROBJ object, LPMIXERCONTROLDETAILS details,
                                             DWORD flags) {
    const FakeLock lock;
    FakeCard* card = nullptr;
    if (const MMRESULT result = Enter(object, flags, &card)) return result;
    const FakeControl* control = ControlFor(card, *details);
    if (!control) return MMSYSERR_INVALPARAM;
    if ((flags & MIXER_GETCONTROLDETAILSF_QUERYMASK) == MIXER_GETCONTROLDETAILSF_LISTTEXT) {
        auto* texts = static_cast<MIXERCONTROLDETAILS_LISTTEXTA*>(details->paDetails);
        if (details->cbDetails != sizeof *texts) return MMSYSERR_INVALPARAM;
        for (const DWORD item : control->items)
            *texts++ = {item, 0, "item"};
        return MMSYSERR_NOERROR;
    }
    if (details->cbDetails != sizeof(DWORD)) return MMSYSERR_INVALPARAM;
    std::copy(control->values.begin(), control->values.end(),
              static_cast<DWORD*>(details->paDetails));
    return MMSYSERR_NOERROR;
}

static MMRESULT WINAPI FakeSetControlDetails(HMIXEROBJ object, LPMIXERCONTROLDETAILS details,
                                             DWORD flags) {
    const FakeLock lock;
    FakeCard* card = nullptr;
    if (const MMRESULT result = Enter(object, flags, &card)) return result;
    FakeControl* control = ControlFor(card, *details);
    if (!control || details->cbDetails != sizeof(DWORD)) return MMSYSERR_INVALPARAM;
    ++Fake.writes;
    std::copy_n(static_cast<const DWORD*>(details->paDetails), control->values.size(),
                control->values.begin());
    if (Fake.notifies)
        PostMessageA(Fake.window, MM_MIXM_CONTROL_CHANGE, reinterpret_cast<WPARAM>(object),
                     static_cast<LPARAM>(control->id));
    return MMSYSERR_NOERROR;
}

// What the compiler calls a function that comes from a DLL by; the library's own is then not taken.
#define REPLACE(name, bytes, mine)                                     \
    extern "C" void* const imp_##name asm("__imp__" #name "@" #bytes); \
    void* const imp_##name = reinterpret_cast<void*>(mine)
REPLACE(mixerGetNumDevs, 0, FakeGetNumDevs);
REPLACE(mixerGetDevCapsA, 12, FakeGetDevCaps);
REPLACE(mixerOpen, 20, FakeOpen);
REPLACE(mixerClose, 4, FakeClose);
REPLACE(mixerGetLineInfoA, 12, FakeGetLineInfo);
REPLACE(mixerGetLineControlsA, 12, FakeGetLineControls);
REPLACE(mixerGetControlDetailsA, 12, FakeGetControlDetails);
REPLACE(mixerSetControlDetails, 12, FakeSetControlDetails);
