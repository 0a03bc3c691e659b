// The engine's configuration dialog: what to capture from, how, and how much of it is analysed.
#include "core/commands.h"
#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/settings_dialog_win.h"
#include "waves/engine_win.h"
#include "waves/loopback_win.h"
#include "waves/settings_win.h"
#include "waves/wave_in_win.h"

#include <windowsx.h>

constexpr int kNameMax = 128;
constexpr int kAllFormats = 0xFFF;

// ---- lists: each entry carries its number

static int AddEntry(HWND list, const char* text, uint32_t number) {
    const int index = ComboBox_AddString(list, text);
    if (index < 0) return 0;
    ComboBox_SetItemData(list, index, number);
    return 1;
}

static int AddText(HWND list, UINT id, uint32_t number) {
    char text[kStringMax];
    LoadText(id, text);
    return AddEntry(list, text, number);
}

static uint32_t NumberOf(HWND list, int index) {
    return static_cast<uint32_t>(ComboBox_GetItemData(list, index));
}

static void SelectNumber(HWND list, uint32_t number) {
    int index = ComboBox_GetCount(list) - 1;
    while (index > 0 && NumberOf(list, index) != number)
        --index;
    ComboBox_SetCurSel(list, index);
}

// ---- filling them

static int FillDevices(HWND list, uint16_t current) {
    char name[kNameMax];
    int found = 0;
    const int inputs = CountWaveIn();
    for (int i = 0; i < inputs; ++i)
        if (WaveInName(i, name, sizeof name)) found += AddEntry(list, name, i);
    const int outputs = CountLoopback();
    uint16_t device = 0;
    for (int i = 0; i < outputs; ++i)
        if (LoopbackName(i, name, sizeof name, &device)) found += AddEntry(list, name, device);
    if (!found) AddText(list, IDS_WAVES_NO_DEVICE, 0);
    SelectNumber(list, current);
    return found;
}

static void FillFormats(HWND list, uint16_t device, uint32_t current) {
    ComboBox_ResetContent(list);
    const uint32_t able = device >= kLoopbackDefault ? kAllFormats : WaveInFormats(device);
    for (int i = 0; i < kFormatCount; ++i)
        if (able & kFormatCodes[i]) AddText(list, IDS_WAVES_FORMATS + i, kFormatCodes[i]);
    SelectNumber(list, current);
}

static HWND DeviceList(HWND dialog) {
    return GetDlgItem(dialog, IDC_WAVES_DEVICE);
}
static HWND FormatList(HWND dialog) {
    return GetDlgItem(dialog, IDC_WAVES_FORMAT);
}
static HWND FftList(HWND dialog) {
    return GetDlgItem(dialog, IDC_WAVES_FFT);
}

static void FillDialog(HWND dialog) {
    const WavesSettings settings = LoadWavesSettings();
    if (FillDevices(DeviceList(dialog), settings.device)) {
        const uint32_t device =
            NumberOf(DeviceList(dialog), ComboBox_GetCurSel(DeviceList(dialog)));
        FillFormats(FormatList(dialog), static_cast<uint16_t>(device), settings.format);
    } else { // only texts, which OK does not store
        AddText(FormatList(dialog), IDS_WAVES_NO_FORMATS, 0);
        ComboBox_SetCurSel(FormatList(dialog), 0);
        EnableWindow(DeviceList(dialog), FALSE);
        EnableWindow(FormatList(dialog), FALSE);
    }
    for (int i = 0; i < kFftChoices; ++i)
        AddText(FftList(dialog), IDS_WAVES_FFT + i, i);
    SelectNumber(FftList(dialog), LoadFftChoice());
}

// ---- what the user does

static void OnDeviceChosen(HWND dialog) {
    const int device = ComboBox_GetCurSel(DeviceList(dialog));
    if (device < 0) return;
    FillFormats(FormatList(dialog), static_cast<uint16_t>(NumberOf(DeviceList(dialog), device)),
                LoadWavesSettings().format);
}

static void StoreSource(const WavesSettings& settings) {
    const LPARAM argument = MAKELPARAM(settings.device, settings.format);
    if (!PostWavesCommand(kWavesReconfigure, argument)) StoreWavesSettings(settings);
}

static void OnOk(HWND dialog) {
    const HWND devices = DeviceList(dialog), formats = FormatList(dialog);
    const int device = ComboBox_GetCurSel(devices), format = ComboBox_GetCurSel(formats);
    if (device < 0 || format < 0) {
        ComboBox_SetCurSel(formats, 0);
        return;
    }
    StoreFftChoice(ComboBox_GetCurSel(FftList(dialog)));
    PostWavesCommand(kWavesFftChoice, 0);
    if (IsWindowEnabled(devices))
        StoreSource({static_cast<uint16_t>(NumberOf(devices, device)), NumberOf(formats, format)});
    EndDialog(dialog, IDOK);
}

// One at a time, whoever asks: the icon's menu opens over a disabled console, too.
static HWND s_dialog;

static INT_PTR ConfigDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) {
        s_dialog = dialog;
        FillDialog(dialog);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(wParam)) {
    case IDC_WAVES_DEVICE:
        if (HIWORD(wParam) == CBN_SELENDOK || HIWORD(wParam) == CBN_SELCHANGE)
            OnDeviceChosen(dialog);
        return TRUE;
    case IDOK: OnOk(dialog); return TRUE;
    case IDCANCEL: EndDialog(dialog, IDCANCEL); return TRUE;
    default: return FALSE;
    }
}

void ConfigureWaves(HWND owner) {
    if (IsWindow(s_dialog)) {
        SetForegroundWindow(s_dialog);
        return;
    }
    ShowSettingsDialog(IDD_WAVES_CONFIG, owner, GuardedDialog<ConfigDialog>);
    s_dialog = nullptr;
}
