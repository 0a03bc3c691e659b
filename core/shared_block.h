// The shared control block: a named block of memory that all instances of the program and the
// visuals host see. The layout is shared between processes of different builds, so every offset
// is fixed; docs/shared-block.md describes each field. There is no lock: flags change by
// interlocked operations, everything else is written by one side.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr uint32_t kSharedBlockSize = 5206;
constexpr uint32_t kSharedBlockVersion = 14;
constexpr const char* kSharedBlockName = "TonvistaSharedControlBlock";

enum SharedCommandBit : uint32_t {
    kCommandNew = 0x1,     // a second instance left a command
    kCommandPlayCd = 0x2,  // play a CD, in the drive CommandDrive
    kCommandRefresh = 0x4, // read the disc again
    kCommandNoUi = 0x400,  // play without user interface
    kCommandOpenFile = 0x800
};
enum SharedRunningBit : uint32_t {
    kRunningInstance = 0x1,
    kRunningWaves = 0x2,
    kRunningCd = 0x4,
    kRunningMixer = 0x8
};

#pragma pack(push, 1)
struct SharedControlBlock {
    uint32_t BlockSize;
    uint32_t BlockVersion;
    uint32_t SoundTick;
    float PowerLeft, PowerRight, PowerFullScale;
    uint32_t HoldCounter;
    uint32_t HoldLimit;
    float BandReference;
    float BandCentres[16];
    float BandsLeft[16];
    float BandsRight[16];
    uint8_t Reserved228[4];
    uint32_t MediaTick, MediaState;
    char MediaTitle[128];
    uint8_t Reserved368[72];
    uint32_t MediaEntry;
    uint16_t BuildYear;
    uint16_t BuildMonthDay;
    uint8_t Reserved448[52];
    uint32_t CommandFlags;
    uint16_t CommandDrive; // a letter, sign-extended; '-' is the engine's own choice
    char CommandFile[259]; // may lack its NUL
    uint8_t Reserved765[5];
    uint32_t RunningFlags;
    uint8_t Reserved774[2];
    uint32_t CdTick; // the CD engine's mirror, written with every notification
    uint32_t CdIdentity;
    uint32_t CdMode;
    uint16_t CdTrack;
    uint16_t CdTrackCount;
    char CdTitle[64];
    char CdArtist[64];
    char CdTrackTitle[64];
    uint32_t RequestedTrack; // not 0: play this track
    int32_t SkipCount;       // not 0: skip so many tracks forward or back
    uint32_t NoClamp;        // not 0: power values may exceed full scale
    uint32_t VisualsTakeOver;
    uint8_t Reserved1000[52];
    int32_t VolumeDelta;
    uint32_t CloseRequest;
    uint8_t Reserved1060[32];
    uint8_t SoundFormat[18];
    uint8_t SoundBuffer[4096];
};
#pragma pack(pop)

#define TONVISTA_AT(field, offset) static_assert(offsetof(SharedControlBlock, field) == (offset))
TONVISTA_AT(BlockSize, 0);
TONVISTA_AT(BlockVersion, 4);
TONVISTA_AT(SoundTick, 8);
TONVISTA_AT(PowerLeft, 12);
TONVISTA_AT(PowerRight, 16);
TONVISTA_AT(PowerFullScale, 20);
TONVISTA_AT(HoldCounter, 24);
TONVISTA_AT(HoldLimit, 28);
TONVISTA_AT(BandReference, 32);
TONVISTA_AT(BandCentres, 36);
TONVISTA_AT(BandsLeft, 100);
TONVISTA_AT(BandsRight, 164);
TONVISTA_AT(MediaTick, 232);
TONVISTA_AT(MediaState, 236);
TONVISTA_AT(MediaTitle, 240);
TONVISTA_AT(MediaEntry, 440);
TONVISTA_AT(BuildYear, 444);
TONVISTA_AT(BuildMonthDay, 446);
TONVISTA_AT(CommandFlags, 500);
TONVISTA_AT(CommandDrive, 504);
TONVISTA_AT(CommandFile, 506);
TONVISTA_AT(RunningFlags, 770);
TONVISTA_AT(CdTick, 776);
TONVISTA_AT(CdIdentity, 780);
TONVISTA_AT(CdMode, 784);
TONVISTA_AT(CdTrack, 788);
TONVISTA_AT(CdTrackCount, 790);
TONVISTA_AT(CdTitle, 792);
TONVISTA_AT(CdArtist, 856);
TONVISTA_AT(CdTrackTitle, 920);
TONVISTA_AT(RequestedTrack, 984);
TONVISTA_AT(SkipCount, 988);
TONVISTA_AT(NoClamp, 992);
TONVISTA_AT(VisualsTakeOver, 996);
TONVISTA_AT(VolumeDelta, 1052);
TONVISTA_AT(CloseRequest, 1056);
TONVISTA_AT(SoundFormat, 1092);
TONVISTA_AT(SoundBuffer, 1110);
static_assert(sizeof(SharedControlBlock) == kSharedBlockSize);
#undef TONVISTA_AT

// The mapped block while the first instance runs, else null. Components only read the pointer;
// it is set before the first of them starts and cleared after the last has ended.
extern SharedControlBlock* SharedBlock;

// Opens or creates the block: null when it can't be had or another build's layout stands there.
// A new block comes zeroed with its size and version filled in.
SharedControlBlock* OpenSharedBlock();
// Null while no program has made one: for a guest in a process that may not be ours.
SharedControlBlock* OpenPresentSharedBlock();
void CloseSharedBlock(SharedControlBlock* block);

// Interlocked changes of a 32-bit field at `offset` (offsetof) of the open block; each returns the
// value before. They do nothing and return 0 without a block.
uint32_t SetSharedBits(size_t offset, uint32_t bits);
uint32_t ClearSharedBits(size_t offset, uint32_t bits);
uint32_t ExchangeShared(size_t offset, uint32_t value);
uint32_t ReadShared(size_t offset);
#define SHARED_FIELD(name) offsetof(SharedControlBlock, name)
