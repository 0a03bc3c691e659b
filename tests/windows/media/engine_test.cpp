// The engine over the platform's own graphs: real files, heard at the output, and graphs of which
// one call is broken.
#include "media/engine_win.h"

#include "beside.h"
#include "core/commands.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "media/graph_win.h"
#include "tests/support/capture_win.h"
#include "tests/support/wave_file.h"
#include "waves/engine_win.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

constexpr UINT kSpeaks = WM_APP + 1;
constexpr int kWavFrames = 66150; // 1.5 s
static const std::string kWav = "C:\\stairs.wav", kMp3 = "tests\\windows\\media\\tone.mp3";

static std::string s_capture; // what the Waves engine was told
static IGraphBuilder* s_graph;
static const MediaPlatform kPlatform = TheMediaPlatform;

static LRESULT CALLBACK Listen(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_COMMAND) return DefWindowProcA(window, message, wParam, lParam);
    s_capture += wParam == kWavesOpen ? "+" : wParam == kWavesClose ? "-" : "?";
    return 1;
}

static std::string Word() {
    char word[64] = "";
    ReadRegString(kUserRoot, kSettingsRoot, "LastLogLocation", word, sizeof word);
    return word;
}

// They climb by one every 10 frames, so that each tells its time.
static std::vector<int16_t> Stairs(int begin, int end) {
    std::vector<int16_t> samples;
    for (int frame = begin; frame < end; ++frame)
        samples.insert(samples.end(), 2, static_cast<int16_t>(1 + frame / 10));
    return samples;
}

static void WriteStairs(const std::string& path, int frames) {
    const std::vector<int16_t> samples = Stairs(0, frames);
    const auto* bytes = reinterpret_cast<const uint8_t*>(samples.data());
    WriteWaveFile(path, FormatOfCode(kDefaultFormatCode), {bytes, bytes + 4 * frames});
}

namespace {
class MediaEngine : public testing::Test {
protected:
    void SetUp() override {
        ExtractorBeside();
        SharedBlock = OpenSharedBlock();
        TheMediaPlatform.CreateGraph = [](IGraphBuilder** graph) {
            const HRESULT result = kPlatform.CreateGraph(graph);
            s_graph = *graph;
            return result;
        };
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Listen));
        ShowWavesEngine(window);
        NotifyMediaWindow(window, kSpeaks);
        WriteStairs(kWav, kWavFrames);
    }
    void TearDown() override {
        ReleaseMediaGraph();
        TheMediaPlatform = kPlatform;
        ShowWavesEngine(nullptr);
        DestroyWindow(window);
        CloseSharedBlock(SharedBlock);
        SharedBlock = nullptr;
        DeleteFileA(kWav.c_str());
    }
    static void ShowWavesEngine(HWND window) { // one that is on where there is a window
        WavesEngineThread()->Window = window;
        WavesEngineThread()->Running = window != nullptr;
        WavesEngineThread()->Thread = window ? GetCurrentThread() : nullptr;
    }
    // What one operation answered, traced and told the Waves engine.
    static std::string After(const std::function<int()>& Operation) {
        s_capture.clear();
        const int result = Operation();
        return std::to_string(result) + " " + Word() + " " + s_capture;
    }
    bool Ends() const { // by the graph's own message
        return WaitUntil([this] {
            MSG message;
            return PeekMessageA(&message, window, kSpeaks, kSpeaks, PM_REMOVE) && MediaHasEnded();
        });
    }
    static double Position() {
        double duration, position;
        GetMediaPosition(&duration, &position);
        return position;
    }
    const HWND window =
        CreateWindowA("STATIC", "", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

// Replaces one call of an object as long as it lives.
struct Broken {
    static constexpr int kCalls = 18;
    template <typename... Arguments> static HRESULT STDMETHODCALLTYPE Refuse(void*, Arguments...) {
        return E_FAIL;
    }
    Broken(IUnknown* broken, int call, void* Function)
        : object(reinterpret_cast<void***>(broken)), kept(*object) {
        std::copy(kept, kept + kCalls, table);
        table[call] = Function;
        *object = table;
    }
    ~Broken() { *object = kept; }
    void ***object, **kept, *table[kCalls];
};
} // namespace

// A graph that stands only after it was asked four times: at how many of them before that the
// analysis was still there.
static int s_early;
static HRESULT STDMETHODCALLTYPE StopsSlowly(IMediaControl*, long, OAFilterState* state) {
    static int s_asked;
    const int stands = ++s_asked % 4 == 0;
    s_early += !stands && SharedBlock->PowerLeft != 0;
    *state = stands ? State_Stopped : State_Paused;
    return stands ? S_OK : HRESULT(VFW_S_STATE_INTERMEDIATE);
}

TEST_F(MediaEngine, EveryOperationTracesAndSwitchesCapture) {
    const auto Load = [] { return LoadMediaFile(kWav.c_str()); };
    const auto Seek = [] { return SeekMediaToSecond(0.2); };
    const auto Where = [] {
        double duration = 7, position = 7;
        const int result = GetMediaPosition(&duration, &position);
        return result && (s_graph ? duration == 1.5 : !duration && !position);
    };
    const auto Release = [] { return ReleaseMediaGraph(), s_graph = nullptr, 1; };
    const auto Missing = [] { return LoadMediaFile("C:\\missing.wav"); };
    const auto Forget = [] { return ForgetMediaGraph(), 1; };
    const auto Refuse = [](auto... arguments) {
        return reinterpret_cast<void*>(Broken::Refuse<decltype(arguments)...>);
    };
    void *const none = nullptr, *const noQuery = Refuse(none, none);
    const struct {
        std::function<int()> Operation;
        const char* after;
        const IID* broken = nullptr; // of this interface the call of that number
        int call = 0;
        void* Function = nullptr;
    } steps[] = {
        {Release, "1 GCPI1 +"}, // the word is that of the step before the first
        {StopMediaPlay, "1 StopPlay1 "},
        {BeginMediaPlay, "0 BeginPlay1 "},
        {ToggleMediaPause, "0 TogglePause1 "},
        {Seek, "0 SeekToSecond1 "},
        {Where, "1 GCPI1 "},
        {Load, "1 LoadFile Success +-"},
        {BeginMediaPlay, "1 BeginPlay Success -"},
        {Where, "1 GCPI Success "},
        {ToggleMediaPause, "1 TogglePayse Success "},
        {ToggleMediaPause, "1 BeginPlay Success -"},
        {Seek, "1 SeekToSecond Success "},
        {BeginMediaPlay, "0 BeginPlay2 -+", &IID_IMediaControl, 7, Refuse()},
        {ToggleMediaPause, "0 TogglePause2 ", &IID_IMediaControl, 8, Refuse()},
        {StopMediaPlay, "0 StopPlay2 ", &IID_IMediaControl, 15, Refuse()},
        {StopMediaPlay, "0 StopPlay3 ", &IID_IGraphBuilder, 0, noQuery},
        {StopMediaPlay, "0 StopPlay4 ", &IID_IMediaPosition, 8, Refuse(0.0)},
        {Seek, "0 SeekToSecond2 ", &IID_IGraphBuilder, 0, noQuery},
        {Seek, "0 SeekToSecond3 ", &IID_IMediaPosition, 8, Refuse(0.0)},
        {Where, "0 GCPI2 ", &IID_IGraphBuilder, 0, noQuery},
        {Where, "0 GCPI3 ", &IID_IMediaPosition, 7, Refuse(none)},
        {Where, "0 GCPI4 ", &IID_IMediaPosition, 9, Refuse(none)},
        {StopMediaPlay, "1 StopPlay Success +"},
        {BeginMediaPlay, "1 BeginPlay Success -"},
        {Load, "1 LoadFile Success ++-"},
        {Missing, "0 LoadFile3 ++-"},
        {Release, "1 LoadFile3 +"},
        {Load, "1 LoadFile Success +-"},
        {BeginMediaPlay, "1 BeginPlay Success -"},
        {Forget, "1 BeginPlay Success +"}, // of a killed thread: nobody could stop it any more
    };
    Where();
    for (const auto& step : steps) {
        IUnknown* object = nullptr;
        if (step.broken) s_graph->QueryInterface(*step.broken, reinterpret_cast<void**>(&object));
        std::optional<Broken> broken;
        if (object) broken.emplace(object, step.call, step.Function);
        EXPECT_EQ(After(step.Operation), step.after) << &step - steps;
        broken.reset();
        ReleaseCom(&object);
    }
    IMediaControl* control = nullptr;
    s_graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&control));
    EXPECT_TRUE(WaitUntil([&] {
        OAFilterState state = State_Running;
        return control->GetState(0, &state) == S_OK && state == State_Stopped;
    }));
    ReleaseCom(&control);

    TheMediaPlatform.CreateExtractor = [](IBaseFilter**) { return E_FAIL; };
    EXPECT_EQ(After(Load), "1 LoadFile Success +-") << "played without";
    TheMediaPlatform.CreateExtractor = [](IBaseFilter** filter) { // any, for a graph without room
        new Broken(s_graph, 3, reinterpret_cast<void*>(Broken::Refuse<void*, void*>));
        return CoCreateInstance(CLSID_DSoundRender, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                reinterpret_cast<void**>(filter));
    };
    EXPECT_EQ(After(Load), "0 LoadFile2 ++");
    TheMediaPlatform.CreateGraph = [](IGraphBuilder**) { return E_FAIL; };
    EXPECT_EQ(After(Load), "0 LoadFile1 +");
    EXPECT_EQ(CheckMediaSupport(), 1);
    TheMediaPlatform = kPlatform;
    EXPECT_EQ(CheckMediaSupport(), 0);
}

TEST_F(MediaEngine, PlaysFromTheSoughtPlaceToTheEndAndAgain) {
    const std::vector<int16_t> wanted = Stairs(44100, kWavFrames);
    size_t matched = 0;
    for (int i = 0; i < 5 && matched < wanted.size(); ++i) { // a busy server puts silence between
        ASSERT_TRUE(LoadMediaFile(kWav.c_str()));
        Capture sound;
        ASSERT_TRUE(BeginMediaPlay() && ToggleMediaPause() && SeekMediaToSecond(1));
        EXPECT_FALSE(SeekMediaToSecond(NAN));
        EXPECT_TRUE(Ends());
        EXPECT_EQ(Position(), 1.5);
        matched = MatchLength(sound.Stop(), wanted.data(), wanted.size());
    }
    EXPECT_EQ(matched, wanted.size());
    ASSERT_TRUE(StopMediaPlay());
    EXPECT_EQ(Position(), 0);
    ASSERT_TRUE(BeginMediaPlay() && SeekMediaToSecond(99)) << "beyond the end is the end";
    EXPECT_TRUE(WaitUntil([] { return Position() == 1.5; }));
    Sleep(200); // the graph has said so, and nobody has listened
    ASSERT_TRUE(SeekMediaToSecond(0.1));
    EXPECT_FALSE(MediaHasEnded());
    EXPECT_TRUE(Ends());

    ASSERT_TRUE(LoadMediaFile(kMp3.c_str()) && BeginMediaPlay());
    EXPECT_TRUE(Ends());
    EXPECT_NEAR(Position(), 0.9, 0.02);
}

TEST_F(MediaEngine, PauseAndStopEmptyTheAnalysisAlone) {
    const auto Fill = [] { memset(&SharedBlock->PowerLeft, 7, sizeof(SharedControlBlock) - 12); };
    SharedControlBlock wanted = *SharedBlock;
    memset(&wanted.PowerLeft, 7, sizeof(SharedControlBlock) - 12);
    wanted.PowerLeft = wanted.PowerRight = 0;
    memset(wanted.BandsLeft, 0, 128); // the right ones follow
    memset(wanted.SoundBuffer, 0, sizeof wanted.SoundBuffer);
    TheMediaPlatform.CreateExtractor = [](IBaseFilter**) { return E_FAIL; };
    ASSERT_TRUE(LoadMediaFile(kWav.c_str()) && BeginMediaPlay());
    Fill();
    ASSERT_TRUE(ToggleMediaPause());
    EXPECT_EQ(memcmp(SharedBlock, &wanted, sizeof wanted), 0);

    IMediaControl* control = nullptr;
    ASSERT_EQ(s_graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&control)), S_OK);
    s_early = 0;
    Fill();
    {
        const Broken slow(control, 10, reinterpret_cast<void*>(StopsSlowly));
        ASSERT_TRUE(StopMediaPlay());
    }
    control->Release();
    EXPECT_EQ(s_early, 3) << "emptied while sound could still be published";
    EXPECT_EQ(memcmp(SharedBlock, &wanted, sizeof wanted), 0);
    memset(&SharedBlock->PowerLeft, 0, sizeof(SharedControlBlock) - 12);
}

TEST_F(MediaEngine, ExtractorFromTheFileBesideOrByItsClass) {
    const auto IsInGraph = [] {
        IBaseFilter* filter = nullptr;
        const HRESULT found = s_graph->FindFilterByName(L"AudioDataExtractorIP", &filter);
        ReleaseCom(&filter);
        return found == S_OK;
    };
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
    ASSERT_TRUE(LoadMediaFile(kWav.c_str()));
    EXPECT_TRUE(IsInGraph());

    const char* const elsewhere = "C:\\elsewhere.dll";
    const std::string server = std::string(kExtractorClassKey) + "\\InprocServer32";
    ASSERT_TRUE(CopyFileA(ExtractorBeside().c_str(), elsewhere, FALSE));
    WriteRegString(kClassesRoot, server.c_str(), "", elsewhere);
    ASSERT_TRUE(LoadMediaFile(kWav.c_str()));
    EXPECT_TRUE(IsInGraph() && GetModuleHandleA(elsewhere));
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
    ReleaseMediaGraph();
    DeleteFileA(elsewhere);
}

TEST_F(MediaEngine, FilesThatAreNone) {
    const std::string prose = "C:\\prose.mp3", head = "C:\\head.wav", cut = "C:\\cut.mp3";
    WriteFileBytes(prose, std::string(30000, 'x').data(), 30000);
    WriteStairs(head, 0);
    char bytes[1383]; // half of it
    FILE* whole = fopen(kMp3.c_str(), "rb");
    ASSERT_TRUE(whole) << "run from the root of the sources";
    WriteFileBytes(cut, bytes, fread(bytes, 1, sizeof bytes, whole));
    fclose(whole);
    const std::string before = Word();
    EXPECT_NEAR(MediaFileDuration(kMp3.c_str()), 0.9, 0.02);
    EXPECT_EQ(MediaFileDuration(kWav.c_str()), 1.5);
    EXPECT_EQ(Word(), before);
    for (const std::string& path :
         {prose, std::string(), std::string("C:\\"), std::string(400, 'a') + ".wav"}) {
        EXPECT_EQ(MediaFileDuration(path.c_str()), 0) << path;
        EXPECT_EQ(After([&] { return LoadMediaFile(path.c_str()); }).substr(0, 11), "0 LoadFile3")
            << path;
    }
    for (const std::string& path : {cut, head}) { // play for as long as they can
        if (!LoadMediaFile(path.c_str())) continue;
        EXPECT_TRUE(BeginMediaPlay() && Ends()) << path;
        EXPECT_LT(Position(), 0.9);
    }
    for (const std::string& path : {prose, head, cut})
        DeleteFileA(path.c_str());
}
