// The engine over the platform's own graphs: real files, heard at the output, and graphs of which
// one call is broken.
#include "media/engine_win.h"

#include "beside.h"
#include "core/commands.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "media/graph_win.h"
#include "tests/support/capture_win.h"
#include "waves/engine_win.h"
#include "waves/format.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

constexpr UINT kSpeaks = WM_APP + 1;
static const std::string kWav = "C:\\stairs.wav", kMp3 = "tests\\windows\\media\\tone.mp3";

static std::string s_capture; // what the Waves engine was told
static IGraphBuilder* s_graph;
static WNDPROC s_wavesProc;
static const MediaPlatform kPlatform = TheMediaPlatform;

static LRESULT CALLBACK Listen(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_COMMAND) return CallWindowProcA(s_wavesProc, window, message, wParam, lParam);
    s_capture += wParam == kWavesOpen ? "+" : wParam == kWavesClose ? "-" : "?";
    return 1;
}

static std::string Word() {
    char word[64] = "";
    ReadRegString(kUserRoot, kSettingsRoot, "LastLogLocation", word, sizeof word);
    return word;
}

static void WriteBytes(const std::string& path, const void* bytes, size_t size) {
    FILE* file = fopen(path.c_str(), "wb");
    fwrite(bytes, 1, size, file);
    fclose(file);
}

// A WAV whose samples climb by one every 10 frames, so that each tells its time.
static void WriteStairs(const std::string& path, double seconds) {
    std::vector<uint8_t> bytes(44);
    const uint32_t frames = static_cast<uint32_t>(seconds * 44100), size = frames * 4;
    const SoundFormatRecord format = FormatOfCode(kDefaultFormatCode);
    const uint32_t whole = size + 36, sixteen = 16;
    memcpy(&bytes[0], "RIFF", 4), memcpy(&bytes[4], &whole, 4);
    memcpy(&bytes[8], "WAVEfmt ", 8), memcpy(&bytes[16], &sixteen, 4);
    memcpy(&bytes[20], &format, 16), memcpy(&bytes[36], "data", 4), memcpy(&bytes[40], &size, 4);
    for (uint32_t i = 0; i < 2 * frames; ++i) {
        bytes.push_back(static_cast<uint8_t>(1 + i / 20));
        bytes.push_back(static_cast<uint8_t>((1 + i / 20) >> 8));
    }
    WriteBytes(path, bytes.data(), bytes.size());
}

namespace {
class MediaEngine : public testing::Test {
protected:
    void SetUp() override {
        ExtractorBeside();
        SharedBlock = OpenSharedBlock();
        ASSERT_TRUE(StartComponentThread(WavesEngineThread(), GetModuleHandleA(nullptr), nullptr));
        s_wavesProc = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(
            WavesEngineThread()->Window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Listen)));
        TheMediaPlatform.CreateGraph = [](IGraphBuilder** graph) {
            const HRESULT result = kPlatform.CreateGraph(graph);
            s_graph = *graph;
            return result;
        };
        window =
            CreateWindowA("STATIC", "", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr);
        NotifyMediaWindow(window, kSpeaks);
        WriteStairs(kWav, 1.5);
    }
    void TearDown() override {
        ReleaseMediaGraph();
        TheMediaPlatform = kPlatform;
        DestroyWindow(window);
        StopComponentThread(WavesEngineThread());
        CloseSharedBlock(SharedBlock);
        SharedBlock = nullptr;
        DeleteFileA(kWav.c_str());
    }
    // What one operation answered, traced and told the Waves engine.
    static std::string After(const std::function<int()>& Operation) {
        s_capture.clear();
        const int result = Operation();
        return std::to_string(result) + " " + Word() + " " + s_capture;
    }
    bool Ends() const { // by the graph's own message
        for (int i = 0; i < 100; ++i) {
            MSG message;
            while (PeekMessageA(&message, window, kSpeaks, kSpeaks, PM_REMOVE))
                if (MediaHasEnded()) return true;
            Sleep(50);
        }
        return false;
    }
    static double Position() {
        double duration, position;
        GetMediaPosition(&duration, &position);
        return position;
    }
    HWND window;
};

// Refuses one call of an object as long as it lives.
struct Broken {
    static constexpr int kCalls = 18;
    template <typename... Arguments> static HRESULT STDMETHODCALLTYPE Refuse(void*, Arguments...) {
        return E_FAIL;
    }
    static HRESULT STDMETHODCALLTYPE NoPosition(IUnknown* object, REFIID id, void** result) {
        if (id == IID_IMediaPosition) return E_NOINTERFACE;
        return reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(IUnknown*, REFIID, void**)>(s_query)(
            object, id, result);
    }
    Broken(IUnknown* broken, int call, void* Function)
        : object(reinterpret_cast<void***>(broken)), kept(*object) {
        std::copy(kept, kept + kCalls, table);
        if (!call) s_query = kept[0];
        table[call] = Function;
        *object = table;
    }
    ~Broken() { *object = kept; }
    void ***object, **kept, *table[kCalls];
    static inline void* s_query;
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
    const struct {
        std::function<int()> Operation;
        const char* after;
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
        {StopMediaPlay, "1 StopPlay Success +"},
        {BeginMediaPlay, "1 BeginPlay Success -"},
        {Load, "1 LoadFile Success ++-"},
        {Missing, "0 LoadFile3 ++-"},
        {Release, "1 LoadFile3 +"},
    };
    Where();
    for (const auto& step : steps)
        EXPECT_EQ(After(step.Operation), step.after) << &step - steps;
}

TEST_F(MediaEngine, EachRefusedCallHasItsWord) {
    const auto Refuse = [](auto... arguments) {
        return reinterpret_cast<void*>(Broken::Refuse<decltype(arguments)...>);
    };
    const auto Seek = [] { return SeekMediaToSecond(0.5); };
    const auto Where = [] {
        double duration, position;
        return GetMediaPosition(&duration, &position);
    };
    void* const none = nullptr;
    const struct {
        const IID& object;
        int call; // in the order of the object's interface
        void* Function;
        std::function<int()> Operation;
        const char* after;
    } cases[] = {
        {IID_IMediaControl, 7, Refuse(), BeginMediaPlay, "0 BeginPlay2 -+"},
        {IID_IMediaControl, 8, Refuse(), ToggleMediaPause, "0 TogglePause2 "},
        {IID_IMediaControl, 15, Refuse(), StopMediaPlay, "0 StopPlay2 "},
        {IID_IGraphBuilder, 0, reinterpret_cast<void*>(Broken::NoPosition), StopMediaPlay,
         "0 StopPlay3 "},
        {IID_IMediaPosition, 8, Refuse(0.0), StopMediaPlay, "0 StopPlay4 "},
        {IID_IGraphBuilder, 0, reinterpret_cast<void*>(Broken::NoPosition), Seek,
         "0 SeekToSecond2 "},
        {IID_IMediaPosition, 8, Refuse(0.0), Seek, "0 SeekToSecond3 "},
        {IID_IGraphBuilder, 0, reinterpret_cast<void*>(Broken::NoPosition), Where, "0 GCPI2 "},
        {IID_IMediaPosition, 7, Refuse(none), Where, "0 GCPI3 "},
        {IID_IMediaPosition, 9, Refuse(none), Where, "0 GCPI4 "},
    };
    ASSERT_TRUE(LoadMediaFile(kWav.c_str()) && BeginMediaPlay());
    for (const auto& c : cases) {
        IUnknown* object = nullptr;
        ASSERT_EQ(s_graph->QueryInterface(c.object, reinterpret_cast<void**>(&object)), S_OK);
        {
            const Broken broken(object, c.call, c.Function);
            EXPECT_EQ(After(c.Operation), c.after);
        }
        object->Release();
    }

    const auto Load = [] { return LoadMediaFile(kWav.c_str()); };
    TheMediaPlatform.CreateExtractor = [](IBaseFilter**) { return E_FAIL; };
    EXPECT_EQ(After(Load), "1 LoadFile Success ++-") << "played without";
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
    for (int i = 0; i < 5; ++i) { // a busy sound server puts silence in between
        ASSERT_TRUE(LoadMediaFile(kWav.c_str()));
        Capture sound;
        ASSERT_TRUE(BeginMediaPlay() && ToggleMediaPause() && SeekMediaToSecond(1));
        EXPECT_FALSE(SeekMediaToSecond(NAN));
        EXPECT_TRUE(Ends());
        EXPECT_EQ(Position(), 1.5);
        const std::vector<int16_t> heard = sound.Stop();
        std::vector<int16_t> wanted;
        for (int frame = 44100; frame < 66150; ++frame)
            wanted.insert(wanted.end(), 2, static_cast<int16_t>(1 + frame / 10));
        if (MatchLength(heard, wanted.data(), wanted.size()) != wanted.size() && i < 4) continue;
        EXPECT_EQ(MatchLength(heard, wanted.data(), wanted.size()), wanted.size());
        break;
    }
    ASSERT_TRUE(StopMediaPlay());
    EXPECT_EQ(Position(), 0);
    EXPECT_FALSE(MediaHasEnded());
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
    StopComponentThread(WavesEngineThread()); // it would publish, too
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
    ASSERT_TRUE(CopyFileA(ExtractorBeside().c_str(), elsewhere, FALSE));
    HMODULE module = LoadLibraryA(elsewhere);
    const auto Register = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllRegisterServer")));
    EXPECT_EQ(Register(), S_OK);
    FreeLibrary(module);
    ASSERT_FALSE(GetModuleHandleA(elsewhere));
    ASSERT_TRUE(LoadMediaFile(kWav.c_str()));
    EXPECT_TRUE(IsInGraph() && GetModuleHandleA(elsewhere));
    DeleteRegTree(kClassesRoot, kExtractorClassKey);
    ReleaseMediaGraph();
    DeleteFileA(elsewhere);
}

TEST_F(MediaEngine, FilesThatAreNone) {
    const std::string prose = "C:\\prose.mp3", head = "C:\\head.wav", cut = "C:\\cut.mp3",
                      empty = "C:\\empty.wav";
    std::vector<uint8_t> bytes(30000);
    std::fill(bytes.begin(), bytes.end(), 'x');
    WriteBytes(prose, bytes.data(), bytes.size());
    WriteBytes(empty, "", 0);
    WriteStairs(head, 0);
    FILE* whole = fopen(kMp3.c_str(), "rb");
    ASSERT_TRUE(whole) << "run from the root of the sources";
    const size_t size = fread(bytes.data(), 1, bytes.size(), whole);
    fclose(whole);
    WriteBytes(cut, bytes.data(), size / 2 + 33);
    const std::string before = Word();
    double first = -1;
    std::thread([&] { first = MediaFileDuration(kMp3.c_str()); }).join();
    EXPECT_NEAR(first, 0.9, 0.02);
    EXPECT_EQ(MediaFileDuration(kWav.c_str()), 1.5);
    EXPECT_EQ(Word(), before);
    for (const std::string& path : {prose, empty, std::string("C:\\missing.mp3"), std::string(),
                                    std::string("C:\\"), std::string(400, 'a') + ".wav"}) {
        EXPECT_EQ(MediaFileDuration(path.c_str()), 0) << path;
        EXPECT_EQ(After([&] { return LoadMediaFile(path.c_str()); }).substr(0, 11), "0 LoadFile3")
            << path;
    }
    for (const std::string& path : {cut, head}) { // play for as long as they can
        if (!LoadMediaFile(path.c_str())) continue;
        EXPECT_TRUE(BeginMediaPlay() && Ends()) << path;
        EXPECT_LT(Position(), 0.9);
    }
    for (const std::string& path : {prose, head, cut, empty})
        DeleteFileA(path.c_str());
}
