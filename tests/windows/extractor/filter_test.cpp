// The filter between neighbours of the test's making: what it takes, passes on and shows.
#include "fake_pins.h"

#include <gtest/gtest.h>

namespace {
class Extractor : public testing::Test {
protected:
    void SetUp() override {
        CoInitialize(nullptr);
        block = OpenSharedBlock();
    }
    void TearDown() override {
        EXPECT_FALSE(ExtractorIsInUse()) << "something was not released";
        CloseSharedBlock(block);
        CoUninitialize();
    }
    bool Shows(const std::vector<uint8_t>& sound) const {
        return WaitUntil(
            [&] { return !std::memcmp(block->SoundBuffer, sound.data(), kSoundBufferBytes); },
            2000);
    }
    SharedControlBlock* block;
};
} // namespace

static std::vector<uint8_t> Level(uint8_t value, size_t size = kSoundBufferBytes) {
    return std::vector<uint8_t>(size, value);
}

TEST_F(Extractor, TakesPcmOfEightAndSixteenBitAndRefusesAllElse) {
    SoundFormatRecord oddFrame = PcmFormat(44100, 2, 16);
    oddFrame.blockAlign = 2;
    const struct {
        SoundFormatRecord format;
        ULONG size;
        bool taken;
    } kCases[] = {
        {PcmFormat(44100, 2, 16), 18, true},
        {PcmFormat(8000, 1, 8), 18, true},
        {PcmFormat(1, 1, 16), 16, true},
        {PcmFormat(44100, 2, 24), 18, false},
        {PcmFormat(44100, 6, 16), 18, false},
        {PcmFormat(0, 2, 16), 18, false},
        {PcmFormat(4000000000u, 2, 16), 18, false},
        {PcmFormat(44100, 2, 16, 0xfffe), 18, false},
        {oddFrame, 18, false},
        {PcmFormat(44100, 2, 16), 15, false},
    };
    Com<IBaseFilter> filter;
    Com<IPin> in;
    CreateExtractor(&filter);
    ASSERT_TRUE(filter.p);
    filter->FindPin(L"In", &in.p);
    FakePin decoder(PINDIR_OUTPUT);
    for (const auto& c : kCases) {
        SoundFormatRecord format = c.format;
        AM_MEDIA_TYPE type = TypeOf(&format);
        type.cbFormat = c.size;
        EXPECT_EQ(in->QueryAccept(&type) == S_OK, c.taken) << &c - kCases;
        EXPECT_EQ(SUCCEEDED(in->ReceiveConnection(&decoder, &type)), c.taken) << &c - kCases;
        in->Disconnect();
        type.cbFormat = 18;
        type.pbFormat = nullptr;
        EXPECT_NE(in->QueryAccept(&type), S_OK);
        type.pbFormat = reinterpret_cast<BYTE*>(&format);
        type.majortype = MEDIATYPE_Stream;
        EXPECT_NE(in->QueryAccept(&type), S_OK);
    }
    EXPECT_EQ(decoder.references, 1);
}

TEST_F(Extractor, EverySampleGoesOnWhateverItHolds) {
    FakeGraph g(PcmFormat(22050, 2, 16));
    ASSERT_TRUE(g.connected);
    EXPECT_EQ(g.Send(Level(1)), VFW_E_WRONG_STATE);
    g.filter->Run(0);
    for (const size_t size : {0, 1, 4095, 3, 5000000, 4098, 2})
        EXPECT_EQ(g.Send(Level(9, size)), S_OK) << size;
    EXPECT_EQ(g.renderer.received, 7);
    EXPECT_EQ(g.renderer.last, g.sample.p) << "not in place";
    g.sample->SetDiscontinuity(TRUE); // so that what is left of those does not count
    REFERENCE_TIME begin = INT64_MIN, end = INT64_MAX;
    g.sample->SetTime(&begin, &end);
    EXPECT_TRUE(WaitUntil([&] { // the queue may still be full of the others
        return g.Send(Level(2, 2 * kSoundBufferBytes)) == S_OK && block->SoundBuffer[0] == 2;
    }));
    g.renderer.answer = S_FALSE; // downstream has had enough
    EXPECT_EQ(g.Send(Level(3)), S_FALSE);

    // The format changes on the way: to one that can be shown, to one that can't, and back.
    SoundFormatRecord format = PcmFormat(11025, 1, 8);
    AM_MEDIA_TYPE type = TypeOf(&format);
    g.sample->SetMediaType(&type);
    g.Send(Level(4));
    EXPECT_TRUE(Shows(Level(4)));
    EXPECT_EQ(std::memcmp(block->SoundFormat, &format, sizeof format), 0);
    format = PcmFormat(44100, 2, 24);
    g.sample->SetMediaType(&type);
    const int before = g.renderer.received;
    g.Send(Level(5));
    EXPECT_EQ(g.renderer.received, before + 1);
    format = PcmFormat(22050, 2, 16);
    g.sample->SetMediaType(&type);
    g.Send(Level(6, 2 * kSoundBufferBytes));
    EXPECT_TRUE(Shows(Level(6)));
    EXPECT_TRUE(WaitUntil([&] { return block->BandReference == 512 * 32768.0f; })); // of that one
}

TEST_F(Extractor, ShowsNothingWhilePausedAfterAFlushOrOnceStopped) {
    FakeGraph g(PcmFormat(22050, 2, 16));
    g.filter->Pause();
    g.Send(Level(1));
    g.in->BeginFlush();
    EXPECT_EQ(g.Send(Level(1)), S_FALSE);
    g.in->EndFlush();
    g.in->NewSegment(0, 1, 1);
    block->HoldLimit = 9;
    g.Send(Level(2));
    g.Send(Level(3, 100));
    g.in->EndOfStream();
    EXPECT_EQ(g.renderer.calls, "BFNE");
    Sleep(100);
    EXPECT_EQ(block->HoldCounter, 0u);
    g.filter->Run(0);
    EXPECT_TRUE(WaitUntil([&] { return block->HoldCounter == 2; })); // 2, and 3 up to the end
    EXPECT_EQ(block->SoundBuffer[99], 3);
    EXPECT_EQ(block->SoundBuffer[100], 0);
    g.Send(Level(4));
    EXPECT_TRUE(Shows(Level(4)));
    g.filter->Stop();
    EXPECT_EQ(g.Send(Level(5)), VFW_E_WRONG_STATE);
    EXPECT_TRUE(Shows(Level(4)));
}

TEST_F(Extractor, PlaysOnWhereNoProgramHasABlockAndMakesNone) {
    CloseSharedBlock(block);
    {
        FakeGraph g(PcmFormat(44100, 2, 16));
        g.filter->Run(0);
        EXPECT_EQ(g.Send(Level(1)), S_OK);
        EXPECT_EQ(g.renderer.received, 1);
        EXPECT_FALSE(OpenPresentSharedBlock());
    }
    block = OpenSharedBlock();
}

TEST_F(Extractor, IsRegisteredForAllWhoAskByItsClass) {
    static constexpr CLSID kClass = TONVISTA_EXTRACTOR_CLSID;
    for (const bool there : {true, false}) {
        const char* const name = there ? "DllRegisterServer" : "DllUnregisterServer";
        EXPECT_EQ(ExtractorExport<HRESULT WINAPI()>(name)(), S_OK);
        Com<IUnknown> filter;
        EXPECT_EQ(there, SUCCEEDED(CoCreateInstance(kClass, nullptr, CLSCTX_INPROC_SERVER,
                                                    IID_IBaseFilter, filter.Out())));
    }
}
