// Component threads under the real system: start, stop, faults of every kind in every place, a
// component that asks its owner something while the owner waits.
#include "core/component_win.h"
#include "core/commands.h"
#include "core/settings.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace {
enum Fault { kRead, kDivide, kThrow, kFaults };
enum Place { kNowhere, kInOpen, kInCreate, kInPaint, kInClose };

constexpr UINT kMessageAsk = WM_USER + 1;

struct Trial {
    Fault fault;
    Place place;
    int closed;    // Close ran
    int destroyed; // WM_DESTROY ran
    int forgotten;
    LRESULT answer;
} s_trial;

ComponentThread s_component;
} // namespace

static void DoFault() {
    volatile int zero = 0;
    volatile int* volatile nowhere = nullptr;
    switch (s_trial.fault) {
    case kRead: zero = *nowhere; break;
    case kDivide: zero = 1000 / zero; break;
    default: throw std::runtime_error("trial");
    }
}

static LRESULT TrialProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        if (s_trial.place == kInCreate) DoFault();
        return 0;
    case WM_PAINT:
        if (s_trial.place == kInPaint) DoFault();
        break;
    case WM_CLOSE:
        if (s_trial.answer == -1)
            s_trial.answer = SendMessageA(s_component.Owner, kMessageAsk, 0, 0);
        DestroyWindow(window);
        PostQuitMessage(0);
        return 0;
    case WM_DESTROY: s_trial.destroyed = 1; return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

static int OpenTrial(ComponentThread* component) {
    if (s_trial.place == kInOpen) DoFault();
    component->Window = CreateHiddenWindow(component->Instance, "TrialWindowClass", "Trial",
                                           GuardedProc<TrialProc>);
    return component->Window != nullptr;
}

static void CloseTrial(ComponentThread*) {
    s_trial.closed = 1;
    if (s_trial.place == kInClose) DoFault();
}

static LRESULT OwnerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kMessageAsk) return 42;
    return DefWindowProcA(window, message, wParam, lParam);
}

namespace {
class ComponentTest : public testing::Test {
protected:
    void SetUp() override {
        s_trial = {};
        s_component = {};
        s_component.title = "Trial";
        s_component.windowId = 2;
        s_component.Open = OpenTrial;
        s_component.Close = CloseTrial;
        s_component.Forget = [](ComponentThread*) { s_trial.forgotten = 1; };
        owner = CreateHiddenWindow(GetModuleHandleA(nullptr), "OwnerWindowClass", "Owner",
                                   GuardedProc<OwnerProc>);
    }
    void TearDown() override {
        StopComponentThread(&s_component);
        DestroyWindow(owner);
    }
    int Start() { return StartComponentThread(&s_component, GetModuleHandleA(nullptr), owner); }
    // The component-closed notice, within the given time.
    int WaitClosed(DWORD waitMs) {
        const DWORD start = GetTickCount();
        while (GetTickCount() - start < waitMs) {
            MSG message;
            while (PeekMessageA(&message, owner, 0, 0, PM_REMOVE)) {
                if (message.message == WM_COMMAND && message.wParam == kComponentClosed)
                    return static_cast<int>(message.lParam);
                DispatchMessageA(&message);
            }
            Sleep(5);
        }
        return 0;
    }
    HWND owner = nullptr;
};
} // namespace

TEST_F(ComponentTest, StartsStopsAndStartsAgain) {
    for (int round = 0; round < 2; ++round) {
        s_trial.answer = -1;
        ASSERT_EQ(Start(), 1);
        EXPECT_EQ(Start(), 0) << "it already runs";
        EXPECT_TRUE(ComponentIsOn(&s_component));
        EXPECT_EQ(StopComponentThread(&s_component), 1);
        EXPECT_FALSE(ComponentIsOn(&s_component));
        EXPECT_FALSE(ComponentThreadEnded(&s_component)) << "a stopped one has no notice due";
        EXPECT_TRUE(s_trial.closed && !s_trial.forgotten);
        EXPECT_EQ(s_trial.answer, 42) << "its owner answers while it waits";
    }
}

TEST_F(ComponentTest, FaultsEndTheComponentAlone) {
    for (int place = kInOpen; place <= kInClose; ++place) {
        for (int fault = kRead; fault < kFaults; ++fault) {
            SCOPED_TRACE(testing::Message() << "place " << place << " fault " << fault);
            SetUp();
            s_trial.place = static_cast<Place>(place);
            s_trial.fault = static_cast<Fault>(fault);
            WriteRegString(kUserRoot, kSettingsRoot, "LastException", "");
            const int started = Start();
            char text[64] = "";
            if (place == kInOpen || place == kInCreate) {
                EXPECT_EQ(started, 0);
            } else {
                ASSERT_EQ(started, 1);
                const HWND window = s_component.Window;
                DWORD_PTR answer;
                if (place == kInPaint)
                    SendMessageTimeoutA(window, WM_PAINT, 0, 0, 0, 3000, &answer);
                if (place == kInClose) PostMessageA(window, WM_CLOSE, 0, 0);
                EXPECT_EQ(WaitClosed(3000), 2);
                EXPECT_TRUE(ComponentThreadEnded(&s_component));
                EXPECT_TRUE(s_trial.closed && s_trial.destroyed);
                StopComponentThread(&s_component);
            }
            EXPECT_TRUE(s_trial.forgotten) << "its clean-up may have been cut off";
            ReadRegString(kUserRoot, kSettingsRoot, "LastException", text, sizeof text);
            EXPECT_STREQ(text, "Trial");
            TearDown();
        }
    }
    SetUp();
    EXPECT_EQ(Start(), 1) << "and it can be switched on again";
}

static INT_PTR FaultyDialog(HWND, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) DoFault();
    return FALSE;
}

TEST_F(ComponentTest, DialogOfTheConsolesThreadIsClosedByAFault) {
    const struct {
        DLGTEMPLATE head;
        WORD noMenuClassTitle[3];
    } box = {{WS_POPUP, 0, 0, 0, 0, 10, 10}, {}};
    EXPECT_EQ(DialogBoxIndirectParamA(nullptr, &box.head, owner, GuardedDialog<FaultyDialog>, 0),
              IDCANCEL);
}
