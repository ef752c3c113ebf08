// Every byte of the three kinds of file. All words are 32-bit little-endian; f is an IEEE 754
// single, i an int32. A string is its length in bytes and the bytes, padded with zeros to a whole
// word. Words count from the start.
//
// All three begin with the header:
//    0  i  number of words in all
//    1  i  version of the program that wrote it
//    2  f  tempo, beats per minute
//    3  f  sample rate, Hz
//    4  i  kChunkMagic
//
// kwe, kws and the host's state go on:
//    5  i  kHeaderWords
//    6  i  kChunkKind
//    7  i  format revision, now kFormatRevision
//    8  i  kFormatMagic (absent in revision 1)
//    9     records: file key, number of words, the words; ended by kEndOfRecords.
//          A plain parameter has one word, its raw value (f); a track has its block.
//          Keys from kFirstLaterKey on are written only where they differ from the default, behind
//          all others; what a reader does not know of them it keeps and writes again.
//   A kwe goes on:
//          for each controller with assignments: controller number, per assignment tag and step
//          (before revision 3 one word, the tag in its low half), kEndOfController
//          kEndOfMap
//          2, string: global preset's name, string: synth preset's name
//          tail revision, now kTailRevision
//          program number (from tail 10), folder number (from tail 11)
//          number of pressure assignments, per assignment tag and step, kEndOfPressure (tail 14)
//   A kws goes on:
//          string: synth preset's name
//          tail revision
//   and both:
//          16, 34, 16 x 34 f: the pattern store, pattern by pattern (tail 15)
//          string "Host" (tail 16)
//
// kwm goes on:
//    5  i  kMapRevision
//    6  i  kFormatMagic
//    7     128 records: number of assignments, per assignment tag and step (before revision 101
//          the tag alone)
#pragma once

#include <cstdint>

namespace ormund {

constexpr int32_t kProgramVersion = 1061; // grows when a format does
constexpr int kHeaderWords = 5;
constexpr int32_t kChunkMagic = 0x018E48D9;
constexpr int32_t kChunkKind = 1;
constexpr int32_t kFormatRevision = 4;
constexpr int32_t kFormatMagic = 0x50E5;
constexpr int32_t kWordPairRevision = 3; // from here on an assignment is two words

constexpr int32_t kFirstLaterKey = 10001;
// What a preset says about itself, each only where it says something. Strings, and tempo (f).
constexpr int32_t kAuthorKey = 10201;
constexpr int32_t kTagsKey = 10202; // words with a blank between
constexpr int32_t kDescriptionKey = 10203;
constexpr int32_t kTempoKey = 10204; // beats a minute
constexpr int32_t kEndOfRecords = -1;
constexpr int32_t kEndOfController = -2;
constexpr int32_t kEndOfMap = -3;
constexpr int32_t kEndOfPressure = -4;

constexpr int32_t kTailRevision = 16;
constexpr int32_t kTailWithProgram = 10;
constexpr int32_t kTailWithFolder = 11;
constexpr int32_t kTailProgramCounts = 13; // the numbers before it meant something else
constexpr int32_t kTailWithPressure = 14;
constexpr int32_t kTailWithPatterns = 15;
constexpr int32_t kTailWithHost = 16;

constexpr int32_t kMapRevision = 101;

// Blocks of the tracks.
//   KWTableXY: magic, revision, f default, f maximum, f minimum, steps, rows, rows x steps f,
//   string label.
constexpr int32_t kTableMagic = 0x27BAD581;
constexpr int32_t kTableRevision = 1002;
constexpr int32_t kTableUnscaled = 1002; // before: normalised values
constexpr int32_t kTableWithLabel = 1001;
//   The old forms begin otherwise: with kOldestTable, whose content is dropped, or with three
//   floats, then kOldTableMagic, revision and count, or the count alone, and the values.
constexpr int32_t kOldestTable = 0x3ECCCCCD; // 0.4 as a float
constexpr int32_t kOldTableMagic = static_cast<int32_t>(0xFFCB4286u);
//   KWBtnLine, KWListLine: magic, revision, rows, steps, selected row, range, rows x steps f.
constexpr int32_t kLineMagic = 0x05798B0D;
constexpr int32_t kLineRevision = 1;
//   KWZoneHandlerContainer: magic, revision, handlers, 0, the handlers.
constexpr int32_t kZonesMagic = 0x0007D31B;
constexpr int32_t kZonesRevision = 1;
//   KWFloatZoneHandler: 1, magic, zones, per zone: identifier, 0, start, end (inclusive).
constexpr int32_t kZoneHandlerMagic = 0x0007F29C;

// What a file may ask for; more counts as damage.
constexpr long long kMostFileBytes = 64LL << 20; // a real one has about 50,000
constexpr int kMaxFileRows = 64;
constexpr int kMaxFileSteps = 1024;
constexpr int kMaxFileHandlers = 63;
constexpr int kMaxFileZones = 64;

} // namespace ormund
