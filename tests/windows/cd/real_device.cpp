// The product's own device under other names, so that one program tests with it and with the fake.
#define MeasurePollPeriod RealMeasurePollPeriod
#define OpenDisc RealOpenDisc
#define CloseDisc RealCloseDisc
#define SetDiscTimes RealSetDiscTimes
#define DiscMode RealDiscMode
#define DiscTrackCount RealDiscTrackCount
#define DiscPosition RealDiscPosition
#define DiscTrackLength RealDiscTrackLength
#define DiscTrackStart RealDiscTrackStart
#define DiscTracksAgain RealDiscTracksAgain
#define DiscTrackIsAudio RealDiscTrackIsAudio
#define DiscIdentity RealDiscIdentity
#define PlayDisc RealPlayDisc
#define PauseDisc RealPauseDisc
#define StopDisc RealStopDisc
#define MoveDiscDoor RealMoveDiscDoor
#include "cd/disc_device_win.cpp"
