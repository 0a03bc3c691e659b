// A mixer device through the winmm calls. See backend_win.h.
#include "mixer/backend_win.h"

#include "core/text.h"
#include "mixer/fader.h"

#include <mmsystem.h>

#include <algorithm>
#include <climits>
#include <vector>

// More controls on a line, or items of a list, than any device has.
constexpr DWORD kMaxControls = 1024, kMaxItems = 256;

// An operation reads it once and works on that to its end: line and control ids of one device mean
// something else on the next. A handle that was closed meanwhile is refused, and the notice that
// follows every change of device lets windows ask again.
static HMIXER volatile s_handle;

static int Good(MMRESULT result) {
    NoteMixerError(result);
    return result == MMSYSERR_NOERROR;
}

static HMIXEROBJ OpenHandle() {
    return reinterpret_cast<HMIXEROBJ>(s_handle);
}

// ---- lines and controls

static int FindLine(HMIXEROBJ mixer, DWORD how, MIXERLINEA* line) {
    line->cbStruct = sizeof *line;
    if (!mixer) return Good(MMSYSERR_INVALHANDLE);
    return Good(mixerGetLineInfoA(mixer, line, MIXER_OBJECTF_HMIXER | how));
}

static int FindDestination(HMIXEROBJ mixer, DWORD componentType, MIXERLINEA* line) {
    *line = {};
    line->dwComponentType = componentType;
    return FindLine(mixer, MIXER_GETLINEINFOF_COMPONENTTYPE, line);
}

static int FindLineById(HMIXEROBJ mixer, DWORD lineId, MIXERLINEA* line) {
    *line = {};
    line->dwLineID = lineId;
    return FindLine(mixer, MIXER_GETLINEINFOF_LINEID, line);
}

static int FindControl(HMIXEROBJ mixer, DWORD lineId, DWORD type, MIXERCONTROLA* control) {
    *control = {};
    MIXERLINECONTROLSA query = {};
    query.cbStruct = sizeof query;
    query.dwLineID = lineId;
    query.dwControlType = type;
    query.cControls = 1;
    query.cbmxctrl = sizeof *control;
    query.pamxctrl = control;
    return Good(mixerGetLineControlsA(mixer, &query,
                                      MIXER_OBJECTF_HMIXER | MIXER_GETLINECONTROLSF_ONEBYTYPE));
}

static std::vector<MIXERCONTROLA> AllControls(HMIXEROBJ mixer, const MIXERLINEA& line) {
    std::vector<MIXERCONTROLA> controls(std::min<DWORD>(line.cControls, kMaxControls));
    if (controls.empty()) return controls;
    MIXERLINECONTROLSA query = {};
    query.cbStruct = sizeof query;
    query.dwLineID = line.dwLineID;
    query.cControls = static_cast<DWORD>(controls.size());
    query.cbmxctrl = sizeof(MIXERCONTROLA);
    query.pamxctrl = controls.data();
    if (!Good(mixerGetLineControlsA(mixer, &query,
                                    MIXER_OBJECTF_HMIXER | MIXER_GETLINECONTROLSF_ALL)))
        controls.clear();
    return controls;
}

static MIXERCONTROLDETAILS Details(DWORD controlId, DWORD channels, DWORD items, void* values,
                                   DWORD valueSize) {
    MIXERCONTROLDETAILS details = {};
    details.cbStruct = sizeof details;
    details.dwControlID = controlId;
    details.cChannels = channels;
    details.cMultipleItems = items;
    details.cbDetails = valueSize;
    details.paDetails = values;
    return details;
}

static int Read(HMIXEROBJ mixer, MIXERCONTROLDETAILS* details,
                DWORD what = MIXER_GETCONTROLDETAILSF_VALUE) {
    return Good(mixerGetControlDetailsA(mixer, details, MIXER_OBJECTF_HMIXER | what));
}

static int Write(HMIXEROBJ mixer, MIXERCONTROLDETAILS* details) {
    return Good(mixerSetControlDetails(mixer, details,
                                       MIXER_OBJECTF_HMIXER | MIXER_SETCONTROLDETAILSF_VALUE));
}

// ---- faders

static MixerAnswer Fader(HMIXEROBJ mixer, const MIXERLINEA& line, DWORD type, int percent) {
    MIXERCONTROLA control;
    if (!FindControl(mixer, line.dwLineID, type, &control)) return {};
    const DWORD channels = control.fdwControl & MIXERCONTROL_CONTROLF_UNIFORM ? 1 : line.cChannels;
    const int multiple = (control.fdwControl & MIXERCONTROL_CONTROLF_MULTIPLE) != 0;
    const DWORD items = multiple ? control.cMultipleItems : 0;
    const int count = FaderDetails(channels, multiple ? items : 1);
    if (!count) return {};
    const FaderRange range = {control.Bounds.dwMinimum, control.Bounds.dwMaximum};
    uint32_t values[kMaxDetails] = {};
    MIXERCONTROLDETAILS details =
        Details(control.dwControlID, channels, items, values, sizeof *values);
    if (!Read(mixer, &details)) return {};
    MixerAnswer answer = {FaderPercent(values, count, range), 0};
    if (percent < 0 || range.maximum <= range.minimum) return answer;
    answer.changed = SetFader(values, count, range, percent);
    return Write(mixer, &details) ? answer : MixerAnswer{};
}

static MixerAnswer LineVolume(uint32_t lineId, int percent) {
    const HMIXEROBJ mixer = OpenHandle();
    MIXERLINEA line;
    if (!FindLineById(mixer, lineId, &line)) return {};
    return Fader(mixer, line, MIXERCONTROL_CONTROLTYPE_VOLUME, percent);
}

static DWORD TypeOf(MixerFader fader) {
    switch (fader) {
    case kBassFader: return MIXERCONTROL_CONTROLTYPE_BASS;
    case kTrebleFader: return MIXERCONTROL_CONTROLTYPE_TREBLE;
    default: return MIXERCONTROL_CONTROLTYPE_VOLUME;
    }
}

static MixerAnswer Master(MixerFader fader, int percent) {
    const HMIXEROBJ mixer = OpenHandle();
    MIXERLINEA line;
    if (!FindDestination(mixer, MIXERLINE_COMPONENTTYPE_DST_SPEAKERS, &line)) return {};
    return Fader(mixer, line, TypeOf(fader), percent);
}

static int HasMaster(MixerFader fader) {
    const HMIXEROBJ mixer = OpenHandle();
    MIXERLINEA line;
    MIXERCONTROLA control;
    return FindDestination(mixer, MIXERLINE_COMPONENTTYPE_DST_SPEAKERS, &line) &&
           FindControl(mixer, line.dwLineID, TypeOf(fader), &control);
}

// ---- switches

// A request that only follows from a question is written where it differs, or a driver that tells
// of every write would bring the next question, and so on for ever.
static SwitchStep Mute(HMIXEROBJ mixer, DWORD lineId, int request, int isQuestion) {
    MIXERCONTROLA control;
    if (!FindControl(mixer, lineId, MIXERCONTROL_CONTROLTYPE_MUTE, &control)) return {};
    MIXERCONTROLDETAILS_BOOLEAN value = {};
    MIXERCONTROLDETAILS details = Details(control.dwControlID, 1, 0, &value, sizeof value);
    if (!Read(mixer, &details)) return {};
    SwitchStep step = {1, value.fValue != 0, 0};
    step.changed = request >= 0 && request != step.before;
    if (request < 0 || (isQuestion && !step.changed)) return step;
    value.fValue = request;
    return Write(mixer, &details) ? step : SwitchStep{};
}

// The first control that has all bits of the type.
static const MIXERCONTROLA* ControlLike(const std::vector<MIXERCONTROLA>& controls, DWORD type) {
    for (const MIXERCONTROLA& control : controls)
        if ((control.dwControlType & type) == type) return &control;
    return nullptr;
}

// The item of a list that stands for a source line, -1 none.
static int ItemOf(HMIXEROBJ mixer, const MIXERCONTROLA& control, DWORD lineId) {
    std::vector<MIXERCONTROLDETAILS_LISTTEXTA> texts(control.cMultipleItems);
    MIXERCONTROLDETAILS details = Details(control.dwControlID, 1, control.cMultipleItems,
                                          texts.data(), sizeof(MIXERCONTROLDETAILS_LISTTEXTA));
    if (!Read(mixer, &details, MIXER_GETCONTROLDETAILSF_LISTTEXT)) return -1;
    for (size_t i = 0; i < texts.size(); ++i)
        if (texts[i].dwParam1 == lineId) return static_cast<int>(i);
    return -1;
}

static SwitchStep Select(HMIXEROBJ mixer, DWORD destinationType, DWORD lineId, int request) {
    MIXERLINEA line;
    if (!FindDestination(mixer, destinationType, &line)) return {};
    const std::vector<MIXERCONTROLA> controls = AllControls(mixer, line);
    const MIXERCONTROLA* control = ControlLike(controls, MIXERCONTROL_CONTROLTYPE_MIXER);
    const int oneOnly = !control;
    if (!control) control = ControlLike(controls, MIXERCONTROL_CONTROLTYPE_MUX);
    if (!control || !control->cMultipleItems || control->cMultipleItems > kMaxItems) return {};
    const int item = ItemOf(mixer, *control, lineId);
    if (item < 0) return {};
    const auto count = static_cast<int>(control->cMultipleItems);
    int32_t values[kMaxItems] = {};
    static_assert(sizeof *values == sizeof(MIXERCONTROLDETAILS_BOOLEAN));
    MIXERCONTROLDETAILS details =
        Details(control->dwControlID, 1, control->cMultipleItems, values, sizeof *values);
    if (!Read(mixer, &details)) return {};
    SwitchStep step = {1, values[item] != 0, 0};
    if (request < 0) return step;
    step.changed = SelectItem(values, count, item, request, oneOnly);
    return Write(mixer, &details) ? step : SwitchStep{};
}

static MixerAnswer MasterOn(int on) {
    const HMIXEROBJ mixer = OpenHandle();
    MIXERLINEA line;
    if (!FindDestination(mixer, MIXERLINE_COMPONENTTYPE_DST_SPEAKERS, &line)) return {};
    const SwitchStep mute = Mute(mixer, line.dwLineID, on == 0 || on == 1 ? !on : -1, 0);
    return {mute.worked && !mute.before, mute.changed};
}

static MixerAnswer SourceOn(uint32_t destinationType, uint32_t lineId, int on) {
    const HMIXEROBJ mixer = OpenHandle();
    const int request = on == 0 || on == 1 ? on : -1;
    const int isQuestion = request < 0;
    const SwitchStep selection = Select(mixer, destinationType, lineId, request);
    const SwitchStep mute = Mute(mixer, lineId, MuteAfterSelection(selection, request), isQuestion);
    return {SourceWasOn(selection, mute), !isQuestion && (selection.changed || mute.changed)};
}

// ---- sources

static int Sources(uint32_t destinationType, MixerSource* sources, int size) {
    const HMIXEROBJ mixer = OpenHandle();
    MIXERLINEA destination;
    if (!FindDestination(mixer, destinationType, &destination)) return 0;
    const auto count = static_cast<int>(std::min<DWORD>(destination.cConnections, INT_MAX));
    for (int i = 0; i < std::min(count, size); ++i) {
        MIXERLINEA line = {};
        line.dwDestination = destination.dwDestination;
        line.dwSource = static_cast<DWORD>(i);
        if (!FindLine(mixer, MIXER_GETLINEINFOF_SOURCE, &line)) return 0;
        line.szName[sizeof line.szName - 1] = 0;
        sources[i].lineId = line.dwLineID;
        CopyText(sources[i].name, line.szName);
    }
    return count;
}

// ---- opening and closing

static void Close() {
    const HMIXER old = s_handle;
    s_handle = nullptr;
    if (old) Good(mixerClose(old));
}

int OpenMixerDevice(UINT index, HWND window) {
    HMIXER handle = nullptr;
    if (!Good(mixerOpen(&handle, index, reinterpret_cast<DWORD_PTR>(window), 0, CALLBACK_WINDOW)))
        return 0;
    const HMIXER old = s_handle;
    s_handle = handle;
    if (old) Good(mixerClose(old));
    return 1;
}

int CountMixerDevices() {
    return static_cast<int>(std::min<UINT>(mixerGetNumDevs(), INT_MAX));
}

int MixerDeviceName(int index, char* name, int size) {
    MIXERCAPSA caps = {};
    if (!Good(mixerGetDevCapsA(static_cast<UINT>(index), &caps, sizeof caps))) return 0;
    caps.szPname[sizeof caps.szPname - 1] = 0;
    CopyText(name, static_cast<size_t>(size), caps.szPname);
    return 1;
}

const MixerBackend kDeviceBackend = {Sources,  LineVolume, Master, HasMaster,
                                     MasterOn, SourceOn,   Close};
