// See fake_mixer.h.
#include "tests/windows/mixer/fake_mixer.h"

#include <algorithm>
#include <cstring>

FakeMixer Fake;

static CRITICAL_SECTION& Section() {
    static CRITICAL_SECTION s_section;
    static const bool s_made = (InitializeCriticalSection(&s_section), true);
    return *(s_made ? &s_section : nullptr);
}

FakeLock::FakeLock() {
    EnterCriticalSection(&Section());
}
FakeLock::~FakeLock() {
    LeaveCriticalSection(&Section());
}

// ---- making cards

static DWORD s_nextControl, s_nextLine;

static void GiveIds(FakeLine* line) {
    line->id = s_nextLine++;
    for (FakeControl& control : line->controls)
        control.id = s_nextControl++;
}

FakeLine PlainSource(const std::string& name) {
    return {MIXERLINE_COMPONENTTYPE_SRC_UNDEFINED,
            name,
            2,
            {{MIXERCONTROL_CONTROLTYPE_VOLUME, {30000, 30000}},
             {MIXERCONTROL_CONTROLTYPE_MUTE, {0}, 0, 1, true}}};
}

DWORD AddSource(int destination, const FakeLine& source) {
    auto& sources = Fake.cards[0].destinations[static_cast<size_t>(destination)].sources;
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
                     {{MIXERCONTROL_CONTROLTYPE_VOLUME, {20000, 20000}},
                      {MIXERCONTROL_CONTROLTYPE_BASS, {16384, 16384}},
                      {MIXERCONTROL_CONTROLTYPE_TREBLE, {49152, 49152}},
                      {MIXERCONTROL_CONTROLTYPE_MUTE, {0}, 0, 1, true}}};
    recording.line = {MIXERLINE_COMPONENTTYPE_DST_WAVEIN,
                      "Recording",
                      2,
                      {{MIXERCONTROL_CONTROLTYPE_VOLUME, {10000, 10000}},
                       {MIXERCONTROL_CONTROLTYPE_MUX, {1, 0}, 0, 1, true, {0, 0}}}};
    GiveIds(&speakers.line);
    GiveIds(&recording.line);
    Fake.cards.push_back({"Fake Card", {speakers, recording}});
    for (const char* name : {"Wave", "Synthesizer", "CD Audio"})
        AddSource(0, PlainSource(name));
    auto& items = Fake.cards[0].destinations[1].line.controls[1].items;
    items = {AddSource(1, PlainSource("Microphone")), AddSource(1, PlainSource("Line In"))};
}

static FakeLine* LineById(FakeCard* card, DWORD id) {
    for (FakeDestination& destination : card->destinations) {
        if (destination.line.id == id) return &destination.line;
        for (FakeLine& source : destination.sources)
            if (source.id == id) return &source;
    }
    return nullptr;
}

FakeControl* FindFake(DWORD lineId, DWORD type) {
    FakeLine* line = LineById(&Fake.cards[0], lineId);
    if (!line) return nullptr;
    for (FakeControl& control : line->controls)
        if (control.type == type) return &control;
    return nullptr;
}

DWORD SpeakerLine() {
    return Fake.cards[0].destinations[0].line.id;
}

DWORD SourceLine(int destination, int source) {
    return Fake.cards[0]
        .destinations[static_cast<size_t>(destination)]
        .sources[static_cast<size_t>(source)]
        .id;
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

static void Describe(const FakeLine& line, DWORD destination, DWORD source, MIXERLINEA* to) {
    *to = {};
    to->cbStruct = sizeof *to;
    to->dwDestination = destination;
    to->dwSource = source;
    to->dwLineID = line.id;
    to->dwComponentType = line.type;
    to->cChannels = line.channels;
    to->cControls = static_cast<DWORD>(line.controls.size());
    std::strncpy(to->szShortName, line.name.c_str(), sizeof to->szShortName - 1);
    std::strncpy(to->szName, line.name.c_str(), sizeof to->szName - 1);
}

static MMRESULT WINAPI FakeGetLineInfo(HMIXEROBJ object, LPMIXERLINEA line, DWORD flags) {
    const FakeLock lock;
    FakeCard* card = nullptr;
    if (const MMRESULT result = Enter(object, flags, &card)) return result;
    if (line->cbStruct != sizeof *line) return MMSYSERR_INVALPARAM;
    const MIXERLINEA asked = *line;
    for (size_t d = 0; d < card->destinations.size(); ++d) {
        const FakeDestination& destination = card->destinations[d];
        const auto number = static_cast<DWORD>(d);
        const DWORD count = static_cast<DWORD>(destination.sources.size());
        const DWORD how = flags & MIXER_GETLINEINFOF_QUERYMASK;
        if ((how == MIXER_GETLINEINFOF_COMPONENTTYPE &&
             destination.line.type == asked.dwComponentType) ||
            (how == MIXER_GETLINEINFOF_LINEID && destination.line.id == asked.dwLineID)) {
            Describe(destination.line, number, 0, line);
            line->cConnections = destination.toldSources ? destination.toldSources : count;
            return MMSYSERR_NOERROR;
        }
        for (DWORD s = 0; s < count; ++s) {
            const FakeLine& source = destination.sources[s];
            if ((how == MIXER_GETLINEINFOF_SOURCE && asked.dwDestination == number &&
                 asked.dwSource == s) ||
                (how == MIXER_GETLINEINFOF_LINEID && source.id == asked.dwLineID)) {
                Describe(source, number, s, line);
                return MMSYSERR_NOERROR;
            }
        }
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
    const FakeLine* line = LineById(card, asked->dwLineID);
    if (!line) return MIXERR_INVALLINE;
    const bool all = (flags & MIXER_GETLINECONTROLSF_QUERYMASK) == MIXER_GETLINECONTROLSF_ALL;
    if (asked->cControls != (all ? line->controls.size() : 1)) return MMSYSERR_INVALPARAM;
    MIXERCONTROLA* to = asked->pamxctrl;
    for (const FakeControl& control : line->controls) {
        if (!all && control.type != asked->dwControlType) continue;
        Describe(control, to++);
        if (!all) return MMSYSERR_NOERROR;
    }
    return all ? MMSYSERR_NOERROR : MIXERR_INVALCONTROL;
}

// The control, with its line's channels, if the details ask for as many values as it has.
static FakeControl* ControlFor(FakeCard* card, const MIXERCONTROLDETAILS& details) {
    for (FakeDestination& destination : card->destinations) {
        std::vector<FakeLine*> lines = {&destination.line};
        for (FakeLine& source : destination.sources)
            lines.push_back(&source);
        for (FakeLine* line : lines)
            for (FakeControl& control : line->controls)
                if (control.id == details.dwControlID &&
                    details.cMultipleItems == control.items.size() &&
                    (details.cChannels == 1 ||
                     (!control.uniform && details.cChannels == line->channels)))
                    return &control;
    }
    return nullptr;
}

static MMRESULT WINAPI FakeGetControlDetails(HMIXEROBJ object, LPMIXERCONTROLDETAILS details,
                                             DWORD flags) {
    const FakeLock lock;
    FakeCard* card = nullptr;
    if (const MMRESULT result = Enter(object, flags, &card)) return result;
    const FakeControl* control = ControlFor(card, *details);
    if (!control || details->cbStruct != sizeof *details) return MMSYSERR_INVALPARAM;
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
    if (!control || details->cbStruct != sizeof *details || details->cbDetails != sizeof(DWORD))
        return MMSYSERR_INVALPARAM;
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
