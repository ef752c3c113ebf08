// The number of every parameter and our name for it. The first 46 are the host's indices; a
// control's tag is the tag of the parameter that it drives.
#pragma once

namespace ormund {

inline constexpr int kTagCount = 774; // 0 to 773, with holes
inline constexpr int kHostParameters = 46;
inline constexpr int kModTracks = 8;
inline constexpr int kStepLanes = 4 + kModTracks; // pitch, performance, velocity, gate and these

// Where a family of eight goes on, the name stands for its first and the comment gives the step.
namespace Tag {

// Pitch and notes
constexpr int RootKey = 0;
constexpr int Scale = 1;
constexpr int MidiOutOctave = 2;
constexpr int MidiOutTranspose = 3;
constexpr int Swing = 4;

// The eight performance actions and their amounts
constexpr int GateTimeButton = 5;
constexpr int MasterGateTime = 6;
constexpr int VelocityGateButton = 7;
constexpr int VelocityThreshold = 8;
constexpr int Looper = 9;
constexpr int LooperSteps = 10;
constexpr int Slowdown = 11;
constexpr int SlowdownRate = 12;
constexpr int Retrigger = 13;
constexpr int HalfSpeed = 14;
constexpr int StepPlay = 15;
constexpr int Mute = 16;

// Synth and delay
constexpr int SynthLevel = 17;
constexpr int SynthPan = 18;
constexpr int SynthWave = 19;
constexpr int SynthDetune = 20;
constexpr int SynthAttack = 21;
constexpr int SynthDecay = 22;
constexpr int SynthSustain = 23;
constexpr int SynthRelease = 24;
constexpr int FilterCutoff = 25;
constexpr int SynthReso = 26;
constexpr int SynthPeak = 27;
constexpr int FilterAttack = 28;
constexpr int FilterDecay = 29;
constexpr int FilterSustain = 30;
constexpr int FilterRelease = 31;
constexpr int DelayLeft = 32;
constexpr int DelayRight = 33;
constexpr int DelayFeed = 34;
constexpr int DelayMix = 35;

constexpr int GateTimeMultiply = 36;

// Modulation tracks
constexpr int AllModsOff = 37;
constexpr int ModTrackOn = 38; // 38 to 45
constexpr int ModTrackPage = 46;
constexpr int ModTarget = 48;       // 48 to 55
constexpr int ModTargetArrows = 56; // two a track: down, up
constexpr int ModSelect = 80;
constexpr int FirstModEdit = 82;   // the edit buttons of track 1; see modEdit()
constexpr int FirstModSteps = 89;  // see modSteps()
constexpr int SecondModEdit = 104; // track 2, then 22 a track
constexpr int ModDisplay = 258;
constexpr int ModMode = 262; // 262, 267 .. 297
constexpr int ModLoop = 264; // 264, 269 .. 299
constexpr int ModStep = 5;   // from one to the next of the two above
constexpr int ModToSynth = 302;

// Clock
constexpr int Play = 319;
constexpr int TriggerMode = 325;
constexpr int StepSpeed = 330;
constexpr int StepSpeedDown = 332;
constexpr int StepSpeedUp = 333;

// Performance lines, pattern sequencer
constexpr int BendDisplay = 336;
constexpr int PitchBend = 337;
constexpr int Chord = 339;
constexpr int Octave = 341;
constexpr int PageOff = 344;
constexpr int Repeat = 346;
constexpr int SequenceLoop = 347;
constexpr int Pattern = 349;
constexpr int SongSpeed = 353;
constexpr int SongSpeedDown = 355;
constexpr int SongSpeedUp = 356;
constexpr int SongOn = 357;
constexpr int LockArea = 358;

// Main lane, settings
constexpr int PitchMode = 363;
constexpr int PitchLoop = 365;
constexpr int LoopbarMode = 367;
constexpr int LoopbarModeSecond = 369;
constexpr int AudioDriver = 373;
constexpr int LoadControllers = 374;
constexpr int SaveControllers = 375;
constexpr int IgnoreProgramChange = 378;
constexpr int LockAssign = 379;

// Pitch track
constexpr int ScaleDisplay = 382;
constexpr int ScaleDown = 385;
constexpr int ScaleUp = 386;
constexpr int TransposeMode = 387;
constexpr int PitchLock = 388;
constexpr int PitchShiftBackward = 389;
constexpr int PitchShiftForward = 390;
constexpr int PitchShiftUp = 391;
constexpr int PitchShiftDown = 392;
constexpr int PitchCopy = 393;
constexpr int PitchPaste = 394;
constexpr int PitchClear = 395;
constexpr int RecordMode = 396;
constexpr int Pitch = 397;
constexpr int PitchRandom = 409;
constexpr int PitchMutate = 410;

// Velocity and gate tracks
constexpr int VelocityOn = 413;
constexpr int VelocityShiftBackward = 414;
constexpr int VelocityShiftForward = 415;
constexpr int VelocityShiftUp = 416;
constexpr int VelocityShiftDown = 417;
constexpr int VelocityCopy = 418;
constexpr int VelocityPaste = 419;
constexpr int VelocityClear = 420;
constexpr int GateShiftBackward = 421;
constexpr int GateShiftForward = 422;
constexpr int GateShiftUp = 423;
constexpr int GateShiftDown = 424;
constexpr int GateCopy = 425;
constexpr int GatePaste = 426;
constexpr int GateClear = 427;
constexpr int GateDisplay = 428;
constexpr int Velocity = 430;
constexpr int GateTime = 431;
constexpr int VelocityRandom = 451;
constexpr int VelocityMutate = 452;
constexpr int GateRandom = 455;
constexpr int GateMutate = 456;
constexpr int ArpeggioDisplay = 462;
constexpr int Arpeggio = 463;
constexpr int Performance = 464;

constexpr int PresetMenu = 466; // a control alone, no parameter

// Keyboard input
constexpr int TriggerSource = 486;
constexpr int InputOctave = 487;
constexpr int KeySync = 493;
constexpr int KeySyncDown = 495;
constexpr int KeySyncUp = 496;

// Lanes of the other tracks
constexpr int VelocityMode = 499;
constexpr int VelocityLoop = 501;
constexpr int GateMode = 504;
constexpr int GateLoop = 506;
constexpr int PerformanceMode = 509;
constexpr int PerformanceLoop = 511;

constexpr int SynthOn = 513;
constexpr int SynthPresetMenu = 515; // a control alone, no parameter
constexpr int PageSecond = 517;
constexpr int Page = 518;

// Edit buttons of the performance lines and of all tracks
constexpr int PerformanceShiftBackward = 522;
constexpr int PerformanceShiftForward = 523;
constexpr int PerformanceCopy = 524;
constexpr int PerformancePaste = 525;
constexpr int PerformanceClear = 526;
constexpr int PerformanceRandom = 532;
constexpr int PerformanceMutate = 533;
constexpr int GlobalShiftBackward = 536;
constexpr int GlobalShiftForward = 537;
constexpr int GlobalCopy = 538;
constexpr int GlobalPaste = 539;
constexpr int GlobalRandom = 544;

constexpr int About = 547;
constexpr int KeyboardArea = 548;
constexpr int Record = 555;
constexpr int PreviousPreset = 557;
constexpr int NextPreset = 558;
constexpr int PreviousSynthPreset = 559;
constexpr int NextSynthPreset = 560;
constexpr int MidiLearn = 563;
constexpr int AboutSecond = 565;
constexpr int SynthOnSecond = 571;
constexpr int RandomMin = 572;
constexpr int RandomMax = 575;
constexpr int KeyboardMode = 578;
constexpr int RandomPreset = 579;
constexpr int FileBars = 581;
constexpr int KeyboardModeSecond = 585;

// What a step of the performance lane may leave to chance, to its turn and to time
constexpr int StepChance = 586;
constexpr int StepCondition = 587;
constexpr int StepRatchet = 588;
constexpr int StepLate = 589;
constexpr int StepStrum = 590;
constexpr int ChanceSeed = 591;
constexpr int Fill = 592;
constexpr int PerformancePage = 593;

constexpr int MelodyChannel = 601;
constexpr int Launch = 602;
constexpr int PadsOnStep = 603;
constexpr int PlayThrough = 604;
// Eight each: a modulation track that plays a drum, and where a track sends
constexpr int DrumRow = 605;
constexpr int DrumNote = 613;
constexpr int DrumGate = 621;
constexpr int ModChannel = 629;
// Twelve, in the order of the lanes: pitch, performance, velocity, gate, modulation tracks
constexpr int LaneSpeed = 637;

// A tool for the steps of a lane: the choice, a number of it, and a button a lane in that order
constexpr int EditTool = 760;
constexpr int ToolHits = 761;
constexpr int ToolButton = 762;

// The tag `offset` places behind a mod track's first edit button; `track` 0 to 7. Track 1 alone
// has another layout than the seven that follow it.
constexpr int modEdit(int track, int offsetInFirst, int offsetInOthers)
{
    return track == 0 ? FirstModEdit + offsetInFirst
                      : SecondModEdit + 22 * (track - 1) + offsetInOthers;
}
constexpr int modShiftBackward(int track) { return modEdit(track, 0, 0); }
constexpr int modShiftForward(int track) { return modEdit(track, 1, 1); }
constexpr int modShiftUp(int track) { return modEdit(track, 2, 2); }
constexpr int modShiftDown(int track) { return modEdit(track, 3, 3); }
constexpr int modCopy(int track) { return modEdit(track, 4, 4); }
constexpr int modPaste(int track) { return modEdit(track, 5, 5); }
constexpr int modClear(int track) { return modEdit(track, 6, 14); }
constexpr int modSteps(int track) { return modEdit(track, 7, 6); }
constexpr int modRandom(int track) { return modEdit(track, 16, 16); }
constexpr int modMutate(int track) { return modEdit(track, 17, 17); }
constexpr int modMode(int track) { return ModMode + ModStep * track; }
constexpr int modLoop(int track) { return ModLoop + ModStep * track; }

} // namespace Tag

} // namespace ormund
