// Answers to MCI_STATUS, MCI_INFO and MCI_GETDEVCAPS. Modes and truths go out as a pair, number
// and text resource, which the system takes apart for callers by message and by text.
#include "discdrive/drive_win.h"

static LRESULT Resource(DWORD_PTR* to, uint32_t value, uint32_t text) {
    *to = static_cast<DWORD_PTR>(MAKEMCIRESOURCE(value, text));
    return MCI_RESOURCE_RETURNED;
}

static LRESULT Truth(DWORD_PTR* to, int value) {
    return Resource(to, value ? TRUE : FALSE, value ? MCI_TRUE : MCI_FALSE);
}

static LRESULT TimeKind(TimeFormat format, int position) {
    if (format == kTimeMs) return 0;
    return position && format == kTimeTmsf ? MCI_COLONIZED4_RETURN : MCI_COLONIZED3_RETURN;
}

static LRESULT AnswerFormat(TimeFormat format, DWORD_PTR* to) {
    const uint32_t text = format == kTimeTmsf  ? MCI_FORMAT_TMSF_S
                          : format == kTimeMsf ? MCI_FORMAT_MSF_S
                                               : MCI_FORMAT_MILLISECONDS_S;
    return Resource(to, format, text);
}

// Items that need a disc. `track`: null when none is asked for.
static LRESULT AnswerDisc(const DriveView& view, TimeFormat format, DWORD flags, DWORD item,
                          const DiscTrack* track, DWORD_PTR* to) {
    const Disc& disc = view.told->disc;
    const uint32_t first = disc.tracks.empty() ? disc.end : disc.tracks[0].start;
    switch (item) {
    case MCI_STATUS_NUMBER_OF_TRACKS: *to = disc.tracks.size(); return 0;
    case MCI_STATUS_CURRENT_TRACK: *to = TrackAt(disc, view.frame); return 0;
    case MCI_STATUS_LENGTH:
        *to = TellLength(format, track ? track->length : disc.end - first);
        return TimeKind(format, 0);
    case MCI_STATUS_POSITION:
        if (track && (flags & MCI_STATUS_START)) return MCIERR_FLAGS_NOT_COMPATIBLE;
        *to = TellPosition(disc, format,
                           track                        ? track->start
                           : (flags & MCI_STATUS_START) ? first
                                                        : view.frame);
        return TimeKind(format, 1);
    case MCI_CDA_STATUS_TYPE_TRACK: {
        if (!track) return MCIERR_MISSING_PARAMETER;
        const uint32_t type = track->audio ? MCI_CDA_TRACK_AUDIO : MCI_CDA_TRACK_OTHER;
        return Resource(to, type, type);
    }
    }
    return MCIERR_UNSUPPORTED_FUNCTION;
}

LRESULT AnswerStatus(const DriveOpen& open, DWORD flags, MCI_STATUS_PARMS* parms) {
    if (!parms) return MCIERR_NULL_PARAMETER_BLOCK;
    if (!(flags & MCI_STATUS_ITEM)) return MCIERR_MISSING_PARAMETER;
    const DriveView view = ViewDrive();
    const DWORD item = parms->dwItem;
    switch (item) {
    case MCI_STATUS_MODE: return Resource(&parms->dwReturn, view.mode, view.mode);
    case MCI_STATUS_MEDIA_PRESENT:
    case MCI_STATUS_READY: return Truth(&parms->dwReturn, view.ready);
    case MCI_STATUS_TIME_FORMAT: return AnswerFormat(open.format, &parms->dwReturn);
    }
    if (!view.ready || !view.told) return MCIERR_HARDWARE;
    const auto& tracks = view.told->disc.tracks;
    // A track that goes with a question about the whole disc is passed over, even a wrong one.
    const int perTrack = item == MCI_STATUS_LENGTH || item == MCI_STATUS_POSITION ||
                         item == MCI_CDA_STATUS_TYPE_TRACK;
    const DiscTrack* track = nullptr;
    if ((flags & MCI_TRACK) && perTrack) {
        if (parms->dwTrack < 1 || parms->dwTrack > tracks.size()) return MCIERR_OUTOFRANGE;
        track = &tracks[parms->dwTrack - 1];
    }
    return AnswerDisc(view, open.format, flags, item, track, &parms->dwReturn);
}

LRESULT AnswerInfo(DWORD flags, MCI_INFO_PARMSW* parms) {
    if (!parms || !parms->lpstrReturn || !parms->dwRetSize) return MCIERR_NULL_PARAMETER_BLOCK;
    std::wstring text;
    if (flags & MCI_INFO_PRODUCT) {
        text = L"Tonvista Disc Drive";
    } else if (flags & MCI_INFO_MEDIA_UPC) {
        return MCIERR_NO_IDENTITY;
    } else if (flags & MCI_INFO_MEDIA_IDENTITY) {
        const DriveView view = ViewDrive();
        if (!view.ready || !view.told) return MCIERR_HARDWARE;
        text = std::to_wstring(DiscIdentity(view.told->disc));
    } else {
        return MCIERR_MISSING_PARAMETER;
    }
    const size_t room = parms->dwRetSize - 1;
    const size_t n = text.size() < room ? text.size() : room;
    text.copy(parms->lpstrReturn, n);
    parms->lpstrReturn[n] = 0;
    return n < text.size() ? MCIERR_PARAM_OVERFLOW : 0;
}

LRESULT AnswerCapabilities(DWORD flags, MCI_GETDEVCAPS_PARMS* parms) {
    if (!parms) return MCIERR_NULL_PARAMETER_BLOCK;
    if (!(flags & MCI_GETDEVCAPS_ITEM)) return MCIERR_MISSING_PARAMETER;
    // A DWORD here, where MCI_STATUS has a DWORD_PTR.
    DWORD_PTR answer = 0;
    LRESULT result;
    switch (parms->dwItem) {
    case MCI_GETDEVCAPS_DEVICE_TYPE:
        result = Resource(&answer, MCI_DEVTYPE_CD_AUDIO, MCI_DEVTYPE_CD_AUDIO);
        break;
    case MCI_GETDEVCAPS_CAN_EJECT:
    case MCI_GETDEVCAPS_CAN_PLAY:
    case MCI_GETDEVCAPS_HAS_AUDIO: result = Truth(&answer, 1); break;
    case MCI_GETDEVCAPS_CAN_RECORD:
    case MCI_GETDEVCAPS_CAN_SAVE:
    case MCI_GETDEVCAPS_COMPOUND_DEVICE:
    case MCI_GETDEVCAPS_HAS_VIDEO:
    case MCI_GETDEVCAPS_USES_FILES: result = Truth(&answer, 0); break;
    default: return MCIERR_UNSUPPORTED_FUNCTION;
    }
    parms->dwReturn = static_cast<DWORD>(answer);
    return result;
}
